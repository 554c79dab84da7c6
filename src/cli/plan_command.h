#pragma once
// Saved flight plans on the command line of `norvane-cli`: the command that shows what one says,
// and the check that a file is one.

#include <string>

#include "app/session.h"
#include "simdata/cls_ini_file.h"

namespace norvane {

/// Raises when the file is missing or gave nothing at all.
[[nodiscard]] clsIniFile Read_Plan(Services& services, const std::string& file);

/// Prints the plan's seven values, one a line as "Name: value".
int Show_Plan(Session& session, const std::string& file);

}  // namespace norvane
