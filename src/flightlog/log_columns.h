#pragma once
// The 53 columns of a flight log, stated once: caption, width, where a logged flight's value comes
// from, how the pilot's entry is checked. Log file, table, grid and entry walk this table.

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "common/number.h"
#include "logentry/log_fields.h"

namespace norvane {

class clsLogEntry;

inline constexpr std::size_t log_column_count = 53;

/// The columns that code names; all others are only walked.
namespace log_column {
inline constexpr std::size_t date = 0;
inline constexpr std::size_t aircraft_type = 1;
inline constexpr std::size_t origin = 3;
inline constexpr std::size_t time_out = 5;
inline constexpr std::size_t destination = 8;
inline constexpr std::size_t block_time = 13;
inline constexpr std::size_t flight_time = 16;
inline constexpr std::size_t comments = 19;
inline constexpr std::size_t flight_level = 23;
inline constexpr std::size_t flight_plan = 24;
inline constexpr std::size_t ifr_vfr = 37;
inline constexpr std::size_t first_optional = 38;
inline constexpr std::size_t first_airline = 43;
}  // namespace log_column

enum class Column_Source { field, optional, airline };
enum class Cell_Check { none, date, number };

struct Log_Column {
    /// Empty where the caption comes from a field definition.
    std::string_view caption;
    /// Default width in twips (1/1440 inch).
    int width_twips = 1000;
    Column_Source source = Column_Source::field;
    /// The entry's field, for `Column_Source::field`.
    Log_Field field = Log_Field::FLIGHT_DATE;
    /// The entry's slot, for the other two.
    std::size_t slot = 0;
    Cell_Check check = Cell_Check::none;
};

[[nodiscard]] std::span<const Log_Column, log_column_count> All_Log_Columns();
/// The column that a field of the entry goes to; 9 is raised for one that goes to none.
[[nodiscard]] std::size_t Column_Of(Log_Field field);

/// A flight as a line of a log: 53 fields with "|" between them, without line end. "|" in a value
/// becomes "/", a line break a blank.
[[nodiscard]] std::string Log_Line(const clsLogEntry& entry);

/// What becomes of a text that the pilot typed into a cell.
struct Checked_Cell {
    /// The text to keep: a date in short date form, a number with one decimal, an airport's code in
    /// capitals, others as typed.
    std::string text;
    /// Why the text is refused; empty when it is taken.
    std::string_view message;
};
/// The empty text is always taken.
[[nodiscard]] Checked_Cell Check_Cell(std::size_t column, std::string_view typed,
                                      const Regional& regional);

}  // namespace norvane
