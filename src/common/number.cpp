#include "common/number.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "common/text.h"

namespace norvane {

namespace {

/// Decimal digits of |value| rounded half up at `decimals` places, without a point: the number is
/// the text divided by 10^decimals. Works on 15 significant digits, so that .35 is not .3499….
std::string Rounded_Digits(double value, int decimals) {
    const std::string text = fmt::format("{:.14e}", std::fabs(value));
    const auto mark = text.find('e');
    std::string digits = text.substr(0, 1) + text.substr(2, mark - 2);
    int exponent = 0;
    std::from_chars(text.data() + mark + (text[mark + 1] == '+' ? 2 : 1), text.data() + text.size(),
                    exponent);
    const int keep = exponent + 1 + decimals;
    if (keep < 0)
        return "0";
    if (keep >= static_cast<int>(digits.size())) {
        digits.append(static_cast<std::size_t>(keep) - digits.size(), '0');
        return digits;
    }
    const bool up = digits[static_cast<std::size_t>(keep)] >= '5';
    digits.resize(static_cast<std::size_t>(keep));
    if (!up)
        return digits.empty() ? "0" : digits;
    auto digit = digits.rbegin();
    for (; digit != digits.rend() && *digit == '9'; ++digit)
        *digit = '0';
    if (digit == digits.rend())
        return "1" + digits;
    ++*digit;
    return digits;
}

struct Number_Signs {
    char decimal;
    char grouping;
};

std::string Format_With(double value, int decimals, int min_digits, Number_Signs signs) {
    if (!std::isfinite(value))
        value = 0;
    std::string digits = Rounded_Digits(value, decimals);
    const auto wanted = static_cast<std::size_t>(decimals + min_digits);
    if (digits.size() < wanted)
        digits.insert(0, wanted - digits.size(), '0');
    const bool negative = value < 0 && digits.find_first_not_of('0') != std::string::npos;
    std::string whole = digits.substr(0, digits.size() - static_cast<std::size_t>(decimals));
    if (signs.grouping != '\0') {
        for (std::size_t place = whole.size(); place > 3; place -= 3) {
            whole.insert(place - 3, 1, signs.grouping);
        }
    }
    std::string result = (negative ? "-" : "") + whole;
    if (decimals > 0) {
        result += signs.decimal;
        result += digits.substr(digits.size() - static_cast<std::size_t>(decimals));
    }
    return result;
}

bool Is_Digit(char c) {
    return c >= '0' && c <= '9';
}

bool Three_Digits_At(std::string_view text, std::size_t place) {
    std::size_t run = 0;
    while (place + run < text.size() && Is_Digit(text[place + run]))
        ++run;
    return run == 3;
}

/// The number without the signs that can do nothing but group digits, whatever the country: blank,
/// no-break blank, apostrophes. Empty where one of them does not.
std::optional<std::string> Without_Blanks(std::string_view text) {
    constexpr std::string_view signs = " \xA0'\x92";
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (signs.find(text[i]) == std::string_view::npos)
            plain += text[i];
        else if (plain.empty() || !std::all_of(plain.begin(), plain.end(), Is_Digit) ||
                 !Three_Digits_At(text, i + 1))
            return std::nullopt;
    }
    return plain;
}

}  // namespace

double Round_Half_Even(double value) {
    return std::nearbyint(value);
}

double Round_Half_Up(double value, int decimals) {
    return Parse_Number(Format_Fixed(value, decimals)).value_or(0);
}

namespace {

constexpr double units_of_one = 10'000;

}  // namespace

void Decimal_Sum::Add(double figure) {
    m_units += std::round(figure * units_of_one);
}

double Decimal_Sum::Value() const {
    return m_units / units_of_one;
}

std::int32_t Whole(double value) {
    if (std::isnan(value))
        return 0;
    constexpr double low = std::numeric_limits<std::int32_t>::min();
    constexpr double high = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(Round_Half_Up(std::clamp(value, low, high)));
}

std::optional<double> Parse_Number(std::string_view text) {
    text = Trimmed_View(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    if (text.empty())
        return std::nullopt;
    const char first = text.front() == '-' && text.size() > 1 ? text[1] : text.front();
    if (!Is_Digit(first) && first != '.')
        return std::nullopt;
    double value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::optional<std::int32_t> Parse_Int32(std::string_view text) {
    text = Trimmed_View(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    std::int32_t value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || failure != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

std::optional<double> Parse_Pilot_Number(std::string_view text, const Regional& regional) {
    text = Trimmed_View(text);
    std::string sign;
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        if (text.front() == '-')
            sign = "-";
        text.remove_prefix(1);
    }
    const auto without_blanks = Without_Blanks(text);
    if (!without_blanks)
        return std::nullopt;
    text = *without_blanks;
    const auto is_sign = [](char c) { return c == '.' || c == ','; };
    const auto marks = std::count_if(text.begin(), text.end(), is_sign);
    const char grouping = regional.grouping_sign;
    if (marks == 0)
        return Parse_Number(sign + std::string(text));
    // A grouping sign must stand before exactly three digits each time, and after at least one.
    std::string plain;
    std::string_view rest = text;
    bool grouped = grouping != '\0' && text.find(grouping) != std::string_view::npos;
    for (std::size_t i = 0; grouped && i < rest.size(); ++i) {
        if (rest[i] != grouping) {
            plain += rest[i] == regional.decimal_sign ? '.' : rest[i];
            continue;
        }
        const bool after_point = plain.find('.') != std::string::npos;
        grouped = Three_Digits_At(rest, i + 1) && !plain.empty() && !after_point;
    }
    if (grouped)
        return Parse_Number(sign + plain);
    if (marks > 1)
        return std::nullopt;
    return Parse_Number(sign + Replace_All(text, ",", "."));
}

std::string Format_Fixed(double value, int decimals, int min_digits) {
    return Format_With(value, decimals, min_digits, {'.', '\0'});
}

std::string Format_Whole(double value, int min_digits) {
    return Format_Fixed(value, 0, min_digits);
}

std::string Format_Grouped(double value) {
    return Format_With(value, 0, 1, {'.', ','});
}

std::string Format_Pilot(double value, int decimals, const Regional& regional) {
    return Format_With(value, decimals, 1, {regional.decimal_sign, regional.grouping_sign});
}

std::string Format_Exact(double value) {
    return fmt::format("{}", value);
}

std::string Format_Significant(double value) {
    return fmt::format("{:.15g}", value);
}

}  // namespace norvane
