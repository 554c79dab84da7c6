#include "common/text.h"

#include <algorithm>
#include <array>

namespace norvane {

namespace {

/// Windows-1252: Latin-1 letters pair at a distance of 32, the letters of 0x80..0x9F stand alone.
constexpr char Lower_Of(unsigned char c) {
    const bool ascii = c >= 'A' && c <= 'Z';
    const bool latin = c >= 0xC0 && c <= 0xDE && c != 0xD7;
    if (ascii || latin)
        return static_cast<char>(c + 0x20);
    switch (c) {
        case 0x8A:
        case 0x8C:
        case 0x8E:
            return static_cast<char>(c + 0x10);
        case 0x9F:
            return static_cast<char>(0xFF);
        default:
            return static_cast<char>(c);
    }
}

constexpr std::array<char, 256> lower_table = [] {
    std::array<char, 256> table{};
    for (unsigned i = 0; i < 256; ++i)
        table[i] = Lower_Of(static_cast<unsigned char>(i));
    return table;
}();

constexpr std::array<char, 256> upper_table = [] {
    std::array<char, 256> table{};
    for (unsigned i = 0; i < 256; ++i)
        table[i] = static_cast<char>(i);
    for (unsigned i = 0; i < 256; ++i) {
        const auto low = static_cast<unsigned char>(lower_table[i]);
        if (low != i)
            table[low] = static_cast<char>(i);
    }
    return table;
}();

}  // namespace

std::string_view Trimmed_View(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string Trim(std::string_view text) {
    return std::string(Trimmed_View(text));
}

std::vector<std::string> Split(std::string_view text, char separator) {
    return Split(text, std::string_view(&separator, 1));
}

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    for (;;) {
        const auto end = text.find(separator, start);
        if (end == std::string_view::npos)
            break;
        pieces.emplace_back(text.substr(start, end - start));
        start = end + separator.size();
    }
    pieces.emplace_back(text.substr(start));
    return pieces;
}

std::string Join(const std::vector<std::string>& pieces, std::string_view separator) {
    std::string joined;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i > 0)
            joined += separator;
        joined += pieces[i];
    }
    return joined;
}

std::string Replace_All(std::string_view text, std::string_view from, std::string_view to) {
    if (from.empty())
        return std::string(text);
    std::string result;
    std::size_t start = 0;
    for (;;) {
        const auto found = text.find(from, start);
        if (found == std::string_view::npos)
            break;
        result += text.substr(start, found - start);
        result += to;
        start = found + from.size();
    }
    result += text.substr(start);
    return result;
}

char Lower(char character) {
    return lower_table[static_cast<unsigned char>(character)];
}

std::string Lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char c) { return Lower(c); });
    return result;
}

std::string Upper(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return upper_table[static_cast<unsigned char>(c)]; });
    return result;
}

bool Equal_No_Case(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                              [](char x, char y) { return Lower(x) == Lower(y); });
}

std::size_t Find_No_Case(std::string_view text, std::string_view what) {
    const auto found = std::search(text.begin(), text.end(), what.begin(), what.end(),
                                   [](char x, char y) { return Lower(x) == Lower(y); });
    if (found == text.end() && !what.empty())
        return std::string_view::npos;
    return static_cast<std::size_t>(found - text.begin());
}

bool Contains(std::string_view text, std::string_view what) {
    return text.find(what) != std::string_view::npos;
}

bool Contains_No_Case(std::string_view text, std::string_view what) {
    return Find_No_Case(text, what) != std::string_view::npos;
}

std::string_view Before(std::string_view text, std::string_view mark) {
    return text.substr(0, text.find(mark));
}

bool Is_Empty_Field(std::string_view text) {
    return text.empty() || text == empty_field;
}

std::string Without_Placeholder(std::string_view text) {
    return text == empty_field ? std::string() : std::string(text);
}

std::string Clean_Field(std::string_view text, Field_Lines lines) {
    const std::string_view line_break = lines == Field_Lines::many ? cr_lf : std::string_view(" ");
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\r' || c == '\n') {
            result += line_break;
            if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
                ++i;
        } else if (c == field_separator && lines != Field_Lines::list_entries) {
            result += '/';
        } else if (c != '\0') {
            result += c;
        }
    }
    return result;
}

}  // namespace norvane
