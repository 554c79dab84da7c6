#pragma once
// The commands of `norvane-cli` that list and set: flight logs, settings, airlines. Results go to
// standard output in UTF-8. Each returns the exit status; what fails is raised. Setting takes a
// session for writing, all others one for looking.

#include <string>

#include "app/session.h"

namespace norvane {

/// Rows of a log as "number<TAB>fields joined by |", in the log's order by date. An empty name
/// means the active log.
int Log_Rows(Session& session, const std::string& name);
/// The totals line of a log.
int Log_Totals_Line(Session& session, const std::string& name);

int Settings_List(Session& session);
int Settings_Get(Session& session, const std::string& name);
int Settings_Set(Session& session, const std::string& name, const std::string& value);

/// The airlines, the active one marked with "*".
int Airline_List(Session& session);
int Airline_Use(Session& session, const std::string& name);
/// The active airline's server, scripts and PIREP fields.
int Airline_Show(Session& session);

}  // namespace norvane
