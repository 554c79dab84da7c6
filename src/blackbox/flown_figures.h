#pragma once
// The flown times and fuel of a flight beside the planned ones, from its recording: as the engine
// captures them, by the clock that the flight was timed with.

#include <vector>

#include "blackbox/flight_summary.h"
#include "blackbox/planned_flight.h"
#include "blackbox/recorded_flight.h"

namespace norvane {

/// A row for each figure that was planned. `summary` has its events, settings and beginning.
[[nodiscard]] std::vector<Planned_Figure> Beside_Planned(const Planned_Flight& planned,
                                                         const std::vector<Flight_Sample>& flown,
                                                         const Flight_Summary& summary);

}  // namespace norvane
