#pragma once
// Everything the ACARS engine knows about the flight it follows: the phase, what was captured at
// the four block events (OUT brake released, OFF airborne, ON on the runway, IN at the gate), the
// aircraft, the airports and the tracking that goes on in between. A plain value, so that a
// sampling step that failed is undone by putting the copy from before it back.

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "acars/acars_events.h"
#include "acars/evidence.h"
#include "common/great_circle.h"

namespace norvane {

/// In the order of a flight; stored as its number.
enum class Flight_Phase : std::int32_t { before_out = 0, out = 1, off = 2, on = 3, in = 4 };

enum class Block_Event { out, off, on, in };
inline constexpr std::size_t block_event_count = 4;

/// What was captured at one block event. Times are "hhmm", figures whole numbers.
struct Block_Figures {
    /// Set with the capture; what follows is final then.
    bool captured = false;
    std::string time_utc;
    std::string time_local;  // empty when times are shown in UTC
    std::string fuel_gal;    // always
    std::string fuel_lbs;    // unless fuel is shown in gallons
    std::string fuel_kg;     // when fuel is shown in kilograms
    std::string weight;      // in the unit of the settings
};

/// An airport that was looked up, and where the aircraft stood then. The code is empty when no
/// airport was near.
struct Airport_Fix {
    bool known = false;
    std::string icao;
    std::string name;
    Position position;
};

/// The aircraft's position and surroundings as last sampled. A position-only sample leaves the
/// figures from `altitude_ft` on empty.
struct Position_Sample {
    Position position;
    double ground_elevation_ft = 0;
    std::int32_t altitude_ft = 0;
    std::string fuel_lbs;
    std::string wind_direction;     // three digits
    std::string wind_speed = "00";  // two digits, knots
    std::int32_t ground_speed_kt = 0;
    std::int32_t true_airspeed_kt = 0;
    std::int32_t indicated_airspeed_kt = 0;
    std::int32_t temperature_c = 0;
    std::string heading;  // magnetic, three digits
    std::string engines;
};

/// Levelling off and leaving a level, tracked in the air.
struct Level_Tracking {
    std::string vertical_speed;  // feet per minute, grouped digits; empty until sampled
    bool level = false;
    std::int32_t level_altitude_ft = 0;
    std::int32_t highest_level_ft = 0;
};

/// Highest taxi speeds, tracked for jets.
struct Taxi_Tracking {
    std::int32_t fastest_out_kt = 0;
    std::int32_t fastest_in_kt = 0;
    /// Set once the aircraft has slowed to taxi speed after landing.
    bool in_armed = false;
};

/// The landing that may turn out to be a touch-and-go.
struct Touchdown {
    std::int32_t altitude_ft = 0;
    /// Sampling steps in a row since then in which the aircraft was off the ground.
    std::int32_t steps_off_ground = 0;
};

/// Message numbers: one count over all types, one for each.
struct Message_Counts {
    int messages = 0;
    std::array<int, message_type_count> blocks{};
};

struct Flight_State {
    // Given by the panel.
    std::string flight_number;
    std::string aircraft_type;

    // The simulator, the aircraft and its identity.
    std::string simulator_name;
    std::string fsuipc_version;
    std::string simulator_directory;
    std::filesystem::path configuration_file;
    std::string flight_date;  // at `Start`, short date pattern
    std::string atc_tail;
    std::string type_name;
    std::string atc_airline;
    std::string atc_flight_number;  // with the airline's code in front when the settings ask for it
    std::string zero_fuel_weight;
    std::int32_t engine_type = 0;
    std::int32_t engine_count = 0;
    double max_rpm = 0;
    std::int32_t display_mode = 0;

    // The flight.
    Flight_Phase phase = Flight_Phase::before_out;
    std::array<Block_Figures, block_event_count> block;
    /// By block event; empty while it was not recorded.
    std::array<Block_Evidence, block_event_count> evidence;
    /// Sampling steps since tracking began or was taken up again.
    std::int32_t steps = 0;
    Decisive_Values decisive;
    std::string block_time;  // decimal hours
    std::string block_time_hhmm;
    std::string flight_time;
    std::string flight_time_hhmm;
    std::string fuel_used_block;
    std::string fuel_used_flight;
    Airport_Fix departure;
    Airport_Fix arrival;
    std::int32_t start_altitude_ft = 0;
    /// Where the aircraft was at the last step between OFF and IN.
    Position last_position;
    /// Taken up again after its landing: nothing goes on until the aircraft is near
    /// `last_position`.
    bool awaits_place = false;
    bool elsewhere_told = false;
    bool no_airport_told = false;
    /// The aircraft has been more than 25 ft above the start altitude.
    bool climbed = false;
    /// Tracking began in the air: the take-off altitude lies below.
    bool began_airborne = false;
    Level_Tracking level;
    Taxi_Tracking taxi;
    Touchdown touchdown;
    std::string engines_at_off;
    bool position_report_requested = false;

    // Messages.
    Message_Counts counts;
    /// The airline was told "Flight Connected" since the program started, and not the end of it.
    bool is_connected = false;
    Position_Sample sample;
    /// The time ("hhmm", UTC) and date that messages carry, as last sampled.
    std::string message_time;
    std::string message_date;

    [[nodiscard]] Block_Figures& At(Block_Event event) {
        return block[static_cast<std::size_t>(event)];
    }
    [[nodiscard]] const Block_Figures& At(Block_Event event) const {
        return block[static_cast<std::size_t>(event)];
    }
};

}  // namespace norvane
