#include "logentry/log_fields.h"

#include <array>

namespace norvane {

namespace {

using enum Log_Field;
using enum Write_Rule;

// In the order of the enumeration: field, name, write rule, store key, place in the PIREP line.
constexpr std::array<Log_Field_Row, log_field_count> fields{{
    {FLIGHT_DATE, "FLIGHT_DATE", brackets_removed, 1, 4},
    {AIRCRAFT_TYPE, "AIRCRAFT_TYPE", trimmed, 2, 5},
    {AIRCRAFT_ID, "AIRCRAFT_ID", brackets_removed, 3, 6},
    {FLIGHT_ORIGIN, "FLIGHT_ORIGIN", brackets_removed, 4, 7},
    {AIRPORT_ORIGIN, "AIRPORT_ORIGIN", trimmed, 39, 8},
    {TIME_OUT, "TIME_OUT", trimmed, 5, 9},
    {FUEL_OUT, "FUEL_OUT", trimmed, 6, 11},
    {TIME_OFF, "TIME_OFF", trimmed, 7, 10},
    {FUEL_OFF, "FUEL_OFF", trimmed, 8, 0},
    {FLIGHT_DESTINATION, "FLIGHT_DESTINATION", brackets_removed, 9, 12},
    {AIRPORT_DESTINATION, "AIRPORT_DESTINATION", trimmed, 40, 13},
    {TIME_ON, "TIME_ON", trimmed, 10, 14},
    {FUEL_IN, "FUEL_IN", trimmed, 11, 16},
    {TIME_IN, "TIME_IN", trimmed, 12, 15},
    {FUEL_ON, "FUEL_ON", trimmed, 13, 0},
    {BLOCK_TIME, "BLOCK_TIME", trimmed, 14, 17},
    {BLOCK_TIME_HHMM, "BLOCK_TIME_HHMM", trimmed, 15, 18},
    {BLOCK_FUEL_USED, "BLOCK_FUEL_USED", trimmed, 16, 19},
    {FLIGHT_TIME, "FLIGHT_TIME", trimmed, 17, 20},
    {FLIGHT_TIME_HHMM, "FLIGHT_TIME_HHMM", trimmed, 18, 21},
    {FLIGHT_FUEL_USED, "FLIGHT_FUEL_USED", trimmed, 19, 22},
    {COMMENTS, "COMMENTS", one_line, 20, 23},
    {VERTICAL_SPEED, "VERTICAL_SPEED", trimmed, 21, 37},
    {FLIGHT_NUMBER, "FLIGHT_NUMBER", brackets_removed, 22, 24},
    {PAX, "PAX", brackets_removed, 23, 25},
    {CARGO, "CARGO", brackets_removed, 24, 26},
    {FLIGHT_PLAN, "FLIGHT_PLAN", one_line, 25, 28},
    {WX_ORIGIN, "WX_ORIGIN", brackets_removed, 26, 39},
    {WX_DESTINATION, "WX_DESTINATION", brackets_removed, 27, 40},
    {FLIGHT_DISTANCE, "FLIGHT_DISTANCE", trimmed, 28, 29},
    {FLIGHT_LEVEL, "FLIGHT_LEVEL", brackets_removed, 29, 27},
    {WEIGHT_ZEROFUEL, "WEIGHT_ZEROFUEL", trimmed, 30, 30},
    {WEIGHT_TAXI, "WEIGHT_TAXI", trimmed, 31, 31},
    {WEIGHT_TAKEOFF, "WEIGHT_TAKEOFF", trimmed, 32, 32},
    {WEIGHT_LANDING, "WEIGHT_LANDING", trimmed, 33, 33},
    {WEIGHT_RAMP, "WEIGHT_RAMP", trimmed, 34, 34},
    {IAS_TAKEOFF, "IAS_TAKEOFF", trimmed, 35, 36},
    {IAS_LANDING, "IAS_LANDING", trimmed, 36, 38},
    {ENG_SETTINGS, "ENG_SETTINGS", trimmed, 37, 35},
    {IFR_VFR, "IFR_VFR", trimmed, 38, 41},
    {PIREP_FILE_NAME, "PIREP_FILE_NAME", trimmed, 0, 0},
    {PILOT_ID, "PILOT_ID", trimmed, 0, 1},
    {PILOT_NAME, "PILOT_NAME", trimmed, 0, 2},
    {PILOT_EMAIL, "PILOT_EMAIL", trimmed, 0, 3},
}};

constexpr bool Stands_In_Order() {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (static_cast<std::size_t>(fields[i].id) != i)
            return false;
    }
    return true;
}
static_assert(Stands_In_Order(), "a row is found by its field's number");

}  // namespace

std::span<const Log_Field_Row, log_field_count> All_Log_Fields() {
    return fields;
}

const Log_Field_Row& Row_Of(Log_Field field) {
    return fields.at(static_cast<std::size_t>(field));
}

}  // namespace norvane
