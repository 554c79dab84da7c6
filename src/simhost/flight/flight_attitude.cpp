#include "simhost/flight/flight_attitude.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace norvane {

namespace {

using States = std::vector<Flown_State>;

constexpr double degrees = 180 / std::numbers::pi;
constexpr double gravity_ft_per_s2 = 32.174;
constexpr double gravity_m_per_s2 = gravity_ft_per_s2 / feet_per_metre;
constexpr double fpm_per_knot = 101.2686;
constexpr double steepest_bank_deg = 30;
/// Of rolling into a turn and out of it.
constexpr double roll_s = 6;
/// The wing meets the air at so many degrees; the second part at approach speed, less when faster.
constexpr double least_attack_deg = 0.5;
constexpr double slow_attack_deg = 4.5;
/// A helicopter's nose is down in fast flight, and follows its path in part.
constexpr double rotor_nose_down_deg = 4;
constexpr double rotor_path_share = 0.4;
constexpr double nose_down_s = 3;  // after the touchdown, until the nose wheel stands
constexpr double rotation_s = 2.5;
/// How the legs share out over the steps from the touchdown on what they take from the sinking.
constexpr double touchdown_shares[] = {0.3, 0.4, 0.2, 0.1};

std::size_t Steps_In(double seconds) {
    return static_cast<std::size_t>(seconds / flight_step_s);
}

/// Degrees a metre to the right.
double Curvature(const std::vector<Flight_Path::Turn>& turns, double path_m) {
    const auto turn = std::lower_bound(
        turns.begin(), turns.end(), path_m,
        [](const Flight_Path::Turn& each, double at_m) { return each.end_m < at_m; });
    if (turn == turns.end() || turn->start_m > path_m)
        return 0;
    return turn->angle_deg / std::max(1.0, turn->end_m - turn->start_m);
}

void Add_Bank(const Flight_Route& route, States& states) {
    std::vector<double> sums{0};
    for (const Flown_State& state : states) {
        double bank = 0;
        if (!state.on_ground) {
            const double speed = state.ground_kt / knots_per_metre_per_second;
            const double turned = Curvature(route.path.Turns(), state.path_m) / degrees * speed;
            bank = std::atan(speed * turned / gravity_m_per_s2) * degrees;
        }
        sums.push_back(sums.back() + std::clamp(bank, -steepest_bank_deg, steepest_bank_deg));
    }
    const std::size_t around = Steps_In(roll_s / 2);
    for (std::size_t i = 0; i < states.size(); ++i) {
        const std::size_t first = i < around ? 0 : i - around;
        const std::size_t end = std::min(states.size(), i + around + 1);
        if (!states[i].on_ground)
            states[i].bank_deg = (sums[end] - sums[first]) / static_cast<double>(end - first);
    }
}

/// Feet a second each second, from the neighbours that are in the air as well.
double Rising(const States& states, std::size_t place) {
    const std::size_t before = place > 0 && !states[place - 1].on_ground ? place - 1 : place;
    const bool has_next = place + 1 < states.size() && !states[place + 1].on_ground;
    const std::size_t after = has_next ? place + 1 : place;
    if (before == after)
        return 0;
    const double change_fpm = states[after].vertical_fpm - states[before].vertical_fpm;
    return change_fpm / 60 / (static_cast<double>(after - before) * flight_step_s);
}

void Add_Load(States& states) {
    for (std::size_t i = 0; i < states.size(); ++i) {
        if (!states[i].on_ground)
            states[i].load_g = (1 + Rising(states, i) / gravity_ft_per_s2) /
                               std::cos(states[i].bank_deg / degrees);
        if (i == 0 || states[i - 1].on_ground || !states[i].on_ground)
            continue;
        // The legs stop the sinking: all their load together is what stops it.
        const double stopped = -states[i - 1].vertical_fpm / 60 / gravity_ft_per_s2 / flight_step_s;
        std::size_t place = i;
        for (const double share : touchdown_shares) {
            if (place < states.size() && states[place].on_ground)
                states[place++].load_g = 1 + share * stopped;
        }
    }
}

double Pitch_In_Air(const Performance_Data& performance, const Flown_State& state) {
    const double path =
        std::atan2(state.vertical_fpm, std::max(1.0, state.ground_kt) * fpm_per_knot) * degrees;
    if (performance.approach.empty()) {
        const double fast = std::min(1.0, state.ground_kt / performance.cruise_kt);
        return path * rotor_path_share * fast - rotor_nose_down_deg * fast;
    }
    const double slow =
        performance.approach.front().indicated_kt / std::max(1.0, state.indicated_kt);
    return path + least_attack_deg + slow_attack_deg * slow * slow;
}

void Add_Pitch(const Performance_Data& performance, States& states) {
    for (Flown_State& state : states)
        state.pitch_deg = state.on_ground ? 0 : Pitch_In_Air(performance, state);
    // From a contact on into the stay on the ground the nose sinks, towards a lift-off it rises.
    const auto blend = [&](std::size_t air, std::size_t ground, bool after) {
        const double seconds = after ? nose_down_s : rotation_s;
        const std::size_t steps = Steps_In(seconds);
        for (std::size_t n = 1; n < steps && ground < states.size(); ++n) {
            Flown_State& state = states[ground];
            if (!state.on_ground)
                return;
            const double share = 1 - static_cast<double>(n) / static_cast<double>(steps);
            state.pitch_deg = std::max(state.pitch_deg, states[air].pitch_deg * share);
            ground += after ? 1 : std::size_t(-1);
        }
    };
    for (std::size_t i = 1; i < states.size(); ++i) {
        if (states[i].on_ground && !states[i - 1].on_ground)
            blend(i - 1, i, true);
        if (!states[i].on_ground && states[i - 1].on_ground)
            blend(i, i - 1, false);
    }
}

}  // namespace

void Add_Attitude(const Scenario_Data& scenario, const Flight_Route& route, Flight_Table& table) {
    Add_Bank(route, table.states);
    Add_Load(table.states);
    Add_Pitch(scenario.aircraft.performance, table.states);
}

}  // namespace norvane
