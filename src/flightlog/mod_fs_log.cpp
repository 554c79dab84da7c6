#include "flightlog/mod_fs_log.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>

#include "common/code_page.h"
#include "common/date_time.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/run_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/log_names.h"
#include "flightlog/log_columns.h"
#include "flightlog/log_reading.h"

namespace norvane::modFSLog {

namespace {

/// The simulator's file begins with so many lines of heading.
constexpr int heading_lines = 5;
/// What the converted log has of the 53 fields; the others are read as empty.
constexpr std::size_t fields_written = 42;

/// Where a figure stands in a line of the simulator's log, and the column of ours that takes it.
struct Piece {
    std::size_t begin;
    std::size_t length;
    std::size_t column;
};
constexpr Piece date_piece{0, 10, log_column::date};
constexpr std::array other_pieces = {
    Piece{11, 32, log_column::aircraft_type},
    Piece{44, 24, log_column::comments},
    Piece{90, 6, log_column::block_time},
};

std::string_view Cut(std::string_view line, const Piece& piece) {
    return piece.begin < line.size() ? Trimmed_View(line.substr(piece.begin, piece.length))
                                     : std::string_view();
}

std::string_view Behind_Heading(std::string_view content) {
    for (int line = 0; line < heading_lines; ++line) {
        const auto end = content.find('\n');
        if (end == std::string_view::npos)
            return {};
        content.remove_prefix(end + 1);
    }
    return content;
}

/// The record as a line of our log; empty for a line that begins with no date.
std::string Converted(std::string_view line, std::string_view short_date) {
    const auto moment = Parse_Date_Time(Cut(line, date_piece), short_date);
    if (!moment)
        return {};
    std::array<std::string_view, fields_written> fields;
    const std::string date = Format_Date(moment->date, short_date);
    fields.at(date_piece.column) = date;
    for (const Piece& piece : other_pieces)
        fields.at(piece.column) = Cut(line, piece);
    std::string converted;
    for (std::size_t column = 0; column < fields.size(); ++column) {
        if (column > 0)
            converted += field_separator;
        converted += fields.at(column);
    }
    return converted.append(cr_lf);
}

}  // namespace

std::filesystem::path Convert(Services& services, const std::filesystem::path& source,
                              std::string_view name) {
    const std::string fault = Check_Log_Name(name, {});
    if (!fault.empty())
        throw Run_Error(error_number::invalid_call, fault);
    std::string content = Read_File(source);
    Demand_Code_Page(content, source);
    // Neither may break a record's columns, nor a field of ours.
    std::replace_if(
        content.begin(), content.end(), [](char c) { return c == '\0' || c == field_separator; },
        ' ');
    std::string log;
    for (Line_Reader reader(Behind_Heading(content)); reader.Next();)
        log += Converted(reader.Line(), services.regional.short_date);
    if (log.empty()) {
        throw Run_Error(error_number::type_mismatch,
                        From_Path(source) + ": has no flight that begins with a date",
                        fmt::format("{} holds no flight that can be read, so nothing was converted."
                                    "  Please choose the simulator's own log (*.log); its dates "
                                    "must be written as the computer writes them ({}).",
                                    From_Path(source), services.regional.short_date));
    }
    const auto directory = services.program_directory / "convertedlogs";
    std::filesystem::create_directories(directory);
    auto file = directory / To_Path(std::string(name) + ".txt");
    Write_File_Atomically(file, log);
    return file;
}

}  // namespace norvane::modFSLog
