#pragma once
// The units that the pilot has figures shown in, by their codes in the settings, as texts to stand
// behind a figure.

#include <array>
#include <span>
#include <string_view>

namespace norvane {

/// By the code of `clsAppSettings::ACARS_Fuel`.
inline constexpr std::array<std::string_view, 3> fuel_units{" lbs", " kg", " gal"};
/// By the code of `clsAppSettings::ACARS_Weight`.
inline constexpr std::array<std::string_view, 2> weight_units{" lbs", " kg"};

/// Empty for a code that is no unit.
[[nodiscard]] constexpr std::string_view Unit_Of(std::span<const std::string_view> units,
                                                 int code) {
    if (code < 0 || code >= static_cast<int>(units.size()))
        return {};
    return units[static_cast<std::size_t>(code)];
}

}  // namespace norvane
