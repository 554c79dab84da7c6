#pragma once
// A text search over a world file: every airport whose code or name contains what was typed, letter
// case and accents ignored. Fast enough to follow typing: the file is read once, and again when it
// changed.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "common/great_circle.h"

namespace norvane {

struct Found_Airport {
    std::string icao;
    std::string name;
    Position position;
    std::int32_t elevation_ft = 0;
};

struct Airport_Matches {
    /// How many airports match, those beyond `airports` too.
    std::size_t count = 0;
    /// Codes that are the text first, then codes that begin with it, then the others, each in the
    /// files' order, the pilot's own locations first.
    std::vector<Found_Airport> airports;
};

class Airport_Search {
  public:
    /// Reads the world file and the one of the pilot's own locations behind it, unless they are the
    /// ones that were read last, unchanged. Lines that are no airport's are passed over; no own
    /// locations are no fault. Raises when the world file cannot be read.
    void Load(const std::filesystem::path& world, const std::filesystem::path& own);
    [[nodiscard]] std::size_t Size() const { return m_airports.size(); }
    /// False for a text that nearly every airport holds: none, or one letter.
    [[nodiscard]] static bool Is_Search(std::string_view text);
    /// At most `most` airports; all airports match the empty text.
    [[nodiscard]] Airport_Matches Find(std::string_view text, std::size_t most) const;

  private:
    /// A file as it was read.
    struct Source {
        explicit Source(const std::filesystem::path& path);
        bool operator==(const Source&) const = default;

        std::filesystem::path file;
        bool exists = false;
        std::filesystem::file_time_type written;
        std::uintmax_t size = 0;
    };
    void Add(const std::filesystem::path& file);

    std::vector<Source> m_sources;
    std::vector<Found_Airport> m_airports;
    /// Code, "|" and name of each airport as they are compared.
    std::vector<std::string> m_folded;
};

}  // namespace norvane
