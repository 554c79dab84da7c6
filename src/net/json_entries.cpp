#include "net/json_entries.h"

#include <charconv>
#include <cstdint>
#include <nlohmann/json.hpp>

#include "common/code_page.h"
#include "common/text.h"

namespace norvane {

namespace {

/// Of the objects in the lists of the outermost object.
constexpr int entry_depth = 3;

/// Behind the text that begins with the quotation mark at `start`; the end when it is not closed.
std::size_t Behind_Text(std::string_view page, std::size_t start) {
    std::size_t i = start + 1;
    while ((i = page.find_first_of("\"\\", i)) != std::string_view::npos) {
        if (page[i] == '"')
            return i + 1;
        i += 2;  // with whatever is escaped
    }
    return page.size();
}

bool Is_In_Word(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' ||
           c == '-' || c == '.';
}

/// The code of "\uXXXX" at the start of the text.
std::optional<std::uint16_t> Escaped_Code(std::string_view text) {
    constexpr std::size_t size = 6;
    std::uint16_t code = 0;
    if (text.size() < size || text[0] != '\\' || text[1] != 'u')
        return std::nullopt;
    const auto [end, failure] = std::from_chars(text.data() + 2, text.data() + size, code, 16);
    if (failure != std::errc() || end != text.data() + size)
        return std::nullopt;
    return code;
}

/// How long the escape at the start of the text is, if a parser takes it; else 0.
std::size_t Escape_Size(std::string_view text) {
    constexpr std::size_t one_unit = 6;
    if (text.size() > 1 && Contains("\"\\/bfnrt", text.substr(1, 1)))
        return 2;
    const auto code = Escaped_Code(text);
    const auto lies_in = [](std::uint16_t unit, unsigned start) {
        return unit >= start && unit < start + 0x400U;
    };
    if (!code || lies_in(*code, 0xDC00U))
        return 0;
    if (!lies_in(*code, 0xD800U))
        return one_unit;
    const auto second = Escaped_Code(text.substr(one_unit));
    return second && lies_in(*second, 0xDC00U) ? 2 * one_unit : 0;
}

/// A text with its quotation marks.
std::string Mended_Text(std::string_view text) {
    std::string mended;
    while (!text.empty()) {
        std::size_t size = 1;
        if (text[0] == '\\') {
            size = Escape_Size(text);
            mended += size == 0 ? "?" : text.substr(0, size);
            if (size == 0)
                size = Escaped_Code(text) ? 6 : 1;
        } else {
            mended += static_cast<unsigned char>(text[0]) < ' ' ? ' ' : text[0];
        }
        text.remove_prefix(size);
    }
    return mended;
}

}  // namespace

void Json_Entries::Take_Text() {
    const std::size_t end = Behind_Text(m_page, m_place);
    // Values stand there too, but the text before a list is its name.
    if (m_depth == 1 && end - m_place >= 2)
        m_name = m_page.substr(m_place + 1, end - m_place - 2);
    m_place = end;
}

void Json_Entries::Open(char bracket) {
    ++m_depth;
    if (m_depth == entry_depth - 1)
        m_in_list = bracket == '[';
    if (m_depth == entry_depth)
        m_entry = m_place;
    ++m_place;
}

std::optional<Json_Entries::Entry> Json_Entries::Close() {
    ++m_place;
    --m_depth;
    m_whole = m_depth == 0;
    if (m_depth != entry_depth - 1 || !m_in_list || m_page[m_entry] != '{')
        return std::nullopt;
    return Entry{m_name, m_page.substr(m_entry, m_place - m_entry)};
}

std::optional<Json_Entries::Entry> Json_Entries::Next() {
    while (!m_whole) {
        m_place = m_page.find_first_of("\"{}[]", m_place);
        if (m_place == std::string_view::npos)
            break;
        const char mark = m_page[m_place];
        if (mark == '"') {
            Take_Text();
        } else if (mark == '{' || mark == '[') {
            Open(mark);
        } else if (const auto entry = Close()) {
            return entry;
        }
    }
    m_place = m_page.size();
    return std::nullopt;
}

std::string Mended_Json(std::string_view entry) {
    const std::string valid = To_Utf8(From_Utf8(entry));
    const std::string_view text = valid;
    std::string mended;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t end = i + 1;
        if (text[i] == '"') {
            end = Behind_Text(text, i);
            mended += Mended_Text(text.substr(i, end - i));
        } else if (Is_In_Word(text[i])) {
            while (end < text.size() && Is_In_Word(text[end]))
                ++end;
            const std::string_view word = text.substr(i, end - i);
            mended += nlohmann::json::accept(word) ? word : "null";
        } else {
            mended += text[i];
        }
        i = end;
    }
    return mended;
}

}  // namespace norvane
