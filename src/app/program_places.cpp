#include "app/program_places.h"

#include "config/sqlite_store.h"

namespace norvane {

namespace fs = std::filesystem;

namespace {

/// What every program directory starts with.
void Fill_Program_Directory(const fs::path& from, const fs::path& to) {
    fs::create_directories(to);
    if (fs::exists(to / "bin"))
        return;
    for (const auto* part : {"bin", "VA"}) {
        if (!fs::exists(from / part))
            continue;
        fs::create_directories(to / part);
        fs::copy(from / part, to / part,
                 fs::copy_options::recursive | fs::copy_options::skip_existing);
    }
}

}  // namespace

fs::path Executable_Directory() {
    return fs::read_symlink("/proc/self/exe").parent_path();
}

Program_Places Find_Places(const fs::path& executable_directory, const Place_Choices& choices) {
    Program_Places places;
    const bool own = choices.home.empty() && choices.settings.empty() && choices.demonstration;
    places.program_directory = executable_directory;
    if (!choices.home.empty())
        places.program_directory = fs::absolute(choices.home);
    if (own)
        places.program_directory = executable_directory.parent_path() / "demo";
    if (places.program_directory != executable_directory)
        Fill_Program_Directory(executable_directory, places.program_directory);

    if (!choices.settings.empty())
        places.store = fs::absolute(choices.settings);
    else if (own || !choices.home.empty())
        places.store = places.program_directory / "settings.sqlite";
    else
        places.store = Default_Store_File();
    return places;
}

}  // namespace norvane
