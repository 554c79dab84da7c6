#pragma once
// The engines of a stand-in's aircraft: which share of their power a movement takes, the fuel that
// costs, and what the instruments show. Power is 0 (idle) to 1 (all there is at this altitude).

#include "simhost/flight/flight_air.h"
#include "simhost/scenario/scenario_data.h"

namespace norvane {

/// What the engines have to do.
struct Engine_Load {
    double weight_lbs = 0;
    double true_kt = 0;
    double vertical_fpm = 0;
    double acceleration_kt_per_s = 0;
    double lift_to_drag = 15;
    bool on_ground = false;
};

/// The share of power that the load takes, 0 to 1.
[[nodiscard]] double Power_Needed(const Engine_Data& engine, const Engine_Load& load,
                                  const Air& air);
/// Pounds an hour of one engine.
[[nodiscard]] double Fuel_Flow_Pph(const Engine_Data& engine, double power, double true_kt,
                                   const Air& air);

struct Engine_Readings {
    double n1_percent = 0;
    double n2_percent = 0;
    double manifold_inhg = 0;
    double propeller = 0;
};

[[nodiscard]] Engine_Readings Readings_Of(const Engine_Data& engine, double power, const Air& air);
/// The readings of an engine that was shut down `seconds` ago, running at idle.
[[nodiscard]] Engine_Readings Readings_Of_Stopped(const Engine_Data& engine, double seconds,
                                                  const Air& air);

}  // namespace norvane
