#pragma once
// The page that an airline's script answers with, cut down to what can be drawn at once whatever
// the server made of it. Laying out foreign pages takes minutes for a few well-chosen elements; of
// these none is left. Owned by nobody; used by the window's response viewer. Texts are UTF-8.

#include <cstddef>
#include <string>
#include <string_view>

namespace norvane {

/// As much of an answer as is looked at; one that a pilot reads is far shorter.
inline constexpr std::size_t longest_page = std::size_t{32} * 1024;

struct Plain_Page {
    /// Not markup but text as it is to be shown: the answer had no markup, or too much of it.
    bool is_text = true;
    /// Markup: paragraphs, headings, lists, tables without tables in them, bold and slanted text,
    /// text colours that can be read on white; each element closed, none with another attribute.
    std::string content;
};

/// The beginning of any bytes, in UTF-8 or in the code page; control characters are dropped.
[[nodiscard]] Plain_Page Clean_Page(std::string_view answer);

}  // namespace norvane
