#pragma once
// Files named by the simulator or by an airline come from systems that ignore letter case and
// separate directories by "\". This finds them here.

#include <filesystem>
#include <string_view>

namespace norvane {

struct Services;

/// `relative` (code page text) below `directory`, each part found without regard to case. Of names
/// that differ in case only the first in name order is taken, and the error log says so. A part
/// that is not found is appended as it stands, so the result may not exist. An absolute `relative`
/// is searched from the root, `directory` being ignored.
[[nodiscard]] std::filesystem::path Find_Path(Services& services,
                                              const std::filesystem::path& directory,
                                              std::string_view relative);

}  // namespace norvane
