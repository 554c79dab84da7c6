#pragma once
// Calendar dates and times of day, and their texts. Dates are of the Gregorian calendar, years 1 to
// 9999; times have no zone (the name of the value says which clock it came from).

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace norvane {

struct Date {
    int year = 0;
    int month = 1;  // 1..12
    int day = 1;    // 1..31
    auto operator<=>(const Date&) const = default;
};

struct Time_Of_Day {
    int hour = 0;
    int minute = 0;
    int second = 0;
    auto operator<=>(const Time_Of_Day&) const = default;
};

struct Date_Time {
    Date date;
    Time_Of_Day time;
    auto operator<=>(const Date_Time&) const = default;
};

[[nodiscard]] bool Is_Leap_Year(int year);
[[nodiscard]] int Days_In_Month(int year, int month);
[[nodiscard]] bool Is_Valid(Date date);
/// Days since 1 January 1970 (negative before it), and back.
[[nodiscard]] std::int64_t Day_Number(Date date);
[[nodiscard]] Date Date_Of_Day_Number(std::int64_t days);
/// 0 Sunday .. 6 Saturday.
[[nodiscard]] int Weekday(Date date);
/// Seconds since 1 January 1970 00:00:00 of the same zone, and back.
[[nodiscard]] std::int64_t Seconds_Of(Date_Time moment);
[[nodiscard]] Date_Time Date_Time_Of_Seconds(std::int64_t seconds);

/// The date by a short date pattern ("d", "dd", "M", "MM", "yyyy"; other characters as they are).
[[nodiscard]] std::string Format_Date(Date date, std::string_view pattern);
/// "2008-04-23".
[[nodiscard]] std::string Format_Iso_Date(Date date);
/// "2008-04-23-1530-07", as in PIREP file names.
[[nodiscard]] std::string Format_File_Stamp(const Date_Time& moment);
/// "hhmm".
[[nodiscard]] std::string Format_Hhmm(Time_Of_Day time);

/// A text is a date when it matches the short date pattern (four-digit year, or two digits meaning
/// 1930 to 2029, with "/", "-" or "." between the parts) or ISO, with a time behind it or not.
[[nodiscard]] std::optional<Date_Time> Parse_Date_Time(std::string_view text,
                                                       std::string_view pattern);

}  // namespace norvane
