#include "acars/cls_utc.h"

#include "common/services.h"

namespace norvane {

namespace {

constexpr int last_week = 5;
constexpr int minutes_per_day = 1440;

/// The day of the month on which the rule's weekday comes for the n-th time, or for the last time.
int Day_Of(const Zone_Rule& rule, int year) {
    const int days = Days_In_Month(year, rule.month);
    const bool from_end = rule.week == last_week;
    int day = from_end ? days : 1;
    int seen = 0;
    const int wanted = from_end ? 1 : rule.week;
    while (true) {
        if (Weekday({year, rule.month, day}) == rule.weekday)
            ++seen;
        const int next = from_end ? day - 1 : day + 1;
        if (seen >= wanted || next < 1 || next > days)
            return day;
        day = next;
    }
}

/// When the rule takes effect: its own year, or the given one.
Date_Time Moment_Of(const Zone_Rule& rule, int year) {
    if (rule.year != 0)
        return {{rule.year, rule.month, rule.day}, rule.time};
    return {{year, rule.month, Day_Of(rule, year)}, rule.time};
}

/// True from this year's daylight start to this year's standard start. A southern zone, whose
/// daylight time spans the new year, is never within.
bool In_Daylight_Time(const Time_Zone& zone, const Date_Time& now) {
    if (zone.daylight_bias == 0 || zone.daylight_start.month == 0 || zone.standard_start.month == 0)
        return false;
    const int year = now.date.year;
    return now >= Moment_Of(zone.daylight_start, year) &&
           now <= Moment_Of(zone.standard_start, year);
}

}  // namespace

clsUTC::clsUTC(Clock& clock) : m_clock(clock) {
    const Time_Zone zone = clock.Zone();
    m_bias = zone.standard_bias;
    if (In_Daylight_Time(zone, clock.Local_Now()))
        m_bias += zone.daylight_bias;
}

std::string clsUTC::GetUTC() const {
    if (const auto now = m_clock.Utc_Now())
        return Format_Hhmm(now->time);
    const Time_Of_Day local = m_clock.Local_Now().time;
    int minutes = (local.hour * 60 + local.minute + m_bias) % minutes_per_day;
    if (minutes < 0)
        minutes += minutes_per_day;
    return Format_Hhmm({minutes / 60, minutes % 60, 0});
}

std::string clsUTC::GetUTCZ() const {
    return GetUTC() + "Z";
}

}  // namespace norvane
