#pragma once
// The landings of a flight: where the wheels touched, how hard, how often. A contact counts after
// 15 s in the air above 10 m in which the aircraft was not set to another place. Its rate is that
// of a straight line through the true vertical speed before it; after a pause, a gap or a jump just
// before the contact there is none.

#include <cstddef>
#include <optional>
#include <vector>

#include "blackbox/recorded_flight.h"

namespace norvane {

struct Touch_Rate {
    double fpm = 0;
    int samples = 0;
    double sample_rate_hz = 0;
};

/// The vertical speed at the contact that sample `contact` shows first. `slope`: how much the
/// runway rises along the track, 0.01 for 1 %; the rate is then relative to it.
[[nodiscard]] std::optional<Touch_Rate> Rate_At_Contact(const Recorded_Flight& flight,
                                                        std::size_t contact, double slope = 0);

/// `flight`: samples that were flown, with their breaks.
[[nodiscard]] std::vector<Landing_Record> Find_Landings(const Recorded_Flight& flight);

}  // namespace norvane
