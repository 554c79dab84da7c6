#pragma once
// The air a stand-in's aircraft flies through: the standard atmosphere, airspeeds in it, and the
// wind. Pure functions.

namespace norvane {

/// The standard atmosphere at an altitude in feet, up to 65,000.
struct Air {
    explicit Air(double altitude_ft);

    double temperature_c = 15;
    double pressure_ratio = 1;  // of that at sea level
    double density_ratio = 1;   // of that at sea level
    double sound_kt = 661.5;
};

/// Knots, both ways; compressibility included, instruments without error.
[[nodiscard]] double True_From_Indicated(double indicated_kt, const Air& air);
[[nodiscard]] double Indicated_From_True(double true_kt, const Air& air);

/// A wind as it is reported: degrees true it comes from, and knots.
struct Wind {
    double direction_deg = 0;
    double speed_kt = 0;
};

/// The wind between two, by the parts blowing north and east; `share` 0 gives `a`, 1 `b`.
[[nodiscard]] Wind Wind_Between(const Wind& a, const Wind& b, double share);
/// Knots against an aircraft moving along `course_deg`; negative from behind.
[[nodiscard]] double Headwind_Kt(const Wind& wind, double course_deg);
/// Knots from the right of that course; negative from the left.
[[nodiscard]] double Crosswind_Kt(const Wind& wind, double course_deg);

}  // namespace norvane
