#pragma once
// The options that `norvane` and `norvane-cli` have in common, read into what a session begins
// with.

#include <CLI/CLI.hpp>

#include "app/session.h"

namespace norvane {

void Add_Session_Options(CLI::App& line, Session_Options& options);

}  // namespace norvane
