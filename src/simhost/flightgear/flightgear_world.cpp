#include "simhost/flightgear/flightgear_world.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <utility>

#include "simhost/flight/world_figures.h"

namespace norvane {

namespace {

/// The aircraft file of ours that serves all of FlightGear's aircraft, and its highest propeller
/// speed.
constexpr const char* stand_in_aircraft = "flightgear";
constexpr double stand_in_rpm = 1000;
/// From this version on the aircraft's path is a full one.
constexpr std::uint16_t first_with_full_paths = 8;
/// Lower above ground or water, and slower, an aircraft without wheels stands there.
constexpr double standing_ft = 20;
constexpr double standing_kt = 40;
constexpr double running_rpm = 100;
constexpr double running_n1_percent = 10;
constexpr double running_n2_percent = 15;
constexpr double usual_lb_per_gal = 6;
constexpr double usual_temperature_c = 15;
constexpr double usual_pressure_inhg = 29.92;
constexpr double usual_visibility_m = 16000;
constexpr double metres_per_statute_mile = 1609.344;
constexpr double heaviest_precipitation = 5;
constexpr double highest_air_ft = 65000;
constexpr double percent = 100;
constexpr int rain_type = 1;
constexpr int snow_type = 2;

/// Figures that are what they are told to be.
struct Plain_Figure {
    Figure figure;
    Variable variable;
    double otherwise;
};

constexpr auto plain_figures = std::to_array<Plain_Figure>({
    {Figure::latitude_deg, Variable::latitude_deg, 0},
    {Figure::longitude_deg, Variable::longitude_deg, 0},
    {Figure::pitch_deg, Variable::pitch_deg, 0},
    {Figure::bank_deg, Variable::bank_deg, 0},
    {Figure::load_g, Variable::g_load, 0},
    {Figure::simulation_rate, Variable::simulation_rate, 0},
    {Figure::ground_elevation_ft, Variable::ground_elevation_ft, 0},
    {Figure::ground_speed_kt, Variable::ground_speed_kt, 0},
    {Figure::indicated_airspeed_kt, Variable::indicated_airspeed_kt, 0},
    {Figure::vertical_speed_fpm, Variable::vertical_speed_fpm, 0},
    {Figure::magnetic_variation_deg, Variable::magnetic_variation_deg, 0},
    {Figure::wind_speed_kt, Variable::wind_speed_kt, 0},
    {Figure::dew_point_c, Variable::dew_point_c, 0},
    {Figure::sea_level_pressure_inhg, Variable::sea_level_pressure_inhg, usual_pressure_inhg},
});

/// What tells of a landing, and whether it is one.
constexpr auto quick_figures = std::to_array<Figure>({
    Figure::simulator_ready,
    Figure::aircraft,
    Figure::paused,
    Figure::replay,
    Figure::latitude_deg,
    Figure::longitude_deg,
    Figure::altitude_ft,
    Figure::ground_elevation_ft,
    Figure::ground_speed_kt,
    Figure::indicated_airspeed_kt,
    Figure::true_airspeed_kt,
    Figure::vertical_speed_fpm,
    Figure::true_heading_deg,
    Figure::pitch_deg,
    Figure::bank_deg,
    Figure::load_g,
    Figure::wheel_on_ground,
    Figure::on_water,
});
constexpr int quick_samples = 24;  // from one for all figures to the next
constexpr double hurried_below_ft = 100;
constexpr double rolling_kt = 30;

Date_Time Computer_Utc() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return Date_Time_Of_Seconds(std::chrono::duration_cast<std::chrono::seconds>(now).count());
}

/// A pilot who chose none flies as "callsign", or as "FG-" and four random digits that FlightGear's
/// default aircraft makes up.
bool Is_Chosen(std::string_view call_sign) {
    constexpr std::string_view made_up = "FG-";
    constexpr std::size_t digits = 4;
    if (call_sign == "callsign")
        return false;
    if (!call_sign.starts_with(made_up))
        return true;
    const std::string_view rest = call_sign.substr(made_up.size());
    return rest.size() != digits || rest.find_first_not_of("0123456789") != rest.npos;
}

/// 360 is north as 0 is, and the field of a full turn holds no more than just below it.
double Direction(double degrees) {
    return std::fmod(degrees, 360.0);
}

}  // namespace

Flightgear_World::Flightgear_World(Flightgear_Table table,
                                   const std::filesystem::path& simulator_directory,
                                   std::uint16_t simulator_version)
    : m_table(std::move(table)),
      m_simulator_directory(Simulator_Directory_Text(simulator_directory)),
      m_aircraft_path(Aircraft_Path_Text(stand_in_aircraft)),
      m_simulator_version(simulator_version),
      m_sampling(m_table, m_aircraft),
      m_taken(m_sampling) {
    if (simulator_version >= first_with_full_paths)
        m_aircraft_path = m_simulator_directory + m_aircraft_path;
}

Sample_Use Flightgear_World::Take(std::vector<std::string> answers) {
    if (m_quick_places.empty())
        m_sampling.Take(std::move(answers));
    else
        m_sampling.Take_At(m_quick_places, std::move(answers));
    if (!m_sampling.Is(Figure::simulator_ready, true))
        return Sample_Use::not_ready;
    const std::string aircraft = m_sampling.Text(Figure::aircraft);
    if (aircraft != m_aircraft) {
        m_aircraft = aircraft;
        m_has_stood_on_wheels = false;
        m_sampling = Flightgear_Sampling(m_table, aircraft);
        Ask_All();
        return Sample_Use::another_aircraft;
    }
    for (const Figure needed : {Figure::latitude_deg, Figure::longitude_deg, Figure::altitude_ft}) {
        if (!m_sampling.Find(needed))
            return Sample_Use::no_position;
    }
    m_taken = m_sampling;
    m_has_stood_on_wheels = m_has_stood_on_wheels || Stands_On_Wheels();
    Choose_Next_Paths();
    return Sample_Use::taken;
}

void Flightgear_World::Choose_Next_Paths() {
    m_hurried = Takes_Off_Or_Lands();
    if (!m_hurried) {
        Ask_All();
    } else if (!m_quick_places.empty()) {
        if (--m_quick_left == 0)
            Ask_All();
    } else {
        m_quick_left = quick_samples;
        m_quick_places = m_sampling.Answered(quick_figures);
        m_quick_paths.clear();
        for (const std::size_t place : m_quick_places)
            m_quick_paths.push_back(m_sampling.Paths().at(place));
    }
}

bool Flightgear_World::Takes_Off_Or_Lands() const {
    const double above_ft =
        m_taken.Get(Figure::altitude_ft) - m_taken.Get(Figure::ground_elevation_ft);
    if (above_ft > hurried_below_ft || m_taken.Is(Figure::paused) || m_taken.Is(Figure::replay))
        return false;
    return !Is_On_Ground() || m_taken.Get(Figure::ground_speed_kt) > rolling_kt;
}

void Flightgear_World::Apply(double, Offset_Area& area) {
    Apply_Simulator(area);
    Apply_Clock(area);
    Apply_Motion(area);
    Apply_Engines(Apply_Fuel(area), area);
    Apply_Air(area);
    Apply_Clouds(area);
}

void Flightgear_World::Apply_Simulator(Offset_Area& area) const {
    area.Set_Simulator_Version(m_simulator_version);
    area.Set_Text(Variable::simulator_directory, m_simulator_directory);
    area.Set_Text(Variable::aircraft_path, m_aircraft_path);
    area.Set_Text(Variable::aircraft_title, m_taken.Text(Figure::title));
    const std::string call_sign = m_taken.Text(Figure::call_sign);
    area.Set_Text(Variable::atc_identifier, Is_Chosen(call_sign) ? call_sign : "");
    // Neither a paused aircraft nor a replayed one is flown: clients take no note of a slewed one.
    const bool held = m_taken.Is(Figure::paused) || m_taken.Is(Figure::replay);
    area.Set(Variable::slew_mode, held ? 1 : 0);
    area.Set(Variable::paused, m_taken.Is(Figure::paused) ? 1 : 0);
    area.Set(Variable::replaying, m_taken.Is(Figure::replay) ? 1 : 0);
}

void Flightgear_World::Apply_Clock(Offset_Area& area) const {
    const Date_Time computer = Computer_Utc();
    Date_Time utc = computer;
    const auto whole = [this](Figure figure, int otherwise) {
        return static_cast<int>(m_taken.Get(figure, otherwise));
    };
    utc.date = {whole(Figure::year, computer.date.year), whole(Figure::month, computer.date.month),
                whole(Figure::day, computer.date.day)};
    if (!Is_Valid(utc.date))
        utc.date = computer.date;
    utc.time = {whole(Figure::hour, computer.time.hour),
                whole(Figure::minute, computer.time.minute), 0};
    Time_Of_Day local = utc.time;
    if (const auto seconds = m_taken.Find(Figure::local_seconds)) {
        const int minutes = static_cast<int>(*seconds / 60);
        local = {minutes / 60 % 24, minutes % 60, 0};
    }
    Set_Clock(utc, local, area);
}

bool Flightgear_World::Stands_On_Wheels() const {
    for (int wheel = 0; wheel < Row_Of(Figure::wheel_on_ground).count; ++wheel) {
        if (m_taken.Is(Figure::wheel_on_ground, false, wheel))
            return true;
    }
    return false;
}

bool Flightgear_World::Is_On_Ground() const {
    if (Stands_On_Wheels() || m_taken.Is(Figure::on_water))
        return true;
    const double above_ft =
        m_taken.Get(Figure::altitude_ft) - m_taken.Get(Figure::ground_elevation_ft);
    return !m_has_stood_on_wheels && above_ft < standing_ft &&
           m_taken.Get(Figure::ground_speed_kt) < standing_kt;
}

double Flightgear_World::True_Airspeed_Kt() const {
    const Air air(std::min(m_taken.Get(Figure::altitude_ft), highest_air_ft));
    return m_taken.Get(Figure::true_airspeed_kt,
                       True_From_Indicated(m_taken.Get(Figure::indicated_airspeed_kt), air));
}

void Flightgear_World::Apply_Motion(Offset_Area& area) const {
    for (const Plain_Figure& plain : plain_figures)
        area.Set(plain.variable, m_taken.Get(plain.figure, plain.otherwise));
    Set_Exact_Altitude(m_taken.Get(Figure::altitude_ft), area);
    area.Set(Variable::flaps_percent, m_taken.Get(Figure::flaps) * percent);
    area.Set(Variable::gear_percent, m_taken.Get(Figure::gear) * percent);
    area.Set(Variable::true_airspeed_kt, True_Airspeed_Kt());
    area.Set(Variable::true_heading_deg, Direction(m_taken.Get(Figure::true_heading_deg)));
    area.Set(Variable::on_ground, Is_On_Ground() ? 1 : 0);
    Set_Parking_Brake(m_taken.Get(Figure::parking_brake) > 0, area);
}

int Flightgear_World::Engine_Kind() const {
    const int told = static_cast<int>(m_taken.Get(Figure::engine_type, -1));
    if (told == engine_kind::piston || told == engine_kind::jet ||
        told == engine_kind::helicopter || told == engine_kind::turboprop)
        return told;
    if (m_taken.Find(Figure::rotor_angle) || m_taken.Find(Figure::rotor_rpm))
        return engine_kind::helicopter;
    const bool turbine =
        m_taken.Find(Figure::engine_n1_percent) || m_taken.Find(Figure::engine_n2_percent);
    if (m_taken.Find(Figure::engine_manifold_inhg) || !turbine)
        return engine_kind::piston;
    return m_taken.Find(Figure::engine_rpm) ? engine_kind::turboprop : engine_kind::jet;
}

int Flightgear_World::Engine_Count() const {
    if (const auto told = m_taken.Find(Figure::engine_count))
        return static_cast<int>(*told);
    constexpr auto signs = std::to_array<Figure>(
        {Figure::engine_running, Figure::engine_rpm, Figure::engine_n1_percent,
         Figure::engine_n2_percent, Figure::engine_manifold_inhg});
    int count = most_engines;
    const auto tells = [&](Figure sign) { return m_taken.Find(sign, count - 1).has_value(); };
    while (count > 0 && std::none_of(signs.begin(), signs.end(), tells))
        --count;
    return count;
}

void Flightgear_World::Apply_Engines(double lb_per_gal, Offset_Area& area) const {
    const int count = Engine_Count();
    area.Set(Variable::engine_type, Engine_Kind());
    area.Set(Variable::engine_count, count);
    for (int n = 0; n < most_engines; ++n) {
        // What is told of an engine that the aircraft lacks is no figure of it.
        const auto get = [&](Figure figure) { return n < count ? m_taken.Get(figure, 0, n) : 0; };
        const double rpm = get(Figure::engine_rpm);
        const double n1_percent = get(Figure::engine_n1_percent);
        const double n2_percent = get(Figure::engine_n2_percent);
        const bool turns = rpm >= running_rpm || n1_percent >= running_n1_percent ||
                           n2_percent >= running_n2_percent;
        const bool running = n < count && m_taken.Is(Figure::engine_running, turns, n);
        area.Set(Variable::engine_combustion, running ? 1 : 0, n + 1);
        area.Set(Variable::engine_n1_percent, n1_percent, n + 1);
        area.Set(Variable::engine_n2_percent, n2_percent, n + 1);
        area.Set(Variable::engine_manifold_inhg, get(Figure::engine_manifold_inhg), n + 1);
        area.Set(Variable::engine_propeller_fraction, rpm / stand_in_rpm, n + 1);
        area.Set(Variable::engine_fuel_flow_pph, get(Figure::engine_fuel_flow_gph) * lb_per_gal,
                 n + 1);
    }
}

/// The weight of a gallon.
double Flightgear_World::Apply_Fuel(Offset_Area& area) const {
    struct Content {
        double gallons = 0;
        double capacity_gal = 0;
    };
    std::array<Content, tank_count> contents;
    std::optional<double> lb_per_gal;
    for (int n = 0; n < Row_Of(Figure::tank_capacity_gal).count; ++n) {
        const double capacity = m_taken.Get(Figure::tank_capacity_gal, 0, n);
        if (capacity == 0)
            continue;
        // Clients know fewer tanks than FlightGear: the last one holds what all further ones hold.
        Content& content =
            contents[std::min<std::size_t>(static_cast<std::size_t>(n), tank_count - 1)];
        content.gallons += m_taken.Get(Figure::tank_level_gal, 0, n);
        content.capacity_gal += capacity;
        if (!lb_per_gal)
            lb_per_gal = m_taken.Find(Figure::fuel_lb_per_gal, n);
    }
    double gallons = 0;
    for (std::size_t tank = 0; tank < tank_count; ++tank) {
        const Content& content = contents[tank];
        const auto capacity = static_cast<std::int32_t>(std::ceil(content.capacity_gal));
        // A tank filled beyond its capacity holds no more than that.
        const double held = std::min<double>(content.gallons, capacity);
        area.Set_Tank(tank, held, capacity);
        gallons += held;
    }
    const double weight = m_taken.Get(Figure::total_weight_lbs);
    const double fuel_lbs = gallons * lb_per_gal.value_or(usual_lb_per_gal);
    area.Set(Variable::fuel_weight_lb_per_gal, lb_per_gal.value_or(usual_lb_per_gal));
    area.Set(Variable::total_weight_lbs, weight);
    area.Set(Variable::zero_fuel_weight_lbs, std::max(0.0, weight - fuel_lbs));
    return lb_per_gal.value_or(usual_lb_per_gal);
}

void Flightgear_World::Apply_Air(Offset_Area& area) const {
    const double wind_deg = m_taken.Get(Figure::wind_direction_deg);
    area.Set(Variable::wind_direction_deg, Direction(wind_deg));
    area.Set(Variable::surface_wind_direction_deg,
             Direction(m_taken.Get(Figure::surface_wind_direction_deg, wind_deg)));
    area.Set(Variable::surface_wind_speed_kt,
             m_taken.Get(Figure::surface_wind_speed_kt, m_taken.Get(Figure::wind_speed_kt)));
    const double outside_c = m_taken.Get(Figure::temperature_c, usual_temperature_c);
    area.Set(Variable::surface_temperature_c,
             m_taken.Get(Figure::surface_temperature_c, outside_c));
    const Air air(std::min(m_taken.Get(Figure::altitude_ft), highest_air_ft));
    area.Set(Variable::total_air_temperature_c,
             Total_Temperature_C(outside_c, True_Airspeed_Kt(), air));
    area.Set(Variable::visibility_sm,
             m_taken.Get(Figure::visibility_m, usual_visibility_m) / metres_per_statute_mile);
    const double rain = m_taken.Get(Figure::rain);
    const double snow = m_taken.Get(Figure::snow);
    const double heavier = std::max(rain, snow);
    const int type = snow > rain ? snow_type : rain_type;
    area.Set(Variable::precipitation_type, heavier > 0 ? type : 0);
    area.Set(Variable::precipitation_rate, std::ceil(heavier * heaviest_precipitation));
}

void Flightgear_World::Apply_Clouds(Offset_Area& area) const {
    struct Layer {
        double base_ft = 0;
        double eighths = 0;
    };
    std::vector<Layer> layers;
    for (int n = 0; n < Row_Of(Figure::cloud_base_ft).count; ++n) {
        const auto base_ft = m_taken.Find(Figure::cloud_base_ft, n);
        const double eighths = m_taken.Get(Figure::cloud_cover_eighths, 0, n);
        if (base_ft && eighths > 0)
            layers.push_back({*base_ft, eighths});
    }
    std::sort(layers.begin(), layers.end(),
              [](const Layer& a, const Layer& b) { return a.base_ft < b.base_ft; });
    layers.resize(2);
    area.Set(Variable::cloud1_base_hundred_ft, layers[0].base_ft / 100);
    area.Set(Variable::cloud1_cover_eighths, layers[0].eighths);
    area.Set(Variable::cloud2_base_hundred_ft, layers[1].base_ft / 100);
    area.Set(Variable::cloud2_cover_eighths, layers[1].eighths);
}

}  // namespace norvane
