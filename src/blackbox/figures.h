#pragma once
// How far, how high and how fast a flight went.

#include <vector>

#include "blackbox/recorded_flight.h"

namespace norvane {

/// Fills the distances, the extremes and the ends of the cruise.
void Measure_Flight(const std::vector<Flight_Sample>& flown, Flight_Summary& summary);

}  // namespace norvane
