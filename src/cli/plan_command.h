#pragma once
// Flight plans on the command line of `norvane-cli`: the command that shows what one says, saved in
// a file or made with SimBrief, and the check that a file is one.

#include <string>

#include "app/session.h"
#include "cli/console_desktop.h"
#include "net/simbrief.h"
#include "simdata/cls_ini_file.h"

namespace norvane {

/// Raises when the file is missing or gave nothing at all.
[[nodiscard]] clsIniFile Read_Plan(Services& services, const std::string& file);

/// Prints the plan's seven values, one a line as "Name: value".
int Show_Plan(Session& session, const std::string& file);

/// The last plan of this user. Raises what keeps it from being had, in words for the terminal.
[[nodiscard]] Simbrief_Plan Fetch_Plan_Of(Console& console, Services& services,
                                          const std::string& user);
/// Prints it likewise: the seven values of a saved plan, then what it tells besides.
int Show_SimBrief_Plan(Console& console, Session& session, const std::string& user);

}  // namespace norvane
