#pragma once
// A flight with a value in every figure, and a gap in its track.

#include "blackbox/flight_summary.h"

namespace norvane::test {

inline Flight_Summary Sample_Flight(std::string id = "2026-11-23_1405Z_KJFK-KBOS_214") {
    Flight_Summary flight;
    flight.id = std::move(id);
    flight.program_version = "0.1.0";
    flight.began_utc = "2026-11-23T14:05:12.345Z";
    flight.airline = "Zo\xEB & <Sons>";
    flight.flight_number = "214";
    flight.aircraft = "Boeing \"737\"";
    flight.tail = "N172NV";
    flight.simulator = "FSX";
    flight.settings = {{"ACARS_EOF", "0"}, {"ACARS_UseTime", "1"}};
    flight.log_name = "My Flight Log";
    flight.logged_row = "11/23/2026|B738";
    flight.origin = "KJFK";
    flight.destination = "KBOS";
    flight.length_seconds = 3723.5;
    Recorded_Event out{Block_Event::out, 14.5, {}, {40.64, -73.78}, {"engines 1 and 2 running"}};
    out.evidence = {Block_Rule::brake_released,
                    29,
                    {{"parking brake", "32767", "0"}, {"on ground", "1", "1"}},
                    {{"ACARS_UseTime", "", "0"}}};
    flight.events = {out, {Block_Event::off, 35, {}, {40.65, -73.79}, {}}};
    Touch first{
        402.7, {42.36, -71.01}, -187.25, 21, 50, 1.31, 4.5, -0.5, 2.25, 138, 131, 12.5, -3.5,
        {},    140000};
    Touch bounce = first;
    bounce.seconds = 404;
    bounce.rate_fpm.reset();
    flight.landings = {{{first}, true, {}}, {{first, bounce}, false, 3210.0}};
    flight.incidents = {{Incident_Kind::gap, 20, 7.5, 0},
                        {Incident_Kind::teleport, 30, 0, 12.5},
                        {Incident_Kind::taken_up, 40, 1, 0}};
    flight.phases = {{Flight_Phase::before_out, 14.5, 0.5}, {Flight_Phase::off, 360, 101}};
    flight.planned = {{"time_out", "1400Z", "1405Z"},
                      {"time_on", "1500Z", ""},
                      {"fuel_out_lbs", "9000", "9100"},
                      {"block_fuel_lbs", "3000", ""}};
    // Two points, a gap, one point alone, a gap, two points.
    for (int i = 0; i < 5; ++i) {
        Flight_Point point{
            10.0 * i, {40 + 0.1 * i, -73 - 0.1 * i}, 1000.0 * i, 12.5, -700, 140.5, 139.9, 271.25};
        point.on_ground = i == 0;
        point.phase = i == 0 ? Flight_Phase::out : Flight_Phase::off;
        point.begins_segment = i == 0 || i == 2 || i == 3;
        flight.track.push_back(point);
    }
    flight.distance_flown_nm = 172.25;
    flight.great_circle_nm = 161.75;
    flight.top_of_descent_s = 300;
    flight.highest_ft = 12345.5;
    flight.lowest_ft = 12;
    flight.fastest_ground_speed_kt = 455.5;
    return flight;
}

}  // namespace norvane::test
