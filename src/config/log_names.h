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

/// A name as it comes from outside, in UTF-8, as code page text. Raises 5, with words for the
/// pilot, when the code page does not have all of its characters: two such names would look alike.
[[nodiscard]] std::string Log_Name_From_Utf8(std::string_view utf8);

/// Names of the logs there are, in name order; none when the directory is missing. Logs of which
/// the name cannot be told from another one's in the code page are left out.
[[nodiscard]] std::vector<std::string> List_Logs(const Services& services);

/// The files that `List_Logs` leaves out, in name order.
[[nodiscard]] std::vector<std::filesystem::path> Hidden_Logs(const Services& services);

/// Why there is no log `name` although files are spelled so in the code page, for the pilot; empty
/// otherwise.
[[nodiscard]] std::string Hidden_Log_Fault(const Services& services, std::string_view name);

/// What is wrong with `name` as the name of a log to be made beside those there are.
[[nodiscard]] std::string New_Log_Fault(const Services& services, std::string_view name);

/// The file of the log `name`. A file whose name differs in letter case only is taken where there
/// is no other; a log that does not exist gives the file it would have. Never a hidden log's file.
[[nodiscard]] std::filesystem::path Log_Path(const Services& services, std::string_view name);

}  // namespace norvane
