#pragma once
// What the commands on recorded flights share.

#include <string>

#include "app/session.h"
#include "blackbox/derive.h"
#include "blackbox/flight_library.h"
#include "cli/console_desktop.h"
#include "common/code_page.h"

namespace norvane {

/// The flights of the session's program directory. `faults` counts what could not be read.
class Open_Flights {
  public:
    Open_Flights(Session& session, Store_Use use)
        : library(Flights_Directory(session.Outside()), use, Derive_Flight,
                  [this](const std::string& fault) {
                      ++faults;
                      Console_Desktop::Say(fault);
                  }) {}

    int faults = 0;
    Flight_Library library;
};

/// Raises when there is none with this ID, in UTF-8.
[[nodiscard]] inline Flight_Summary Flight_Of(Session& session, const std::string& id) {
    return Open_Flights(session, Store_Use::look).library.Find(From_Utf8(id));
}

}  // namespace norvane
