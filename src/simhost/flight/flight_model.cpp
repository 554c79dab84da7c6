#include "simhost/flight/flight_model.h"

#include <algorithm>
#include <cmath>

#include "simhost/flight/flight_attitude.h"
#include "simhost/flight/flight_pilot.h"

namespace norvane {

namespace {

/// Farther than any aircraft flies in a step.
constexpr double teleport_m = 400;

double Between(double a, double b, double share) {
    return a + (b - a) * share;
}

}  // namespace

double Share_Of_Route(const Flight_Route& route, const Flight_Table& table,
                      const Flown_State& state) {
    if (state.pushed)
        return 0;
    const double flown = state.path_m - table.lift_off_m;
    return std::clamp(flown / (route.touchdown_m - table.lift_off_m), 0.0, 1.0);
}

Flight_Model::Flight_Model(const Scenario_Data& scenario)
    : m_route(Route_Of(scenario)), m_table(Fly_Scenario(scenario, m_route)) {
    Add_Attitude(scenario, m_route, m_table);
}

double Flight_Model::Length_S() const {
    return static_cast<double>(m_table.states.size() - 1) * flight_step_s;
}

Flown_State Flight_Model::At(double seconds) const {
    const double step = std::clamp(seconds, 0.0, Length_S()) / flight_step_s;
    const auto index = static_cast<std::size_t>(step);
    if (index + 1 >= m_table.states.size())
        return m_table.states.back();
    const Flown_State& a = m_table.states[index];
    const Flown_State& b = m_table.states[index + 1];
    const double share = step - std::floor(step);
    Flown_State now = a;
    // The pushback's end and the route's start are the same place, but other distances; a teleport
    // has no between either.
    if (a.pushed == b.pushed && std::abs(b.path_m - a.path_m) < teleport_m)
        now.path_m = Between(a.path_m, b.path_m, share);
    // An aircraft is at the ground's height or climbs from it; the switch itself has no between.
    if (a.on_ground == b.on_ground) {
        now.vertical_fpm = Between(a.vertical_fpm, b.vertical_fpm, share);
        now.load_g = Between(a.load_g, b.load_g, share);
    }
    now.pitch_deg = Between(a.pitch_deg, b.pitch_deg, share);
    now.bank_deg = Between(a.bank_deg, b.bank_deg, share);
    now.altitude_ft = Between(a.altitude_ft, b.altitude_ft, share);
    now.indicated_kt = Between(a.indicated_kt, b.indicated_kt, share);
    now.true_kt = Between(a.true_kt, b.true_kt, share);
    now.ground_kt = Between(a.ground_kt, b.ground_kt, share);
    now.heading_deg = a.heading_deg + Half_Turn(b.heading_deg - a.heading_deg) * share;
    now.power = Between(a.power, b.power, share);
    now.flow_pph = Between(a.flow_pph, b.flow_pph, share);
    now.fuel_lbs = Between(a.fuel_lbs, b.fuel_lbs, share);
    return now;
}

Position Flight_Model::Position_Of(const Flown_State& state) const {
    const Flight_Path& path = state.pushed ? *m_route.pushback : m_route.path;
    return path.At(state.path_m).position;
}

std::optional<double> Flight_Model::Off_For_S(int engine, double seconds) const {
    const std::optional<double>& off =
        m_table.engine_off_s.at(static_cast<std::size_t>(engine - 1));
    const double now = std::min(seconds, Length_S());
    if (!off || now < *off)
        return std::nullopt;
    return now - *off;
}

Wind Wind_At(const Scenario_Data& scenario, double share_of_route, double altitude_ft) {
    const Wind below = Wind_Between(scenario.departure.weather.wind, scenario.arrival.weather.wind,
                                    share_of_route);
    const double ground = Ground_Ft(scenario, share_of_route);
    const double up = (altitude_ft - ground) / std::max(1.0, scenario.aloft_ft - ground);
    return Wind_Between(below, scenario.aloft, std::clamp(up, 0.0, 1.0));
}

double Ground_Ft(const Scenario_Data& scenario, double share_of_route) {
    return Between(scenario.departure.elevation_ft, scenario.arrival.elevation_ft, share_of_route);
}

}  // namespace norvane
