#include "flightlog/log_reading.h"

#include <fmt/format.h>

#include <utility>

#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/run_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/log_names.h"
#include "flightlog/log_line.h"

namespace norvane {

Log_Reading Parse_Log(std::string content) {
    Log_Reading reading;
    std::vector<Log_Table::Line_Span> rows;
    const auto set_aside = [&](std::string_view line) {
        reading.set_aside += line;
        reading.set_aside += cr_lf;
    };
    for (Line_Reader reader(content); reader.Next();) {
        const std::string_view line = reader.Line();
        if (line.empty())
            continue;
        if (line.front() == field_separator) {
            set_aside(line);
            reading.undated_lines.push_back(reader.Line_Number());
            continue;
        }
        const std::size_t length = First_Fields(line).size();
        if (line.find_first_not_of(field_separator, length) != std::string_view::npos) {
            set_aside(line);
            reading.long_lines.push_back(reader.Line_Number());
        }
        rows.push_back({static_cast<std::size_t>(line.data() - content.data()), length});
    }
    rows.shrink_to_fit();
    reading.table = Log_Table(std::move(content), std::move(rows));
    return reading;
}

std::vector<std::string> All_Rows(std::string content) {
    const Log_Reading reading = Parse_Log(std::move(content));
    Log_Table table = reading.table;
    for (Line_Reader reader(reading.set_aside); reader.Next();) {
        if (reader.Line().starts_with(field_separator)) {
            const std::size_t row = table.Row_Count();
            table.Resize(row + 1);
            table.Set_Line(row, reader.Line());
        }
    }
    std::vector<std::string> rows;
    for (std::size_t row = 0; row < table.Row_Count(); ++row) {
        if (!table.Is_Blank(row))
            rows.push_back(table.Line(row));
    }
    return rows;
}

void Demand_Code_Page(std::string_view content, const std::filesystem::path& file) {
    constexpr std::size_t looked_at = 4;
    const auto nul = [&](std::size_t i) { return content[i] == '\0'; };
    const bool marked = content.starts_with("\xFF\xFE") || content.starts_with("\xFE\xFF");
    const bool every_other =
        content.size() >= looked_at && nul(0) == nul(2) && nul(1) == nul(3) && nul(0) != nul(1);
    if (!marked && !every_other)
        return;
    throw Run_Error(
        error_number::type_mismatch, From_Path(file) + ": is UTF-16 text",
        fmt::format("{} was stored as \"Unicode\" (UTF-16) by another program and cannot be read "
                    "as a flight log.  Nothing in it was changed.  Please store it as \"ANSI\" "
                    "(Windows-1252) there, then load it again.",
                    From_Path(file)));
}

std::string Line_Numbers(const std::vector<std::size_t>& ascending) {
    std::string text;
    for (std::size_t i = 0; i < ascending.size(); ++i) {
        const std::size_t first = ascending[i];
        while (i + 1 < ascending.size() && ascending[i + 1] == ascending[i] + 1)
            ++i;
        if (!text.empty())
            text += ", ";
        text += ascending[i] == first ? fmt::format("{}", first)
                                      : fmt::format("{}-{}", first, ascending[i]);
    }
    return text;
}

Log_Table Read_Log(const Services& services, std::string_view name) {
    if (name.find_first_of("/\\") != std::string_view::npos) {
        throw Run_Error(error_number::path_file_access,
                        fmt::format("\"{}\" is not the name of a flight log", name));
    }
    const std::string hidden = Hidden_Log_Fault(services, name);
    if (!hidden.empty())
        throw Run_Error(error_number::path_file_access, hidden, hidden);
    const auto file = Log_Path(services, name);
    std::string content = Read_File(file);
    Demand_Code_Page(content, file);
    Log_Table table = Parse_Log(std::move(content)).table;
    Sort_XArray(table, 0, services.regional.short_date);
    return table;
}

std::string Listed_Row(const Log_Table& table, std::size_t row) {
    return fmt::format("{}\t{}", row + 1, table.Line(row));
}

}  // namespace norvane
