#pragma once
// What a scenario file and an aircraft's file say, as read: the plan of a flight and the aircraft
// that flies it. data/scenarios/README.md describes the keys.

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "common/date_time.h"
#include "simhost/flight/flight_air.h"
#include "simhost/flight/flight_path.h"
#include "simhost/flight/flight_profile.h"

namespace norvane {

/// Values at no power and at full power.
struct Power_Range {
    double idle = 0;
    double full = 0;
};

/// One of an aircraft's engines; all are alike.
struct Engine_Data {
    int kind = 0;  // engine_kind
    int count = 1;
    double thrust_lbf = 0;  // of a jet, at rest at sea level
    double power_hp = 0;    // of the others, at sea level
    Power_Range fuel_flow_pph;
    Power_Range n1_percent;
    Power_Range n2_percent;
    Power_Range manifold_inhg;
    Power_Range propeller;  // share of the highest speed
};

struct Tank_Data {
    std::size_t tank = 0;  // place in All_Tanks
    int capacity_gal = 0;
};

struct Rate_At {
    double altitude_ft = 0;
    double rate_fpm = 0;
};

struct Speed_At {
    double to_go_nm = 0;
    double indicated_kt = 0;
};

/// How an aircraft is flown. A helicopter uses the taxi, climb, cruise and descent figures only.
struct Performance_Data {
    double taxi_kt = 15;
    double taxi_turn_kt = 8;
    double taxi_turn_radius_m = 20;
    double turn_radius_m = 2000;  // in the air
    double rotate_kt = 0;
    double take_off_kt_per_s = 3;
    double brake_kt_per_s = 3;  // on the runway after landing
    double climb_out_kt = 0;    // until 1500 ft above the runway
    double low_kt = 250;        // highest below 10000 ft
    double climb_kt = 0;
    double cruise_kt = 0;
    double descent_kt = 0;
    double highest_mach = 1;
    double kt_per_s = 1;         // change of airspeed in the air
    double fpm_per_s = 80;       // change of vertical speed
    std::vector<Rate_At> climb;  // by rising altitude
    double descent_ft_per_nm = 300;
    double rounding_nm = 0.5;        // of a corner of the descent
    std::vector<Speed_At> approach;  // by rising distance; the first is the speed over the runway
    double flare_ft = 40;
    double lift_to_drag = 15;
};

struct Aircraft_Data {
    std::string folder;
    std::string title;
    Engine_Data engine;
    /// In the order of filling; tanks of one group hold the same share and are used together.
    std::vector<std::vector<Tank_Data>> tanks;
    double fuel_lb_per_gal = 6.7;
    double largest_weight_lbs = 0;
    double gear_height_ft = 0;
    Performance_Data performance;
};

struct Cloud_Layer {
    double base_ft = 0;
    int eighths = 0;
};

struct Weather_Data {
    Wind wind;
    double visibility_sm = 10;
    std::array<Cloud_Layer, 2> clouds;
    int precipitation_type = 0;  // 0 none, 1 rain, 2 snow
    int precipitation_rate = 0;  // 0 to 5
    double temperature_c = 15;
    double dew_point_c = 5;
    double pressure_inhg = 29.92;
};

struct Runway_Data {
    Position threshold;
    double heading_deg = 0;
    double length_m = 0;
};

/// A place of a taxi route, and how long the aircraft stands there.
struct Taxi_Point {
    Position position;
    double hold_s = 0;
};

/// An approach that does not end the flight, and the way to the next one.
struct Circuit {
    bool touches = false;  // touch-and-go; otherwise the approach is broken off
    double from_ft = 0;    // height above the runway at which it is broken off
    double altitude_ft = 0;
    std::vector<Position> route;  // between the runway and the next final
};

/// One end of the flight. A helicopter has its pad for a stand, and neither taxiways nor runway.
struct Airport_Data {
    std::string icao;
    double elevation_ft = 0;
    int utc_offset_minutes = 0;
    double magnetic_variation_deg = 0;  // east positive
    Position stand;
    std::vector<Position> pushback;  // out of the stand, tail first
    std::vector<Taxi_Point> taxi;
    std::optional<Runway_Data> runway;
    double exit_m = 0;    // from the threshold to where the runway is left
    double final_nm = 0;  // straight in before the touchdown
    std::vector<Circuit> circuits;
    Weather_Data weather;
};

struct Step_Climb {
    double at_nm = 0;  // flown since take-off
    double altitude_ft = 0;
};

/// The aircraft is taken somewhere else on its route while it cruises.
struct Teleport {
    double at_nm = 0;  // flown since take-off
    double by_nm = 0;  // ahead; negative back
};

/// The simulator's time stands still.
struct Pause {
    double at_s = 0;  // of the flight
    double for_s = 0;
};

/// The simulator's time goes faster or slower.
struct Rated_Part {
    double from_s = 0;  // of the flight
    double until_s = 0;
    double rate = 1;
};

struct Scenario_Data {
    std::string tail;
    std::string airline;
    std::string flight_number;
    double zero_fuel_weight_lbs = 0;
    double fuel_lbs = 0;
    Date_Time start_utc;
    double parked_s = 30;
    double line_up_s = 15;  // on the runway; a helicopter stands on its pad with the rotor turning
    Airport_Data departure;
    Airport_Data arrival;
    std::vector<Position> route;  // between the runways
    double cruise_ft = 0;
    std::vector<Step_Climb> steps;
    std::vector<Level_Off> climb_level_offs;    // by rising altitude
    std::vector<Level_Off> descent_level_offs;  // by rising altitude
    double aloft_ft = 0;
    Wind aloft;
    double touchdown_fpm = 200;
    double bounce_s = 0;   // 0 for none
    double crab_kept = 0;  // share of the crab angle that is left at the touchdown
    std::vector<Teleport> teleports;
    std::vector<Pause> pauses;
    std::vector<Rated_Part> rated_parts;
    double engine_off_after_s = 10;
    Aircraft_Data aircraft;
};

}  // namespace norvane
