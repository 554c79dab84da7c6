#pragma once
// The moments of a flight as texts. Where a recording does not tell when it began, its moments
// count from its beginning.

#include <optional>
#include <string>

#include "blackbox/flight_summary.h"

namespace norvane {

/// 2026-11-23T14:05:12.345Z; none when the recording does not tell when it began.
[[nodiscard]] std::optional<std::string> Utc_At(const Flight_Summary& flight, double seconds);
/// "14:05:12Z", or "0:01:23 after the beginning".
[[nodiscard]] std::string Clock_At(const Flight_Summary& flight, double seconds);
/// "1:23:45".
[[nodiscard]] std::string Duration_Text(double seconds);

}  // namespace norvane
