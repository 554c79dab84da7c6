#pragma once
// Every simulator variable the program uses: where it stands in the offset area, how its bytes are
// read, in which unit its value comes out. One row a variable, in catalogue.cpp; code walks the
// table. Decoding serves the engine, encoding the simulator's stand-in and the tests, so that both
// sides share one truth.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace norvane {

inline constexpr int most_engines = 4;
inline constexpr double feet_per_metre = 3.28084;
inline constexpr double knots_per_metre_per_second = 1.94384617;

/// Numeric variables first, texts last. Engine variables take an engine number 1 to 4.
enum class Variable {
    ground_elevation_ft,
    local_hour,
    local_minute,
    utc_hour,
    utc_minute,
    day_of_year,
    year,
    magnetic_variation_deg,
    ground_speed_kt,
    true_airspeed_kt,
    indicated_airspeed_kt,
    vertical_speed_fpm,
    on_ground,
    dew_point_c,
    precipitation_rate,
    precipitation_type,
    latitude_deg,
    longitude_deg,
    altitude_ft,
    true_heading_deg,
    slew_mode,
    engine_type,
    engine_combustion,
    engine_n2_percent,
    engine_n1_percent,
    engine_manifold_inhg,
    engine_fuel_flow_pph,
    engine_count,
    fuel_weight_lb_per_gal,
    parking_brake,
    visibility_sm,
    wind_speed_kt,
    wind_direction_deg,
    cloud2_base_hundred_ft,
    cloud2_cover_eighths,
    cloud1_base_hundred_ft,
    cloud1_cover_eighths,
    surface_temperature_c,
    sea_level_pressure_inhg,
    surface_wind_speed_kt,
    surface_wind_direction_deg,
    surface_wind_third,
    total_air_temperature_c,
    display_mode,
    engine_propeller_fraction,
    total_weight_lbs,
    display_control,
    fsuipc_version,
    simulator_version,
    library_version,
    zero_fuel_weight_lbs,
    altitude_fraction_ft,
    pitch_deg,
    bank_deg,
    g_load,
    flaps_percent,
    gear_percent,
    paused,
    replaying,
    simulation_rate,
    atc_flight_number,
    atc_identifier,
    atc_airline,
    aircraft_path,
    aircraft_title,
    simulator_directory,
    display_text,
};

/// Values of `engine_type`.
namespace engine_kind {
inline constexpr int piston = 0;
inline constexpr int jet = 1;
inline constexpr int helicopter = 3;
inline constexpr int turboprop = 5;
}  // namespace engine_kind

/// How the bytes of a variable become a number.
enum class Raw { unsigned_int, signed_int, real, text };

/// Rounding of the decoded value.
enum class Rounding {
    none,
    whole,         // halves away from zero, as every formatted figure
    truncated,     // toward zero
    whole_metres,  // scaled to m/s: whole m/s (halves to even), then whole knots
    whole_feet,    // scaled to feet: whole feet, then whole hundreds of feet
};

struct Variable_Row {
    Variable id;
    std::uint32_t offset;
    std::uint32_t size;    // bytes
    std::uint32_t stride;  // bytes from one engine to the next, 0 for what is no engine's
    Raw raw;
    double scale;  // decoded = raw × scale, then rounded (with the rounding's own conversion)
    Rounding rounding;
    std::string_view unit;
    std::string_view meaning;
};

[[nodiscard]] std::span<const Variable_Row> All_Variables();
[[nodiscard]] const Variable_Row& Row_Of(Variable variable);
/// Address of a variable; `engine` 1 to 4 for engine variables, ignored for others.
[[nodiscard]] std::uint32_t Offset_Of(Variable variable, int engine = 1);

/// The value of `bytes` (as many as the row's size) of a numeric variable, in the row's unit. A
/// floating-point field that holds no finite number counts as 0.
[[nodiscard]] double Decode(Variable variable, std::span<const std::byte> bytes);
/// As `Decode`, without the rounding: for what is computed from many samples.
[[nodiscard]] double Decode_Unrounded(Variable variable, std::span<const std::byte> bytes);
/// Feet above mean sea level, unrounded, from the 8 bytes at `altitude_fraction_ft`, behind which
/// `altitude_ft` stands.
inline constexpr std::size_t exact_altitude_size = 8;
[[nodiscard]] double Decode_Exact_Altitude(std::span<const std::byte> bytes);
void Encode_Exact_Altitude(double altitude_ft, std::span<std::byte> bytes);
/// The bytes of a text variable up to the first NUL.
[[nodiscard]] std::string Decode_Text(std::span<const std::byte> bytes);
/// The raw value nearest to `value`, not rounded to the row's unit first: what the simulator would
/// hold. Values beyond the field's range are limited to it; what is no number counts as 0.
void Encode(Variable variable, double value, std::span<std::byte> bytes);
/// The text's first bytes, the rest NUL.
void Encode_Text(std::string_view text, std::span<std::byte> bytes);

/// A fuel tank: its level (filled fraction × 128 × 65536) and its capacity (US gallons), 4 bytes
/// each.
struct Tank_Row {
    std::string_view name;
    std::uint32_t level_offset;
    std::uint32_t capacity_offset;
};

inline constexpr std::size_t tank_count = 11;
[[nodiscard]] const std::array<Tank_Row, tank_count>& All_Tanks();
/// Contents in US gallons from the two raw values; a tank with a negative one holds 0.
[[nodiscard]] double Tank_Gallons(std::int32_t raw_level, std::int32_t capacity_gal);
/// The raw level of a tank that holds `gallons` of `capacity_gal` (more than 0).
[[nodiscard]] std::int32_t Tank_Raw_Level(double gallons, std::int32_t capacity_gal);

}  // namespace norvane
