#pragma once
// Packing a file by gzip, as Gzip_Reader reads it.

#include <filesystem>
#include <string_view>

namespace norvane {

/// Packs `from` as `to`, which is there whole or not at all. Raises a Run_Error that names the
/// file.
void Pack_File(const std::filesystem::path& from, const std::filesystem::path& to);
/// Adds a text behind what a packed file holds.
void Add_To_Packed_File(const std::filesystem::path& file, std::string_view text);

}  // namespace norvane
