#pragma once
// Turns a flight log of the simulator, a file of fixed columns, into one of ours. Used by the
// conversion dialog and the command line.

#include <filesystem>
#include <string_view>

namespace norvane {

struct Services;

// The name is the system's own.
namespace modFSLog {  // NOLINT(readability-identifier-naming)

/// Writes "convertedlogs" / `name` + ".txt" in the program directory, replacing an older one, and
/// returns its path. `name` is code page text that can be a log's name, else 5 is raised; raises
/// too when a file cannot be read or written, and 13 when it has no flight, an older file staying
/// as it was.
std::filesystem::path Convert(Services& services, const std::filesystem::path& source,
                              std::string_view name);

}  // namespace modFSLog

}  // namespace norvane
