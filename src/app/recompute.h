#pragma once
// A recorded flight computed again: the engine and the panel fly through the recording in process,
// with the settings of then or others, and what comes out is a row. Nothing is asked, posted or
// written; the pilot's own flight and settings are not touched.

#include <string>
#include <utility>
#include <vector>

#include "common/services.h"
#include "simlink/recording.h"

namespace norvane {

using Setting_Changes = std::vector<std::pair<std::string, std::string>>;

struct Recomputed {
    /// The row as `Log_Line` makes it; empty when the flight did not come to the gate.
    std::string row;
    /// What the engine and the panel reported on the way.
    std::vector<std::string> reports;
};

/// `logged_row`: what the pilot wrote into it is taken as written; empty: nothing was. `changes`
/// are names and values of settings, which take the place of those of then; an unknown name or an
/// impossible value raises.
[[nodiscard]] Recomputed Recompute(const Services& outside,
                                   const std::vector<Recorded_Moment>& moments,
                                   const std::string& logged_row, const Setting_Changes& changes);

struct Row_Difference {
    std::size_t column = 0;
    std::string caption;
    std::string logged;
    std::string computed;
};
/// In the order of the columns; of the columns only that come out of a flight.
[[nodiscard]] std::vector<Row_Difference> Differences(const std::string& logged_row,
                                                      const std::string& computed_row);

}  // namespace norvane
