#pragma once
// The edge between the core's Windows-1252 texts and the outside's UTF-8 (terminal, settings store,
// file names, JSON). The mapping is total: the five undefined bytes stand for the code points of
// the same number, and back.

#include <filesystem>
#include <string>
#include <string_view>

namespace norvane {

[[nodiscard]] std::string To_Utf8(std::string_view text);
/// A character that the code page lacks becomes its nearest letter, else "?". Bytes that are no
/// UTF-8 are taken as code page characters.
[[nodiscard]] std::string From_Utf8(std::string_view utf8);
/// True when the whole text is UTF-8, plain ASCII included; a last character cut short is forgiven.
[[nodiscard]] bool Is_Utf8(std::string_view text);
/// As `From_Utf8`, from UTF-16 code units in this machine's order; a surrogate pair becomes "?".
[[nodiscard]] std::string From_Utf16(std::u16string_view utf16);

/// A file name or relative path from the core's text; "\" and "/" both separate directories.
[[nodiscard]] std::filesystem::path To_Path(std::string_view text);
/// The text for a path, as it stands in files and messages (separators of this platform).
[[nodiscard]] std::string From_Path(const std::filesystem::path& path);

}  // namespace norvane
