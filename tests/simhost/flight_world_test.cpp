// What the offset area shows of a flown scenario beyond its movement: tanks and bounces.

#include "simhost/flight/flight_world.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "simhost/scenario/scenario.h"
#include "simhost/scenario_files.h"

namespace norvane::test {
namespace {

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

}  // namespace
}  // namespace norvane::test
