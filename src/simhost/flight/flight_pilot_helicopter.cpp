#include <algorithm>
#include <cmath>

#include "simhost/flight/flight_pilot.h"

namespace norvane {

namespace {

constexpr double lift_fpm = 150;
constexpr double hover_s = 8;
constexpr double settle_s = 2;              // in which a deviation from the hover is made good
constexpr double slow_down_kt_per_s = 1.2;  // what the pilot reckons with before the pad
constexpr double creep_kt = 0.8;
constexpr double reached_m = 0.3;
constexpr double sink_fpm = 150;
constexpr double gentle_below_ft = 5;

}  // namespace

void Flight_Pilot::Lift_Off() {
    const double hover_ft = m_departure_ft + hover_height_ft;
    m_now.on_ground = false;
    m_stage = Stage::climb;
    double hovered_s = 0;
    while (hovered_s < hover_s) {
        const double left = hover_ft - m_now.altitude_ft;
        const double rate = std::min(lift_fpm, left * 60 / settle_s);
        const double most = m_performance.fpm_per_s * flight_step_s;
        Hover_Step(0, m_now.vertical_fpm + std::clamp(rate - m_now.vertical_fpm, -most, most));
        if (left < 1)
            hovered_s += flight_step_s;
    }
}

double Flight_Pilot::Helicopter_Kt() const {
    const double airspeed = True_From_Indicated(Target_Kt(), Air(m_now.altitude_ft));
    const Wind wind = Wind_Now();
    const double course = Course();
    const double aside = Crosswind_Kt(wind, course);
    const double cruise =
        std::sqrt(std::max(0.0, airspeed * airspeed - aside * aside)) - Headwind_Kt(wind, course);
    const double left_m = std::max(0.0, m_route.touchdown_m - m_now.path_m);
    const double rate = slow_down_kt_per_s / knots_per_metre_per_second;
    const double before_pad = std::sqrt(2 * rate * left_m) * knots_per_metre_per_second;
    const double target = std::max(creep_kt, std::min(cruise, before_pad));
    const double most = m_performance.kt_per_s * flight_step_s;
    return m_now.ground_kt + std::clamp(target - m_now.ground_kt, -most, most);
}

bool Flight_Pilot::Pad_Reached() const {
    return m_route.touchdown_m - m_now.path_m < reached_m;
}

void Flight_Pilot::Set_Down() {
    for (double s = 0; s < hover_s; s += flight_step_s)
        Hover_Step(0, (m_arrival_ft + hover_height_ft - m_now.altitude_ft) * 60 / settle_s);
    const double slow = std::min(m_scenario.touchdown_fpm, sink_fpm);
    while (Height_Ft() > 0) {
        const double share = std::min(1.0, Height_Ft() / gentle_below_ft);
        const double rate = -(slow + (sink_fpm - slow) * share);
        const double most = m_performance.fpm_per_s * flight_step_s;
        Hover_Step(0, m_now.vertical_fpm + std::clamp(rate - m_now.vertical_fpm, -most, most));
    }
    Meet_Ground(m_arrival_ft, slow);
    Touch_Down();
}

}  // namespace norvane
