#pragma once
// Recordings of flights that are known to the foot: a state at every second, sampled as the black
// box would.

#include <functional>
#include <map>
#include <vector>

#include "common/great_circle.h"
#include "simlink/catalogue.h"
#include "simlink/recording.h"

namespace norvane::test {

/// Of the simulator at one moment; what is not given is 0.
struct Made_State {
    Position position;
    double altitude_ft = 0;
    std::map<Variable, double> values;
};
using Made_World = std::function<Made_State(double seconds)>;

struct Sampling {
    double from_s = 0;
    double to_s = 0;
    double rate_hz = 2;
    /// No samples between these.
    double lost_from_s = 0;
    double lost_to_s = 0;
};

[[nodiscard]] Recorded_Moment Made_Moment(double seconds, const Made_State& state);
/// Samples beside the two of each second are marked as fast ones.
[[nodiscard]] std::vector<Recorded_Moment> Sample_World(const Made_World& world,
                                                        const Sampling& sampling);

/// An approach to a contact 40 s after the start, then a roll with hops.
struct Made_Landing {
    double touch_fpm = -300;
    double approach_fpm = -700;
    /// The rate changes evenly in the last seconds.
    double flare_s = 4;
    double ground_speed_kt = 100;
    /// How much the runway rises.
    double slope = 0;
    struct Hop {
        double at_s = 0;
        double height_ft = 0;
        double lasts_s = 0;
    };
    std::vector<Hop> hops;
    /// Noise of the vertical speed.
    double noise_fpm = 0;
    bool serves_speed = true;
    /// Given besides.
    std::map<Variable, double> values;

    static constexpr double contact_s = 40;
    [[nodiscard]] Made_State At(double seconds) const;
};

}  // namespace norvane::test
