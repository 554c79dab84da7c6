#pragma once
// What the grid offers while a cell is edited: airports with their names, aircraft types. Read from
// small files of the program directory.

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

struct Services;

/// The names of the simulator's aircraft, in the program directory.
inline constexpr std::string_view aircraft_list_file = "bin\\ac.cfg";
/// Between the entries of a list file.
inline constexpr char list_separator = '@';

struct Airport_Pick {
    std::string icao;
    std::string name;
};

struct Airport_Picks {
    std::vector<Airport_Pick> airports;
    /// Why reading stopped early (file, line, what was wrong); empty otherwise.
    std::string failure;
};

/// The airports of a world file: lines with "//" and empty lines are passed over, field 3 is the
/// code, field 4 the name. A line with fewer fields ends the reading. Raises when the file cannot
/// be read.
[[nodiscard]] Airport_Picks Read_Airport_Picks(const std::filesystem::path& file);

/// The entries of a list file's first line, separated by "@", empty ones left out. Raises when the
/// file cannot be read.
[[nodiscard]] std::vector<std::string> Read_List_File(const std::filesystem::path& file);

}  // namespace norvane
