#pragma once
// The flight in progress in the settings store: written after every step from OFF on, that of IN
// included, read when a flight is taken up again. Section "ACARS", one text a key; the panel keeps
// its own keys and deletes the section when the flight is in the log or given up.

#include <optional>

#include "acars/flight_state.h"
#include "common/great_circle.h"
#include "common/log_error.h"

namespace norvane {

struct Engine_Context;
struct Services;

/// Writes the flight when it is between OFF and IN or has just come to IN, nothing otherwise.
/// Failures are reported.
void Persist(Engine_Context& engine, Show show);
/// Takes the stored flight into the state. A coordinate that cannot be read ends it and is
/// reported.
void Restore(Engine_Context& engine);

/// A stored flight goes on with an aircraft that stands no farther from its last position.
inline constexpr double resume_within_nm = 10;

/// What the store holds of a flight in progress, without taking it up.
struct Stored_Flight {
    /// `before_out` when nothing is stored.
    Flight_Phase phase = Flight_Phase::before_out;
    /// Where the aircraft was at the last stored step.
    std::optional<Position> last_position;
};
[[nodiscard]] Stored_Flight Read_Stored_Flight(Services& services);

}  // namespace norvane
