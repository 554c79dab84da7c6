#pragma once
// Reading of INI-style files: sections in square brackets, lines of key, "=" and value. Section and
// key match without regard to letter case, the first match wins. Used for the weather sources and
// the simulator's files.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

class Profile {
  public:
    /// Reads the file whole; a missing file is an empty one. Raises when it cannot be read.
    explicit Profile(const std::filesystem::path& file);

    /// The value without surrounding blanks and without the pair of quotation marks that encloses
    /// it, at most 254 characters; empty when section or key is missing.
    [[nodiscard]] std::string Value(std::string_view section, std::string_view key) const;
    /// The section's lines as written (surrounding blanks, empty lines and lines that begin with
    /// ";" left out), each followed by a NUL, cut to the 32767 characters of the field's buffer; a
    /// single NUL when there is none.
    [[nodiscard]] std::string Section(std::string_view section) const;
    /// The names of the sections, in file order.
    [[nodiscard]] std::vector<std::string> Section_Names() const;

  private:
    std::string m_content;
};

}  // namespace norvane
