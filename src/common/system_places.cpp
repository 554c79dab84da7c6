#include "common/system_places.h"

#include <cstdlib>

#include "common/run_error.h"

namespace norvane {

namespace fs = std::filesystem;

fs::path Executable_Directory() {
    return fs::read_symlink("/proc/self/exe").parent_path();
}

fs::path Shipped_Directory(const fs::path& executable_directory) {
    fs::path shared = executable_directory.parent_path() / "share" / "norvane";
    if (!fs::is_directory(executable_directory / "bin") && fs::is_directory(shared))
        return shared;
    return executable_directory;
}

fs::path User_Directory(const char* variable, const fs::path& otherwise) {
    const char* configured = std::getenv(variable);
    if (configured != nullptr && fs::path(configured).is_absolute())
        return fs::path(configured) / "norvane";
    const char* home = std::getenv("HOME");
    if (home == nullptr || *home == '\0')
        throw Run_Error(error_number::path_not_found, "There is no home directory");
    return home / otherwise / "norvane";
}

}  // namespace norvane
