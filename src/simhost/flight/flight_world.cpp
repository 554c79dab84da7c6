#include "simhost/flight/flight_world.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "simhost/flight/flight_engine.h"
#include "simhost/flight/world_figures.h"

namespace norvane {

namespace {

/// The place on the aircraft whose altitude is told lies half a metre above that which is flown:
/// who reads whole metres only reads those nearest to the flight.
constexpr double reference_point_ft = feet_per_metre / 2;

}  // namespace

struct Flight_World::Moment {
    double seconds = 0;
    Flown_State state;
    double share_of_route = 0;
};

Flight_World::Flight_World(Scenario_Data scenario, const std::filesystem::path& simulator_directory)
    : m_scenario(std::move(scenario)),
      m_model(m_scenario),
      m_clock(m_scenario, m_model.Length_S()),
      m_simulator_directory(Simulator_Directory_Text(simulator_directory)),
      m_aircraft_path(Aircraft_Path_Text(m_scenario.aircraft.folder)) {}

void Flight_World::Apply(double seconds, Offset_Area& area) {
    const Flight_Clock::Moment time = m_clock.At(std::clamp(seconds, 0.0, Length()));
    Moment now{.seconds = time.flight_s, .state = m_model.At(time.flight_s)};
    now.share_of_route = m_model.Share_Of_Route(now.state);
    Apply_Constants(area);
    area.Set(Variable::paused, time.paused ? 1 : 0);
    area.Set(Variable::simulation_rate, time.rate);
    Apply_Clock(now, area);
    Apply_Motion(now, area);
    Apply_Engines(now, area);
    Apply_Fuel(now, area);
    Apply_Weather(now, area);
}

void Flight_World::Apply_Constants(Offset_Area& area) const {
    const Aircraft_Data& aircraft = m_scenario.aircraft;
    area.Set_Text(Variable::atc_identifier, m_scenario.tail);
    area.Set_Text(Variable::atc_airline, m_scenario.airline);
    area.Set_Text(Variable::atc_flight_number, m_scenario.flight_number);
    area.Set_Text(Variable::aircraft_title, aircraft.title);
    area.Set_Text(Variable::aircraft_path, m_aircraft_path);
    area.Set_Text(Variable::simulator_directory, m_simulator_directory);
    area.Set(Variable::engine_type, aircraft.engine.kind);
    area.Set(Variable::engine_count, aircraft.engine.count);
    area.Set(Variable::fuel_weight_lb_per_gal, aircraft.fuel_lb_per_gal);
    area.Set(Variable::zero_fuel_weight_lbs, m_scenario.zero_fuel_weight_lbs);
    area.Set(Variable::slew_mode, 0);
    area.Set(Variable::replaying, 0);
    area.Set(Variable::display_mode, 0);
    area.Set(Variable::surface_wind_third, 0);
}

const Airport_Data& Flight_World::Nearer_Airport(const Moment& now) const {
    return now.share_of_route < 0.5 ? m_scenario.departure : m_scenario.arrival;
}

void Flight_World::Apply_Clock(const Moment& now, Offset_Area& area) const {
    const std::int64_t utc =
        Seconds_Of(m_scenario.start_utc) + static_cast<std::int64_t>(std::floor(now.seconds));
    const Date_Time utc_time = Date_Time_Of_Seconds(utc);
    const Date_Time local =
        Date_Time_Of_Seconds(utc + Nearer_Airport(now).utc_offset_minutes * std::int64_t{60});
    Set_Clock(utc_time, local.time, area);
}

void Flight_World::Apply_Motion(const Moment& now, Offset_Area& area) const {
    const Flown_State& state = now.state;
    const Position position = m_model.Position_Of(state);
    area.Set(Variable::latitude_deg, position.latitude);
    area.Set(Variable::longitude_deg, position.longitude);
    Set_Exact_Altitude(state.altitude_ft + reference_point_ft, area);
    area.Set(Variable::ground_elevation_ft, Ground_Ft(m_scenario, now.share_of_route));
    area.Set(Variable::vertical_speed_fpm, state.vertical_fpm);
    area.Set(Variable::indicated_airspeed_kt, state.indicated_kt);
    area.Set(Variable::true_airspeed_kt, state.true_kt);
    area.Set(Variable::ground_speed_kt, state.ground_kt);
    area.Set(Variable::true_heading_deg, std::fmod(state.heading_deg + 360, 360.0));
    area.Set(Variable::on_ground, state.on_ground ? 1 : 0);
    area.Set(Variable::pitch_deg, state.pitch_deg);
    area.Set(Variable::bank_deg, state.bank_deg);
    area.Set(Variable::g_load, state.load_g);
    area.Set(Variable::flaps_percent, state.flaps_percent);
    area.Set(Variable::gear_percent, state.gear_percent);
    Set_Parking_Brake(state.parking_brake, area);
}

void Flight_World::Apply_Engines(const Moment& now, Offset_Area& area) const {
    const Engine_Data& engine = m_scenario.aircraft.engine;
    const Air air(now.state.altitude_ft);
    for (int number = 1; number <= engine.count; ++number) {
        const std::optional<double> off_s = m_model.Off_For_S(number, now.seconds);
        const Engine_Readings readings = off_s ? Readings_Of_Stopped(engine, *off_s, air)
                                               : Readings_Of(engine, now.state.power, air);
        area.Set(Variable::engine_combustion, off_s ? 0 : 1, number);
        area.Set(Variable::engine_n1_percent, readings.n1_percent, number);
        area.Set(Variable::engine_n2_percent, readings.n2_percent, number);
        area.Set(Variable::engine_manifold_inhg, readings.manifold_inhg, number);
        area.Set(Variable::engine_propeller_fraction, readings.propeller, number);
        area.Set(Variable::engine_fuel_flow_pph, off_s ? 0 : now.state.flow_pph, number);
    }
}

void Flight_World::Apply_Fuel(const Moment& now, Offset_Area& area) const {
    const Aircraft_Data& aircraft = m_scenario.aircraft;
    area.Set(Variable::total_weight_lbs, m_scenario.zero_fuel_weight_lbs + now.state.fuel_lbs);
    // What was filled last is used first, so the tanks' contents follow from the fuel left.
    double left_gal = now.state.fuel_lbs / aircraft.fuel_lb_per_gal;
    for (const std::vector<Tank_Data>& group : aircraft.tanks) {
        int capacity = 0;
        for (const Tank_Data& tank : group)
            capacity += tank.capacity_gal;
        const double share = std::min(1.0, left_gal / capacity);
        for (const Tank_Data& tank : group)
            area.Set_Tank(tank.tank, share * tank.capacity_gal, tank.capacity_gal);
        left_gal -= share * capacity;
    }
}

void Flight_World::Apply_Weather(const Moment& now, Offset_Area& area) const {
    const Weather_Data& weather = Nearer_Airport(now).weather;
    area.Set(Variable::surface_wind_direction_deg, weather.wind.direction_deg);
    area.Set(Variable::surface_wind_speed_kt, weather.wind.speed_kt);
    const double altitude = now.state.altitude_ft;
    const Wind wind = Wind_At(m_scenario, now.share_of_route, altitude);
    area.Set(Variable::wind_direction_deg, wind.direction_deg);
    area.Set(Variable::wind_speed_kt, wind.speed_kt);
    area.Set(Variable::visibility_sm, weather.visibility_sm);
    area.Set(Variable::cloud1_base_hundred_ft, weather.clouds[0].base_ft / 100);
    area.Set(Variable::cloud1_cover_eighths, weather.clouds[0].eighths);
    area.Set(Variable::cloud2_base_hundred_ft, weather.clouds[1].base_ft / 100);
    area.Set(Variable::cloud2_cover_eighths, weather.clouds[1].eighths);
    area.Set(Variable::precipitation_type, weather.precipitation_type);
    area.Set(Variable::precipitation_rate, weather.precipitation_rate);
    area.Set(Variable::surface_temperature_c, weather.temperature_c);
    area.Set(Variable::dew_point_c, weather.dew_point_c);
    area.Set(Variable::sea_level_pressure_inhg, weather.pressure_inhg);
    // The air aloft is as much warmer than the standard as that at the ground.
    const Air air(altitude);
    const double warmer =
        weather.temperature_c - Air(Nearer_Airport(now).elevation_ft).temperature_c;
    area.Set(Variable::total_air_temperature_c,
             Total_Temperature_C(air.temperature_c + warmer, now.state.true_kt, air));
    const Airport_Data& a = m_scenario.departure;
    const Airport_Data& b = m_scenario.arrival;
    area.Set(Variable::magnetic_variation_deg,
             a.magnetic_variation_deg +
                 (b.magnetic_variation_deg - a.magnetic_variation_deg) * now.share_of_route);
}

}  // namespace norvane
