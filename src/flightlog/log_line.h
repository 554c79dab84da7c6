#pragma once
// One line of a flight log: fields with "|" between them, no line end. Pure functions that find
// their way in it; used by the table and the reading of files.

#include <cstddef>
#include <string>
#include <string_view>

namespace norvane {

[[nodiscard]] std::size_t Separators_In(std::string_view line);
/// The first 53 fields; the whole line when it has no more.
[[nodiscard]] std::string_view First_Fields(std::string_view line);
/// All 53 fields, empty ones behind those that the line has.
[[nodiscard]] std::string Whole_Line(std::string_view line);
/// Where the field of a column begins; npos when the line ends before it.
[[nodiscard]] std::size_t Begin_Of_Field(std::string_view line, std::size_t column);
/// The field that begins there.
[[nodiscard]] std::string_view Field_At(std::string_view line, std::size_t begin);
/// The field of a column, empty when the line ends before it.
[[nodiscard]] std::string_view Field_Of(std::string_view line, std::size_t column);

/// Both rows are the same flight, even with edits between them: the times of all four events and
/// the fuel at the gate, which nobody edits, are the same.
[[nodiscard]] bool Same_Flight(std::string_view a, std::string_view b);
/// The same on the same date: a flight's figures may come again another day.
[[nodiscard]] bool Same_Flight_Of_Day(std::string_view a, std::string_view b);

}  // namespace norvane
