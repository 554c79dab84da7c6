#include "app/program_places.h"

#include "config/sqlite_store.h"

namespace norvane {

namespace fs = std::filesystem;

Program_Places Find_Places(const fs::path& executable_directory, const Place_Choices& choices) {
    Program_Places places;
    places.shipped = Shipped_Directory(executable_directory);
    const bool staged = places.shipped == executable_directory;
    const bool own = choices.home.empty() && choices.settings.empty() && choices.demonstration;
    if (!choices.home.empty())
        places.program_directory = fs::absolute(choices.home);
    else if (!staged)
        places.program_directory = User_Directory("XDG_DATA_HOME", ".local/share");
    else
        places.program_directory = executable_directory;
    if (own)
        places.program_directory =
            (staged ? executable_directory.parent_path() : places.program_directory) / "demo";

    if (!choices.settings.empty())
        places.store = fs::absolute(choices.settings);
    else if (own || !choices.home.empty())
        places.store = places.program_directory / "settings.sqlite";
    else
        places.store = Default_Store_File();
    return places;
}

}  // namespace norvane
