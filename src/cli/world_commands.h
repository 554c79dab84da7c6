#pragma once
// The commands of `norvane-cli` about the world: the pilot's own locations, building a world file,
// and airports by name or by place. Each returns the exit status; what fails is raised or has been
// said already. Texts of the command line are UTF-8.

#include <cstddef>
#include <optional>
#include <string>

#include "app/session.h"
#include "worldtools/world_builder.h"
#include "worldtools/world_locations.h"

namespace norvane {

/// Which simulator's world files are meant.
enum class World_Of { newer_simulators, fs2000_and_fs2002 };

struct New_Location {
    std::string code;
    /// None: where the aircraft stands, in the world of the simulator that is asked.
    std::optional<Aircraft_Place> place;
    /// The address of the simulator that is asked.
    std::string simulator;
};

/// Number (from 1), code, name, date added, latitude, longitude and elevation of each location.
int World_List(Session& session, World_Of world);
/// Prints the new line of the list.
int World_Add(Session& session, const New_Location& location, World_Of world);
/// Asks first. `number`: as `World_List` counts.
int World_Delete(Session& session, std::size_t number, World_Of world);

/// Builds the world file `to` from a list of airports; prints how many it has. Both in UTF-8,
/// relative to the current directory. What was passed over is told by reason.
int World_Build(const std::string& from, const std::string& to, Heliports heliports);

/// Code, name, latitude, longitude and elevation of every airport that matches.
int Airport_Find(Session& session, const std::string& text, World_Of world);
/// Code, name and distance in nm of the airport that a flight from here would depart from.
int Airport_Nearest(Session& session, const Aircraft_Place& place, World_Of world);

}  // namespace norvane
