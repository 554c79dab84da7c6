#include "deliveries/delivery_rules.h"

#include <algorithm>
#include <random>

namespace norvane {

namespace {

constexpr double shortest_pause_s = 10;
constexpr double longest_pause_s = 30 * 60;
/// Half as long again at the most.
constexpr double spread = 0.5;
constexpr int most_doublings = 10;

/// These say that it was not looked at, and may come again.
bool Asks_To_Wait(const Post_End& end, bool states_pause) {
    constexpr long request_timeout = 408;
    constexpr long too_early = 425;
    constexpr long too_many = 429;
    constexpr long unavailable = 503;
    return end.status == request_timeout || end.status == too_early || end.status == too_many ||
           (end.status == unavailable && states_pause);
}

}  // namespace

Verdict Judge(const Post_End& end, bool is_idempotent, std::int64_t utc_s) {
    const Delivery_State in_doubt =
        is_idempotent ? Delivery_State::waiting : Delivery_State::uncertain;
    switch (end.kind) {
        case Post_End::Kind::unsent:
            return {Delivery_State::waiting, {}};
        case Post_End::Kind::unknown:
            return {in_doubt, {}};
        case Post_End::Kind::answered:
            break;
    }
    const auto pause_s = Seconds_To_Wait(end.retry_after, utc_s);
    if (Asks_To_Wait(end, pause_s.has_value())) {
        Verdict verdict;
        if (pause_s)
            verdict.asked_pause.emplace(*pause_s);
        return verdict;
    }
    if (end.status < 300)
        return {Delivery_State::delivered, {}};
    // Who points elsewhere may have taken it first.
    return {end.status < 400 ? in_doubt : Delivery_State::refused, {}};
}

std::chrono::seconds Pause_After(int attempts, double random) {
    const int doublings = std::clamp(attempts - 1, 0, most_doublings);
    const double pause_s = shortest_pause_s * (1 << doublings) * (1 + spread * random);
    return std::chrono::seconds(
        static_cast<std::int64_t>(std::clamp(pause_s, shortest_pause_s, longest_pause_s)));
}

std::function<double()> Random_Share() {
    return [engine = std::mt19937(std::random_device()())]() mutable {
        return std::uniform_real_distribution<double>(0, 1)(engine);
    };
}

}  // namespace norvane
