#include "simlink/catalogue.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include "common/number.h"
#include "common/run_error.h"

namespace norvane {

namespace {

constexpr double metres_256 = feet_per_metre / 256;  // metres × 256 to feet
constexpr double turn_16 = 360.0 / 65536;            // a turn in 16 bits
constexpr double turn_32 = 360.0 / 4294967296;       // a turn in 32 bits
constexpr double turn_64 = turn_32 / 4294967296;
/// A pole stands at 10001750 metres × 2^32.
constexpr double latitude_scale = 90 / (10001750.0 * 4294967296);
/// Metres × 2^32 to feet.
constexpr double exact_altitude_scale = feet_per_metre / 4294967296;
constexpr double millibars_16 = 0.029529 / 16;  // millibars × 16 to inches of mercury
constexpr std::uint32_t engine_block = 0x98;
constexpr std::uint32_t propeller_block = 0x100;

/// Where a row is "unsigned" in 4 bytes or "signed" in 2, that is the field's own encoding; the
/// other 1- and 2-byte fields are read zero-filled, the other 4-byte fields as signed.
constexpr auto rows = std::to_array<Variable_Row>({
    {Variable::ground_elevation_ft, 0x0020, 4, 0, Raw::signed_int, metres_256, Rounding::whole,
     "ft", "ground elevation below the aircraft"},
    {Variable::local_hour, 0x0238, 1, 0, Raw::unsigned_int, 1, Rounding::none, "h",
     "simulator local time, hour"},
    {Variable::local_minute, 0x0239, 1, 0, Raw::unsigned_int, 1, Rounding::none, "min",
     "simulator local time, minute"},
    {Variable::utc_hour, 0x023B, 1, 0, Raw::unsigned_int, 1, Rounding::none, "h",
     "simulator UTC time, hour"},
    {Variable::utc_minute, 0x023C, 1, 0, Raw::unsigned_int, 1, Rounding::none, "min",
     "simulator UTC time, minute"},
    {Variable::day_of_year, 0x023E, 2, 0, Raw::unsigned_int, 1, Rounding::none, "day",
     "simulator date, day of year (1 to 366)"},
    {Variable::year, 0x0240, 2, 0, Raw::unsigned_int, 1, Rounding::none, "year",
     "simulator date, year"},
    {Variable::magnetic_variation_deg, 0x02A0, 2, 0, Raw::signed_int, turn_16, Rounding::whole,
     "deg", "magnetic variation, east positive"},
    {Variable::ground_speed_kt, 0x02B4, 4, 0, Raw::signed_int, 1.0 / 65536, Rounding::whole_metres,
     "kt", "ground speed"},
    {Variable::true_airspeed_kt, 0x02B8, 4, 0, Raw::signed_int, 1.0 / 128, Rounding::whole, "kt",
     "true airspeed"},
    {Variable::indicated_airspeed_kt, 0x02BC, 4, 0, Raw::signed_int, 1.0 / 128, Rounding::whole,
     "kt", "indicated airspeed"},
    {Variable::vertical_speed_fpm, 0x02C8, 4, 0, Raw::signed_int, metres_256 * 60, Rounding::whole,
     "ft/min", "vertical speed, up positive"},
    {Variable::on_ground, 0x0366, 2, 0, Raw::unsigned_int, 1, Rounding::none, "flag",
     "0 airborne, otherwise on the ground"},
    {Variable::dew_point_c, 0x04C8, 2, 0, Raw::signed_int, 1.0 / 256, Rounding::whole, "C",
     "dew point at the surface"},
    {Variable::precipitation_rate, 0x04CB, 1, 0, Raw::unsigned_int, 1, Rounding::none, "rate",
     "precipitation rate, 0 to 5; heavy from 4"},
    {Variable::precipitation_type, 0x04CC, 1, 0, Raw::unsigned_int, 1, Rounding::none, "type",
     "precipitation: 0 none, 1 rain, otherwise snow"},
    {Variable::latitude_deg, 0x0560, 8, 0, Raw::signed_int, latitude_scale, Rounding::none, "deg",
     "latitude, north positive"},
    {Variable::longitude_deg, 0x0568, 8, 0, Raw::signed_int, turn_64, Rounding::none, "deg",
     "longitude, east positive"},
    {Variable::altitude_ft, 0x0574, 4, 0, Raw::signed_int, feet_per_metre, Rounding::whole, "ft",
     "altitude above mean sea level"},
    {Variable::true_heading_deg, 0x0580, 4, 0, Raw::unsigned_int, turn_32, Rounding::none, "deg",
     "true heading, 0 to 360"},
    {Variable::slew_mode, 0x05DC, 2, 0, Raw::unsigned_int, 1, Rounding::none, "flag",
     "0 unless slewing"},
    {Variable::engine_type, 0x0609, 1, 0, Raw::unsigned_int, 1, Rounding::none, "type",
     "engine type: 0 piston, 1 jet, 3 helicopter, 5 turboprop"},
    {Variable::engine_combustion, 0x0894, 2, engine_block, Raw::unsigned_int, 1, Rounding::none,
     "flag", "0 unless the engine runs"},
    {Variable::engine_n2_percent, 0x0896, 2, engine_block, Raw::unsigned_int, 100.0 / 16384,
     Rounding::none, "%", "N2 of a jet or turboprop engine"},
    {Variable::engine_n1_percent, 0x0898, 2, engine_block, Raw::unsigned_int, 100.0 / 16384,
     Rounding::none, "%", "N1 of a jet or turboprop engine"},
    {Variable::engine_manifold_inhg, 0x08C0, 2, engine_block, Raw::unsigned_int, 1.0 / 1024,
     Rounding::none, "inHg", "manifold pressure of a piston engine"},
    {Variable::engine_fuel_flow_pph, 0x0918, 8, engine_block, Raw::real, 1, Rounding::none, "lb/h",
     "fuel flow of an engine"},
    {Variable::engine_count, 0x0AEC, 2, 0, Raw::unsigned_int, 1, Rounding::none, "count",
     "number of engines"},
    {Variable::fuel_weight_lb_per_gal, 0x0AF4, 4, 0, Raw::signed_int, 1.0 / 256, Rounding::none,
     "lb/gal", "weight of a US gallon of fuel"},
    {Variable::parking_brake, 0x0BC8, 2, 0, Raw::unsigned_int, 1, Rounding::none, "position",
     "parking brake, 0 when released"},
    {Variable::visibility_sm, 0x0E8A, 2, 0, Raw::unsigned_int, 1.0 / 100, Rounding::whole, "sm",
     "visibility"},
    {Variable::wind_speed_kt, 0x0E90, 2, 0, Raw::unsigned_int, 1, Rounding::none, "kt",
     "wind speed at the aircraft"},
    {Variable::wind_direction_deg, 0x0E92, 2, 0, Raw::unsigned_int, turn_16, Rounding::whole, "deg",
     "wind direction at the aircraft"},
    {Variable::cloud2_base_hundred_ft, 0x0E9C, 2, 0, Raw::unsigned_int, feet_per_metre,
     Rounding::whole_feet, "100 ft", "second cloud layer, base"},
    {Variable::cloud2_cover_eighths, 0x0E9E, 2, 0, Raw::unsigned_int, 1.0 / 8192, Rounding::whole,
     "1/8", "second cloud layer, cover"},
    {Variable::cloud1_base_hundred_ft, 0x0EA4, 2, 0, Raw::unsigned_int, feet_per_metre,
     Rounding::whole_feet, "100 ft", "first cloud layer, base"},
    {Variable::cloud1_cover_eighths, 0x0EA6, 2, 0, Raw::unsigned_int, 1.0 / 8192, Rounding::whole,
     "1/8", "first cloud layer, cover"},
    {Variable::surface_temperature_c, 0x0EC0, 2, 0, Raw::signed_int, 1.0 / 256, Rounding::whole,
     "C", "temperature at the surface"},
    {Variable::sea_level_pressure_inhg, 0x0EC6, 2, 0, Raw::unsigned_int, millibars_16,
     Rounding::none, "inHg", "sea-level pressure"},
    {Variable::surface_wind_speed_kt, 0x0EF0, 2, 0, Raw::unsigned_int, 1, Rounding::none, "kt",
     "wind speed at the surface"},
    {Variable::surface_wind_direction_deg, 0x0EF2, 2, 0, Raw::unsigned_int, turn_16,
     Rounding::whole, "deg", "wind direction at the surface"},
    {Variable::surface_wind_third, 0x0EF6, 2, 0, Raw::unsigned_int, 1, Rounding::none, "",
     "third field printed with the surface wind"},
    {Variable::total_air_temperature_c, 0x11D0, 2, 0, Raw::signed_int, 1.0 / 256, Rounding::whole,
     "C", "total air temperature"},
    {Variable::display_mode, 0x1274, 2, 0, Raw::unsigned_int, 1, Rounding::none, "flag",
     "text display mode, which times the texts shown in the simulator"},
    {Variable::engine_propeller_fraction, 0x2408, 8, propeller_block, Raw::real, 1, Rounding::none,
     "of max", "propeller speed as a fraction of its maximum"},
    {Variable::total_weight_lbs, 0x30C0, 8, 0, Raw::real, 1, Rounding::truncated, "lb",
     "total aircraft weight"},
    {Variable::display_control, 0x32FA, 2, 0, Raw::signed_int, 1, Rounding::none, "s",
     "display time of the text shown in the simulator (written)"},
    {Variable::fsuipc_version, 0x3304, 4, 0, Raw::unsigned_int, 1, Rounding::none, "",
     "FSUIPC version, see modFSUIPC"},
    {Variable::simulator_version, 0x3308, 2, 0, Raw::unsigned_int, 1, Rounding::none, "",
     "simulator number; a check pattern stands in the two bytes behind it"},
    {Variable::library_version, 0x330A, 2, 0, Raw::unsigned_int, 1, Rounding::none, "",
     "client library version (written)"},
    {Variable::zero_fuel_weight_lbs, 0x3BFC, 4, 0, Raw::signed_int, 1.0 / 256, Rounding::whole,
     "lb", "zero fuel weight"},
    {Variable::altitude_fraction_ft, 0x0570, 4, 0, Raw::unsigned_int, exact_altitude_scale,
     Rounding::none, "ft", "what the altitude has beyond whole metres"},
    {Variable::pitch_deg, 0x0578, 4, 0, Raw::signed_int, -turn_32, Rounding::none, "deg",
     "pitch, nose up positive"},
    {Variable::bank_deg, 0x057C, 4, 0, Raw::signed_int, -turn_32, Rounding::none, "deg",
     "bank, right wing down positive"},
    {Variable::g_load, 0x11BA, 2, 0, Raw::signed_int, 1.0 / 625, Rounding::none, "g",
     "acceleration along the aircraft's vertical axis, 1 at rest"},
    {Variable::flaps_percent, 0x0BDC, 4, 0, Raw::signed_int, 100.0 / 16383, Rounding::none, "%",
     "position of the flap lever, 0 when up"},
    {Variable::gear_percent, 0x0BE8, 4, 0, Raw::signed_int, 100.0 / 16383, Rounding::none, "%",
     "position of the gear lever, 100 when down"},
    {Variable::paused, 0x0264, 2, 0, Raw::unsigned_int, 1, Rounding::none, "flag",
     "0 unless the simulator is paused"},
    {Variable::replaying, 0x0628, 4, 0, Raw::unsigned_int, 1, Rounding::none, "flag",
     "0 unless the simulator plays a replay"},
    {Variable::simulation_rate, 0x0C1A, 2, 0, Raw::unsigned_int, 1.0 / 256, Rounding::none, "times",
     "speed of the simulator's time, 1 as a rule; 0 where none is told"},
    {Variable::atc_flight_number, 0x3130, 12, 0, Raw::text, 1, Rounding::none, "",
     "ATC flight number"},
    {Variable::atc_identifier, 0x313C, 12, 0, Raw::text, 1, Rounding::none, "",
     "ATC identifier (tail number)"},
    {Variable::atc_airline, 0x3148, 24, 0, Raw::text, 1, Rounding::none, "", "ATC airline name"},
    {Variable::aircraft_path, 0x3C00, 256, 0, Raw::text, 1, Rounding::none, "",
     "full path of the aircraft's flight model file"},
    {Variable::aircraft_title, 0x3D00, 256, 0, Raw::text, 1, Rounding::none, "",
     "title of the aircraft"},
    {Variable::simulator_directory, 0x3E00, 256, 0, Raw::text, 1, Rounding::none, "",
     "installation directory of the simulator"},
    {Variable::display_text, 0x3380, 256, 0, Raw::text, 1, Rounding::none, "",
     "text shown in the simulator (written, with its NUL; as long as the text is)"},
});

constexpr bool In_Order() {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (static_cast<std::size_t>(rows[i].id) != i)
            return false;
    }
    return rows.size() == static_cast<std::size_t>(Variable::display_text) + 1;
}
static_assert(In_Order(), "Row_Of finds a row by its variable's number");

constexpr std::array<Tank_Row, tank_count> tanks{{
    {"centre", 0x0B74, 0x0B78},
    {"centre 2", 0x1244, 0x1248},
    {"centre 3", 0x124C, 0x1250},
    {"left main", 0x0B7C, 0x0B80},
    {"left auxiliary", 0x0B84, 0x0B88},
    {"left tip", 0x0B8C, 0x0B90},
    {"right main", 0x0B94, 0x0B98},
    {"right auxiliary", 0x0B9C, 0x0BA0},
    {"right tip", 0x0BA4, 0x0BA8},
    {"external 1", 0x1254, 0x1258},
    {"external 2", 0x125C, 0x1260},
}};

constexpr double full_tank = 128.0 * 65536;

static_assert(std::endian::native == std::endian::little, "the offset area is little-endian");

double Raw_Number(const Variable_Row& row, std::span<const std::byte> bytes) {
    if (row.raw == Raw::real) {
        double value = 0;
        std::memcpy(&value, bytes.data(), sizeof value);
        return std::isfinite(value) ? value : 0;
    }
    std::uint64_t bits = 0;
    std::memcpy(&bits, bytes.data(), row.size);
    if (row.raw == Raw::unsigned_int)
        return static_cast<double>(bits);
    // The shifts carry the field's own sign bit to the top and back.
    const unsigned above = 64 - 8 * row.size;
    return static_cast<double>(static_cast<std::int64_t>(bits << above) >> above);
}

double Rounded(Rounding rounding, double value) {
    switch (rounding) {
        case Rounding::none:
            return value;
        case Rounding::whole:
            return Round_Half_Up(value);
        case Rounding::truncated:
            return std::trunc(value);
        case Rounding::whole_metres:
            return Round_Half_Up(Round_Half_Even(value) * knots_per_metre_per_second);
        case Rounding::whole_feet:
            return Round_Half_Up(Round_Half_Up(value) / 100);
    }
    return value;
}

/// What `Rounded` converts besides rounding.
double Converted(Rounding rounding, double value) {
    if (rounding == Rounding::whole_metres)
        return value * knots_per_metre_per_second;
    if (rounding == Rounding::whole_feet)
        return value / 100;
    return value;
}

/// What `Rounded` converts besides rounding, undone.
double Before_Rounding(Rounding rounding, double value) {
    if (rounding == Rounding::whole_metres)
        return value / knots_per_metre_per_second;
    if (rounding == Rounding::whole_feet)
        return value * 100;
    return value;
}

std::uint64_t Limited_Bits(const Variable_Row& row, double raw) {
    const unsigned bits = 8 * row.size;
    if (row.raw == Raw::unsigned_int) {
        const double high = std::ldexp(1.0, static_cast<int>(bits)) - 1;
        return static_cast<std::uint64_t>(std::clamp(raw, 0.0, high));
    }
    const double limit = std::ldexp(1.0, static_cast<int>(bits) - 1);
    // The highest value of 64 bits is no double; converting its neighbour would overflow.
    if (raw >= limit)
        return std::numeric_limits<std::uint64_t>::max() >> (65 - bits);
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(std::max(raw, -limit)));
}

const Variable_Row& Checked_Row(Variable variable, std::size_t size) {
    const Variable_Row& row = Row_Of(variable);
    if (row.raw == Raw::text || size != row.size)
        throw Run_Error(error_number::invalid_call, "The variable \"" + std::string(row.meaning) +
                                                        "\" is no number of " +
                                                        std::to_string(size) + " bytes");
    return row;
}

}  // namespace

std::span<const Variable_Row> All_Variables() {
    return rows;
}

const Variable_Row& Row_Of(Variable variable) {
    return rows.at(static_cast<std::size_t>(variable));
}

std::uint32_t Offset_Of(Variable variable, int engine) {
    const Variable_Row& row = Row_Of(variable);
    if (row.stride == 0)
        return row.offset;
    if (engine < 1 || engine > most_engines)
        throw Run_Error(error_number::subscript_out_of_range,
                        "There is no engine " + std::to_string(engine));
    return row.offset + static_cast<std::uint32_t>(engine - 1) * row.stride;
}

double Decode(Variable variable, std::span<const std::byte> bytes) {
    const Variable_Row& row = Checked_Row(variable, bytes.size());
    return Rounded(row.rounding, Raw_Number(row, bytes) * row.scale);
}

double Decode_Unrounded(Variable variable, std::span<const std::byte> bytes) {
    const Variable_Row& row = Checked_Row(variable, bytes.size());
    return Converted(row.rounding, Raw_Number(row, bytes) * row.scale);
}

double Decode_Exact_Altitude(std::span<const std::byte> bytes) {
    std::int64_t raw = 0;
    std::memcpy(&raw, bytes.first(exact_altitude_size).data(), sizeof raw);
    return static_cast<double>(raw) * exact_altitude_scale;
}

void Encode_Exact_Altitude(double altitude_ft, std::span<std::byte> bytes) {
    constexpr double highest_ft = 1e9;  // far within 8 bytes
    const double limited =
        std::isnan(altitude_ft) ? 0 : std::clamp(altitude_ft, -highest_ft, highest_ft);
    const auto raw = static_cast<std::int64_t>(limited / exact_altitude_scale);
    std::memcpy(bytes.first(exact_altitude_size).data(), &raw, sizeof raw);
}

std::string Decode_Text(std::span<const std::byte> bytes) {
    const auto end = std::find(bytes.begin(), bytes.end(), std::byte{0});
    std::string text(static_cast<std::size_t>(end - bytes.begin()), '\0');
    std::transform(bytes.begin(), end, text.begin(), [](std::byte b) { return char(b); });
    return text;
}

void Encode(Variable variable, double value, std::span<std::byte> bytes) {
    const Variable_Row& row = Checked_Row(variable, bytes.size());
    if (std::isnan(value))
        value = 0;
    const double raw = Before_Rounding(row.rounding, value) / row.scale;
    if (row.raw == Raw::real) {
        std::memcpy(bytes.data(), &raw, sizeof raw);
        return;
    }
    const std::uint64_t bits = Limited_Bits(row, Round_Half_Even(raw));
    std::memcpy(bytes.data(), &bits, row.size);
}

void Encode_Text(std::string_view text, std::span<std::byte> bytes) {
    std::fill(bytes.begin(), bytes.end(), std::byte{0});
    std::transform(text.begin(),
                   text.begin() + static_cast<std::ptrdiff_t>(std::min(text.size(), bytes.size())),
                   bytes.begin(), [](char c) { return std::byte(c); });
}

const std::array<Tank_Row, tank_count>& All_Tanks() {
    return tanks;
}

double Tank_Gallons(std::int32_t raw_level, std::int32_t capacity_gal) {
    if (raw_level < 0 || capacity_gal < 0)
        return 0;
    return raw_level / full_tank * capacity_gal;
}

std::int32_t Tank_Raw_Level(double gallons, std::int32_t capacity_gal) {
    return Whole(gallons / capacity_gal * full_tank);
}

}  // namespace norvane
