#pragma once
// The airport where the aircraft is, from the world files of the connected simulator: the main one,
// and the pilot's own where an entry as near takes the main file's place.

#include <string>
#include <string_view>

#include "acars/flight_state.h"

namespace norvane {

struct Engine_Context;

/// File names by simulator: the two older ones have a world of their own.
[[nodiscard]] std::string World_Name(std::string_view simulator_name);
[[nodiscard]] std::string World_UD_Name(std::string_view simulator_name);

/// Samples the position and looks for the airport nearest to it. Failures are in the error log; no
/// airport then.
[[nodiscard]] Airport_Fix Get_Airport(Engine_Context& engine);
/// As `Get_Airport`; that there is none is told once a flight.
[[nodiscard]] Airport_Fix Look_Up_Airport(Engine_Context& engine);

}  // namespace norvane
