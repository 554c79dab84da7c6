#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "simhost/flight/flight_pilot.h"

namespace norvane {

namespace {

constexpr double rotation_s = 2.5;
constexpr double drag_at_rotation = 0.35;  // of the acceleration, lost when rotating
constexpr double lift_off_fpm = 120;       // the wheels leave the ground in a climb
constexpr double flare_kt_per_s = 0.7;     // airspeed lost in the flare
constexpr double gentlest_fpm = 60;
constexpr double rounding_out_s = 4;      // in which the rate of the touchdown is reached
constexpr double even_sinking_s = 0.375;  // at that rate
constexpr double touch_and_go_s = 5;      // on the runway, before the power is set
constexpr double before_bounce_s = 0.5;
constexpr double bounce_ft_per_s2 = 8;  // what pulls it down again: gravity less what lift is left
constexpr double rolling_kt_per_s = 0.8;
constexpr double first_roll_s = 2;  // until the nose is down and the brakes are used
constexpr double too_fast_kt = 3;

}  // namespace

void Flight_Pilot::Take_Off() {
    Run_To_Lift_Off(m_route.line_up_m + m_scenario.departure.runway->length_m);
    m_table.lift_off_m = m_now.path_m;
}

void Flight_Pilot::Run_To_Lift_Off(double runway_end_m) {
    double rotating_s = 0;
    while (rotating_s < rotation_s) {
        const double part = m_now.indicated_kt / m_performance.rotate_kt;
        const double rate =
            m_performance.take_off_kt_per_s * m_now.power * (1 - drag_at_rotation * part * part);
        Ground_Step(m_now.ground_kt + rate * flight_step_s);
        if (m_now.indicated_kt >= m_performance.rotate_kt)
            rotating_s += flight_step_s;
        if (m_now.path_m > runway_end_m)
            Give_Up("the runway is too short for the take-off");
    }
    m_now.on_ground = false;
    m_now.vertical_fpm = lift_off_fpm;
}

void Flight_Pilot::Land() {
    Flare();
    Touch_Down();
    if (m_scenario.bounce_s > 0)
        Bounce();
    for (double rolled_s = 0; rolled_s < first_roll_s; rolled_s += flight_step_s)
        Ground_Step(m_now.ground_kt - rolling_kt_per_s * flight_step_s);
    Check_Exit();
}

void Flight_Pilot::Flare() {
    const double start_fpm = std::max(gentlest_fpm, -m_now.vertical_fpm);
    const double end_fpm = m_scenario.touchdown_fpm;
    while (Height_Ft() > 0) {
        const double share = std::min(1.0, Height_Ft() / m_performance.flare_ft);
        Air_Step(m_now.indicated_kt - flare_kt_per_s * flight_step_s,
                 -(end_fpm + (start_fpm - end_fpm) * share));
    }
    Meet_Ground(m_arrival_ft, end_fpm);
}

void Flight_Pilot::Touch_Down() {
    m_stage = Stage::ground;
    m_now.on_ground = true;
    m_now.altitude_ft = m_arrival_ft;
    m_now.vertical_fpm = 0;
}

void Flight_Pilot::Touch_And_Go() {
    Flare();
    Touch_Down();
    for (double rolled_s = 0; rolled_s < touch_and_go_s; rolled_s += flight_step_s)
        Ground_Step(m_now.ground_kt - rolling_kt_per_s * flight_step_s);
    m_stage = Stage::take_off;
    Run_To_Lift_Off(m_route.glides_m[m_approach] + m_route.runway_left_m);
}

void Flight_Pilot::Meet_Ground(double ground_ft, double rate_fpm) {
    std::vector<Flown_State>& states = m_table.states;
    const auto seconds_left = [&](std::size_t place) {
        return static_cast<double>(states.size() - place) * flight_step_s;
    };
    std::size_t first = states.size() - 1;
    while (seconds_left(first) < rounding_out_s && !states[first - 1].on_ground)
        --first;
    // A curve from the height and rate there to those where the even sinking begins.
    const double rate = rate_fpm / 60;
    const double duration = seconds_left(first) - even_sinking_s;
    const double start_ft = states[first].altitude_ft - ground_ft;
    const double start_rate = states[first].vertical_fpm / 60 * duration;
    const double end_ft = rate * even_sinking_s;
    const double end_rate = -rate * duration;
    for (std::size_t place = first + 1; place < states.size(); ++place) {
        Flown_State& state = states[place];
        const double left_s = seconds_left(place);
        if (left_s <= even_sinking_s) {
            state.altitude_ft = ground_ft + rate * left_s;
            state.vertical_fpm = -rate_fpm;
            continue;
        }
        const double t = 1 - (left_s - even_sinking_s) / duration;
        const double cubic = 2 * (start_ft - end_ft) + start_rate + end_rate;
        const double square = 3 * (end_ft - start_ft) - 2 * start_rate - end_rate;
        state.altitude_ft = ground_ft + start_ft + t * (start_rate + t * (square + t * cubic));
        state.vertical_fpm = (start_rate + t * (2 * square + t * 3 * cubic)) / duration * 60;
    }
}

void Flight_Pilot::Check_Exit() const {
    const auto& turns = m_route.path.Turns();
    const auto exit = std::find_if(turns.begin(), turns.end(), [&](const Flight_Path::Turn& turn) {
        return turn.end_m > m_now.path_m && std::abs(turn.angle_deg) >= real_turn_deg;
    });
    const double end_m = exit == turns.end() ? m_route.path.Length_M() : exit->start_m;
    const double room_m = end_m - m_now.path_m;
    const double rate = m_performance.brake_kt_per_s / knots_per_metre_per_second;
    const double then = (m_performance.taxi_turn_kt + too_fast_kt) / knots_per_metre_per_second;
    const double reachable = std::sqrt(then * then + 2 * rate * std::max(0.0, room_m));
    if (m_now.ground_kt / knots_per_metre_per_second > reachable)
        Give_Up(
            fmt::format("the runway's exit comes {:.0f} m after the touchdown, too soon", room_m));
}

void Flight_Pilot::Bounce() {
    for (double s = 0; s < before_bounce_s; s += flight_step_s)
        Ground_Step(m_now.ground_kt - rolling_kt_per_s * flight_step_s);
    m_now.on_ground = false;
    const double start_ft_per_s = bounce_ft_per_s2 * m_scenario.bounce_s / 2;
    for (double s = flight_step_s; s < m_scenario.bounce_s; s += flight_step_s) {
        m_now.altitude_ft = m_arrival_ft + start_ft_per_s * s - bounce_ft_per_s2 * s * s / 2;
        m_now.vertical_fpm = (start_ft_per_s - bounce_ft_per_s2 * s) * 60;
        Ground_Step(m_now.ground_kt - rolling_kt_per_s * flight_step_s);
    }
    m_now.on_ground = true;
    m_now.altitude_ft = m_arrival_ft;
    m_now.vertical_fpm = 0;
}

}  // namespace norvane
