#pragma once
// The lines of one flight, from the scenario's points: out of the stand, and from there by the
// runways to the other stand. Distances along the second one mark what happens where.

#include <optional>
#include <vector>

#include "simhost/flight/flight_path.h"
#include "simhost/scenario/scenario_data.h"

namespace norvane {

struct Flight_Route {
    struct Stop {
        double at_m = 0;
        double hold_s = 0;
    };

    std::optional<Flight_Path> pushback;
    Flight_Path path;
    double line_up_m = 0;
    double touchdown_m = 0;        // where the first glide path meets the arrival's runway
    std::vector<double> glides_m;  // where each approach's does
    double runway_left_m = 0;      // of the arrival's, from there on
    std::vector<Stop> stops_out;   // taxiing, before the line-up
    std::vector<Stop> stops_in;    // taxiing, after the runway
};

/// Raises an error that names the line with a fault.
[[nodiscard]] Flight_Route Route_Of(const Scenario_Data& scenario);

}  // namespace norvane
