#pragma once
// Which properties of FlightGear give which figure, as "simulator/flightgear.cfg" tells it: a table
// that pilots extend for their aircraft, whose head explains it. Owned by the command; the sampling
// (flightgear_sampling.h) follows it.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

/// What is asked of FlightGear; in the order in which it is asked, texts last.
enum class Figure {
    simulator_ready,
    paused,
    replay,
    simulation_rate,
    year,
    month,
    day,
    hour,
    minute,
    local_seconds,
    latitude_deg,
    longitude_deg,
    altitude_ft,
    ground_elevation_ft,
    ground_speed_kt,
    indicated_airspeed_kt,
    true_airspeed_kt,
    vertical_speed_fpm,
    true_heading_deg,
    magnetic_variation_deg,
    pitch_deg,
    bank_deg,
    load_g,
    flaps,
    gear,
    wheel_on_ground,
    on_water,
    parking_brake,
    engine_type,
    engine_count,
    rotor_angle,
    rotor_rpm,
    engine_running,
    engine_rpm,
    engine_n1_percent,
    engine_n2_percent,
    engine_manifold_inhg,
    engine_fuel_flow_gph,
    tank_level_gal,
    tank_capacity_gal,
    fuel_lb_per_gal,
    total_weight_lbs,
    wind_speed_kt,
    wind_direction_deg,
    surface_wind_speed_kt,
    surface_wind_direction_deg,
    temperature_c,
    surface_temperature_c,
    dew_point_c,
    sea_level_pressure_inhg,
    visibility_m,
    rain,
    snow,
    cloud_base_ft,
    cloud_cover_eighths,
    aircraft,
    title,
    call_sign,
};

enum class Figure_Kind { number, flag, cover, text };

struct Figure_Row {
    Figure id;
    std::string_view name;
    Figure_Kind kind;
    /// How many there are: engines, tanks, wheels, cloud layers.
    int count;
    /// Limits of what is believed, both included.
    double low;
    double high;
};

[[nodiscard]] const Figure_Row& Row_Of(Figure figure);

/// Where a figure may come from.
struct Figure_Source {
    /// A property's path, "[n]" in it for the number; empty for a number that always holds.
    std::string path;
    /// What the property is multiplied with, or that number.
    double factor = 1;
};

class Flightgear_Table {
  public:
    /// Raises a Run_Error: the file's name, the line, what is wrong with it.
    explicit Flightgear_Table(const std::filesystem::path& file);

    /// In the order they are to be tried.
    [[nodiscard]] std::vector<Figure_Source> Sources_Of(Figure figure,
                                                        std::string_view aircraft) const;

  private:
    struct Line {
        /// An aircraft's name, perhaps with "*" at its end.
        std::string section;
        Figure figure;
        std::vector<Figure_Source> sources;
    };

    std::vector<Line> m_lines;
};

}  // namespace norvane
