#pragma once
// A flight in words, for who reads: what it was, why each of its times is what it is, how it
// landed. Lines end with LF; figures are written with "." in every country.

#include <string>

#include "blackbox/flight_summary.h"

namespace norvane {

/// What was flown, a fact a line.
[[nodiscard]] std::string Flight_Text(const Flight_Summary& flight);
/// Each block event with its rule, what was read, the settings in force and what was near.
[[nodiscard]] std::string Evidence_Words(const Flight_Summary& flight);
/// Each landing with its touches.
[[nodiscard]] std::string Landing_Text(const Flight_Summary& flight);

}  // namespace norvane
