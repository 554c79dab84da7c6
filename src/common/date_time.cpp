#include "common/date_time.h"

#include <fmt/format.h>

#include <array>
#include <charconv>

#include "common/text.h"

namespace norvane {

namespace {

constexpr std::int64_t seconds_per_day = 86400;

struct Scanned_Date {
    std::array<int, 3> values{};
    std::array<std::size_t, 3> digits{};
    std::string_view rest;
};

/// Three numbers with one of "/", "-", "." between them (blanks may follow a separator).
std::optional<Scanned_Date> Scan_Date(std::string_view text) {
    Scanned_Date scanned;
    char separator = '\0';
    for (std::size_t part = 0; part < 3; ++part) {
        std::size_t length = 0;
        while (length < text.size() && length < 5 && text[length] >= '0' && text[length] <= '9') {
            ++length;
        }
        if (length == 0 || length > 4)
            return std::nullopt;
        std::from_chars(text.data(), text.data() + length, scanned.values.at(part));
        scanned.digits.at(part) = length;
        text.remove_prefix(length);
        if (part == 2)
            break;
        if (text.empty() || (text[0] != '/' && text[0] != '-' && text[0] != '.'))
            return std::nullopt;
        if (part == 0)
            separator = text[0];
        if (text[0] != separator)
            return std::nullopt;
        text.remove_prefix(1);
        while (!text.empty() && text[0] == ' ')
            text.remove_prefix(1);
    }
    // Some countries end the date itself with a point.
    if (separator == '.' && !text.empty() && text[0] == '.')
        text.remove_prefix(1);
    scanned.rest = text;
    return scanned;
}

/// Positions of year, month and day among the three parts of a pattern.
struct Part_Order {
    std::size_t year = 2;
    std::size_t month = 0;
    std::size_t day = 1;
};

Part_Order Order_Of(std::string_view pattern) {
    Part_Order order;
    std::size_t part = 0;
    char last = '\0';
    for (const char c : pattern) {
        if ((c == 'y' || c == 'M' || c == 'd') && c != last) {
            if (c == 'y')
                order.year = part;
            if (c == 'M')
                order.month = part;
            if (c == 'd')
                order.day = part;
            ++part;
        }
        last = c;
    }
    return order;
}

std::optional<Date> Date_Of(const Scanned_Date& scanned, const Part_Order& order) {
    Date date{scanned.values.at(order.year), scanned.values.at(order.month),
              scanned.values.at(order.day)};
    if (scanned.digits.at(order.month) > 2 || scanned.digits.at(order.day) > 2)
        return std::nullopt;
    const auto year_digits = scanned.digits.at(order.year);
    if (year_digits != 2 && year_digits != 4)
        return std::nullopt;
    if (year_digits == 2)
        date.year += date.year < 30 ? 2000 : 1900;
    if (!Is_Valid(date))
        return std::nullopt;
    return date;
}

bool Take_Two_Digits(std::string_view& text, int& value) {
    std::size_t length = 0;
    while (length < text.size() && length < 2 && text[length] >= '0' && text[length] <= '9')
        ++length;
    if (length == 0)
        return false;
    std::from_chars(text.data(), text.data() + length, value);
    text.remove_prefix(length);
    return true;
}

/// "h:mm", "hh:mm:ss", either with "AM" or "PM"; nothing is midnight.
std::optional<Time_Of_Day> Parse_Time(std::string_view text) {
    text = Trimmed_View(text);
    Time_Of_Day time;
    if (text.empty())
        return time;
    if (!Take_Two_Digits(text, time.hour) || text.empty() || text[0] != ':')
        return std::nullopt;
    text.remove_prefix(1);
    if (!Take_Two_Digits(text, time.minute))
        return std::nullopt;
    if (!text.empty() && text[0] == ':') {
        text.remove_prefix(1);
        if (!Take_Two_Digits(text, time.second))
            return std::nullopt;
    }
    text = Trimmed_View(text);
    if (!text.empty()) {
        const bool afternoon = Equal_No_Case(text, "PM");
        if ((!afternoon && !Equal_No_Case(text, "AM")) || time.hour < 1 || time.hour > 12) {
            return std::nullopt;
        }
        time.hour = time.hour % 12 + (afternoon ? 12 : 0);
    }
    if (time.hour > 23 || time.minute > 59 || time.second > 59)
        return std::nullopt;
    return time;
}

}  // namespace

bool Is_Leap_Year(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int Days_In_Month(int year, int month) {
    constexpr std::array<int, 12> days{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && Is_Leap_Year(year) ? 29 : days.at(static_cast<std::size_t>(month - 1));
}

bool Is_Valid(Date date) {
    return date.year >= 1 && date.year <= 9999 && date.month >= 1 && date.month <= 12 &&
           date.day >= 1 && date.day <= Days_In_Month(date.year, date.month);
}

std::int64_t Day_Number(Date date) {
    // Days of a calendar whose year begins in March, so that the leap day is the last of its year.
    const std::int64_t year = date.month <= 2 ? date.year - 1 : date.year;
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const std::int64_t year_of_era = year - era * 400;
    const std::int64_t month = (date.month + 9) % 12;
    const std::int64_t day_of_year = (153 * month + 2) / 5 + date.day - 1;
    const std::int64_t day_of_era =
        year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
    return era * 146097 + day_of_era - 719468;
}

Date Date_Of_Day_Number(std::int64_t days) {
    days += 719468;
    const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const std::int64_t day_of_era = days - era * 146097;
    const std::int64_t year_of_era =
        (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
    const std::int64_t day_of_year =
        day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
    const std::int64_t month = (5 * day_of_year + 2) / 153;
    Date date;
    date.day = static_cast<int>(day_of_year - (153 * month + 2) / 5 + 1);
    date.month = static_cast<int>(month < 10 ? month + 3 : month - 9);
    date.year = static_cast<int>(year_of_era + era * 400 + (date.month <= 2 ? 1 : 0));
    return date;
}

int Weekday(Date date) {
    const std::int64_t thursday_based = (Day_Number(date) + 4) % 7;
    return static_cast<int>(thursday_based < 0 ? thursday_based + 7 : thursday_based);
}

std::int64_t Seconds_Of(Date_Time moment) {
    const Time_Of_Day& time = moment.time;
    return Day_Number(moment.date) * seconds_per_day + time.hour * 3600 + time.minute * 60 +
           time.second;
}

Date_Time Date_Time_Of_Seconds(std::int64_t seconds) {
    std::int64_t days = seconds / seconds_per_day;
    if (seconds % seconds_per_day < 0)
        --days;
    const int rest = static_cast<int>(seconds - days * seconds_per_day);
    return {Date_Of_Day_Number(days), {rest / 3600, rest / 60 % 60, rest % 60}};
}

std::string Format_Date(Date date, std::string_view pattern) {
    std::string result;
    for (std::size_t i = 0; i < pattern.size();) {
        std::size_t run = 1;
        while (i + run < pattern.size() && pattern[i + run] == pattern[i])
            ++run;
        switch (pattern[i]) {
            case 'd':
                result += fmt::format("{:0{}}", date.day, run >= 2 ? 2 : 1);
                break;
            case 'M':
                result += fmt::format("{:0{}}", date.month, run >= 2 ? 2 : 1);
                break;
            case 'y':
                result += fmt::format("{:04}", date.year);
                break;
            default:
                result += pattern.substr(i, run);
        }
        i += run;
    }
    return result;
}

std::string Format_Iso_Date(Date date) {
    return Format_Date(date, "yyyy-MM-dd");
}

std::string Format_File_Stamp(const Date_Time& moment) {
    return fmt::format("{}-{:02}{:02}-{:02}", Format_Iso_Date(moment.date), moment.time.hour,
                       moment.time.minute, moment.time.second);
}

std::string Format_Hhmm(Time_Of_Day time) {
    return fmt::format("{:02}{:02}", time.hour, time.minute);
}

std::optional<Date_Time> Parse_Date_Time(std::string_view text, std::string_view pattern) {
    const auto scanned = Scan_Date(Trimmed_View(text));
    if (!scanned)
        return std::nullopt;
    std::optional<Date> date = Date_Of(*scanned, Order_Of(pattern));
    if (!date && scanned->digits[0] == 4)
        date = Date_Of(*scanned, Order_Of("yyyy-MM-dd"));
    if (!date)
        return std::nullopt;
    std::string_view rest = scanned->rest;
    if (!rest.empty() && rest[0] != ' ' && rest[0] != 'T')
        return std::nullopt;
    if (!rest.empty())
        rest.remove_prefix(1);
    const auto time = Parse_Time(rest);
    if (!time)
        return std::nullopt;
    return Date_Time{*date, *time};
}

}  // namespace norvane
