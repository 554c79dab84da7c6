#pragma once
// Definitions of the pilot's optional fields ("bin\optfields.cfg") and of an airline's fields
// ("vafields.cfg"): one field a line, caption, "^", then nothing (free text) or the list's entries
// separated by "|". Used by the settings, the ACARS panel and the flight log's grid.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace norvane {

inline constexpr std::size_t airline_field_count = 10;

struct Field_Definition {
    std::string caption;
    /// Entries offered, in order; empty for a free-text field.
    std::vector<std::string> entries;
};

struct Field_Definitions {
    std::vector<Field_Definition> fields;
    /// Why reading stopped early (a line without "^": file, line, what was wrong); empty otherwise.
    std::string failure;
};

/// The first `most` lines that carry text. Raises when the file cannot be read; a line without "^"
/// ends the reading, what was read before it stays.
[[nodiscard]] Field_Definitions Read_Field_Definitions(const std::filesystem::path& file,
                                                       std::size_t most);

}  // namespace norvane
