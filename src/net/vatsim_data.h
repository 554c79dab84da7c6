#pragma once
// The online network's status data in both of its formats: lines of fields, and JSON. Owned by
// nobody; used by `clsWinInet`.

#include <functional>
#include <string>
#include <string_view>

namespace norvane {

/// The pilot's line, its ending CR included; empty when there is none. In the line format it is the
/// line of the first occurrence of the ID. An answer that begins with "{" is JSON: the pilot's
/// filed plan, connected or not, becomes such a line; a plan that is missing or incomplete, or
/// broken JSON, gives none. `between` is called every few milliseconds of a long search.
[[nodiscard]] std::string Find_VATSIM_Line(const std::string& data, std::string_view pilot_id,
                                           const std::function<void()>& between);

}  // namespace norvane
