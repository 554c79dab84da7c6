#include "simhost/flightgear/flightgear_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/number.h"
#include "common/run_error.h"
#include "common/text.h"
#include "simlink/catalogue.h"

namespace norvane {

namespace {

constexpr std::string_view every_aircraft = "*";
/// Floats and skis with wheels of their own are counted behind the wheels they replace.
constexpr int wheel_count = 26;
/// More than the offset area has: aircraft with many keep their fuel in the higher ones too.
constexpr int flightgear_tank_count = 16;
constexpr int cloud_layer_count = 5;

using enum Figure_Kind;

constexpr auto figure_rows = std::to_array<Figure_Row>({
    {Figure::simulator_ready, "simulator_ready", flag, 1, 0, 1},
    {Figure::paused, "paused", flag, 1, 0, 1},
    {Figure::replay, "replay", flag, 1, 0, 1},
    {Figure::simulation_rate, "simulation_rate", number, 1, 0, 255},
    {Figure::year, "year", number, 1, 1900, 2999},
    {Figure::month, "month", number, 1, 1, 12},
    {Figure::day, "day", number, 1, 1, 31},
    {Figure::hour, "hour", number, 1, 0, 23},
    {Figure::minute, "minute", number, 1, 0, 59},
    {Figure::local_seconds, "local_seconds", number, 1, 0, 86400},
    {Figure::latitude_deg, "latitude_deg", number, 1, -90, 90},
    {Figure::longitude_deg, "longitude_deg", number, 1, -180, 180},
    {Figure::altitude_ft, "altitude_ft", number, 1, -2000, 300000},
    {Figure::ground_elevation_ft, "ground_elevation_ft", number, 1, -2000, 30000},
    {Figure::ground_speed_kt, "ground_speed_kt", number, 1, 0, 5000},
    {Figure::indicated_airspeed_kt, "indicated_airspeed_kt", number, 1, 0, 5000},
    {Figure::true_airspeed_kt, "true_airspeed_kt", number, 1, 0, 5000},
    {Figure::vertical_speed_fpm, "vertical_speed_fpm", number, 1, -60000, 60000},
    {Figure::true_heading_deg, "true_heading_deg", number, 1, 0, 360},
    {Figure::magnetic_variation_deg, "magnetic_variation_deg", number, 1, -180, 180},
    {Figure::pitch_deg, "pitch_deg", number, 1, -90, 90},
    {Figure::bank_deg, "bank_deg", number, 1, -180, 180},
    {Figure::load_g, "load_g", number, 1, -50, 50},
    {Figure::flaps, "flaps", number, 1, 0, 1},
    {Figure::gear, "gear", number, 1, 0, 1},
    {Figure::wheel_on_ground, "wheel_on_ground", flag, wheel_count, 0, 1},
    {Figure::on_water, "on_water", flag, 1, 0, 1},
    {Figure::parking_brake, "parking_brake", number, 1, 0, 1},
    {Figure::engine_type, "engine_type", number, 1, 0, 5},
    {Figure::engine_count, "engine_count", number, 1, 0, most_engines},
    {Figure::rotor_angle, "rotor_angle", number, 1, -1000, 1000},
    {Figure::rotor_rpm, "rotor_rpm", number, 1, 50, 5000},
    {Figure::engine_running, "engine_running", flag, most_engines, 0, 1},
    {Figure::engine_rpm, "engine_rpm", number, most_engines, 0, 60000},
    {Figure::engine_n1_percent, "engine_n1_percent", number, most_engines, 0, 200},
    {Figure::engine_n2_percent, "engine_n2_percent", number, most_engines, 0, 200},
    {Figure::engine_manifold_inhg, "engine_manifold_inhg", number, most_engines, 0, 63},
    {Figure::engine_fuel_flow_gph, "engine_fuel_flow_gph", number, most_engines, 0, 50000},
    {Figure::tank_level_gal, "tank_level_gal", number, flightgear_tank_count, 0, 100000},
    {Figure::tank_capacity_gal, "tank_capacity_gal", number, flightgear_tank_count, 0, 100000},
    {Figure::fuel_lb_per_gal, "fuel_lb_per_gal", number, flightgear_tank_count, 3, 12},
    {Figure::total_weight_lbs, "total_weight_lbs", number, 1, 0, 5000000},
    {Figure::wind_speed_kt, "wind_speed_kt", number, 1, 0, 500},
    {Figure::wind_direction_deg, "wind_direction_deg", number, 1, 0, 360},
    {Figure::surface_wind_speed_kt, "surface_wind_speed_kt", number, 1, 0, 500},
    {Figure::surface_wind_direction_deg, "surface_wind_direction_deg", number, 1, 0, 360},
    {Figure::temperature_c, "temperature_c", number, 1, -120, 70},
    {Figure::surface_temperature_c, "surface_temperature_c", number, 1, -120, 70},
    {Figure::dew_point_c, "dew_point_c", number, 1, -120, 70},
    {Figure::sea_level_pressure_inhg, "sea_level_pressure_inhg", number, 1, 20, 35},
    {Figure::visibility_m, "visibility_m", number, 1, 0, 500000},
    {Figure::rain, "rain", number, 1, 0, 1},
    {Figure::snow, "snow", number, 1, 0, 1},
    {Figure::cloud_base_ft, "cloud_base_ft", number, cloud_layer_count, 0, 65000},
    {Figure::cloud_cover_eighths, "cloud_cover_eighths", cover, cloud_layer_count, 0, 8},
    {Figure::aircraft, "aircraft", text, 1, 0, 0},
    {Figure::title, "title", text, 1, 0, 0},
    {Figure::call_sign, "call_sign", text, 1, 0, 0},
});

constexpr bool In_Order() {
    for (std::size_t i = 0; i < figure_rows.size(); ++i) {
        if (static_cast<std::size_t>(figure_rows[i].id) != i)
            return false;
    }
    return figure_rows.size() == static_cast<std::size_t>(Figure::call_sign) + 1;
}
static_assert(In_Order(), "Row_Of finds a row by its figure's number");

std::string Blanks_For_Tabs(std::string_view text) {
    return Trim(Replace_All(text, "\t", " "));
}

/// Raises what is wrong, without the place.
[[noreturn]] void Refuse(const std::string& what) {
    throw Run_Error(error_number::invalid_call, what);
}

Figure Parse_Figure(std::string_view name) {
    const auto row = std::find_if(figure_rows.begin(), figure_rows.end(),
                                  [&](const Figure_Row& each) { return each.name == name; });
    if (row == figure_rows.end())
        Refuse(fmt::format("there is no figure \"{}\"", name));
    return row->id;
}

Figure_Source Parse_Source(const std::string& text, const Figure_Row& row) {
    if (!text.starts_with('/')) {
        const auto value = Parse_Number(text);
        if (!value || row.kind == Figure_Kind::text)
            Refuse(fmt::format("\"{}\" is neither the path of a property nor a number", text));
        if (*value < row.low || *value > row.high)
            Refuse(fmt::format("{} is not within {} to {}", text, row.low, row.high));
        return {"", *value};
    }
    const std::size_t sign = text.find('*');
    Figure_Source source{Trim(text.substr(0, sign)), 1};
    if (sign != std::string::npos) {
        const auto factor = Parse_Number(text.substr(sign + 1));
        if (!factor)
            Refuse(fmt::format("\"{}\" is multiplied with what is no number", source.path));
        source.factor = *factor;
    }
    if (Contains(source.path, " "))
        Refuse(fmt::format("the path \"{}\" has a blank in it", source.path));
    return source;
}

bool Is_For(std::string_view section, std::string_view aircraft) {
    if (!section.ends_with('*'))
        return section == aircraft;
    section.remove_suffix(1);
    return aircraft.starts_with(section);
}

std::string Parse_Section(const std::string& text) {
    std::string name = text.ends_with(']') ? Trim(text.substr(1, text.size() - 2)) : "";
    if (name.empty())
        Refuse("an aircraft stands as [name] on a line of its own");
    return name;
}

}  // namespace

const Figure_Row& Row_Of(Figure figure) {
    return figure_rows.at(static_cast<std::size_t>(figure));
}

Flightgear_Table::Flightgear_Table(const std::filesystem::path& file) {
    const std::string content = Read_File(file);
    Line_Reader reader(content);
    std::string section(every_aircraft);
    while (reader.Next()) {
        const std::string line = Blanks_For_Tabs(Before(reader.Line(), "#"));
        if (line.empty())
            continue;
        try {
            if (line.starts_with('[')) {
                section = Parse_Section(line);
                continue;
            }
            const std::size_t sign = line.find('=');
            if (sign == std::string::npos)
                Refuse("neither [aircraft] nor figure = source");
            const Figure figure =
                Parse_Figure(Trimmed_View(std::string_view(line).substr(0, sign)));
            Line& read = m_lines.emplace_back(Line{section, figure, {}});
            for (const std::string& source : Split(line.substr(sign + 1), ';')) {
                if (const std::string trimmed = Trim(source); !trimmed.empty())
                    read.sources.push_back(Parse_Source(trimmed, Row_Of(figure)));
            }
        } catch (const Run_Error& error) {
            throw Run_Error(error.Number(), fmt::format("{}, line {}: {}", From_Path(file),
                                                        reader.Line_Number(), error.Description()));
        }
    }
}

std::vector<Figure_Source> Flightgear_Table::Sources_Of(Figure figure,
                                                        std::string_view aircraft) const {
    std::vector<Figure_Source> own;
    std::vector<Figure_Source> general;
    for (const Line& line : m_lines) {
        if (line.figure != figure || !Is_For(line.section, aircraft))
            continue;
        auto& sources = line.section == every_aircraft ? general : own;
        sources.insert(sources.end(), line.sources.begin(), line.sources.end());
    }
    own.insert(own.end(), general.begin(), general.end());
    return own;
}

}  // namespace norvane
