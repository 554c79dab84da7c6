#pragma once
// Who is flying: the aircraft's configuration file, type, registration and flight number, its
// masses and engines, and what its configuration says about its load. Runs at `Start`.

#include <string>

namespace norvane {

struct Engine_Context;

/// Gathers the figures of a flight's start and holds their events. `resume`: the flight was taken
/// up again, so its departure, date and start altitude stand already. Failures are in the error
/// log.
void Init_ACARS(Engine_Context& engine, bool resume);

/// The aircraft's title from its configuration file; empty when there is none, or no file.
[[nodiscard]] std::string Get_AC_Title(Engine_Context& engine);

}  // namespace norvane
