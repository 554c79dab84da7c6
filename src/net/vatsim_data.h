#pragma once
// The online network's status data in both of its formats: lines of fields, and JSON. Owned by
// nobody; used by `clsWinInet`.

#include <functional>
#include <string>
#include <string_view>

namespace norvane {

/// Where the network's values stand in a line, from 0.
namespace vatsim_place {
inline constexpr std::size_t callsign = 0;
inline constexpr std::size_t pilot_id = 1;
inline constexpr std::size_t aircraft = 9;
inline constexpr std::size_t departure = 11;
inline constexpr std::size_t altitude = 12;
inline constexpr std::size_t arrival = 13;
inline constexpr std::size_t rules = 21;
inline constexpr std::size_t route = 30;
}  // namespace vatsim_place

/// The pilot's line, its ending CR included; empty when the pilot is not in the data, or has filed
/// no complete plan. In the line format it is the line of the first occurrence of the ID. An answer
/// that begins with "{" is JSON: the pilot's filed plan, connected or not, becomes such a line,
/// whatever is broken beside it or cut off behind it. Raises 440 for what cannot tell whether the
/// pilot is connected: a web page, data cut off too early, no data. `between` is called every few
/// milliseconds of a long search.
[[nodiscard]] std::string Find_VATSIM_Line(std::string_view data, std::string_view pilot_id,
                                           const std::function<void()>& between);

}  // namespace norvane
