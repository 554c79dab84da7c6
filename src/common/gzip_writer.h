#pragma once
// Files that are packed by gzip, as Gzip_Reader reads them.

#include <zlib.h>

#include <array>
#include <filesystem>
#include <string_view>

namespace norvane {

class Atomic_File;

/// Packs what it is given into a file, behind what stands there. Raises as the file does.
class Gzip_Writer {
  public:
    explicit Gzip_Writer(Atomic_File& target);
    ~Gzip_Writer();
    Gzip_Writer(const Gzip_Writer&) = delete;
    Gzip_Writer& operator=(const Gzip_Writer&) = delete;

    void Add(std::string_view text);
    /// Nothing is added after it.
    void Finish();

  private:
    void Deflate(std::string_view text, int flush);

    Atomic_File& m_target;
    z_stream m_stream{};
    std::array<char, 65536> m_block{};
};

/// Adds a text behind what a packed file holds: it is there whole or not at all. Raises a Run_Error
/// that names the file.
void Add_To_Packed_File(const std::filesystem::path& file, std::string_view text);

}  // namespace norvane
