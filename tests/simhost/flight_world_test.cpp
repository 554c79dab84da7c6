// What the offset area shows of a flown scenario beyond its movement: tanks, weather, bounces.

#include "simhost/flight_world.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "simhost/scenario.h"
#include "simhost/scenario_files.h"

namespace norvane::test {
namespace {

using enum Variable;

Scenario_Data Scenario(const std::string& name) {
    return Read_Scenario(Shipped_Scenario(name), aircraft_files);
}

TEST(Flight_World, Tanks_Are_Used_In_Reverse_Order_Of_Filling) {
    Scenario_Data scenario = Scenario("kjfk-kbos");
    // Both wings full (2576 gal) and some hundred pounds in the centre.
    scenario.fuel_lbs = 2576 * scenario.aircraft.fuel_lb_per_gal + 900;
    Flight_World world(scenario, aircraft_files);
    constexpr std::size_t centre = 0;
    constexpr std::size_t left_main = 3;
    constexpr std::size_t right_main = 6;
    Offset_Area area;
    world.Apply(0, area);
    EXPECT_NEAR(Gallons(area, centre), 900 / scenario.aircraft.fuel_lb_per_gal, 0.1);
    for (double seconds = 0; seconds < world.Length(); seconds += 10) {
        world.Apply(seconds, area);
        ASSERT_DOUBLE_EQ(Gallons(area, left_main), Gallons(area, right_main)) << seconds;
        ASSERT_EQ(Gallons(area, left_main) > 1287.99, Gallons(area, centre) > 0.01) << seconds;
    }
    EXPECT_EQ(Gallons(area, centre), 0);
    EXPECT_LT(Gallons(area, left_main), 1280);
}

TEST(Flight_World, Bounces_For_As_Long_As_Asked) {
    Scenario_Data scenario = Scenario("piston-circuit");
    scenario.bounce_s = 2;
    Flight_World world(scenario, aircraft_files);
    double airborne_s = 0;
    double highest_ft = 0;
    bool landed = false;
    for (double seconds = 400; seconds < world.Length(); seconds += flight_step_s) {
        const Flown_State state = world.Model().At(seconds);
        landed = landed || state.on_ground;
        if (landed && !state.on_ground) {
            airborne_s += flight_step_s;
            highest_ft = std::max(highest_ft, state.altitude_ft - scenario.arrival.elevation_ft);
        }
    }
    EXPECT_NEAR(airborne_s, 2, 2 * flight_step_s);
    EXPECT_NEAR(highest_ft, scenario.aircraft.gear_height_ft + 6, 4);
}

TEST(Flight_World, Weather_Is_That_Of_The_Nearer_Airport) {
    Flight_World world(Scenario("turboprop"), aircraft_files);
    Offset_Area area;
    const auto figures_at = [&](double seconds, std::initializer_list<Variable> variables) {
        std::vector<double> figures;
        world.Apply(seconds, area);
        for (const Variable variable : variables)
            figures.push_back(area.Get(variable));
        return figures;
    };
    // On the ground the wind is that of the surface.
    const auto weather_at = [&](double seconds) {
        return figures_at(seconds, {precipitation_type, precipitation_rate, surface_wind_speed_kt,
                                    wind_speed_kt, cloud1_cover_eighths, cloud1_base_hundred_ft,
                                    cloud2_cover_eighths, surface_temperature_c});
    };
    EXPECT_THAT(weather_at(0), testing::ElementsAre(2, 2, 13, 13, 4, 14, 7, 3));
    EXPECT_NEAR(area.Get(sea_level_pressure_inhg), 29.41, 0.002);
    EXPECT_THAT(weather_at(world.Length()), testing::ElementsAre(1, 4, 19, 19, 8, 12, 0, 5));
    EXPECT_NEAR(area.Get(sea_level_pressure_inhg), 29.18, 0.002);
    EXPECT_THAT(figures_at(world.Length() / 2, {wind_speed_kt, wind_direction_deg}),
                testing::ElementsAre(45, 270));
    EXPECT_LT(area.Get(total_air_temperature_c), -15);
}

}  // namespace
}  // namespace norvane::test
