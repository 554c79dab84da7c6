#pragma once
// The one error-reporting routine and the one place that catches. A procedure that reports wraps
// its work in `Guarded` under its qualified name ("clsACARS.Refresh()"); the failure goes to the
// error log, to the pilot when asked, and no further.

#include <string>
#include <string_view>
#include <utility>

#include "common/run_error.h"
#include "common/signal.h"

namespace norvane {

struct Services;

/// What a failure means for the flight and what to do: its own words, or those for its number.
[[nodiscard]] std::string Words_For_Pilot(const Run_Error& error);

enum class Show { silent, box };

/// Puts the cursor back to normal, appends the report to the error log and, when asked, shows the
/// pilot what it means, with the report under "Details". Never fails. A box is not shown from
/// within a timer's tick, nor twice within a minute for the same report; the log takes every one.
void Log_Error(Services& services, std::string_view procedure, const Run_Error& error, Show show);

/// Has the failures of the desktop's timers that report none of their own go to the error log,
/// until the connection ends; `services` outlives it.
[[nodiscard]] Connection Log_Failing_Ticks(Services& services);

/// Runs `body`; a failure is reported under `procedure` and the result is false.
template <class Body>
bool Guarded(Services& services, std::string_view procedure, Show show, Body&& body) {
    try {
        std::forward<Body>(body)();
        return true;
    } catch (...) {
        Log_Error(services, procedure, Caught_Error(), show);
        return false;
    }
}

}  // namespace norvane
