#pragma once
// A flight's track as the store keeps it: a version byte, then point by point the difference of
// each figure to the point before, as a number of as few bytes as it needs.

#include <string>
#include <string_view>
#include <vector>

#include "blackbox/flight_summary.h"

namespace norvane {

/// Keeps milliseconds, 10^-7 degrees, tenths of feet and knots, whole feet per minute, hundredths
/// of degrees of heading.
[[nodiscard]] std::string Pack_Track(const std::vector<Flight_Point>& track);
/// Raises when the bytes are no packed track.
[[nodiscard]] std::vector<Flight_Point> Unpack_Track(std::string_view bytes);

}  // namespace norvane
