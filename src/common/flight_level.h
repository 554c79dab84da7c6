#pragma once
// Altitudes as flight level texts.

#include <string>

namespace norvane {

/// Feet to a flight level text: below 1000 the number itself; otherwise thousands to one decimal
/// (halves to even) as "FL350" from 18000 ft up, "12500" from 10000, "9500" below.
[[nodiscard]] std::string Format_FlightLevel(double altitude_ft);

}  // namespace norvane
