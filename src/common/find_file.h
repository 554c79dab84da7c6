#pragma once
// Files named by the simulator or by an airline come from systems that ignore letter case and
// separate directories by "\". This finds them here.

#include <filesystem>
#include <string>
#include <string_view>

namespace norvane {

struct Path_Mapping;
struct Services;

/// `relative` (code page text) below `directory`, each part found without regard to case. Of names
/// that differ in case only the first in name order is taken, and the error log says so. A part
/// that is not found is appended as it stands, so the result may not exist. An absolute `relative`
/// is searched from the root, `directory` being ignored.
[[nodiscard]] std::filesystem::path Find_Path(Services& services,
                                              const std::filesystem::path& directory,
                                              std::string_view relative);

/// A path as the simulator names it, found as `Find_Path` finds it. Below a mapped directory
/// (`Services::path_mappings`, of several the longest) it is searched in the directory that is
/// mapped to; any other path is searched from the root or below the program directory.
[[nodiscard]] std::filesystem::path Find_Simulator_Path(Services& services, std::string_view path);

/// Reads "C:\=/home/me/drive_c/` (UTF-8): the simulator's directory, "=", an absolute path here.
/// Raises 5 with what is wrong.
[[nodiscard]] Path_Mapping Parse_Path_Mapping(const std::string& text);
/// What is wrong with the text of a mapping; empty when nothing is.
[[nodiscard]] std::string Path_Mapping_Fault(const std::string& text);

}  // namespace norvane
