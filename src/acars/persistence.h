#pragma once
// The flight in progress in the settings store: written after every step between OFF and IN, read
// when a flight is taken up again. Section "ACARS", one text a key; the panel keeps its own keys
// and deletes the section when the flight ends.

namespace norvane {

struct Engine_Context;

/// Writes the flight when it is between OFF and IN, nothing otherwise. Failures are in the error
/// log.
void Persist(Engine_Context& engine);
/// Takes the stored flight into the state. A coordinate that cannot be read ends it and is in the
/// error log.
void Restore(Engine_Context& engine);

}  // namespace norvane
