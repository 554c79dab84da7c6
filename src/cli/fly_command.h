#pragma once
// `norvane-cli fly`: one flight from the gate to the gate, driven through the ACARS panel as a
// pilot would drive it, then logged. Prints each ACARS message, the log row and the files written.

#include <filesystem>
#include <optional>
#include <string>

#include "app/session.h"
#include "cli/console_desktop.h"

namespace norvane {

struct Fly_Options {
    std::string flight_number;
    std::string aircraft;
    /// The simulator's address, for a flight without a stand-in.
    std::string simulator;
    /// Divides every timer.
    double time_scale = 1;
    /// A stored flight is dropped, not resumed.
    bool start_new = false;
    /// A stand-in of the program's own; at most one of the three.
    bool demo = false;
    std::filesystem::path scenario;
    std::filesystem::path replay;
    /// A saved flight plan for a flight that begins; empty: none.
    std::filesystem::path plan;
    /// Whose last plan of SimBrief a flight that begins is flown by; empty: nobody's.
    std::string simbrief_user;
    /// How long a dropped link is tried again, in seconds of the timers' time; empty for ever.
    std::optional<double> give_up_s;
};

/// True when the flight has a stand-in of its own, and so places of its own.
[[nodiscard]] bool Has_Own_Simulator(const Fly_Options& options);

/// The exit status. Raises what keeps the flight from being begun.
[[nodiscard]] int Run_Fly(Console& console, Session& session, const Fly_Options& options);

}  // namespace norvane
