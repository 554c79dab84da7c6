#include "config/regional_settings.h"

#include <langinfo.h>
#include <clocale>

#include <algorithm>
#include <array>
#include <optional>

#include "common/code_page.h"
#include "common/services.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr std::string_view iso_pattern = "yyyy-MM-dd";
constexpr char no_break_space = '\xA0';

/// The locale of the environment; none when it is not installed.
class System_Locale {
  public:
    System_Locale() : m_locale(::newlocale(LC_ALL_MASK, "", nullptr)) {}
    ~System_Locale() {
        if (m_locale != nullptr)
            ::freelocale(m_locale);
    }
    System_Locale(const System_Locale&) = delete;
    System_Locale& operator=(const System_Locale&) = delete;

    [[nodiscard]] std::string Text(nl_item item) const {
        return m_locale == nullptr ? std::string() : ::nl_langinfo_l(item, m_locale);
    }
    /// The item's one character in the code page; empty when it has another number of them, or one
    /// that the code page lacks.
    [[nodiscard]] std::optional<char> Sign(nl_item item) const {
        std::string text = Text(item);
        if (Text(CODESET) == "UTF-8") {
            // The narrow blanks that group digits have no place in the code page.
            text = Replace_All(text, "\xE2\x80\xAF", "\xC2\xA0");
            const std::string sign = From_Utf8(text);
            if (sign == " ")
                return no_break_space;
            if (To_Utf8(sign) != text)
                return std::nullopt;
            text = sign;
        }
        return text.size() == 1 ? std::optional(text[0]) : std::nullopt;
    }
    /// The C and POSIX locales and their kin, which belong to no country.
    [[nodiscard]] bool Is_Of_No_Country() const {
        return m_locale == nullptr || (Text(D_FMT) == "%m/%d/%y" && Text(THOUSEP).empty());
    }

  private:
    locale_t m_locale;
};

struct Format_Part {
    std::string_view format;
    std::string_view pattern;
};

/// What a locale's date format may hold. Two-digit years are written with four; a blank behind a
/// point is left out, so that the date can be read again.
constexpr std::array<Format_Part, 14> format_parts{{
    {"%-d", "d"},
    {"%e", "d"},
    {"%d", "dd"},
    {"%-m", "M"},
    {"%m", "MM"},
    {"%Y", "yyyy"},
    {"%y", "yyyy"},
    {"%F", iso_pattern},
    {"%D", "MM/dd/yyyy"},
    {"/", "/"},
    {"-", "-"},
    {".", "."},
    {" ", ""},
    {",", ""},
}};

/// Day, month and four-digit year, in any order, with the same sign between them.
bool Is_Pattern(std::string_view pattern) {
    const auto sign = pattern.find_first_of("/-.");
    if (sign == std::string_view::npos)
        return false;
    auto parts = Split(pattern, pattern[sign]);
    std::sort(parts.begin(), parts.end());
    return parts.size() == 3 && (parts[0] == "M" || parts[0] == "MM") &&
           (parts[1] == "d" || parts[1] == "dd") && parts[2] == "yyyy";
}

}  // namespace

std::string Short_Date_Pattern(std::string_view date_format) {
    std::string pattern;
    while (!date_format.empty()) {
        const auto part =
            std::find_if(format_parts.begin(), format_parts.end(),
                         [&](const auto& known) { return date_format.starts_with(known.format); });
        if (part == format_parts.end())
            return std::string(iso_pattern);
        pattern += part->pattern;
        date_format.remove_prefix(part->format.size());
    }
    if (pattern.ends_with('.'))
        pattern.pop_back();
    return Is_Pattern(pattern) ? pattern : std::string(iso_pattern);
}

Regional Load_Regional(Settings_Store& store) {
    Regional regional;
    const System_Locale locale;
    if (!locale.Is_Of_No_Country()) {
        regional.short_date = Short_Date_Pattern(locale.Text(D_FMT));
        regional.decimal_sign = locale.Sign(RADIXCHAR).value_or('.');
        regional.grouping_sign = locale.Sign(THOUSEP).value_or('\0');
        if (regional.grouping_sign == regional.decimal_sign)
            regional.grouping_sign = '\0';
    }
    const auto stored = store.Find("Options", "Short Date");
    if (stored && Is_Pattern(*stored))
        regional.short_date = *stored;
    else
        store.Set("Options", "Short Date", regional.short_date);
    return regional;
}

}  // namespace norvane
