#pragma once
// What the text of a flight log file says: its rows, and what a table has no place for. Touches no
// file but the one it is asked to read. Used by the panel's log file and by those who only look.

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "flightlog/log_table.h"

namespace norvane {

struct Services;

struct Log_Reading {
    /// Every line with a date, in file order.
    Log_Table table;
    /// Lines whose date is empty, and those that carry something past the 53rd field: as they were,
    /// each with CR LF.
    std::string set_aside;
    /// Their line numbers, from 1.
    std::vector<std::size_t> undated_lines;
    std::vector<std::size_t> long_lines;
};

/// Empty lines count for nothing, nor do separators past the 53rd field with nothing behind them.
[[nodiscard]] Log_Reading Parse_Log(std::string content);

/// Every row of a log's text as 53 fields, each line's first ones: those with a date in file order,
/// then those without one that hold something.
[[nodiscard]] std::vector<std::string> All_Rows(std::string content);

/// Raises 13 for the bytes of a file that another program stored with two bytes a character: read
/// as a log it would be rubbish, and be written back as such.
void Demand_Code_Page(std::string_view content, const std::filesystem::path& file);

/// "3, 5-8, 12".
[[nodiscard]] std::string Line_Numbers(const std::vector<std::size_t>& ascending);

/// The log as the panel would show it (sorted by date), without a backup and without touching
/// anything. The name is code page text. Raises 53 when there is no such log, 75 when the name
/// would lead out of the directory of the logs or cannot be told from another log's.
[[nodiscard]] Log_Table Read_Log(const Services& services, std::string_view name);

/// A row as `log rows` prints it: its number from 1, a tab, the 53 fields with "|" between them.
[[nodiscard]] std::string Listed_Row(const Log_Table& table, std::size_t row);

}  // namespace norvane
