#include <algorithm>

#include "simhost/flight/flight_pilot.h"

namespace norvane {

namespace {

constexpr double take_off_flaps_percent = 25;
constexpr double flaps_up_ft = 800;  // above the runway
constexpr double gear_up_ft = 50;
constexpr double gear_down_before_flaps = 1.3;  // × the distance at which the last flaps come
constexpr double clean_below_kt = 40;           // after landing

/// The flaps come out step by step where the approach gets slower.
double Approach_Flaps_Percent(const std::vector<Speed_At>& approach, double to_go_nm) {
    const auto farther =
        std::count_if(approach.begin() + 1, approach.end(),
                      [&](const Speed_At& row) { return to_go_nm < row.to_go_nm; });
    return 100.0 * static_cast<double>(farther) / static_cast<double>(approach.size() - 1);
}

}  // namespace

void Flight_Pilot::Set_Levers() {
    const auto& approach = m_performance.approach;
    if (approach.size() < 2)
        return;
    const int kind = m_scenario.aircraft.engine.kind;
    const bool retracts = kind == engine_kind::jet || kind == engine_kind::turboprop;
    const bool has_flown = m_approach > 0 || m_now.path_m > m_route.touchdown_m;
    const bool leaves = m_stage == Stage::take_off || m_stage == Stage::climb;
    double flaps = m_now.flaps_percent;
    if (leaves)
        flaps = Height_Ft() > flaps_up_ft ? 0 : take_off_flaps_percent;
    else if (m_stage != Stage::ground)
        flaps = Approach_Flaps_Percent(approach, To_Go_Nm());
    else if (has_flown)
        flaps = m_now.ground_kt < clean_below_kt ? 0 : flaps;
    else if (!m_now.pushed && m_now.ground_kt > 0)
        flaps = take_off_flaps_percent;
    m_now.flaps_percent = flaps;
    const bool goes_up = leaves ? m_now.vertical_fpm > 0
                                : To_Go_Nm() > approach[1].to_go_nm * gear_down_before_flaps;
    const bool stays_down = !retracts || m_now.on_ground || (leaves && Height_Ft() < gear_up_ft);
    if (stays_down || (!leaves && !goes_up))
        m_now.gear_percent = 100;
    else if (goes_up)
        m_now.gear_percent = 0;
}

}  // namespace norvane
