#include "simhost/flight/flight_clock.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "common/run_error.h"

namespace norvane {

namespace {

/// What happens to the time at one second of the flight.
struct Change {
    double paused_s = 0;
    double rate = 0;  // from here on; 0: as before
};

std::map<double, Change> Changes_Of(const Scenario_Data& scenario) {
    std::map<double, Change> changes;
    for (const Rated_Part& part : scenario.rated_parts) {
        changes[part.from_s].rate = part.rate;
        changes[part.until_s].rate = 1;
    }
    for (const Pause& pause : scenario.pauses)
        changes[pause.at_s].paused_s += pause.for_s;
    return changes;
}

}  // namespace

Flight_Clock::Flight_Clock(const Scenario_Data& scenario, double flight_length_s) {
    for (const auto& [flight_s, change] : Changes_Of(scenario)) {
        if (flight_s > flight_length_s)
            throw Run_Error(error_number::other,
                            fmt::format("this flight cannot be flown: it has ended before second "
                                        "{:g}, in which its time is to change",
                                        flight_s));
        Go_On_To(flight_s, change.rate);
        if (change.paused_s > 0)
            Pause_For(change.paused_s);
    }
    const Piece& last = m_pieces.back();
    m_length_s = last.from_s + (flight_length_s - last.moment.flight_s) / last.moment.rate;
}

void Flight_Clock::Go_On_To(double flight_s, double rate) {
    const Piece& last = m_pieces.back();
    const double passed = (flight_s - last.moment.flight_s) / last.moment.rate;
    m_pieces.push_back(
        {last.from_s + passed, {flight_s, false, rate > 0 ? rate : last.moment.rate}});
}

void Flight_Clock::Pause_For(double seconds) {
    Piece after = m_pieces.back();
    m_pieces.back().moment.paused = true;
    after.from_s += seconds;
    m_pieces.push_back(after);
}

Flight_Clock::Moment Flight_Clock::At(double seconds) const {
    const auto next =
        std::upper_bound(m_pieces.begin() + 1, m_pieces.end(), seconds,
                         [](double at, const Piece& piece) { return at < piece.from_s; });
    const Piece& piece = *(next - 1);
    Moment now = piece.moment;
    if (!now.paused)
        now.flight_s += (seconds - piece.from_s) * now.rate;
    return now;
}

}  // namespace norvane
