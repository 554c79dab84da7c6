#include "net/page_tags.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

#include "common/text.h"

namespace norvane {

namespace {

using Kind = Tag_Kind;

constexpr auto tags = std::to_array<Page_Tag>({
    {"b", Kind::bold, "b"},
    {"strong", Kind::bold, "b"},
    {"i", Kind::slanted, "i"},
    {"em", Kind::slanted, "i"},
    {"u", Kind::lined, "u"},
    {"font", Kind::colored, "font"},
    {"span", Kind::colored, "font"},
    {"p", Kind::block, "p"},
    {"div", Kind::block, "div"},
    {"center", Kind::block, "div"},
    {"blockquote", Kind::block, "div"},
    {"dt", Kind::block, "div"},
    {"dd", Kind::block, "div"},
    {"pre", Kind::block, "pre"},
    {"h1", Kind::block, "h1"},
    {"h2", Kind::block, "h2"},
    {"h3", Kind::block, "h3"},
    {"h4", Kind::block, "h4"},
    {"h5", Kind::block, "h5"},
    {"h6", Kind::block, "h6"},
    {"br", Kind::line, "br"},
    {"hr", Kind::rule, "hr"},
    {"ul", Kind::list, "ul"},
    {"ol", Kind::list, "ol"},
    {"li", Kind::item, "li"},
    {"table", Kind::table, "table"},
    {"tr", Kind::row, "tr"},
    {"td", Kind::cell, "td"},
    {"th", Kind::cell, "th"},
    {"script", Kind::hidden},
    {"style", Kind::hidden},
    {"title", Kind::hidden},
    {"html", Kind::passed},
    {"head", Kind::passed},
    {"body", Kind::passed},
    {"a", Kind::passed},
    {"img", Kind::passed},
});

struct Named_Color {
    std::string_view name;
    std::uint32_t rgb;
};

constexpr auto named_colors = std::to_array<Named_Color>({
    {"maroon", 0x800000},
    {"red", 0xFF0000},
    {"darkred", 0x8B0000},
    {"brown", 0xA52A2A},
    {"green", 0x008000},
    {"darkgreen", 0x006400},
    {"olive", 0x808000},
    {"navy", 0x000080},
    {"blue", 0x0000FF},
    {"darkblue", 0x00008B},
    {"purple", 0x800080},
    {"teal", 0x008080},
    {"gray", 0x808080},
    {"grey", 0x808080},
    {"fuchsia", 0xFF00FF},
    {"magenta", 0xFF00FF},
});

/// Dark enough to be read on white: three times as dark, as the eye sees it.
bool Is_Readable(std::uint32_t rgb) {
    constexpr double lightest = 0.3;
    const auto light = [&](unsigned shift, double share) {
        return share * std::pow(((rgb >> shift) & 0xFFU) / 255.0, 2.2);
    };
    return light(16, 0.2126) + light(8, 0.7152) + light(0, 0.0722) <= lightest;
}

std::optional<std::uint32_t> Parse_Color(std::string_view text) {
    if (!text.starts_with('#')) {
        const auto* const found =
            std::find_if(named_colors.begin(), named_colors.end(),
                         [&](const Named_Color& each) { return Equal_No_Case(each.name, text); });
        return found == named_colors.end() ? std::nullopt : std::optional(found->rgb);
    }
    text.remove_prefix(1);
    std::string digits(text);
    if (digits.size() == 3)
        digits = {text[0], text[0], text[1], text[1], text[2], text[2]};
    std::uint32_t rgb = 0;
    const char* const end = digits.data() + digits.size();
    if (digits.size() != 6 || std::from_chars(digits.data(), end, rgb, 16).ptr != end)
        return std::nullopt;
    return rgb;
}

}  // namespace

const Page_Tag* Find_Tag(std::string_view name) {
    const auto* const found = std::find_if(tags.begin(), tags.end(), [&](const Page_Tag& tag) {
        return Equal_No_Case(tag.name, name);
    });
    return found == tags.end() ? nullptr : found;
}

std::string Color_In(std::string_view attributes) {
    static constexpr std::string_view word = "color";
    static constexpr std::string_view around = " \t\n\"':=";
    const std::size_t place = Find_No_Case(attributes, word);
    if (place == std::string_view::npos || place == 0 || attributes[place - 1] == '-' ||
        attributes[place - 1] == 'g')
        return {};
    std::string_view value = attributes.substr(place + word.size());
    value.remove_prefix(std::min(value.find_first_not_of(around), value.size()));
    value = value.substr(0, value.find_first_of(" \t\n\"';>/"));
    const auto rgb = Parse_Color(value);
    return rgb && Is_Readable(*rgb) ? std::string(value) : std::string();
}

}  // namespace norvane
