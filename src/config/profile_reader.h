#pragma once
// Reading of INI-style files: sections in square brackets, lines of key, "=" and value. Section and
// key match without regard to letter case, the first match wins. Used for the weather sources and
// the simulator's files.

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

/// Whether lines that begin with ";" count among a section's.
enum class Comment_Lines { leave_out, keep };

class Profile {
  public:
    /// Reads the file whole; a missing file is an empty one. Raises when it cannot be read.
    explicit Profile(const std::filesystem::path& file);

    /// A profile of a text that was read (and converted) already.
    [[nodiscard]] static Profile Of_Text(std::string text);

    /// The value without surrounding blanks and without the pair of quotation marks that encloses
    /// it, at most 254 characters; empty when section or key is missing.
    [[nodiscard]] std::string Value(std::string_view section, std::string_view key) const;
    /// All of a section's values as `Value` gives them, by their keys in lower case: one pass where
    /// many keys are asked for.
    [[nodiscard]] std::map<std::string, std::string> Values(std::string_view section) const;
    /// The section's lines as written (surrounding blanks, empty lines and, unless they are to be
    /// kept, lines that begin with ";" left out), each followed by a NUL, cut to the 32767
    /// characters of the field's buffer; a single NUL when there is none.
    [[nodiscard]] std::string Section(std::string_view section,
                                      Comment_Lines comments = Comment_Lines::leave_out) const;
    /// The names of the sections, in file order.
    [[nodiscard]] std::vector<std::string> Section_Names() const;

  private:
    Profile() = default;

    std::string m_content;
};

/// A value up to the first "//", trimmed; a value without such a comment as it stands.
[[nodiscard]] std::string Without_Comment(std::string value);

}  // namespace norvane
