#pragma once
// A flight's line on the map and its profile, thinned to what can be seen.

#include <cstddef>
#include <vector>

#include "blackbox/recorded_flight.h"

namespace norvane {

inline constexpr std::size_t most_track_points = 2000;

/// Straight lines between its points, never across a segment's beginning, are at most 50 m (and in
/// height, by time, 50 ft) from every sample; less where so few points allow it. A flight that
/// needs more than `most_track_points` for that has the most important ones.
[[nodiscard]] std::vector<Flight_Point> Thin_Track(const std::vector<Flight_Sample>& flown);

}  // namespace norvane
