#pragma once
// The lines of a large file, plain or packed by gzip, without ever holding the file: what a world
// file is built from. CR LF, LF or CR ends a line, a UTF-8 byte order mark at the start is passed
// over, the last line needs no end.

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct gzFile_s;

namespace norvane {

/// What a file may unpack to: ten times what a simulator's whole list of airports takes.
inline constexpr std::size_t most_unpacked_bytes = std::size_t{1} << 30;

class Gzip_Reader {
  public:
    /// Raises as `Read_File` when the file cannot be opened.
    explicit Gzip_Reader(const std::filesystem::path& file,
                         std::size_t at_most_bytes = most_unpacked_bytes);

    /// Moves to the next line; false at the end. Raises when the file is damaged, cut short,
    /// unpacks to more than it may, or has a line that does not end.
    bool Next();
    /// The current line without its end, until the next one is read.
    [[nodiscard]] std::string_view Line() const { return m_line; }
    /// The current line's number, from 1.
    [[nodiscard]] std::size_t Line_Number() const { return m_line_number; }

  private:
    struct Close_File {
        void operator()(gzFile_s* file) const;
    };

    /// Whether there is another byte, read when the block is used up.
    bool Has_More();
    [[noreturn]] void Refuse(const std::string& why) const;

    std::filesystem::path m_name;
    std::size_t m_at_most_bytes;
    std::unique_ptr<gzFile_s, Close_File> m_file;
    std::vector<char> m_block;
    /// What of the block has not been taken yet.
    std::string_view m_rest;
    std::size_t m_read_bytes = 0;
    std::string m_line;
    std::size_t m_line_number = 0;
};

}  // namespace norvane
