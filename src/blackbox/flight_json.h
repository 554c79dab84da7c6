#pragma once
// A flight as JSON, by the names of flight_fields.h, and what differs between two summaries of one
// flight. docs/formats.md has the members.

#include <string>
#include <vector>

#include "blackbox/flight_summary.h"

namespace norvane {

/// UTF-8, without the track. A figure that the recording does not give is null.
[[nodiscard]] std::string Flight_Json(const Flight_Summary& flight);

struct Flight_Difference {
    /// The path of the member in the JSON: "landings/0/touches/1/rate_fpm"; "track".
    std::string field;
    /// Empty: there is no such member.
    std::string stored;
    std::string derived;
};
/// Numbers that agree in nine digits are the same; tracks are compared as the store keeps them.
[[nodiscard]] std::vector<Flight_Difference> Differences(const Flight_Summary& stored,
                                                         const Flight_Summary& derived);

}  // namespace norvane
