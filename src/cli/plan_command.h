#pragma once
// The command of `norvane-cli` that shows what a saved flight plan says.

#include <string>

#include "app/session.h"

namespace norvane {

/// Prints the plan's seven values, one a line as "Name: value". Raises when the file is missing or
/// gave nothing at all.
int Show_Plan(Session& session, const std::string& file);

}  // namespace norvane
