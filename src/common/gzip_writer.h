#pragma once
// Adding to a file that is packed by gzip, as Gzip_Reader reads it.

#include <filesystem>
#include <string_view>

namespace norvane {

/// Adds a text behind what a packed file holds: it is there whole or not at all. Raises a Run_Error
/// that names the file.
void Add_To_Packed_File(const std::filesystem::path& file, std::string_view text);

}  // namespace norvane
