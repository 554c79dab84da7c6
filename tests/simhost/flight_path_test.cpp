// The geometry under a flight: lines with rounded corners, descents with rounded corners, winds.

#include "simhost/flight_path.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "common/run_error.h"
#include "simhost/flight_air.h"
#include "simhost/flight_engine.h"
#include "simhost/flight_profile.h"
#include "simlink/catalogue.h"

namespace norvane {
namespace {

/// A walk along the line: no place is farther from the one before than the way between them, and
/// the course is the direction of the movement.
void Expect_Smooth(const Flight_Path& path, double step_m, double most_turn_deg) {
    Flight_Path::Place before = path.At(0);
    for (double at = step_m; at < path.Length_M(); at += step_m) {
        const Flight_Path::Place now = path.At(at);
        const double moved = Great_Circle_Nm(before.position, now.position) * metres_per_nm;
        ASSERT_NEAR(moved, step_m, step_m * 0.02) << at;
        const double middle = before.course_deg + Half_Turn(now.course_deg - before.course_deg) / 2;
        const double moved_deg = Bearing_Deg(before.position, now.position);
        ASSERT_LE(std::abs(Half_Turn(moved_deg - middle)), 1) << at;
        ASSERT_LE(std::abs(Half_Turn(now.course_deg - before.course_deg)), most_turn_deg) << at;
        before = now;
    }
}

TEST(Path, Is_Smooth_On_Taxiways_And_Over_Oceans) {
    const std::vector<Path_Point> corners{{{51.47, -0.48}, 0},
                                          {{51.47, -0.475}, 25},
                                          {{51.472, -0.475}, 25},
                                          {{51.4715, -0.47}, 25},
                                          {{51.47, -0.47}, 0}};
    const Flight_Path taxiway(corners, "taxi");
    Expect_Smooth(taxiway, 2, 5);
    EXPECT_EQ(taxiway.Turns().size(), 3U);
    EXPECT_LT(taxiway.Turns()[0].angle_deg, 0) << "to the left";
    EXPECT_GT(taxiway.Turns()[1].angle_deg, 0) << "to the right";
    // Far north, where courses change along the way.
    const Flight_Path ocean(
        {{{51.5, -0.5}, 4000}, {{61, -20}, 4000}, {{63, -50}, 4000}, {{40.6, -73.8}, 4000}},
        "ocean");
    Expect_Smooth(ocean, 500, 7.5);
    EXPECT_NEAR(ocean.Length_M() / metres_per_nm,
                Great_Circle_Nm({51.5, -0.5}, {61, -20}) + Great_Circle_Nm({61, -20}, {63, -50}) +
                    Great_Circle_Nm({63, -50}, {40.6, -73.8}),
                2)
        << "only corners are cut";
}

TEST(Path, Ends_Where_It_Should_And_Cuts_Only_Short_Corners) {
    const Position start{10, 10};
    const Position corner = Place_At(start, 0, 1000);
    const Position end = Place_At(corner, 90, 60);
    const Flight_Path path({{start, 0}, {corner, 500}, {end, 0}}, "short leg");
    EXPECT_LT(Great_Circle_Nm(path.At(-5).position, start), 1e-5);
    EXPECT_LT(Great_Circle_Nm(path.At(path.Length_M() + 5).position, end), 1e-4);
    // The turn would need 500 m of a leg of 60: it is made tighter.
    EXPECT_GT(path.Turns().at(0).start_m, 960);
    EXPECT_NEAR(path.Distance_Of_Point(1), (path.Turns()[0].start_m + path.Turns()[0].end_m) / 2,
                1e-6);
    EXPECT_NEAR(path.At(path.Length_M()).course_deg, 90, 0.01);
}

TEST(Path, Refuses_Lines_Nobody_Can_Follow) {
    const Position a{50, 8};
    const Position b{50, 8.1};
    EXPECT_THROW(Flight_Path({{a, 0}, {a, 0}}, "still"), Run_Error);
    EXPECT_THROW(Flight_Path({{a, 0}, {b, 50}, {a, 0}}, "back"), Run_Error);
}

TEST(Descent, Rounds_Its_Corners_And_Keeps_Its_Levels) {
    const Descent_Profile profile({.ground_ft = 400,
                                   .from_ft = 21000,
                                   .level_offs = {{4000, 5}, {10000, 6}},
                                   .final_ft_per_nm = 318,
                                   .descent_ft_per_nm = 300,
                                   .rounding_nm = 0.5});
    const double final_nm = 3600.0 / 318;
    const double top_nm = final_nm + 5 + 20 + 6 + 11000 / 300.0 + 0.5;
    const std::pair<double, double> places[] = {{0, 400},
                                                {final_nm + 2.5, 4000},
                                                {final_nm + 5 + 20 + 3, 10000},
                                                {top_nm, 21000},
                                                {top_nm + 50, 21000}};
    for (const auto& [place_nm, altitude_ft] : places)
        EXPECT_NEAR(profile.Altitude_Ft(place_nm), altitude_ft, 0.01);
    EXPECT_NEAR(profile.Top_Nm(), top_nm, 0.01);
    EXPECT_NEAR(profile.Slope_Ft_Per_Nm(final_nm + 2.5), 0, 1e-6);
    double slope = profile.Slope_Ft_Per_Nm(-1);
    for (double at = -1; at < profile.Top_Nm() + 2; at += 0.02) {
        const double next = profile.Slope_Ft_Per_Nm(at);
        ASSERT_LE(std::abs(next - slope), 318 * 0.02 + 0.1) << at;
        const double climbed = profile.Altitude_Ft(at + 0.01) - profile.Altitude_Ft(at - 0.01);
        ASSERT_NEAR(climbed / 0.02, next, 4) << at;
        slope = next;
    }
}

TEST(Atmosphere, Airspeeds_And_Winds_Agree_With_The_Tables) {
    // Altitude, calibrated and true airspeed of the standard atmosphere.
    const double cases[][3] = {
        {0, 250, 250}, {10000, 250, 288}, {20000, 250, 333}, {39000, 250, 464}};
    for (const auto& [altitude_ft, indicated_kt, true_kt] : cases) {
        const Air air(altitude_ft);
        const double there = True_From_Indicated(indicated_kt, air);
        EXPECT_NEAR(there, true_kt, 3) << altitude_ft;
        EXPECT_NEAR(Indicated_From_True(there, air), indicated_kt, 1e-6);
    }
    EXPECT_NEAR(Air(36089).temperature_c, -56.5, 0.01);
    EXPECT_NEAR(Air(18000).pressure_ratio, 0.4994, 0.001);
    EXPECT_NEAR(Headwind_Kt({270, 30}, 90), -30, 1e-9);
    EXPECT_NEAR(Crosswind_Kt({90, 20}, 0), 20, 1e-9);
    const Wind between = Wind_Between({350, 20}, {10, 20}, 0.5);
    EXPECT_NEAR(Half_Turn(between.direction_deg), 0, 1e-6) << "through north, not south";
    EXPECT_NEAR(between.speed_kt, 20 * std::cos(10 * 3.14159265 / 180), 1e-6);
}

TEST(Engines, Work_Harder_For_More_And_Weaker_When_High) {
    Engine_Data jet;
    jet.kind = engine_kind::jet;
    jet.count = 2;
    jet.thrust_lbf = 26000;
    jet.fuel_flow_pph = {780, 9800};
    jet.n1_percent = {21, 96};
    const auto power = [&](double vertical_fpm, const Air& air) {
        return Power_Needed(jet,
                            {.weight_lbs = 140000,
                             .true_kt = 300,
                             .vertical_fpm = vertical_fpm,
                             .lift_to_drag = 16},
                            air);
    };
    const Air low(5000);
    const Air high(33000);
    EXPECT_GT(power(0, low), 0.1);
    EXPECT_GT(power(1500, low), power(0, low));
    EXPECT_GT(power(0, high), power(0, low));
    EXPECT_EQ(power(-4000, low), 0);
    EXPECT_GT(Fuel_Flow_Pph(jet, 0.8, 300, low), Fuel_Flow_Pph(jet, 0.8, 300, high));
    EXPECT_NEAR(Readings_Of(jet, 1, low).n1_percent, 96, 1e-9);
    EXPECT_NEAR(Readings_Of(jet, 0, low).n1_percent, 21, 1e-9);
    EXPECT_LT(Readings_Of_Stopped(jet, 20, low).n1_percent, 2);
    Engine_Data piston;
    piston.manifold_inhg = {10, 29};
    EXPECT_LT(Readings_Of(piston, 1, Air(9000)).manifold_inhg, 22) << "no more than outside";
    EXPECT_NEAR(Readings_Of_Stopped(piston, 60, Air(0)).manifold_inhg, 29.92, 0.1);
}

}  // namespace
}  // namespace norvane
