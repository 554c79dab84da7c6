#pragma once
// The lists of airports that a world file is built from: "apt.dat" of X-Plane and FlightGear (old
// and new format) and "airports.csv" of OurAirports. Which one a file is, its first lines tell; any
// of them may be packed by gzip.

#include <filesystem>

namespace norvane {

class World_Builder;

/// Adds every airport of the file. Raises when the file cannot be read, or is none of the kinds.
void Read_Airports(const std::filesystem::path& file, World_Builder& world);

}  // namespace norvane
