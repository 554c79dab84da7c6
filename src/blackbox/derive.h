#pragma once
// From a recording to what is known of the flight.

#include <string>
#include <vector>

#include "blackbox/flight_summary.h"
#include "simlink/recording.h"

namespace norvane {

/// `id`: the recording's name without its endings. Never raises for moments that `Read_Recording`
/// gave.
[[nodiscard]] Flight_Summary Derive_Flight(std::string id,
                                           const std::vector<Recorded_Moment>& moments);

}  // namespace norvane
