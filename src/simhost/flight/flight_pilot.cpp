#include "simhost/flight/flight_pilot.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "common/run_error.h"
#include "simhost/flight/flight_engine.h"

namespace norvane {

namespace {

constexpr double longest_flight_s = 8 * 3600;
constexpr double spool_s = 2.5;  // time constant of a change of power
/// Above this height an aircraft points into the wind fully, on the ground not at all.
constexpr double crab_ft = 200;
constexpr double slowest_crab_kt = 60;
constexpr double wheels_deg_per_s = 8;  // in which they turn an aircraft into its way
constexpr double radians = std::numbers::pi / 180;

double Metres_A_Step(double knots) {
    return knots / knots_per_metre_per_second * flight_step_s;
}

}  // namespace

Flight_Table Fly_Scenario(const Scenario_Data& scenario, const Flight_Route& route) {
    return Flight_Pilot(scenario, route).Fly();
}

Flight_Pilot::Flight_Pilot(const Scenario_Data& scenario, const Flight_Route& route)
    : m_scenario(scenario),
      m_performance(scenario.aircraft.performance),
      m_route(route),
      m_helicopter(scenario.aircraft.engine.kind == engine_kind::helicopter),
      m_departure_ft(scenario.departure.elevation_ft + scenario.aircraft.gear_height_ft),
      m_arrival_ft(scenario.arrival.elevation_ft + scenario.aircraft.gear_height_ft),
      m_engines_running(scenario.aircraft.engine.count) {
    m_now.altitude_ft = m_departure_ft;
    m_now.fuel_lbs = scenario.fuel_lbs;
    m_now.pushed = route.pushback.has_value();
    m_table.lift_off_m = route.line_up_m;  // until it is known better
    m_now.heading_deg = Course();
}

Flight_Table Flight_Pilot::Fly() {
    Stand(m_scenario.parked_s);
    m_now.parking_brake = false;
    if (m_helicopter) {
        Stand(m_scenario.line_up_s);
        Lift_Off();
        Fly_Route();
        Set_Down();
    } else {
        Leave_Stand();
        Take_Off();
        Fly_Route();
        Fly_Circuits();
        Land();
        Taxi_To_Stand();
    }
    Shut_Down();
    return std::move(m_table);
}

void Flight_Pilot::Give_Up(const std::string& reason) {
    throw Run_Error(error_number::other, "this flight cannot be flown: " + reason);
}

double Flight_Pilot::Course() const {
    const Flight_Path& path = m_now.pushed ? *m_route.pushback : m_route.path;
    const double course = path.At(m_now.path_m).course_deg;
    return m_now.pushed ? std::fmod(course + 180, 360.0) : course;
}

Wind Flight_Pilot::Wind_Now() const {
    return Wind_At(m_scenario, Share_Of_Route(m_route, m_table, m_now), m_now.altitude_ft);
}

double Flight_Pilot::Weight_Lbs() const {
    return m_scenario.zero_fuel_weight_lbs + m_now.fuel_lbs;
}

void Flight_Pilot::Stand_Step() {
    const double heading = m_now.heading_deg;
    Ground_Step(0);
    m_table.states.back().heading_deg = m_now.heading_deg = heading;
}

void Flight_Pilot::Ground_Step(double ground_kt) {
    const double acceleration = (ground_kt - m_now.ground_kt) / flight_step_s;
    m_now.path_m += Metres_A_Step(ground_kt);
    m_now.ground_kt = ground_kt;
    m_now.heading_deg = Course();
    if (m_crab_deg != 0) {
        const double most = wheels_deg_per_s * flight_step_s;
        m_crab_deg -= std::clamp(m_crab_deg, -most, most);
        m_now.heading_deg = std::fmod(m_now.heading_deg + m_crab_deg + 360, 360.0);
    }
    // A wind from behind shows no airspeed.
    const double moved = m_now.pushed ? -ground_kt : ground_kt;
    m_now.true_kt = std::max(0.0, moved + Headwind_Kt(Wind_Now(), m_now.heading_deg));
    m_now.indicated_kt = Indicated_From_True(m_now.true_kt, Air(m_now.altitude_ft));
    Use_Engines(acceleration);
    Save_State();
}

void Flight_Pilot::Air_Step(double indicated_kt, double vertical_fpm) {
    const double acceleration = (indicated_kt - m_now.indicated_kt) / flight_step_s;
    m_now.altitude_ft += vertical_fpm / 60 * flight_step_s;
    m_now.vertical_fpm = vertical_fpm;
    m_now.indicated_kt = indicated_kt;
    m_now.true_kt = True_From_Indicated(indicated_kt, Air(m_now.altitude_ft));
    const Wind wind = Wind_Now();
    const double course = Course();
    const double aside = Crosswind_Kt(wind, course);
    const double ahead = std::sqrt(std::max(0.0, m_now.true_kt * m_now.true_kt - aside * aside));
    m_now.ground_kt = std::max(0.0, ahead - Headwind_Kt(wind, course));
    m_now.path_m += Metres_A_Step(m_now.ground_kt);
    const double crab = std::asin(std::clamp(aside / std::max(1.0, m_now.true_kt), -1.0, 1.0));
    const double kept = m_stage == Stage::descent ? m_scenario.crab_kept : 0;
    const double share = kept + (1 - kept) * std::clamp(Height_Ft() / crab_ft, 0.0, 1.0);
    m_crab_deg = crab / radians * kept;
    m_now.heading_deg = std::fmod(Course() + crab / radians * share + 360, 360.0);
    Use_Engines(acceleration);
    Save_State();
}

void Flight_Pilot::Hover_Step(double ground_kt, double vertical_fpm) {
    const double acceleration = (ground_kt - m_now.ground_kt) / flight_step_s;
    m_now.altitude_ft += vertical_fpm / 60 * flight_step_s;
    m_now.vertical_fpm = vertical_fpm;
    m_now.ground_kt = ground_kt;
    m_now.path_m += Metres_A_Step(ground_kt);
    const Wind wind = Wind_Now();
    const double course = Course();
    const double aside = Crosswind_Kt(wind, course);
    const double ahead = ground_kt + Headwind_Kt(wind, course);
    m_now.true_kt = std::hypot(ahead, aside);
    m_now.indicated_kt = Indicated_From_True(std::max(0.0, ahead), Air(m_now.altitude_ft));
    const double share = std::clamp(ground_kt / slowest_crab_kt, 0.0, 1.0);
    const double crab = std::atan2(aside, std::max(slowest_crab_kt, ahead)) / radians;
    m_now.heading_deg = std::fmod(course + crab * share + 360, 360.0);
    Use_Engines(acceleration);
    Save_State();
}

void Flight_Pilot::Use_Engines(double acceleration_kt_per_s) {
    const Aircraft_Data& aircraft = m_scenario.aircraft;
    const Air air(m_now.altitude_ft);
    // Slow, with flaps and gear out, the same wing costs more.
    const double slow =
        std::clamp(1.8 - m_now.indicated_kt / std::max(1.0, Approach_Kt()), 0.0, 0.8);
    const Engine_Load load{.weight_lbs = Weight_Lbs(),
                           .true_kt = m_now.true_kt,
                           .vertical_fpm = m_now.vertical_fpm,
                           .acceleration_kt_per_s = acceleration_kt_per_s,
                           .lift_to_drag = m_performance.lift_to_drag * (1 - slow * 0.5),
                           .on_ground = m_now.on_ground};
    const double needed = m_now.on_ground && m_now.ground_kt == 0 && !m_helicopter
                              ? 0
                              : Power_Needed(aircraft.engine, load, air);
    const double target = m_stage == Stage::take_off ? 1 : needed;
    m_now.power += (target - m_now.power) * flight_step_s / spool_s;
    m_now.flow_pph = Fuel_Flow_Pph(aircraft.engine, m_now.power, m_now.true_kt, air);
    m_now.fuel_lbs -= m_now.flow_pph * m_engines_running * flight_step_s / 3600;
}

void Flight_Pilot::Save_State() {
    const double seconds = static_cast<double>(m_table.states.size()) * flight_step_s;
    if (m_now.fuel_lbs <= 0)
        Give_Up(fmt::format("the fuel is used up after {:.0f} s", seconds));
    if (seconds > longest_flight_s)
        Give_Up(fmt::format("it takes longer than {:.0f} hours", longest_flight_s / 3600));
    Set_Levers();
    m_table.states.push_back(m_now);
}

}  // namespace norvane
