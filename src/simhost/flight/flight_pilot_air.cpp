#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "simhost/flight/flight_pilot.h"

namespace norvane {

namespace {

constexpr double climb_out_ft = 1500;  // above the runway
constexpr double low_ft = 10000;       // where the speed limit ends
constexpr double slow_down_ft = 1500;  // above it, in which a descending aircraft slows down
constexpr double captured_ft = 0.5;
constexpr double capture_s = 4;
constexpr double follow_s = 5;   // in which a deviation from the descent is made good
constexpr double settle_s = 25;  // level, before the descent may begin

/// A table by rising altitude or distance, straight lines between its rows.
template <typename Row>
double Look_Up(const std::vector<Row>& rows, double at, double Row::*key, double Row::*value) {
    const auto after =
        std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return row.*key > at; });
    if (after == rows.begin())
        return rows.front().*value;
    if (after == rows.end())
        return rows.back().*value;
    const Row& before = *(after - 1);
    const double share = (at - before.*key) / ((*after).*key - before.*key);
    return before.*value + ((*after).*value - before.*value) * share;
}

double Towards(double from, double to, double most) {
    return from + std::clamp(to - from, -most, most);
}

}  // namespace

double Flight_Pilot::To_Go_Nm() const {
    return (m_route.glides_m[m_approach] - m_now.path_m) / metres_per_nm;
}

bool Flight_Pilot::Breaks_Off() const {
    const auto& circuits = m_scenario.arrival.circuits;
    return m_approach < circuits.size() && !circuits[m_approach].touches;
}

double Flight_Pilot::Flown_Nm() const {
    return (m_now.path_m - m_table.lift_off_m) / metres_per_nm;
}

double Flight_Pilot::Height_Ft() const {
    const bool near_end =
        m_stage == Stage::descent || m_approach > 0 || m_now.path_m > m_route.touchdown_m;
    return m_now.altitude_ft - (near_end ? m_arrival_ft : m_departure_ft);
}

double Flight_Pilot::Approach_Kt() const {
    return m_performance.approach.empty() ? 0 : m_performance.approach.front().indicated_kt;
}

double Flight_Pilot::Target_Kt() const {
    const double altitude = m_now.altitude_ft;
    double speed = m_performance.climb_kt;
    if (m_stage == Stage::take_off)
        speed = m_performance.climb_out_kt;
    else if (m_stage == Stage::cruise)
        speed = m_performance.cruise_kt;
    else if (m_stage == Stage::descent)
        speed = m_performance.descent_kt;
    const double low = std::min(speed, m_performance.low_kt);
    if (altitude < low_ft)
        speed = low;
    else if (m_stage == Stage::descent && altitude < low_ft + slow_down_ft)
        speed = low + (speed - low) * (altitude - low_ft) / slow_down_ft;
    const Air air(altitude);
    speed = std::min(speed, Indicated_From_True(m_performance.highest_mach * air.sound_kt, air));
    const auto& approach = m_performance.approach;
    if (!approach.empty() && To_Go_Nm() < approach.back().to_go_nm)
        speed = std::min(
            speed, Look_Up(approach, To_Go_Nm(), &Speed_At::to_go_nm, &Speed_At::indicated_kt));
    return speed;
}

void Flight_Pilot::Fly_Step(double vertical_fpm) {
    if (m_stage == Stage::take_off && Height_Ft() > climb_out_ft)
        m_stage = Stage::climb;
    if (m_helicopter)
        Hover_Step(Helicopter_Kt(), vertical_fpm);
    else
        Air_Step(Towards(m_now.indicated_kt, Target_Kt(), m_performance.kt_per_s * flight_step_s),
                 vertical_fpm);
}

void Flight_Pilot::Fly_Route() {
    m_profile = Descent_Profile(Plan_Descent());
    for (const Level_Off& level : m_scenario.climb_level_offs) {
        Climb_To(level.altitude_ft);
        Hold_Level(Flown_Nm() + level.for_nm);
    }
    Climb_To(m_scenario.cruise_ft);
    m_stage = Stage::cruise;
    for (const Step_Climb& step : m_scenario.steps) {
        Hold_Level(step.at_nm);
        Climb_To(step.altitude_ft);
    }
    Cruise_And_Descend();
    if (m_teleports < m_scenario.teleports.size())
        Give_Up(fmt::format("{:g} nm, where it is to be teleported, are not flown in cruise",
                            m_scenario.teleports[m_teleports].at_nm));
}

void Flight_Pilot::Fly_Circuits() {
    for (const Circuit& circuit : m_scenario.arrival.circuits) {
        if (circuit.touches)
            Touch_And_Go();
        ++m_approach;
        m_stage = Stage::take_off;
        Descent_Plan plan = Plan_Descent();
        plan.from_ft = m_scenario.aircraft.gear_height_ft + circuit.altitude_ft;
        plan.level_offs.clear();
        m_profile = Descent_Profile(plan);
        Climb_To(plan.from_ft);
        m_stage = Stage::cruise;
        Cruise_And_Descend();
    }
}

void Flight_Pilot::Cruise_And_Descend() {
    const double settled_nm = settle_s * m_now.ground_kt / 3600;
    if (To_Go_Nm() - settled_nm < m_profile.Top_Nm())
        Give_Up(fmt::format("{:.0f} ft are reached {:.1f} nm too late to descend from there",
                            m_now.altitude_ft, m_profile.Top_Nm() - To_Go_Nm() + settled_nm));
    Hold_Level(Flown_Nm() + To_Go_Nm() - m_profile.Top_Nm());
    Descend();
}

Descent_Plan Flight_Pilot::Plan_Descent() const {
    Descent_Plan plan;
    plan.from_ft =
        m_scenario.steps.empty() ? m_scenario.cruise_ft : m_scenario.steps.back().altitude_ft;
    plan.level_offs = m_scenario.descent_level_offs;
    plan.descent_ft_per_nm = m_performance.descent_ft_per_nm;
    plan.rounding_nm = m_performance.rounding_nm;
    plan.ground_ft = m_arrival_ft;
    if (m_helicopter) {
        // It comes to a hover over the pad.
        plan.ground_ft += hover_height_ft;
        plan.level_offs.insert(plan.level_offs.begin(), {plan.ground_ft, plan.rounding_nm});
        plan.final_ft_per_nm = 1;
    }
    return plan;
}

void Flight_Pilot::Climb_To(double altitude_ft) {
    while (altitude_ft - m_now.altitude_ft > captured_ft || std::abs(m_now.vertical_fpm) > 20) {
        const double left = altitude_ft - m_now.altitude_ft;
        double rate = Look_Up(m_performance.climb, m_now.altitude_ft, &Rate_At::altitude_ft,
                              &Rate_At::rate_fpm);
        if (m_helicopter)
            rate *= std::min(1.0, m_now.ground_kt / m_performance.climb_kt);
        // Levelling off begins early enough for what the pilot changes a second.
        const double change = m_performance.fpm_per_s * 0.7 / 60;
        rate = std::min(
            {rate, std::sqrt(2 * change * std::max(0.0, left)) * 60, left * 60 / capture_s});
        Fly_Step(Towards(m_now.vertical_fpm, rate, m_performance.fpm_per_s * flight_step_s));
        if (Height_Ft() <= 0)
            Give_Up("the go-around comes too late to stay off the ground");
        if (To_Go_Nm() < m_profile.Top_Nm())
            Give_Up(
                fmt::format("the descent has to begin before {:.0f} ft are reached", altitude_ft));
    }
    m_level_ft = altitude_ft;
}

void Flight_Pilot::Hold_Level(double until_flown_nm) {
    while (Flown_Nm() < until_flown_nm) {
        Teleport_If_Due();
        Fly_Step((m_level_ft - m_now.altitude_ft) * 60 / capture_s);
    }
}

void Flight_Pilot::Teleport_If_Due() {
    const auto& teleports = m_scenario.teleports;
    if (m_stage != Stage::cruise || m_teleports == teleports.size() ||
        Flown_Nm() < teleports[m_teleports].at_nm)
        return;
    const Teleport& teleport = teleports[m_teleports++];
    m_now.path_m += teleport.by_nm * metres_per_nm;
    if (Flown_Nm() < 0 || To_Go_Nm() < m_profile.Top_Nm())
        Give_Up(fmt::format("{:g} nm from {:g} nm on lead out of the cruise", teleport.by_nm,
                            teleport.at_nm));
}

void Flight_Pilot::Descend() {
    m_stage = Stage::descent;
    double end_ft = m_helicopter ? 0 : m_performance.flare_ft;
    if (Breaks_Off())
        end_ft = m_scenario.arrival.circuits[m_approach].from_ft;
    while (Height_Ft() > end_ft) {
        if (m_helicopter && Pad_Reached())
            return;
        const double to_go = To_Go_Nm();
        const double slope_fpm = m_profile.Slope_Ft_Per_Nm(to_go) * m_now.ground_kt / 60;
        const double away_ft = m_profile.Altitude_Ft(to_go) - m_now.altitude_ft;
        Fly_Step(-slope_fpm + away_ft * 60 / follow_s);
    }
}

}  // namespace norvane
