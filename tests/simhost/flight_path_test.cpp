// The geometry under a flight: lines with rounded corners.

#include "simhost/flight/flight_path.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "common/run_error.h"

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

}  // namespace
}  // namespace norvane
