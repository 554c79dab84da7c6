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
    /// file's order.
    std::vector<Found_Airport> airports;
};

class Airport_Search {
  public:
    /// Reads the file unless it is the one that was read last, unchanged. Lines that are no
    /// airport's are passed over. Raises when it cannot be read.
    void Load(const std::filesystem::path& file);
    [[nodiscard]] std::size_t Size() const { return m_airports.size(); }
    /// At most `most` airports; all airports match the empty text.
    [[nodiscard]] Airport_Matches Find(std::string_view text, std::size_t most) const;

  private:
    std::filesystem::path m_file;
    std::filesystem::file_time_type m_written;
    std::uintmax_t m_size = 0;
    std::vector<Found_Airport> m_airports;
    /// Code, "|" and name of each airport as they are compared.
    std::vector<std::string> m_folded;
};

}  // namespace norvane
