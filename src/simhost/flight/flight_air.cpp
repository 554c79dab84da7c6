#include "simhost/flight/flight_air.h"

#include <cmath>
#include <numbers>

namespace norvane {

namespace {

constexpr double radians = std::numbers::pi / 180;
constexpr double freezing_k = 273.15;
constexpr double sea_level_k = 288.15;
constexpr double sea_level_sound_kt = 661.4786;
constexpr double tropopause_ft = 36089.24;
constexpr double tropopause_k = 216.65;

}  // namespace

Air::Air(double altitude_ft) {
    const double below = std::fmin(altitude_ft, tropopause_ft);
    const double kelvin = sea_level_k - (sea_level_k - tropopause_k) * below / tropopause_ft;
    pressure_ratio = std::pow(kelvin / sea_level_k, 5.25588);
    if (altitude_ft > tropopause_ft)
        pressure_ratio *= std::exp(-(altitude_ft - tropopause_ft) / 20806.0);
    temperature_c = kelvin - freezing_k;
    density_ratio = pressure_ratio * sea_level_k / kelvin;
    sound_kt = sea_level_sound_kt * std::sqrt(kelvin / sea_level_k);
}

double True_From_Indicated(double indicated_kt, const Air& air) {
    const double ratio = indicated_kt / sea_level_sound_kt;
    const double impact = std::pow(1 + 0.2 * ratio * ratio, 3.5) - 1;
    const double mach_squared = 5 * (std::pow(impact / air.pressure_ratio + 1, 2.0 / 7) - 1);
    return air.sound_kt * std::sqrt(mach_squared);
}

double Indicated_From_True(double true_kt, const Air& air) {
    const double mach = true_kt / air.sound_kt;
    const double impact = (std::pow(1 + 0.2 * mach * mach, 3.5) - 1) * air.pressure_ratio;
    return sea_level_sound_kt * std::sqrt(5 * (std::pow(impact + 1, 2.0 / 7) - 1));
}

Wind Wind_Between(const Wind& a, const Wind& b, double share) {
    const auto mixed = [&](double part_a, double part_b) {
        return part_a * a.speed_kt * (1 - share) + part_b * b.speed_kt * share;
    };
    const double north =
        mixed(std::cos(a.direction_deg * radians), std::cos(b.direction_deg * radians));
    const double east =
        mixed(std::sin(a.direction_deg * radians), std::sin(b.direction_deg * radians));
    const double direction = std::atan2(east, north) / radians;
    return {direction < 0 ? direction + 360 : direction, std::hypot(north, east)};
}

double Headwind_Kt(const Wind& wind, double course_deg) {
    return wind.speed_kt * std::cos((wind.direction_deg - course_deg) * radians);
}

double Crosswind_Kt(const Wind& wind, double course_deg) {
    return wind.speed_kt * std::sin((wind.direction_deg - course_deg) * radians);
}

}  // namespace norvane
