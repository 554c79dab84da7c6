#include "simhost/flight/flight_engine.h"

#include <algorithm>
#include <cmath>

#include "simlink/catalogue.h"

namespace norvane {

namespace {

constexpr double knots_of_gravity = 19.06;  // one g in knots a second
constexpr double feet_per_minute_of_knot = 101.2686;
constexpr double knots_of_horsepower = 325.7;  // pounds × knots in one horsepower
constexpr double propeller_efficiency = 0.8;
constexpr double rolling_drag = 0.02;  // of the weight
constexpr double sea_level_inhg = 29.92;
constexpr double run_down_s = 6;

/// The share of its sea-level power that an engine has left.
double Power_Left(const Engine_Data& engine, double true_kt, const Air& air) {
    const double density = air.density_ratio;
    switch (engine.kind) {
        case engine_kind::jet:
            return std::pow(density, 0.8) * (1 - 0.5 * true_kt / air.sound_kt);
        case engine_kind::piston:
            return density;
        default:
            return std::sqrt(density);
    }
}

/// A rotor takes most power in the hover, least at about 60 knots.
double Rotor_Power(const Engine_Load& load) {
    if (load.on_ground)
        return 0.12;
    const double slow = std::max(0.0, 1 - load.true_kt / 60);
    const double fast = std::max(0.0, load.true_kt / 60 - 1);
    const double weight_lifted = load.vertical_fpm / 1500 * 0.3;
    return 0.5 + 0.3 * slow * slow + 0.25 * fast * fast + weight_lifted;
}

double Reading(const Power_Range& range, double shape) {
    return range.idle + (range.full - range.idle) * shape;
}

}  // namespace

double Power_Needed(const Engine_Data& engine, const Engine_Load& load, const Air& air) {
    if (engine.kind == engine_kind::helicopter)
        return std::clamp(Rotor_Power(load), 0.0, 1.0);
    double pull = load.acceleration_kt_per_s / knots_of_gravity;
    if (load.on_ground)
        pull += load.true_kt > 0 ? rolling_drag : 0;
    else
        pull += 1 / load.lift_to_drag +
                load.vertical_fpm / std::max(1.0, load.true_kt * feet_per_minute_of_knot);
    const double pounds = pull * load.weight_lbs;
    const double left = Power_Left(engine, load.true_kt, air) * engine.count;
    if (engine.kind == engine_kind::jet)
        return std::clamp(pounds / (engine.thrust_lbf * left), 0.0, 1.0);
    const double horsepower = pounds * load.true_kt / knots_of_horsepower / propeller_efficiency;
    return std::clamp(horsepower / (engine.power_hp * left), 0.0, 1.0);
}

double Fuel_Flow_Pph(const Engine_Data& engine, double power, double true_kt, const Air& air) {
    // A jet burns more for each pound of thrust the faster it flies.
    const double speed = engine.kind == engine_kind::jet ? 1 + 0.8 * true_kt / air.sound_kt : 1;
    const double left = Power_Left(engine, true_kt, air) * speed;
    const double idle = engine.fuel_flow_pph.idle * std::sqrt(air.pressure_ratio);
    return idle + (engine.fuel_flow_pph.full - engine.fuel_flow_pph.idle) * power * left;
}

Engine_Readings Readings_Of(const Engine_Data& engine, double power, const Air& air) {
    // Shaft speeds rise steeply at first.
    const double shape = std::sqrt(power);
    const double manifold = Reading(engine.manifold_inhg, power);
    const double outside = sea_level_inhg * air.pressure_ratio;
    return {Reading(engine.n1_percent, shape), Reading(engine.n2_percent, shape),
            std::min(manifold, outside), Reading(engine.propeller, shape)};
}

Engine_Readings Readings_Of_Stopped(const Engine_Data& engine, double seconds, const Air& air) {
    const double left = std::exp(-seconds / run_down_s);
    Engine_Readings readings = Readings_Of(engine, 0, air);
    readings.n1_percent *= left;
    readings.n2_percent *= left;
    readings.propeller *= left;
    // The manifold of an engine that stands still holds the air outside.
    if (engine.kind == engine_kind::piston)
        readings.manifold_inhg +=
            (sea_level_inhg * air.pressure_ratio - readings.manifold_inhg) * (1 - left);
    return readings;
}

}  // namespace norvane
