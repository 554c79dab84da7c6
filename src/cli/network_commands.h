#pragma once
// The commands of `norvane-cli` that ask the network: weather, the online network's flight plan,
// sending a PIREP file. They look at the settings only, so that they work beside a flight. Each
// returns the exit status; why a request failed is said on standard error. A signal ends a request.

#include <string>
#include <string_view>

#include "app/session.h"
#include "cli/console_desktop.h"

namespace norvane {

/// The airport's METAR from the pilot's weather source.
int Show_METAR(Console& console, Session& session, const std::string& icao);
/// METAR and TAF as the message panel would show them.
int Show_WX(Console& console, Session& session, const std::string& icao);
/// What the pilot has filed with the online network, one value a line as "Name: value".
int Show_VATSIM(Console& console, Session& session, const std::string& pilot_id);
/// Posts a PIREP text file to the active airline and prints what its server answered. Raises what
/// keeps the file from being sent.
int PIREP_Send(Console& console, Session& session, const std::string& file);

/// Prints a page as the airline's server sent it: UTF-8 as it is, anything else as the code page.
void Print_Server_Answer(std::string_view page);

}  // namespace norvane
