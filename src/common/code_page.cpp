#include "common/code_page.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace norvane {

namespace {

/// Code points of bytes 0x80 to 0x9F (Windows-1252; 81, 8D, 8F, 90 and 9D are undefined there).
constexpr std::array<char32_t, 32> upper_controls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

struct Nearest_Letter {
    char32_t first;
    char32_t last;
    const char* letters;  // one a code point, or one for the whole range
};

/// Letters of European airport and pilot names that the code page lacks.
constexpr std::array<Nearest_Letter, 9> nearest_letters{{
    {0x0100, 0x0130, "AaAaAaCcCcCcCcDdDdEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiI"},
    {0x0131, 0x0137, "iIiJjKk"},
    {0x0138, 0x0151, "kLlLlLlLlLlNnNnNnnNnOoOoOo"},
    {0x0154, 0x017F, "RrRrRrSsSsSsSsTtTtTtUuUuUuUuUuUuWwYyYZzZzZzs"},
    {0x0218, 0x021B, "SsTt"},
    {0x2010, 0x2015, "-"},
    {0x2000, 0x200A, " "},
    {0x2032, 0x2032, "'"},
    {0x2033, 0x2033, "\""},
}};

char Nearest(char32_t code) {
    for (const auto& [first, last, letters] : nearest_letters) {
        if (code < first || code > last)
            continue;
        const std::string_view known(letters);
        return known.size() == 1 ? known[0] : known.at(code - first);
    }
    return '?';
}

char To_Byte(char32_t code) {
    if (code < 0x80 || (code >= 0xA0 && code <= 0xFF))
        return static_cast<char>(code);
    const auto found = std::find(upper_controls.begin(), upper_controls.end(), code);
    if (found != upper_controls.end()) {
        return static_cast<char>(0x80 + (found - upper_controls.begin()));
    }
    return Nearest(code);
}

/// A combining accent follows the letter it belongs to: the letter alone is the nearest one.
bool Is_Combining(char32_t code) {
    return code >= 0x0300 && code <= 0x036F;
}

void Append_Utf8(std::string& out, char32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

/// A code point that takes `length` bytes and no fewer, and is no half of a UTF-16 pair.
bool Is_Well_Formed(char32_t code, std::size_t length) {
    constexpr std::array<char32_t, 5> lowest{0, 0, 0x80, 0x800, 0x10000};
    constexpr char32_t highest = 0x10FFFF;
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code >= lowest.at(length) && code <= highest && !surrogate;
}

/// The code point at the start of `text`, and how many bytes it takes; empty for broken UTF-8.
std::optional<std::pair<char32_t, std::size_t>> Read_Utf8(std::string_view text) {
    const auto lead = static_cast<std::uint8_t>(text[0]);
    if (lead < 0x80)
        return std::pair{static_cast<char32_t>(lead), std::size_t{1}};
    std::size_t length = 0;
    char32_t code = 0;
    if ((lead & 0xE0) == 0xC0) {
        length = 2;
        code = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        code = lead & 0x0F;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4;
        code = lead & 0x07;
    }
    if (length == 0 || text.size() < length)
        return std::nullopt;
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<std::uint8_t>(text[i]);
        if ((next & 0xC0) != 0x80)
            return std::nullopt;
        code = (code << 6) | (next & 0x3FU);
    }
    if (!Is_Well_Formed(code, length))
        return std::nullopt;
    return std::pair{code, length};
}

}  // namespace

std::string To_Utf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<std::uint8_t>(c);
        const bool mapped = byte >= 0x80 && byte <= 0x9F;
        Append_Utf8(result, mapped ? upper_controls.at(byte - 0x80U) : char32_t{byte});
    }
    return result;
}

std::string From_Utf8(std::string_view utf8) {
    std::string result;
    result.reserve(utf8.size());
    while (!utf8.empty()) {
        const auto read = Read_Utf8(utf8);
        if (!read || !Is_Combining(read->first))
            result += read ? To_Byte(read->first) : utf8[0];
        utf8.remove_prefix(read ? read->second : 1);
    }
    return result;
}

bool Is_Utf8(std::string_view text) {
    constexpr std::size_t longest = 4;
    while (!text.empty()) {
        const auto read = Read_Utf8(text);
        if (!read) {
            // Cut short: a lead byte, then nothing but bytes that continue it.
            const auto goes_on = [](char c) {
                return (static_cast<std::uint8_t>(c) & 0xC0) == 0x80;
            };
            const auto lead = static_cast<std::uint8_t>(text[0]);
            return text.size() < longest && lead >= 0xC2 && lead <= 0xF4 &&
                   std::all_of(text.begin() + 1, text.end(), goes_on);
        }
        text.remove_prefix(read->second);
    }
    return true;
}

std::string From_Utf16(std::u16string_view utf16) {
    std::string result;
    result.reserve(utf16.size());
    for (const char16_t unit : utf16) {
        const bool second_half = unit >= 0xDC00 && unit <= 0xDFFF;
        if (!Is_Combining(unit) && !second_half)
            result += To_Byte(unit);
    }
    return result;
}

std::filesystem::path To_Path(std::string_view text) {
    std::string utf8 = To_Utf8(text);
    std::replace(utf8.begin(), utf8.end(), '\\', '/');
    return utf8;
}

std::string From_Path(const std::filesystem::path& path) {
    return From_Utf8(path.string());
}

}  // namespace norvane
