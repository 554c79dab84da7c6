#pragma once
// Reading scenarios: the flight that a file describes becomes a world to be played.

#include <filesystem>
#include <memory>

#include "simhost/scenario/scenario_data.h"
#include "simhost/world_source.h"

namespace norvane {

/// The scenario as written. `simulator_directory` holds "Aircraft/<folder>/aircraft.json" for the
/// aircraft it names. Raises a Run_Error: the file's name, the place in it, what is wrong.
[[nodiscard]] Scenario_Data Read_Scenario(const std::filesystem::path& file,
                                          const std::filesystem::path& simulator_directory);

/// Reads and flies a scenario; raises as `Read_Scenario`, also when it cannot be flown.
[[nodiscard]] std::unique_ptr<World_Source> Load_Scenario(
    const std::filesystem::path& file, const std::filesystem::path& simulator_directory);

}  // namespace norvane
