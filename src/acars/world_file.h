#pragma once
// A world file: the list of the simulator's airports, one a line, five fields separated by "|":
// latitude, longitude, elevation in feet, ICAO code, name. Owned by the engine, which looks for the
// airport nearest to the aircraft in it; read once and again only when the file has changed.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/great_circle.h"

namespace norvane {

/// What a line says; the texts are pieces of the line.
struct World_Line {
    Position position;
    std::int32_t elevation_ft = 0;
    std::string_view icao;
    std::string_view name;
};

/// The texts of a line, pieces of it: latitude, longitude, elevation, code, name, and what stands
/// behind them.
struct World_Texts {
    std::string_view latitude;
    std::string_view longitude;
    std::string_view elevation;
    std::string_view icao;
    std::string_view name;
    std::string_view rest;
};

/// None when a text is missing.
[[nodiscard]] std::optional<World_Texts> Split_World_Line(std::string_view line);
/// Empty lines, and those with "//" anywhere.
[[nodiscard]] bool Is_World_Comment(std::string_view line);
/// The airport of a line that is no comment; none when the line cannot be read, and `fault` tells
/// why.
[[nodiscard]] std::optional<World_Line> Read_World_Line(std::string_view line,
                                                        std::string_view& fault);

/// A search that goes through the main file and then the pilot's own: for the nearest airport at
/// the aircraft's elevation that lies within 50 nautical miles, and, where there is none, for the
/// nearest of any elevation within 5. An airport farther off is none.
struct Nearest_Search {
    struct Candidate {
        /// In whole nautical miles, by which airports are as near as each other.
        std::int64_t distance_nm = 999999;
        bool found = false;
        std::string icao;
        std::string name;
    };

    Position from;
    /// Of the ground below the aircraft; an airport is at its elevation when its own differs by
    /// less than 10 ft.
    double ground_elevation_ft = 0;
    Candidate at_elevation;
    Candidate at_another;

    /// Where the aircraft is; not found and without texts when no airport is near enough.
    [[nodiscard]] const Candidate& Best() const {
        return at_elevation.found ? at_elevation : at_another;
    }
};

/// Whether an airport that is as near as the best one takes its place.
enum class Equal_Distance { keeps_best, replaces_best };

class World_File {
  public:
    /// Reads the file unless it stands here already as it is on disk. Raises when it cannot be
    /// read.
    void Load(const std::filesystem::path& file);
    /// Takes nearer airports into `search`. `yield`, when given, is called every few hundred lines.
    void Search(Nearest_Search& search, Equal_Distance rule,
                const std::function<void()>& yield) const;

    /// What was wrong with the first line that was passed over: file, line, reason. Empty when
    /// every line was good.
    [[nodiscard]] const std::string& First_Fault() const { return m_first_fault; }
    [[nodiscard]] std::size_t Size() const { return m_places.size(); }

  private:
    /// What rules out nearly every airport, apart from the rest.
    struct Height_And_Latitude {
        double latitude = 0;
        std::int32_t elevation_ft = 0;
    };
    /// Pieces of the content.
    struct Place {
        Position position;
        std::string_view icao;
        std::string_view name;
    };

    void Parse();

    std::filesystem::path m_file;
    std::filesystem::file_time_type m_written;
    std::unique_ptr<const std::string> m_content;
    std::string m_first_fault;
    std::vector<Height_And_Latitude> m_heights;
    std::vector<Place> m_places;
};

}  // namespace norvane
