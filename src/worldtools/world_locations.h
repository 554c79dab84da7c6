#pragma once
// The pilot's own world file: airports, heliports and strips that the main list lacks, one a line,
// six fields separated by "|". Used by the dialog "FS World Locations" and the command line. Lines
// that hold no location (comments, and what cannot be read) are kept where they stand.

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "common/great_circle.h"

namespace norvane {

struct Services;
class clsACARS;

/// The fields as the file has them.
struct World_Location {
    /// Degrees; the decimal sign is "." in those that are added.
    std::string latitude;
    std::string longitude;
    /// Feet.
    std::string elevation;
    std::string icao;
    /// Empty when the main list does not know the code.
    std::string name;
    /// In the short date format of the day; empty in lines of five fields. What further fields a
    /// line has stay with it.
    std::string date_added;
};

class World_Locations {
  public:
    /// Reads the file; one that does not exist is empty. Raises when it cannot be read.
    explicit World_Locations(std::filesystem::path file);

    [[nodiscard]] const std::vector<World_Location>& Locations() const { return m_locations; }
    void Add(World_Location location);
    /// `place`: in `Locations`; raises 9 when there is none.
    void Remove(std::size_t place);
    /// Writes the file atomically; raises when that fails, and the file is as it was.
    void Save() const;

  private:
    struct Other_Line {
        /// How many locations stand before it.
        std::size_t locations_before = 0;
        std::string text;
    };

    std::filesystem::path m_file;
    std::vector<World_Location> m_locations;
    std::vector<Other_Line> m_other_lines;
};

/// A code as it is kept, from what was typed: upper case, without blanks around it.
[[nodiscard]] std::string Location_Code(std::string_view typed);
/// What is wrong with a code as `Location_Code` gives it; empty when it is good. A code is made of
/// ASCII letters, digits and "-", so that it cannot make its line a comment or another field.
[[nodiscard]] std::string_view Check_Location_Code(std::string_view code);

/// Where an aircraft stands.
struct Aircraft_Place {
    Position position;
    double ground_elevation_ft = 0;
};
/// Asks the simulator; raises with the link's text when it did not answer.
[[nodiscard]] Aircraft_Place Read_Aircraft_Place(clsACARS& engine);

/// A location as the file will have it, added today.
[[nodiscard]] World_Location Make_Location(Services& services, std::string_view icao,
                                           std::string_view name, const Aircraft_Place& place);

/// The name of the first line of the world file `world` ("fs9.wld") in "bin" whose code is exactly
/// `icao`; empty when there is none. Raises when the file cannot be read.
[[nodiscard]] std::string World_Airport_Name(Services& services, std::string_view world,
                                             std::string_view icao);

}  // namespace norvane
