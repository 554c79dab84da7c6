#include <algorithm>
#include <cmath>

#include "simhost/flight/flight_pilot.h"

namespace norvane {

namespace {

constexpr double pushback_kt = 2.5;
constexpr double after_pushback_s = 25;  // the tug leaves
constexpr double gather_kt_per_s = 0.7;
constexpr double slow_kt_per_s = 1.6;  // the hardest the brakes are used when taxiing
constexpr double plan_kt_per_s = 0.8;  // what the pilot reckons with
constexpr double creep_kt = 0.8;
constexpr double pivot_deg_per_s = 4;
constexpr double power_up_s = 7;  // of the line-up, before the brakes are let go
constexpr double before_brake_s = 3;
constexpr double between_engines_s = 8;
constexpr double after_last_engine_s = 30;

/// The highest speed from which one can slow down to `then_kt` within `distance_m`.
double Speed_Before(double then_kt, double distance_m) {
    const double rate = plan_kt_per_s / knots_per_metre_per_second;
    const double then = then_kt / knots_per_metre_per_second;
    return std::sqrt(then * then + 2 * rate * std::max(0.0, distance_m)) *
           knots_per_metre_per_second;
}

}  // namespace

void Flight_Pilot::Stand(double seconds) {
    const double steps = seconds / flight_step_s;
    for (int i = 0; i < steps; ++i)
        Stand_Step();
}

double Flight_Pilot::Ground_Limit_Kt(double stop_m, double highest_kt) const {
    double limit = std::min(highest_kt, Speed_Before(0, stop_m - m_now.path_m));
    const Flight_Path& path = m_now.pushed ? *m_route.pushback : m_route.path;
    for (const Flight_Path::Turn& turn : path.Turns()) {
        if (turn.end_m < m_now.path_m || std::abs(turn.angle_deg) < real_turn_deg)
            continue;
        limit =
            std::min(limit, Speed_Before(m_performance.taxi_turn_kt, turn.start_m - m_now.path_m));
    }
    return std::max(limit, creep_kt);
}

void Flight_Pilot::Drive_To(double stop_m, double highest_kt) {
    while (true) {
        const double limit = Ground_Limit_Kt(stop_m, highest_kt);
        double speed = std::min(limit, m_now.ground_kt + gather_kt_per_s * flight_step_s);
        const double braking =
            m_now.ground_kt > highest_kt ? m_performance.brake_kt_per_s : slow_kt_per_s;
        speed = std::max(speed, m_now.ground_kt - braking * flight_step_s);
        if (m_now.path_m + speed / knots_per_metre_per_second * flight_step_s >= stop_m)
            break;
        Ground_Step(speed);
    }
    m_now.path_m = stop_m;
    Ground_Step(0);
}

void Flight_Pilot::Turn_In_Place(double heading_deg) {
    while (true) {
        const double left = Half_Turn(heading_deg - m_now.heading_deg);
        const double most = pivot_deg_per_s * flight_step_s;
        m_now.heading_deg =
            std::fmod(m_now.heading_deg + std::clamp(left, -most, most) + 360, 360.0);
        if (std::abs(left) <= most)
            return;
        Stand_Step();
    }
}

void Flight_Pilot::Leave_Stand() {
    if (m_now.pushed) {
        Drive_To(m_route.pushback->Length_M(), pushback_kt);
        m_now.pushed = false;
        m_now.path_m = 0;
        Stand(after_pushback_s);
        Turn_In_Place(Course());
    }
    for (const Flight_Route::Stop& stop : m_route.stops_out) {
        Drive_To(stop.at_m, m_performance.taxi_kt);
        Stand(stop.hold_s);
    }
    Drive_To(m_route.line_up_m, m_performance.taxi_kt);
    Stand(m_scenario.line_up_s);
    m_stage = Stage::take_off;
    Stand(power_up_s);
}

void Flight_Pilot::Taxi_To_Stand() {
    for (const Flight_Route::Stop& stop : m_route.stops_in) {
        Drive_To(stop.at_m, m_performance.taxi_kt);
        Stand(stop.hold_s);
    }
    Drive_To(m_route.path.Length_M(), m_performance.taxi_kt);
}

void Flight_Pilot::Shut_Down() {
    Stand(before_brake_s);
    m_now.parking_brake = true;
    Stand(m_scenario.engine_off_after_s);
    const auto engines = static_cast<std::size_t>(m_scenario.aircraft.engine.count);
    for (std::size_t engine = 0; engine < engines; ++engine) {
        m_table.engine_off_s.at(engine) =
            static_cast<double>(m_table.states.size()) * flight_step_s;
        --m_engines_running;
        Stand(engine + 1 < engines ? between_engines_s : after_last_engine_s);
    }
}

}  // namespace norvane
