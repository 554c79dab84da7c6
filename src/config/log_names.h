#pragma once
// Names of the flight logs. A log is the file name + ".txt" in the directory "logs" of the program
// directory. Used by the settings, the management of the logs and the command line.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

struct Services;

inline constexpr std::string_view default_log_name = "My Flight Log";

/// What is wrong with `name` as the name of a new log, for the pilot; empty when nothing is.
/// `existing`: the logs there are.
[[nodiscard]] std::string Check_Log_Name(std::string_view name,
                                         const std::vector<std::string>& existing);

/// Names of the logs there are, in name order; none when the directory is missing.
[[nodiscard]] std::vector<std::string> List_Logs(const Services& services);

/// The file of the log `name`. A file whose name differs in letter case only is taken where there
/// is no other; a log that does not exist gives the file it would have.
[[nodiscard]] std::filesystem::path Log_Path(const Services& services, std::string_view name);

}  // namespace norvane
