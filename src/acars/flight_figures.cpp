#include "acars/flight_figures.h"

#include "acars/acars_events.h"
#include "common/number.h"

namespace norvane {

namespace {

constexpr int minutes_per_hour = 60;
constexpr int minutes_per_day = 1440;

/// Minutes since midnight; hours are the first two characters, minutes the last two.
std::optional<int> Minutes_Of(std::string_view hhmm) {
    if (hhmm.size() != 4)
        return std::nullopt;
    const auto hours = Parse_Int32(hhmm.substr(0, 2));
    const auto minutes = Parse_Int32(hhmm.substr(2));
    if (!hours || !minutes)
        return std::nullopt;
    return *hours * minutes_per_hour + *minutes;
}

}  // namespace

double Figure_Of(std::string_view text) {
    return Parse_Number(text).value_or(0);
}

std::string Kilograms(double pounds) {
    return Format_Whole(pounds * kilograms_per_pound);
}

std::string Weight_In_Unit(double pounds, int unit) {
    return unit == unit::kilograms ? Kilograms(pounds) : Format_Whole(pounds);
}

std::optional<int> Minutes_Between(std::string_view from, std::string_view to) {
    const auto begin = Minutes_Of(from);
    const auto end = Minutes_Of(to);
    if (!begin || !end)
        return std::nullopt;
    const int minutes = *end - *begin;
    return minutes < 0 ? minutes + minutes_per_day : minutes;
}

std::string Decimal_Hours(int minutes) {
    int hours = minutes / minutes_per_hour;
    std::string fraction =
        Format_Fixed(static_cast<double>(minutes % minutes_per_hour) / minutes_per_hour, 1);
    if (fraction == "1.0")
        ++hours;
    return Format_Whole(hours) + fraction.substr(1);
}

std::string Hours_And_Minutes(int minutes) {
    const int hours = minutes / minutes_per_hour;
    return Format_Whole(hours) + ":" + Format_Whole(minutes % minutes_per_hour, 2);
}

}  // namespace norvane
