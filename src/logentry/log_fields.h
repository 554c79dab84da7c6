#pragma once
// The 44 fields of a log entry, stated once: name, how a written text is cleaned, under which key
// the flight in progress is stored, where the value stands in the PIREP line. Code walks the table.

#include <cstddef>
#include <span>
#include <string_view>

namespace norvane {

/// In declaration order.
enum class Log_Field {
    FLIGHT_DATE,
    AIRCRAFT_TYPE,
    AIRCRAFT_ID,
    FLIGHT_ORIGIN,
    AIRPORT_ORIGIN,
    TIME_OUT,
    FUEL_OUT,
    TIME_OFF,
    FUEL_OFF,
    FLIGHT_DESTINATION,
    AIRPORT_DESTINATION,
    TIME_ON,
    FUEL_IN,
    TIME_IN,
    FUEL_ON,
    BLOCK_TIME,
    BLOCK_TIME_HHMM,
    BLOCK_FUEL_USED,
    FLIGHT_TIME,
    FLIGHT_TIME_HHMM,
    FLIGHT_FUEL_USED,
    COMMENTS,
    VERTICAL_SPEED,
    FLIGHT_NUMBER,
    PAX,
    CARGO,
    FLIGHT_PLAN,
    WX_ORIGIN,
    WX_DESTINATION,
    FLIGHT_DISTANCE,
    FLIGHT_LEVEL,
    WEIGHT_ZEROFUEL,
    WEIGHT_TAXI,
    WEIGHT_TAKEOFF,
    WEIGHT_LANDING,
    WEIGHT_RAMP,
    IAS_TAKEOFF,
    IAS_LANDING,
    ENG_SETTINGS,
    IFR_VFR,
    PIREP_FILE_NAME,
    PILOT_ID,
    PILOT_NAME,
    PILOT_EMAIL,
};

inline constexpr std::size_t log_field_count = 44;

enum class Write_Rule { trimmed, brackets_removed, one_line };

struct Log_Field_Row {
    Log_Field id;
    std::string_view name;
    Write_Rule rule;
    /// Key in section "ACARS" of the settings store, 0 for fields that are not stored.
    int store_key;
    /// Place in the PIREP line, from 1; 0 for fields that are not written there.
    int pirep_place;
};

[[nodiscard]] std::span<const Log_Field_Row, log_field_count> All_Log_Fields();
[[nodiscard]] const Log_Field_Row& Row_Of(Log_Field field);

}  // namespace norvane
