#pragma once
// The one reader of text files: CR LF, LF or CR ends a line, a UTF-8 byte order mark at the start
// is passed over, the last line needs no end. Files are read whole; views point into the content,
// which the caller keeps.

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

/// The file's bytes. Raises 53 when it is missing, 70, 75 or 57 when it cannot be read.
[[nodiscard]] std::string Read_File(const std::filesystem::path& file);

class Line_Reader {
  public:
    explicit Line_Reader(std::string_view content);

    /// Moves to the next line; false at the end.
    bool Next();
    /// The current line without its end.
    [[nodiscard]] std::string_view Line() const { return m_line; }
    /// The current line's number, from 1.
    [[nodiscard]] std::size_t Line_Number() const { return m_line_number; }

  private:
    std::string_view m_rest;
    /// Bytes from the next line feed to the end, 0 when none is left. More than the rest holds when
    /// that line feed has been passed: only then is the next one looked for, so that a file of
    /// lone CRs is read in one pass too.
    std::size_t m_from_line_feed = std::string_view::npos;
    std::string_view m_line;
    std::size_t m_line_number = 0;
};

/// All lines of a file; raises as `Read_File`.
[[nodiscard]] std::vector<std::string> Read_Lines(const std::filesystem::path& file);

}  // namespace norvane
