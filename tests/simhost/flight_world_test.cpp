// What the offset area shows of a flown scenario beyond its movement: tanks, weather, engines.

#include "simhost/flight_world.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "simhost/flight_samples.h"
#include "simhost/scenario.h"

namespace norvane::test {
namespace {

Scenario_Data Scenario(const std::string& file) {
    return Read_Scenario(Repository_File(file), Simulator_Directory());
}

double Gallons(const Offset_Area& area, std::size_t tank) {
    std::int32_t level = 0;
    std::int32_t capacity = 0;
    const Tank_Row& row = All_Tanks().at(tank);
    std::memcpy(&level, area.Bytes(row.level_offset, sizeof level).data(), sizeof level);
    std::memcpy(&capacity, area.Bytes(row.capacity_offset, sizeof capacity).data(),
                sizeof capacity);
    return Tank_Gallons(level, capacity);
}

TEST(Flight_World, Tanks_Are_Used_In_Reverse_Order_Of_Filling) {
    Scenario_Data scenario = Scenario("data/scenarios/kjfk-kbos.json");
    // Both wings full (2576 gal) and some hundred pounds in the centre.
    scenario.fuel_lbs = 2576 * scenario.aircraft.fuel_lb_per_gal + 900;
    Flight_World world(scenario, Simulator_Directory());
    constexpr std::size_t centre = 0;
    constexpr std::size_t left_main = 3;
    constexpr std::size_t right_main = 6;
    Offset_Area area;
    world.Apply(0, area);
    EXPECT_NEAR(Gallons(area, centre), 900 / scenario.aircraft.fuel_lb_per_gal, 0.1);
    EXPECT_NEAR(Gallons(area, left_main), 1288, 0.01);
    for (double seconds = 0; seconds < world.Length(); seconds += 10) {
        world.Apply(seconds, area);
        ASSERT_DOUBLE_EQ(Gallons(area, left_main), Gallons(area, right_main)) << seconds;
        if (Gallons(area, centre) > 0.01) {
            ASSERT_NEAR(Gallons(area, left_main), 1288, 0.01) << seconds;
        }
    }
    EXPECT_EQ(Gallons(area, centre), 0);
    EXPECT_LT(Gallons(area, left_main), 1280);
}

TEST(Flight_World, Bounces_For_As_Long_As_Asked) {
    Scenario_Data scenario = Scenario("data/scenarios/piston-circuit.json");
    scenario.bounce_s = 2;
    Flight_World world(scenario, Simulator_Directory());
    double airborne_s = 0;
    double highest_ft = 0;
    bool landed = false;
    for (double seconds = 0; seconds < world.Length(); seconds += flight_step_s) {
        const Flown_State state = world.Model().At(seconds);
        landed = landed || (seconds > 400 && state.on_ground);
        if (!landed || state.on_ground)
            continue;
        airborne_s += flight_step_s;
        highest_ft = std::max(highest_ft, state.altitude_ft - scenario.arrival.elevation_ft);
    }
    EXPECT_NEAR(airborne_s, 2, 2 * flight_step_s);
    EXPECT_GT(highest_ft, scenario.aircraft.gear_height_ft + 2);
    EXPECT_LT(highest_ft, scenario.aircraft.gear_height_ft + 10);
}

TEST(Flight_World, Weather_Is_That_Of_The_Nearer_Airport) {
    Flight_World world(Scenario("data/scenarios/turboprop.json"), Simulator_Directory());
    struct Case {
        double seconds, type, rate, wind_kt, clouds1, base1, clouds2, temperature_c, inhg;
    };
    Offset_Area area;
    for (const Case& test : {Case{0, 2, 2, 13, 4, 14, 7, 3, 29.41},
                             Case{world.Length(), 1, 4, 19, 8, 12, 0, 5, 29.18}}) {
        SCOPED_TRACE(test.seconds);
        world.Apply(test.seconds, area);
        EXPECT_EQ(area.Get(Variable::precipitation_type), test.type);
        EXPECT_EQ(area.Get(Variable::precipitation_rate), test.rate);
        EXPECT_EQ(area.Get(Variable::surface_wind_speed_kt), test.wind_kt);
        EXPECT_EQ(area.Get(Variable::wind_speed_kt), test.wind_kt) << "on the ground";
        EXPECT_EQ(area.Get(Variable::cloud1_cover_eighths), test.clouds1);
        EXPECT_EQ(area.Get(Variable::cloud1_base_hundred_ft), test.base1);
        EXPECT_EQ(area.Get(Variable::cloud2_cover_eighths), test.clouds2);
        EXPECT_EQ(area.Get(Variable::surface_temperature_c), test.temperature_c);
        EXPECT_NEAR(area.Get(Variable::sea_level_pressure_inhg), test.inhg, 0.002);
    }
    // Aloft the wind is another, and the air colder.
    world.Apply(world.Length() / 2, area);
    EXPECT_EQ(area.Get(Variable::wind_speed_kt), 45);
    EXPECT_EQ(area.Get(Variable::wind_direction_deg), 270);
    EXPECT_LT(area.Get(Variable::total_air_temperature_c), -15);
}

}  // namespace
}  // namespace norvane::test
