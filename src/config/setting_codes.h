#pragma once
// What the coded settings mean. The store and `clsAppSettings` keep the codes, which stand in order
// here; a decision reads `End_Of_Flight{settings.ACARS_EOF()}`.

#include <array>
#include <cstdint>
#include <string_view>

namespace norvane {

/// `ACARS_EOF`.
enum class End_Of_Flight : std::int32_t { parking_brake, engine_shutdown, both };
/// `ACARS_UseTime` and `ACARS_Date`.
enum class Clock_Source : std::int32_t { simulator, computer };
/// `VATSIM_FP`: where route and airports come from.
enum class Plan_Source : std::int32_t { file, network };
/// `ACARS_RecordArrival`.
enum class Recorded_At : std::int32_t { in, on };
/// `ACARS_TouchAndGo`: which landing ends the flight time.
enum class Counted_Landing : std::int32_t { last, first };

/// What `WX_URL` names: the simulator, nothing, or a section of "bin\url.cfg", whose answers the
/// known ones need cut each in its own way.
enum class Weather_Source { simulator, none, noaa, vatsim, adds, other };

struct Weather_Source_Name {
    std::string_view name;
    Weather_Source source;
};
inline constexpr std::array<Weather_Source_Name, 5> weather_source_names{{
    {"FS", Weather_Source::simulator},
    {"NONE", Weather_Source::none},
    {"NOAA", Weather_Source::noaa},
    {"VATSIM", Weather_Source::vatsim},
    {"ADDS", Weather_Source::adds},
}};

[[nodiscard]] constexpr Weather_Source Weather_Source_Of(std::string_view name) {
    for (const Weather_Source_Name& known : weather_source_names) {
        if (known.name == name)
            return known.source;
    }
    return Weather_Source::other;
}

/// The name of one of the sources known by it; empty for `other`.
[[nodiscard]] constexpr std::string_view Name_Of(Weather_Source source) {
    for (const Weather_Source_Name& known : weather_source_names) {
        if (known.source == source)
            return known.name;
    }
    return {};
}

}  // namespace norvane
