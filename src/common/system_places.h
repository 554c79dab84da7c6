#pragma once
// Where the system keeps what belongs to a program: its executable, the files it is shipped with
// and the directories of the user's own.

#include <filesystem>

namespace norvane {

/// The directory of the running executable; raises 76 when the system does not tell.
[[nodiscard]] std::filesystem::path Executable_Directory();

/// Where the files are that the programs in `executable_directory` are shipped with: beside them in
/// a staged directory, which holds "bin"; else in "../share/norvane" if there is one.
[[nodiscard]] std::filesystem::path Shipped_Directory(
    const std::filesystem::path& executable_directory);

/// The directory "norvane" of a base directory: what the environment's `variable` holds
/// ("XDG_DATA_HOME"; ignored unless it is absolute), else `otherwise` in the user's home. Raises 76
/// when there is neither.
[[nodiscard]] std::filesystem::path User_Directory(const char* variable,
                                                   const std::filesystem::path& otherwise);

}  // namespace norvane
