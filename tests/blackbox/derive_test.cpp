#include "blackbox/derive.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <utility>

#include "blackbox/made_flight.h"
#include "support/test_world.h"

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

template <class Rows>
std::vector<double> Times(const Rows& rows) {
    std::vector<double> times;
    for (const auto& row : rows)
        times.push_back(row.seconds);
    return times;
}

TEST(Derive_Notes, Planned_Figures_Stand_Beside_The_Engines) {
    auto moments = Read_Recording(test::Data_File("phto-circuit.rec"));
    const auto told = [&](const std::string& planned, const std::string& clock) {
        moments.front().remarks = {"utc: 2026-03-14T09:59:50Z", "setting: ACARS_UseTime=" + clock,
                                   "planned: time_out=0000Z fuel_on_lbs=1", "planned: " + planned};
        std::string text;
        for (const Planned_Figure& figure : Derive_Flight("id", moments).planned)
            text += figure.name + " " + figure.planned + "/" + figure.flown + " ";
        return text;
    };
    EXPECT_EQ(told("time_out=0900Z time_on=0910Z fuel_out_lbs=300 fuel_off_lbs=299 fuel_on_lbs=280 "
                   "block_fuel_lbs=22 flight_fuel_lbs=19",
                   "0"),
              "time_out 0900Z/2205Z time_on 0910Z/2211Z fuel_out_lbs 300/66 fuel_off_lbs 299/66 "
              "fuel_on_lbs 280/60 block_fuel_lbs 22/6 flight_fuel_lbs 19/6 ");
    EXPECT_EQ(told("time_off=0901Z time_in=0911Z", "1"),
              "time_off 0901Z/1000Z time_in 0911Z/1006Z ");
    EXPECT_EQ(told("time_out=9am fuel_off_lbs=-1 fuel_out_lbs= wings=2 =3 x", "0"), "");
    moments.resize(moments.size() / 2);
    EXPECT_EQ(told("time_on=0910Z block_fuel_lbs=22", "0"), "time_on 0910Z/ block_fuel_lbs 22/ ")
        << "it never landed";
}

TEST(Derive_Notes, Are_Taken_As_They_Stood_At_The_End) {
    auto moments = Two_Minutes();
    moments[0].remarks = {"program: Norvane 0.1.0", "flight: 214",   "setting: ACARS_EOF=0",
                          "setting: Line=a=b",      "unheard of: 1", "start"};
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
    EXPECT_EQ(flight.flight_number + flight.origin + flight.destination, "214KJFK");
    EXPECT_THAT(flight.settings, ElementsAre(Pair("Line", "a=b"), Pair("ACARS_EOF", "1")));
    EXPECT_EQ(flight.log_name, "MYLOG");
    EXPECT_EQ(flight.logged_row, "a\tb");
    EXPECT_THAT(Times(flight.events), ElementsAre(10, 20, 100));
    EXPECT_EQ(flight.events.at(0).evidence.step, 21);
    EXPECT_EQ(flight.events.at(0).evidence.values.at(0).name, "parking brake");
    EXPECT_THAT(Times(flight.phases), ElementsAre(10, 10, 70, 30));
    ASSERT_EQ(flight.incidents.size(), 1U);
    EXPECT_EQ(flight.incidents[0].kind, Incident_Kind::taken_up);
    EXPECT_EQ(flight.length_seconds, 120);
}

TEST(Derive_Segments, Begin_Where_The_Line_Breaks_And_Nowhere_Else) {
    using Moments = std::vector<Recorded_Moment>;
    const auto set = [](Moments& moments, Variable variable, double value, double from_s,
                        double to_s) {
        for (double s = from_s; s <= std::min(to_s, 120.0); s += 0.5) {
            auto& bytes =
                At(moments, s).changes.emplace_back(Recorded_Change{Offset_Of(variable), {}}).bytes;
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
        const char* what;
        std::function<void(Moments&)> change;
    } cases[] = {
        {"0; 6.48 nm", [](Moments& m) { Lose(m, 50, 53); }},
        {"0 60; 6.48 nm; gap 50 for 10: 0.00", [](Moments& m) { Lose(m, 50, 60); }},
        {"0 60; 6.48 nm; pause 50 for 10: 0.00",
         [](Moments& m) {
             At(m, 50).remarks = {"paused"};
             At(m, 60).remarks = {"resumed"};
             Lose(m, 50, 60);
         }},
        {"0 60; 6.48 nm; pause 50 for 10: 0.00",
         [](Moments& m) {
             At(m, 60).remarks = {"paused", "resumed"};
             Lose(m, 50, 60);
         }},
        {"0 60; 5.91 nm; replay 50 for 10: 0.00",
         [&](Moments& m) { set(m, Variable::replaying, 1, 50, 60); }},
        {"0 50.5; 6.48 nm; pause 50 for 0.5: 0.00",
         [&](Moments& m) { set(m, Variable::paused, 1, 50, 50.5); }},
        {"0 50; 6.45 nm; teleport 50 for 0: 6.00", [&](Moments& m) { move(m, 0.1, 50); }},
        {"0 50.5; 6.43 nm; teleport 50.5 for 0: 0.08",
         [&](Moments& m) {
             move(m, 0.001, 50);
             set(m, Variable::slew_mode, 1, 50, 50.5);
         }},
        {"0; 63.17 nm; rate 50 for 0: 16.00",
         [&](Moments& m) {
             for (double s = 50; s <= 120; s += 0.5)
                 At(m, s) = test::Made_Moment(s, Cruise(50 + 16 * (s - 50)));
             set(m, Variable::simulation_rate, 16, 50, 120.5);
         }},
    };
    for (const auto& c : cases) {
        auto moments = Two_Minutes();
        c.change(moments);
        const Flight_Summary flight = Derive_Flight("made", moments);
        std::string told;
        for (const Flight_Point& point : flight.track) {
            if (point.begins_segment)
                told += fmt::format("{}{}", told.empty() ? "" : " ", point.seconds);
        }
        told += fmt::format("; {:.2f} nm", flight.distance_flown_nm);
        constexpr std::array kinds{"pause", "gap", "taken up", "rate", "teleport", "replay"};
        for (const Flight_Incident& incident : flight.incidents)
            told += fmt::format("; {} {} for {}: {:.2f}",
                                kinds.at(static_cast<std::size_t>(incident.kind)), incident.seconds,
                                incident.lasted_seconds, incident.value);
        EXPECT_EQ(told, c.what);
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
test::Made_World Turning(double turn_s, double climb_s) {
    return [=](double s) {
        Made_State state;
        state.position = {60 + 0.02 * std::sin(s / turn_s * 6.2832), 0.0005 * s};
        state.altitude_ft = 5000 + 900 * std::sin(s / climb_s * 6.2832);
        return state;
    };
}

TEST(Derive_Track, Keeps_Its_Limits_In_Turns_And_Its_Length_In_All) {
    for (const auto& world : {Turning(240, 7200), Turning(7200, 240)}) {
        const auto turns = Derive_Flight("made", Sample_World(world, {0, 3600, 2})).track;
        EXPECT_LT(turns.size(), 1000U);
        const auto [metres, feet] = Track_Errors(world, turns, 3600);
        EXPECT_LT(metres, 50);
        EXPECT_LT(feet, 50);
    }
    // More turns than fit, in two segments.
    auto moments = Sample_World(Turning(20, 30), {0, 9000, 2});
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
