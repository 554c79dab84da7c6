#pragma once
// What the remarks of a recording say of its flight: who flew what, when the engine recorded which
// block event and why, and when tracking rested. Remarks that nobody here knows are passed over.

#include <string>
#include <vector>

#include "blackbox/flight_summary.h"
#include "blackbox/planned_flight.h"
#include "simlink/recording.h"

namespace norvane {

struct Phase_Change {
    double seconds = 0;
    Flight_Phase phase = Flight_Phase::before_out;
};

struct Noted_Event {
    Block_Event event = Block_Event::out;
    double seconds = 0;
    Block_Evidence evidence;
};

/// A time that the engine did not follow.
struct Noted_Rest {
    Incident_Kind kind = Incident_Kind::pause;
    double from_seconds = 0;
    double to_seconds = 0;
};

struct Flight_Notes {
    /// The engine flew along: its events count, and none is to be found without it.
    bool by_engine = false;
    /// In the order of time, as they stood at the end: what was recorded again or taken back is
    /// gone.
    std::vector<Noted_Event> events;
    std::vector<Phase_Change> phases;
    std::vector<Noted_Rest> rests;
    /// Of the plan that was taken over last.
    Planned_Flight planned;
};

/// Fills the texts of `summary` besides.
[[nodiscard]] Flight_Notes Read_Notes(const std::vector<Recorded_Moment>& moments,
                                      Flight_Summary& summary);

/// The phase that begins with an event.
[[nodiscard]] Flight_Phase Phase_From(Block_Event event);

}  // namespace norvane
