#include "common/system_clock.h"

#include <ctime>
#include <thread>

namespace norvane {

namespace {

Date_Time To_Date_Time(const std::tm& local) {
    return {{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday},
            {local.tm_hour, local.tm_min, local.tm_sec}};
}

std::tm Local_Time(std::time_t moment) {
    std::tm local{};
    ::localtime_r(&moment, &local);
    return local;
}

/// The rule of a change at `moment`, in the local time that held just before it.
Zone_Rule Change_At(std::time_t moment) {
    const Date_Time before = To_Date_Time(Local_Time(moment - 1));
    const Date_Time local = Date_Time_Of_Seconds(Seconds_Of(before) + 1);
    return {local.date.year, local.date.month, 0, 0, local.date.day, local.time};
}

/// First second after `low` at which daylight time differs from what it was at `low`.
std::time_t First_Change(std::time_t low, std::time_t high) {
    const bool daylight = Local_Time(low).tm_isdst > 0;
    while (high - low > 1) {
        const std::time_t middle = low + (high - low) / 2;
        ((Local_Time(middle).tm_isdst > 0) == daylight ? low : high) = middle;
    }
    return high;
}

}  // namespace

Date_Time System_Clock::Local_Now() {
    return To_Date_Time(Local_Time(std::time(nullptr)));
}

std::optional<Date_Time> System_Clock::Utc_Now() {
    return Date_Time_Of_Seconds(std::time(nullptr));
}

std::chrono::microseconds System_Clock::Monotonic() {
    return std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

void System_Clock::Sleep(std::chrono::microseconds duration) {
    std::this_thread::sleep_for(duration);
}

Time_Zone System_Clock::Zone() {
    ::tzset();
    const std::tm now = Local_Time(std::time(nullptr));
    std::tm year_start{};
    year_start.tm_year = now.tm_year;
    year_start.tm_mday = 1;
    year_start.tm_isdst = -1;
    const std::time_t first = std::mktime(&year_start);
    constexpr std::time_t day = 86400;
    Time_Zone zone;
    const bool daylight_now = now.tm_isdst > 0;
    int standard_offset = static_cast<int>(now.tm_gmtoff / 60);
    int daylight_offset = standard_offset;
    bool standard_seen = !daylight_now;
    for (int i = 0; i < 366; ++i) {
        const std::time_t today = first + i * day;
        const std::tm local = Local_Time(today);
        const bool daylight = local.tm_isdst > 0;
        (daylight ? daylight_offset : standard_offset) = static_cast<int>(local.tm_gmtoff / 60);
        standard_seen = standard_seen || !daylight;
        if (daylight == (Local_Time(today + day).tm_isdst > 0))
            continue;
        const Zone_Rule change = Change_At(First_Change(today, today + day));
        (daylight ? zone.standard_start : zone.daylight_start) = change;
    }
    zone.standard_bias = -standard_offset;
    const bool changes = zone.daylight_start.month != 0 && zone.standard_start.month != 0;
    zone.daylight_bias = changes && standard_seen ? standard_offset - daylight_offset : 0;
    return zone;
}

}  // namespace norvane
