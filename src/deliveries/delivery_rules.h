#pragma once
// What the end of a try means for a delivery, and how long it then waits. Used by the outbox.

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

#include "deliveries/delivery.h"
#include "net/background_post.h"

namespace norvane {

struct Verdict {
    Delivery_State state = Delivery_State::waiting;
    /// The pause that the server asked for.
    std::optional<std::chrono::seconds> asked_pause;
};

/// `utc_s`: now, in seconds since 1970.
[[nodiscard]] Verdict Judge(const Post_End& end, bool is_idempotent, std::int64_t utc_s);

/// The pause after that many tries without an answer: from 10 seconds, twice as long each time, to
/// half an hour. `random`, from 0 to 1, spreads those of many programs.
[[nodiscard]] std::chrono::seconds Pause_After(int attempts, double random);

/// What programs spread their pauses by: a number from 0 to 1, another one each time.
[[nodiscard]] std::function<double()> Random_Share();

}  // namespace norvane
