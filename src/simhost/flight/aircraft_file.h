#pragma once
// Reading what the stand-in knows of an aircraft: "aircraft.json", beside the "aircraft.cfg" that
// clients read.

#include <filesystem>
#include <string>

#include "simhost/scenario/scenario_data.h"

namespace norvane {

/// The aircraft in `simulator_directory`/Aircraft/`folder`. Raises a Run_Error: the file's name,
/// the place in it, what is wrong.
[[nodiscard]] Aircraft_Data Read_Aircraft(const std::filesystem::path& simulator_directory,
                                          const std::string& folder);

}  // namespace norvane
