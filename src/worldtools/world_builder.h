#pragma once
// Builds a world file from the simulator's own list of airports, or from a public one. Owned by the
// command that asks for it. What a source says of an airport comes here as it stands there; what
// cannot stand in a world file is passed over and counted by reason.

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "common/great_circle.h"

namespace norvane {

/// Why an airport, or a line, was passed over.
enum class Skip_Reason {
    malformed_line,
    no_code,
    unusable_code,
    no_position,
    no_elevation,
    closed,
    heliport,
    duplicate_code,
};
inline constexpr std::size_t skip_reason_count = 8;

/// For the pilot: "without a position".
[[nodiscard]] std::string_view Skip_Reason_Text(Skip_Reason reason);

/// Heliports beside an airport would be taken for it: a flight looks for the nearest place.
enum class Heliports { leave_out, take };

struct Skipped {
    std::size_t count = 0;
    /// In the source, from 1.
    std::size_t first_line = 0;
};

struct World_Airport {
    /// As the source has it: any case, in the source's characters.
    std::string code;
    /// UTF-8, or code page text.
    std::string name;
    Position position;
    double elevation_ft = 0;
    bool heliport = false;
    /// In the source, from 1.
    std::size_t line = 0;
};

/// The airports of a world file that is being built.
class World_Builder {
  public:
    explicit World_Builder(Heliports heliports) : m_heliports(heliports) {}

    /// Takes the airport, or skips it: a heliport, or because of code, position or elevation.
    void Add(World_Airport airport);
    void Skip(Skip_Reason reason, std::size_t line);
    /// Sorts by code; of airports with one code the first of the source stays.
    void Sort();

    /// One a line, with CR LF, in code page text.
    [[nodiscard]] std::string Content() const;
    [[nodiscard]] std::size_t Size() const { return m_airports.size(); }
    [[nodiscard]] const Skipped& Skips(Skip_Reason reason) const;

  private:
    Heliports m_heliports;
    std::vector<World_Airport> m_airports;
    std::array<Skipped, skip_reason_count> m_skipped;
};

/// Reads `from` and writes `to`, atomically; what stood there before is kept as `to` + ".bak". The
/// result tells what was taken and skipped. Raises when the source cannot be read or holds no
/// airport, or the file cannot be written: the old one is as it was.
World_Builder Build_World(const std::filesystem::path& from, const std::filesystem::path& to,
                          Heliports heliports);

}  // namespace norvane
