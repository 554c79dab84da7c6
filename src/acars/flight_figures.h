#pragma once
// The arithmetic of a flight's figures: times between events, units, differences. Pure functions of
// the engine; figures are texts of whole numbers, times "hhmm".

#include <optional>
#include <string>
#include <string_view>

namespace norvane {

inline constexpr double kilograms_per_pound = 0.45359237;

/// The number of a captured text; an empty text counts as 0.
[[nodiscard]] double Figure_Of(std::string_view text);
/// Pounds as whole kilograms.
[[nodiscard]] std::string Kilograms(double pounds);
/// Pounds in the unit: kilograms for `unit::kilograms`, else pounds.
[[nodiscard]] std::string Weight_In_Unit(double pounds, int unit);

/// Minutes from one time of day to the next occurrence of another, at most one midnight between
/// them. Empty when either text is no time.
[[nodiscard]] std::optional<int> Minutes_Between(std::string_view from, std::string_view to);
/// Hours with one decimal, as "1.5".
[[nodiscard]] std::string Decimal_Hours(int minutes);
/// Hours and minutes, as "1:30".
[[nodiscard]] std::string Hours_And_Minutes(int minutes);

}  // namespace norvane
