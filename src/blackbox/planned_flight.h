#pragma once
// The times and the fuel that a flight was planned with, as one line of text: a recording's remark
// and a stored flight hold it, the ACARS panel shows it beside what was flown.

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace norvane {

/// Block times are of the events' order; block fuel is from OUT to IN, flight fuel from OFF to ON.
enum class Planned {
    time_out,
    time_off,
    time_on,
    time_in,
    fuel_out,
    fuel_off,
    fuel_on,
    block_fuel,
    flight_fuel
};
inline constexpr std::size_t planned_count = 9;

/// By `Planned`; empty: not planned. Times are UTC as "1020Z", fuel is in whole lbs.
using Planned_Flight = std::array<std::string, planned_count>;

/// "time_out", "fuel_out_lbs", "block_fuel_lbs" ...
[[nodiscard]] std::string_view Name_Of(Planned figure);
/// A figure of fuel; else it is a time.
[[nodiscard]] constexpr bool Is_Fuel(Planned figure) {
    return figure >= Planned::fuel_out;
}

/// "time_out=1020Z fuel_out_lbs=4515", what is planned only; and back. What is neither a name with
/// its "=" nor such a value is passed over.
[[nodiscard]] std::string Planned_Text(const Planned_Flight& planned);
[[nodiscard]] Planned_Flight Parse_Planned(std::string_view text);

}  // namespace norvane
