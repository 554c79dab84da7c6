#pragma once
// Makes a recording of whatever simulator answers the Norvane link.

#include <chrono>
#include <filesystem>

#include "simlink/link_address.h"

namespace norvane {

class Clock;

struct Record_Options {
    Link_Address from;
    /// From one moment to the next; more than 0.
    std::chrono::milliseconds every{500};
    /// Overwritten.
    std::filesystem::path file;
};

/// Records every variable of the catalogue and every tank, until the descriptor `stop` has
/// something to read or the simulator is gone. Raises when the simulator does not answer at the
/// start, before the file is touched, and when the file cannot be written.
void Record(const Record_Options& options, Clock& clock, int stop);

}  // namespace norvane
