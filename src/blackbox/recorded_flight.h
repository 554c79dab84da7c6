#pragma once
// The moments of a recording as samples: every variable that the black box derives anything from,
// decoded without rounding. A sample knows too how it follows the one before it, once
// `Mark_Segments` (segments.h) has found out.

#include <array>
#include <cstddef>
#include <vector>

#include "blackbox/flight_summary.h"
#include "simlink/catalogue.h"
#include "simlink/recording.h"

namespace norvane {

/// What lies between a sample and the one before it.
enum class Break {
    none,
    /// Flown, but not recorded.
    unseen,
    /// The simulator stood still.
    stopped,
    /// Not flown: set to another place, or what followed a replay.
    jump,
};

struct Flight_Sample {
    /// Its phase and its segment are found later.
    Flight_Point point;
    double pitch_deg = 0;
    double bank_deg = 0;
    double g_load = 0;
    double flaps_percent = 0;
    double wind_speed_kt = 0;
    double wind_direction_deg = 0;
    double weight_lbs = 0;
    double fuel_gal = 0;
    double fuel_lb_per_gal = 0;
    /// Of the simulator's day, UTC.
    int utc_minutes = 0;
    /// 1 where none is told.
    double simulation_rate = 1;
    bool parking_brake = false;
    std::array<bool, most_engines> engine_runs{};
    int engine_count = 0;
    bool paused = false;
    bool replaying = false;
    bool slewing = false;
    /// Not a sampling step of the engine, but one of the many near the ground.
    bool is_fast = false;
    /// The aircraft has moved since the sample before: the simulator is not always as fast as it
    /// is asked.
    bool is_new = true;
    Break break_before = Break::none;
};

/// Which variables a simulator tells: one that is 0 in all of a recording, it does not.
struct Served_Variables {
    bool vertical_speed = false;
    bool exact_altitude = false;
    bool pitch = false;
    bool bank = false;
    bool g_load = false;
    bool flaps = false;
    bool wind = false;
    bool ground_speed = false;
    bool indicated_airspeed = false;
    bool weight = false;
};

struct Recorded_Flight {
    /// As the moments, one for each; those that tell no more than why the recording ended, or of
    /// the log, give none.
    std::vector<Flight_Sample> samples;
    Served_Variables served;
};

[[nodiscard]] Recorded_Flight Decode_Moments(const std::vector<Recorded_Moment>& moments);

/// The first sample that is not before this moment; null behind the last one.
[[nodiscard]] const Flight_Sample* Sample_At(const std::vector<Flight_Sample>& samples,
                                             double seconds);

/// Feet above the ground, as the simulator tells both; the aircraft's own height included.
[[nodiscard]] inline double Height_Ft(const Flight_Point& point) {
    return point.altitude_ft - point.ground_elevation_ft;
}

inline constexpr double feet_per_nm = 1852 * feet_per_metre;
inline constexpr double metres_per_nm = 1852;

}  // namespace norvane
