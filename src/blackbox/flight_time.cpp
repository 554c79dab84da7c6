#include "blackbox/flight_time.h"

#include <fmt/format.h>

#include <cmath>

#include "common/date_time.h"
#include "common/number.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr std::int64_t milliseconds = 1000;

/// Milliseconds since 1970 of 2026-11-23T14:05:12.345Z, with or without a fraction.
std::optional<std::int64_t> Milliseconds_Of(std::string_view utc) {
    if (!utc.ends_with('Z'))
        return std::nullopt;
    utc.remove_suffix(1);
    const std::string_view whole = Before(utc, ".");
    const auto moment = Parse_Date_Time(Replace_All(whole, "T", " "), "yyyy-MM-dd");
    const auto fraction = whole.size() == utc.size()
                              ? std::optional(0.0)
                              : Parse_Number("0" + std::string(utc.substr(whole.size())));
    if (!moment || !fraction)
        return std::nullopt;
    return Seconds_Of(*moment) * milliseconds + std::llround(*fraction * milliseconds);
}

}  // namespace

std::optional<std::string> Utc_At(const Flight_Summary& flight, double seconds) {
    const auto began = Milliseconds_Of(flight.began_utc);
    if (!began)
        return std::nullopt;
    const std::int64_t at = *began + std::llround(seconds * milliseconds);
    const Date_Time moment = Date_Time_Of_Seconds(at / milliseconds);
    return fmt::format("{}T{:02}:{:02}:{:02}.{:03}Z", Format_Iso_Date(moment.date),
                       moment.time.hour, moment.time.minute, moment.time.second, at % milliseconds);
}

std::string Clock_At(const Flight_Summary& flight, double seconds) {
    constexpr std::size_t time_place = 11;
    constexpr std::size_t time_length = 8;
    const auto utc = Utc_At(flight, seconds);
    return utc ? utc->substr(time_place, time_length) + "Z"
               : Duration_Text(seconds) + " after the beginning";
}

std::string Duration_Text(double seconds) {
    constexpr std::int64_t minute = 60;
    const auto whole = static_cast<std::int64_t>(std::max(seconds, 0.0));
    return fmt::format("{}:{:02}:{:02}", whole / (minute * minute), whole / minute % minute,
                       whole % minute);
}

}  // namespace norvane
