#include "blackbox/derive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <utility>

#include "blackbox/made_flight.h"

namespace norvane {
namespace {

using test::Made_State;
using test::Sample_World;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Along the equator at 100 m/s, 3,000 ft up.
Made_State Cruise(double seconds) {
    Made_State state;
    state.position = {0, seconds * 100 / 1852 / 60};
    state.altitude_ft = 3000 + std::sin(seconds / 50);
    state.values[Variable::ground_speed_kt] = 194;
    return state;
}

std::vector<Recorded_Moment> Two_Minutes() {
    return Sample_World(Cruise, {0, 120, 2});
}

Recorded_Moment& At(std::vector<Recorded_Moment>& moments, double seconds) {
    return moments.at(static_cast<std::size_t>(seconds * 2));
}

void Lose(std::vector<Recorded_Moment>& moments, double from_s, double to_s) {
    std::erase_if(moments, [&](const auto& m) { return m.seconds > from_s && m.seconds < to_s; });
}

TEST(Derive_Circuit, Is_What_Was_Flown) {
    const Flight_Summary circuit = Derive_Flight(
        "phto", Read_Recording(std::string(NORVANE_SOURCE_DIR) + "/tests/data/phto-circuit.rec"));
    std::vector<double> times;
    for (const Recorded_Event& event : circuit.events)
        times.push_back(event.seconds);
    EXPECT_THAT(times, ElementsAre(14.931, 40.564, 402.98, 425.364));
    EXPECT_THAT(circuit.events.at(3).near,
                ElementsAre("parking brake set", "on the ground", "engine 1 running",
                            "ground speed 0 kt", "altitude 36 ft", "fuel 10.1 gal"));
    ASSERT_EQ(circuit.landings.size(), 1U);
    ASSERT_EQ(circuit.landings[0].touches.size(), 1U);  // the bounce is between two samples
    const Touch& touch = circuit.landings[0].touches[0];
    // The last three samples in the air tell -133, -118 and -95.
    EXPECT_NEAR(touch.rate_fpm.value_or(0), -86, 1);
    EXPECT_EQ(touch.samples, 3);
    EXPECT_NEAR(touch.sample_rate_hz, 2.15, 0.01);
    EXPECT_FALSE(touch.peak_g);
    EXPECT_FALSE(touch.pitch_deg);
    EXPECT_NEAR(circuit.landings[0].roll_out_ft.value_or(0), 99, 2);
    EXPECT_EQ(circuit.phases.size(), 5U);
    EXPECT_NEAR(circuit.phases.at(2).seconds, 362.416, 1e-6);
    EXPECT_NEAR(circuit.phases.at(2).fuel_gal, 0.543, 0.001);
    EXPECT_THAT(circuit.incidents, IsEmpty());
    EXPECT_NEAR(circuit.distance_flown_nm, 7.6, 0.05);
    EXPECT_LT(circuit.great_circle_nm, 0.1);
    EXPECT_NEAR(circuit.highest_ft, 1020, 1);
    EXPECT_NEAR(circuit.top_of_climb_s.value_or(0), 118, 1);
    EXPECT_NEAR(circuit.top_of_descent_s.value_or(0), 256, 1);
}

TEST(Derive_Notes, Are_Taken_As_They_Stood_At_The_End) {
    auto moments = Two_Minutes();
    moments[0].remarks = {"program: Norvane 0.1.0",
                          "utc: 2026-11-23T14:05:12.345Z",
                          "flight: 214",
                          "setting: ACARS_EOF=0",
                          "setting: Line=a=b",
                          "unheard of: 1",
                          "start"};
    At(moments, 10).remarks = {"event OUT: brake-released|21|v|parking brake|1|0|s|A||1",
                               "airport OUT: KJFK"};
    At(moments, 20).remarks = {"event OFF: off-ground|41"};
    At(moments, 40).remarks = {"event ON: on-ground|81"};
    At(moments, 50).remarks = {"touch-and-go"};
    At(moments, 60).remarks = {"event ON: on-ground|121"};
    At(moments, 70).remarks = {"event IN: nonsense"};
    // Of the second landing the store knew nothing.
    At(moments, 80).remarks = {"taken up: 55.000", "setting: ACARS_EOF=1"};
    At(moments, 100).remarks = {"event ON: on-ground|41"};
    moments.push_back({300, {}, {"logged: MYLOG\ta\tb", "ended: logged"}});
    const Flight_Summary flight = Derive_Flight("id", moments);
    EXPECT_EQ(flight.program_version, "0.1.0");
    EXPECT_EQ(flight.began_utc, "2026-11-23T14:05:12.345Z");
    EXPECT_EQ(flight.flight_number + flight.origin + flight.destination, "214KJFK");
    EXPECT_THAT(flight.settings, ElementsAre(Pair("Line", "a=b"), Pair("ACARS_EOF", "1")));
    EXPECT_EQ(flight.log_name, "MYLOG");
    EXPECT_EQ(flight.logged_row, "a\tb");
    std::vector<double> times;
    for (const Recorded_Event& event : flight.events)
        times.push_back(event.seconds);
    EXPECT_THAT(times, ElementsAre(10, 20, 100));
    EXPECT_EQ(flight.events.at(0).evidence.step, 21);
    EXPECT_EQ(flight.events.at(0).evidence.values.at(0).name, "parking brake");
    std::vector<double> phases;
    for (const Phase_Sum& sum : flight.phases)
        phases.push_back(sum.seconds);
    EXPECT_THAT(phases, ElementsAre(10, 10, 70, 30));
    ASSERT_EQ(flight.incidents.size(), 1U);
    EXPECT_EQ(flight.incidents[0].kind, Incident_Kind::taken_up);
    EXPECT_EQ(flight.length_seconds, 120);
}

TEST(Derive_Segments, Begin_Where_The_Line_Breaks_And_Nowhere_Else) {
    using Moments = std::vector<Recorded_Moment>;
    const auto set = [](Moments& moments, Variable variable, double value, double from_s,
                        double to_s) {
        for (double s = from_s; s <= std::min(to_s, 120.0); s += 0.5) {
            auto& bytes = At(moments, s).changes.emplace_back(Offset_Of(variable)).bytes;
            bytes.resize(Row_Of(variable).size);
            Encode(variable, s < to_s ? value : 0, bytes);
        }
    };
    const auto move = [](Moments& moments, double degrees, double from_s) {
        for (double s = from_s; s <= 120; s += 0.5) {
            Made_State state = Cruise(s);
            state.position.latitude += degrees;
            At(moments, s) = test::Made_Moment(s, state);
        }
    };
    const struct {
        const char* name;
        std::function<void(Moments&)> change;
        Incident_Kind kind;
        double seconds;
        double lasted;
        double value;
        std::vector<double> segments;
        double flown_nm;
    } cases[] = {
        {"three seconds without a sample",
         [](Moments& m) { Lose(m, 50, 53); },
         Incident_Kind::gap,
         -1,
         0,
         0,
         {0},
         6.48},
        {"a gap",
         [](Moments& m) { Lose(m, 50, 60); },
         Incident_Kind::gap,
         50,
         10,
         0,
         {0, 60},
         6.48},
        {"a pause told by both ends",
         [](Moments& m) {
             At(m, 50).remarks = {"paused"};
             At(m, 60).remarks = {"resumed"};
             Lose(m, 50, 60);
         },
         Incident_Kind::pause,
         50,
         10,
         0,
         {0, 60},
         6.48},
        {"a pause told at its end",
         [](Moments& m) {
             At(m, 60).remarks = {"paused", "resumed"};
             Lose(m, 50, 60);
         },
         Incident_Kind::pause,
         50,
         10,
         0,
         {0, 60},
         6.48},
        {"a replay",
         [&](Moments& m) { set(m, Variable::replaying, 1, 50, 60); },
         Incident_Kind::replay,
         50,
         10,
         0,
         {0, 60},
         5.91},
        {"a short pause of the simulator, and the aircraft where it was",
         [&](Moments& m) { set(m, Variable::paused, 1, 50, 50.5); },
         Incident_Kind::pause,
         50,
         0.5,
         0,
         {0, 50.5},
         6.48},
        {"set 6 nm aside",
         [&](Moments& m) { move(m, 0.1, 50); },
         Incident_Kind::teleport,
         50,
         0,
         6,
         {0, 50},
         6.45},
        {"slewed 0.06 nm aside",
         [&](Moments& m) {
             move(m, 0.001, 50);
             set(m, Variable::slew_mode, 1, 50, 50.5);
         },
         Incident_Kind::teleport,
         50.5,
         0,
         0.08,
         {0, 50.5},
         6.43},
        {"as fast as flown at four times the rate",
         [&](Moments& m) { set(m, Variable::simulation_rate, 4, 50, 120.5); },
         Incident_Kind::rate_change,
         50,
         0,
         4,
         {0},
         6.48},
    };
    for (const auto& c : cases) {
        auto moments = Two_Minutes();
        c.change(moments);
        const Flight_Summary flight = Derive_Flight("made", moments);
        std::vector<double> segments;
        for (const Flight_Point& point : flight.track) {
            if (point.begins_segment)
                segments.push_back(point.seconds);
        }
        EXPECT_EQ(segments, c.segments) << c.name;
        EXPECT_NEAR(flight.distance_flown_nm, c.flown_nm, 0.015) << c.name;
        ASSERT_EQ(flight.incidents.size(), c.seconds < 0 ? 0U : 1U) << c.name;
        for (const Flight_Incident& incident : flight.incidents) {
            EXPECT_EQ(incident.kind, c.kind) << c.name;
            EXPECT_EQ(incident.seconds, c.seconds) << c.name;
            EXPECT_EQ(incident.lasted_seconds, c.lasted) << c.name;
            EXPECT_NEAR(incident.value, c.value, 0.02) << c.name;
        }
    }
}

/// The greatest distance of what was flown from the line through the track, in metres and feet.
std::pair<double, double> Track_Errors(const test::Made_World& world,
                                       const std::vector<Flight_Point>& track, double end_s) {
    std::pair<double, double> worst{0, 0};
    std::size_t next = 1;
    for (double s = 0; s <= end_s; s += 0.5) {
        while (next + 1 < track.size() && track[next].seconds < s)
            ++next;
        const Flight_Point& from = track[next - 1];
        const Flight_Point& to = track[next];
        if (to.begins_segment)
            continue;
        const Made_State flown = world(s);
        double metres = 1e9;
        for (int i = 0; i <= 200; ++i) {
            const double share = i / 200.0;
            const auto between = [&](double a, double b) { return a + share * (b - a); };
            const Position point{between(from.position.latitude, to.position.latitude),
                                 between(from.position.longitude, to.position.longitude)};
            metres = std::min(metres, Great_Circle_Nm(point, flown.position) * 1852);
        }
        const double share = (s - from.seconds) / (to.seconds - from.seconds);
        const double line_ft = from.altitude_ft + share * (to.altitude_ft - from.altitude_ft);
        worst.first = std::max(worst.first, metres);
        worst.second = std::max(worst.second, std::abs(flown.altitude_ft - line_ft));
    }
    return worst;
}

/// Turns and climbs, once in so many seconds.
test::Made_World Turning(double turn_s) {
    return [turn_s](double s) {
        Made_State state;
        state.position = {60 + 0.02 * std::sin(s / turn_s * 6.2832), 0.0005 * s};
        state.altitude_ft = 5000 + 900 * std::sin(s / turn_s * 4);
        return state;
    };
}

TEST(Derive_Track, Keeps_Its_Limits_In_Turns_And_Its_Length_In_All) {
    const auto world = Turning(240);
    const auto turns = Derive_Flight("made", Sample_World(world, {0, 3600, 2})).track;
    EXPECT_LT(turns.size(), 1000U);
    const auto [metres, feet] = Track_Errors(world, turns, 3600);
    EXPECT_LT(metres, 50);
    EXPECT_LT(feet, 50);
    // More turns than fit, in two segments.
    auto moments = Sample_World(Turning(20), {0, 9000, 2});
    Lose(moments, 4000, 5000);
    const auto many = Derive_Flight("made", moments).track;
    EXPECT_EQ(many.size(), 2000U);
    EXPECT_EQ(std::count_if(many.begin(), many.end(),
                            [](const auto& point) { return point.begins_segment; }),
              2);
    // A straight line needs its ends and, at once, where the phase changes.
    EXPECT_EQ(Derive_Flight("made", Two_Minutes()).track.size(), 3U);
}

}  // namespace
}  // namespace norvane
