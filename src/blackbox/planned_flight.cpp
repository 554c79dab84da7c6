#include "blackbox/planned_flight.h"

#include <algorithm>

#include "common/text.h"

namespace norvane {

namespace {

constexpr std::array<std::string_view, planned_count> names{
    "time_out",     "time_off",    "time_on",        "time_in",        "fuel_out_lbs",
    "fuel_off_lbs", "fuel_on_lbs", "block_fuel_lbs", "flight_fuel_lbs"};
constexpr std::size_t time_digits = 4;
constexpr std::size_t most_fuel_digits = 7;

bool Is_Value(std::size_t place, std::string_view value) {
    const bool is_time = !Is_Fuel(static_cast<Planned>(place));
    if (is_time && !(value.size() == time_digits + 1 && value.ends_with('Z')))
        return false;
    const std::string_view digits = is_time ? value.substr(0, time_digits) : value;
    return !digits.empty() && digits.size() <= most_fuel_digits &&
           std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

std::string_view Name_Of(Planned figure) {
    return names.at(static_cast<std::size_t>(figure));
}

std::string Planned_Text(const Planned_Flight& planned) {
    std::string text;
    for (std::size_t i = 0; i < planned.size(); ++i) {
        if (!planned.at(i).empty())
            text.append(text.empty() ? "" : " ").append(names.at(i)).append("=" + planned.at(i));
    }
    return text;
}

Planned_Flight Parse_Planned(std::string_view text) {
    Planned_Flight planned;
    for (const std::string& part : Split(text, ' ')) {
        const std::string_view name = Before(part, "=");
        const auto found = std::find(names.begin(), names.end(), name);
        if (found == names.end() || name.size() == part.size())
            continue;
        const auto place = static_cast<std::size_t>(found - names.begin());
        const std::string value = part.substr(name.size() + 1);
        if (Is_Value(place, value))
            planned.at(place) = value;
    }
    return planned;
}

}  // namespace norvane
