#pragma once
// What the command line of `norvane-cli` comes to: one command and its words. The parser's
// callbacks fill it, `main` runs it.

#include <CLI/CLI.hpp>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "app/session.h"
#include "cli/console_desktop.h"
#include "cli/flight_commands.h"
#include "worldtools/world_locations.h"

namespace norvane {

/// The command that the command line chose.
struct Work {
    Access access = Access::look;
    std::function<int(Console&, Session&)> run;
};

/// Texts that commands take from the command line, in UTF-8; one run has one command.
struct Words {
    std::string name;
    std::string value;
    /// As `log rows` or `world list` counts, from 1.
    std::size_t row = 0;
    std::string date;
    /// Numbers in "log recover".
    std::vector<std::size_t> rows;
    /// Questions are answered with Yes.
    bool yes = false;
    std::vector<std::string> fields;
    bool report = false;
    Aircraft_Place place;
    /// The world files of FS2000 and FS2002.
    bool older_world = false;
    bool heliports = false;
    /// Which recorded flights are listed.
    Flight_Choice days;
    std::string format;
    bool json = false;
    /// Settings to compute a flight with.
    std::vector<std::string> changes;
    /// What was computed goes into the row.
    bool apply = false;
};

/// The commands about flight logs: "log", "hours" and "convert".
void Add_Log_Commands(CLI::App& app, Words& words, Work& work);
/// "flight".
void Add_Flight_Commands(CLI::App& app, Words& words, Work& work);
/// "world" and "airport". `session` names the simulator when the command runs.
void Add_World_Commands(CLI::App& app, const Session_Options& session, Words& words, Work& work);

}  // namespace norvane
