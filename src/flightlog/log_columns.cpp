#include "flightlog/log_columns.h"

#include <fmt/format.h>

#include <array>

#include "common/date_time.h"
#include "common/run_error.h"
#include "common/text.h"
#include "logentry/cls_log_entry.h"

namespace norvane {

namespace {

constexpr Log_Column Field(std::string_view caption, int width_twips, Log_Field field,
                           Cell_Check check = Cell_Check::none) {
    return {caption, width_twips, Column_Source::field, field, 0, check};
}

constexpr std::array<Log_Column, log_column_count> columns = [] {
    using enum Log_Field;
    constexpr std::array fixed{
        Field("Date", 1000, FLIGHT_DATE, Cell_Check::date),
        Field("Aircraft Type", 1700, AIRCRAFT_TYPE),
        Field("Aircraft ID", 1000, AIRCRAFT_ID),
        Field("Origin", 900, FLIGHT_ORIGIN),
        Field("Airport", 3500, AIRPORT_ORIGIN),
        Field("Time Out", 800, TIME_OUT),
        Field("Time Off", 800, TIME_OFF),
        Field("Fuel Out", 900, FUEL_OUT),
        Field("Destination", 900, FLIGHT_DESTINATION),
        Field("Airport", 3500, AIRPORT_DESTINATION),
        Field("Time On", 800, TIME_ON),
        Field("Time In", 800, TIME_IN),
        Field("Fuel In", 900, FUEL_IN),
        Field("Block Time", 1000, BLOCK_TIME, Cell_Check::number),
        Field("Block HH:MM", 1000, BLOCK_TIME_HHMM),
        Field("Block Fuel", 1000, BLOCK_FUEL_USED),
        Field("Flight Time", 1000, FLIGHT_TIME, Cell_Check::number),
        Field("Flight HH:MM", 1000, FLIGHT_TIME_HHMM),
        Field("Flight Fuel", 1000, FLIGHT_FUEL_USED),
        Field("Comments", 6950, COMMENTS),
        Field("Flight Number", 1200, FLIGHT_NUMBER),
        Field("Pax", 1200, PAX),
        Field("Cargo", 1200, CARGO),
        Field("Flight Level", 1200, FLIGHT_LEVEL),
        Field("Flight Plan", 6950, FLIGHT_PLAN),
        Field("Distance", 1200, FLIGHT_DISTANCE),
        Field("Zero Fuel Weight", 1500, WEIGHT_ZEROFUEL),
        Field("Taxi Weight", 1500, WEIGHT_TAXI),
        Field("Take Off Weight", 1500, WEIGHT_TAKEOFF),
        Field("Landing Weight", 1500, WEIGHT_LANDING),
        Field("Ramp Weight", 1500, WEIGHT_RAMP),
        Field("Take Off N Settings", 5000, ENG_SETTINGS),
        Field("Take Off IAS", 1200, IAS_TAKEOFF),
        Field("VS @ TD", 1200, VERTICAL_SPEED),
        Field("Landing IAS", 1200, IAS_LANDING),
        Field("WX at Origin", 6950, WX_ORIGIN),
        Field("WX at Destination", 6950, WX_DESTINATION),
        Field("IFR/VFR", 1000, IFR_VFR),
    };
    static_assert(fixed.size() == log_column::first_optional);
    std::array<Log_Column, log_column_count> all{};
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (i < log_column::first_optional) {
            all[i] = fixed[i];
        } else if (i < log_column::first_airline) {
            all[i].source = Column_Source::optional;
            all[i].slot = i - log_column::first_optional;
        } else {
            all[i].source = Column_Source::airline;
            all[i].slot = i - log_column::first_airline;
        }
    }
    return all;
}();

std::string_view Value_For(const Log_Column& column, const clsLogEntry& entry) {
    switch (column.source) {
        case Column_Source::optional:
            return entry.OPTIONAL_FIELDS(column.slot);
        case Column_Source::airline:
            return entry.VA_FIELDS(column.slot);
        case Column_Source::field:
            break;
    }
    return entry.Get(column.field);
}

}  // namespace

std::span<const Log_Column, log_column_count> All_Log_Columns() {
    return columns;
}

std::size_t Column_Of(Log_Field field) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].source == Column_Source::field && columns[i].field == field)
            return i;
    }
    throw Run_Error(error_number::subscript_out_of_range,
                    fmt::format("{} has no column", Row_Of(field).name));
}

std::string Log_Line(const clsLogEntry& entry) {
    std::string line;
    for (const Log_Column& column : columns)
        line += Clean_Field(Value_For(column, entry), Field_Lines::one) + field_separator;
    line.pop_back();
    return line;
}

Checked_Cell Check_Cell(std::size_t column, std::string_view typed, const Regional& regional) {
    const std::string text = Clean_Field(typed, Field_Lines::one);
    const Cell_Check check = columns.at(column).check;
    if (column == log_column::origin || column == log_column::destination)
        return {Upper(text), {}};
    if (text.empty() || check == Cell_Check::none)
        return {text, {}};
    if (check == Cell_Check::date) {
        const auto moment = Parse_Date_Time(text, regional.short_date);
        if (!moment)
            return {text, "Please enter a valid date"};
        return {Format_Date(moment->date, regional.short_date), {}};
    }
    const auto number = Parse_Pilot_Number(text, regional);
    if (!number)
        return {text, "Please enter a numeric value"};
    return {Format_Pilot(*number, 1, regional), {}};
}

}  // namespace norvane
