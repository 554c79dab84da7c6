#pragma once
// Where a recording is not one line: pauses, gaps, replays, jumps. Marks the samples behind them
// and leaves those out that were not flown.

#include <vector>

#include "blackbox/flight_notes.h"
#include "blackbox/recorded_flight.h"

namespace norvane {

/// Keeps the samples that were flown, each with the break before it, and tells what happened.
[[nodiscard]] std::vector<Flight_Incident> Mark_Segments(std::vector<Flight_Sample>& samples,
                                                         const std::vector<Noted_Rest>& rests);

}  // namespace norvane
