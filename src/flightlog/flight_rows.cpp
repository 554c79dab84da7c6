#include "flightlog/flight_rows.h"

#include <algorithm>

#include "common/run_error.h"
#include "common/services.h"
#include "config/log_names.h"
#include "flightlog/corrections.h"
#include "flightlog/log_line.h"
#include "flightlog/log_reading.h"

namespace norvane {

namespace {

/// A row's line and what it was before, all of them.
std::vector<std::string> Lines_Of_Row(Corrections& corrections, std::string_view row) {
    std::vector<std::string> lines = corrections.Earlier_Lines(row);
    lines.insert(lines.begin(), Whole_Line(row));
    return lines;
}

bool Is_Told_By_Text(const std::vector<std::string>& lines, const std::string& logged) {
    return std::ranges::find(lines, logged) != lines.end();
}

bool Is_Told_By_Figures(const std::vector<std::string>& lines, const std::string& logged) {
    return std::ranges::any_of(
        lines, [&](const std::string& line) { return Same_Flight_Of_Day(line, logged); });
}

struct Read_Table {
    std::string log;
    Log_Table table;
};

/// The log that comes first, then the others.
std::vector<Read_Table> Read_Logs(const Services& services, std::string_view first) {
    std::vector<std::string> names = List_Logs(services);
    std::stable_partition(names.begin(), names.end(),
                          [&](const std::string& name) { return name == first; });
    std::vector<Read_Table> tables;
    for (const std::string& name : names) {
        try {
            tables.push_back({name, Read_Log(services, name)});
        } catch (const Run_Error&) {
            // It says so itself to who opens it.
        }
    }
    return tables;
}

}  // namespace

std::optional<Flight_Row> Find_Flight_Row(const Services& services, Corrections& corrections,
                                          std::string_view logged, std::string_view log) {
    if (logged.empty())
        return std::nullopt;
    const std::string wanted = Whole_Line(logged);
    const std::vector<Read_Table> tables = Read_Logs(services, log);
    for (const auto& is_told : {Is_Told_By_Text, Is_Told_By_Figures}) {
        for (const Read_Table& each : tables) {
            for (std::size_t row = 0; row < each.table.Row_Count(); ++row) {
                std::string line = each.table.Line(row);
                if (is_told(Lines_Of_Row(corrections, line), wanted))
                    return Flight_Row{each.log, row, std::move(line)};
            }
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> Find_Logged_Line(Corrections& corrections, std::string_view row,
                                            const std::vector<std::string>& logged) {
    const std::vector<std::string> lines = Lines_Of_Row(corrections, row);
    for (const auto& is_told : {Is_Told_By_Text, Is_Told_By_Figures}) {
        const auto found = std::ranges::find_if(logged, [&](const std::string& line) {
            return !line.empty() && is_told(lines, Whole_Line(line));
        });
        if (found != logged.end())
            return static_cast<std::size_t>(found - logged.begin());
    }
    return std::nullopt;
}

}  // namespace norvane
