#pragma once
// What is known of a recorded flight beyond its row in the log: where it went, how it landed, why
// each of its times is what it is. Plain values, derived from the recording alone and made again
// from it at any time (derive.h); a figure that the recording does not give is empty, never 0.
// Seconds are the recording's.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "acars/evidence.h"
#include "acars/flight_state.h"
#include "common/great_circle.h"

namespace norvane {

/// A sample of the recording, decoded.
struct Flight_Point {
    double seconds = 0;
    Position position;
    double altitude_ft = 0;
    double ground_elevation_ft = 0;
    double vertical_speed_fpm = 0;
    double ground_speed_kt = 0;
    double indicated_airspeed_kt = 0;
    double true_heading_deg = 0;
    bool on_ground = false;
    Flight_Phase phase = Flight_Phase::before_out;
    /// A line must not be drawn from the point before to this one: a pause, a gap, a jump.
    bool begins_segment = false;
};

enum class Incident_Kind { pause, gap, taken_up, rate_change, teleport, replay };
struct Flight_Incident {
    Incident_Kind kind = Incident_Kind::gap;
    double seconds = 0;
    /// Of a pause, a gap and a replay.
    double lasted_seconds = 0;
    /// Of a change of rate the new rate, of a teleport nautical miles.
    double value = 0;
};

/// One contact with the ground. A bounce belongs to the landing before it.
struct Touch {
    double seconds = 0;
    Position position;
    /// Feet per minute, down negative; how many samples it was fitted to, and their rate in Hz.
    std::optional<double> rate_fpm;
    int samples = 0;
    double sample_rate_hz = 0;
    /// The highest of a mean of three samples within 2 s after contact.
    std::optional<double> peak_g;
    std::optional<double> pitch_deg;
    std::optional<double> bank_deg;
    /// Heading less track, right positive.
    std::optional<double> crab_deg;
    std::optional<double> indicated_airspeed_kt;
    std::optional<double> ground_speed_kt;
    /// Head wind positive; from the right positive.
    std::optional<double> headwind_kt;
    std::optional<double> crosswind_kt;
    std::optional<double> flaps_percent;
    std::optional<double> weight_lbs;
};

struct Landing_Record {
    /// At least one: the first contact, then its bounces.
    std::vector<Touch> touches;
    /// In the air again to fly on.
    bool is_touch_and_go = false;
    /// Feet along the ground from the first contact to 40 kt; empty when it never got there.
    std::optional<double> roll_out_ft;
    /// The worst rate of all touches; empty when none has one.
    [[nodiscard]] std::optional<double> Worst_Rate() const;
};

struct Phase_Sum {
    Flight_Phase phase = Flight_Phase::before_out;
    double seconds = 0;
    double fuel_gal = 0;
};

/// A block event with its evidence and what the recording says of the moment.
struct Recorded_Event {
    Block_Event event = Block_Event::out;
    double seconds = 0;
    Block_Evidence evidence;
    Position position;
    /// One sentence a line: "engines 1 and 2 running", "ground speed 0 kt" ...
    std::vector<std::string> near;
};

/// What was planned and what was flown: times as "1405Z", fuel in whole lbs; the latter is empty
/// where the flight did not come so far.
struct Planned_Figure {
    /// By `Name_Of` of a `Planned`.
    std::string name;
    std::string planned;
    std::string flown;
};

struct Flight_Summary {
    /// The recording's name without its endings, as 2026-11-23_1405Z_KJFK-KBOS_214.
    std::string id;
    // From the remarks at the recording's beginning; empty where it has none.
    std::string program_version;
    std::string began_utc;  // 2026-11-23T14:05:12.345Z
    std::string airline;
    std::string flight_number;
    std::string aircraft;
    std::string tail;
    std::string simulator;
    /// Name and value of the settings in force.
    std::vector<std::pair<std::string, std::string>> settings;
    /// The log's name and the row by which the flight was logged; empty: it was not.
    std::string log_name;
    std::string logged_row;
    /// Codes of the airports; empty where none was found.
    std::string origin;
    std::string destination;

    double length_seconds = 0;
    std::vector<Recorded_Event> events;
    std::vector<Landing_Record> landings;
    std::vector<Flight_Incident> incidents;
    std::vector<Phase_Sum> phases;
    /// What a plan told; empty when the flight was flown by none that is known.
    std::vector<Planned_Figure> planned;
    /// At most 2,000, no farther than 50 m and 50 ft from what was flown.
    std::vector<Flight_Point> track;
    double distance_flown_nm = 0;
    double great_circle_nm = 0;
    std::optional<double> top_of_climb_s;
    std::optional<double> top_of_descent_s;
    double highest_ft = 0;
    /// Of the flight in the air.
    double lowest_ft = 0;
    double fastest_ground_speed_kt = 0;
};

}  // namespace norvane
