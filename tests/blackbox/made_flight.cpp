#include "blackbox/made_flight.h"

#include <cmath>

namespace norvane::test {

namespace {

constexpr double fps_per_knot = 1852 * feet_per_metre / 3600;
constexpr double field_ft = 512.3;

/// Above the runway: how high, and how fast that changes.
struct Height {
    double feet = 0;
    double fpm = 0;
    bool on_ground = true;
};

Height Height_At(const Made_Landing& made, double seconds) {
    const double left = Made_Landing::contact_s - seconds;
    if (left > made.flare_s) {
        const double flare_ft = -(made.touch_fpm + made.approach_fpm) / 2 * made.flare_s / 60;
        return {flare_ft - made.approach_fpm * (left - made.flare_s) / 60, made.approach_fpm,
                false};
    }
    if (left > 0) {
        const double change = (made.approach_fpm - made.touch_fpm) / made.flare_s;
        return {-(made.touch_fpm * left + change * left * left / 2) / 60,
                made.touch_fpm + change * left, false};
    }
    for (const auto& hop : made.hops) {
        const double share = (seconds - hop.at_s) / hop.lasts_s;
        if (share > 0 && share < 1)
            return {4 * hop.height_ft * share * (1 - share),
                    4 * hop.height_ft * (1 - 2 * share) / hop.lasts_s * 60, false};
    }
    return {};
}

}  // namespace

Made_State Made_Landing::At(double seconds) const {
    const Height height = Height_At(*this, seconds);
    const double along_ft = ground_speed_kt * fps_per_knot * (seconds - contact_s);
    const double ground_ft = field_ft + slope * along_ft;
    Made_State state;
    state.position = {19.7, -155.05 + along_ft / (6076.12 * 60 * std::cos(19.7 / 57.29578))};
    state.altitude_ft = ground_ft + 5 + height.feet;
    state.values = values;
    state.values[Variable::ground_elevation_ft] = ground_ft;
    state.values[Variable::ground_speed_kt] = ground_speed_kt;
    state.values[Variable::on_ground] = height.on_ground ? 1 : 0;
    if (serves_speed)
        state.values[Variable::vertical_speed_fpm] = height.fpm +
                                                     slope * ground_speed_kt * fps_per_knot * 60 +
                                                     noise_fpm * std::sin(seconds * 977);
    return state;
}

Recorded_Moment Made_Moment(double seconds, const Made_State& state) {
    Recorded_Moment moment;
    moment.seconds = seconds;
    auto values = state.values;
    values[Variable::latitude_deg] = state.position.latitude;
    values[Variable::longitude_deg] = state.position.longitude;
    for (const auto& [variable, value] : values) {
        moment.changes.push_back({Offset_Of(variable), {}});
        auto& bytes = moment.changes.back().bytes;
        bytes.resize(Row_Of(variable).size);
        Encode(variable, value, bytes);
    }
    moment.changes.push_back({Offset_Of(Variable::altitude_fraction_ft), {}});
    moment.changes.back().bytes.resize(exact_altitude_size);
    Encode_Exact_Altitude(state.altitude_ft, moment.changes.back().bytes);
    return moment;
}

std::vector<Recorded_Moment> Sample_World(const Made_World& world, const Sampling& sampling) {
    std::vector<Recorded_Moment> moments;
    double last_step_s = sampling.from_s - 1;
    for (int i = 0;; ++i) {
        const double seconds = sampling.from_s + i / sampling.rate_hz;
        if (seconds > sampling.to_s)
            return moments;
        if (seconds >= sampling.lost_from_s && seconds < sampling.lost_to_s)
            continue;
        moments.push_back(Made_Moment(seconds, world(seconds)));
        if (seconds - last_step_s < 0.499)
            moments.back().remarks.emplace_back("fast");
        else
            last_step_s = seconds;
    }
}

}  // namespace norvane::test
