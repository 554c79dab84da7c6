#include "blackbox/landing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "blackbox/derive.h"
#include "blackbox/made_flight.h"
#include "blackbox/segments.h"

namespace norvane {
namespace {

using test::Made_Landing;
using test::Made_State;
using test::Sample_World;
using test::Sampling;
using Landings = std::vector<Landing_Record>;

constexpr double contact_s = Made_Landing::contact_s;

Landings Landings_Of(const test::Made_World& world, const Sampling& sampling) {
    return Derive_Flight("made", Sample_World(world, sampling)).landings;
}

Landings Landings_Of(const Made_Landing& made, const Sampling& sampling) {
    return Landings_Of([&](double seconds) { return made.At(seconds); }, sampling);
}

TEST(Landing_Rate, Is_Near_The_Truth_At_Every_Rate_And_Says_What_It_Was_Made_Of) {
    const struct {
        double rate_hz = 0;
        double most_off = 0;
        int least_samples = 0;
        int most_samples = 0;
    } rates[] = {{60, 10, 14, 15}, {50, 10, 12, 13}, {20, 15, 5, 5}, {2, 60, 3, 3}};
    for (const auto& rate : rates) {
        for (const double truth : {-60.0, -300.0, -900.0}) {
            // The contact lies anywhere between two samples.
            for (int i = 0; i < 10; ++i) {
                Made_Landing made;
                made.touch_fpm = truth;
                made.noise_fpm = 4;
                const auto landings =
                    Landings_Of(made, {(i + 0.5) / 10 / rate.rate_hz, 50, rate.rate_hz});
                const std::string what = std::to_string(rate.rate_hz) + " Hz, " +
                                         std::to_string(truth) + " ft/min, " + std::to_string(i);
                ASSERT_EQ(landings.size(), 1U) << what;
                ASSERT_EQ(landings[0].touches.size(), 1U) << what;
                const Touch& touch = landings[0].touches[0];
                ASSERT_TRUE(touch.rate_fpm) << what;
                EXPECT_NEAR(*touch.rate_fpm, truth, rate.most_off) << what;
                EXPECT_GE(touch.samples, rate.least_samples) << what;
                EXPECT_LE(touch.samples, rate.most_samples) << what;
                EXPECT_NEAR(touch.sample_rate_hz, rate.rate_hz, rate.rate_hz / 50) << what;
                EXPECT_NEAR(touch.seconds, contact_s, 1 / rate.rate_hz) << what;
            }
        }
    }
}

TEST(Landing_Rate, Is_Given_Only_Where_The_Last_Moments_Were_Seen) {
    Made_Landing from_height;
    from_height.serves_speed = false;
    from_height.flare_s = 2;
    from_height.approach_fpm = -320;
    const struct {
        const char* name;
        Sampling sampling;
        bool has_rate;
        Made_Landing made = {};
    } cases[] = {
        {"one lost packet at contact, 50 Hz", {0.01, 50, 50, 39.98, 40.02}, true},
        {"one lost packet at contact, 2 Hz", {0.2, 50, 2, 40.0, 40.5}, true},
        {"the link cut 1 s before and back at once", {0.01, 50, 50, 39, 40.1}, false},
        {"the link cut 1 s before for long", {0.01, 60, 50, 39, 48}, false},
        {"the link cut 1 s before, 2 Hz", {0.2, 60, 2, 39, 42}, false},
        {"a gap that ended 1 s before", {0.01, 50, 50, 30, 39}, false},
        {"a gap that ended 5 s before", {0.01, 50, 50, 30, 35}, true},
        {"from the height alone, 50 Hz", {0.01, 50, 50}, true, from_height},
        {"from the height alone, 2 Hz", {0.2, 50, 2}, true, from_height},
    };
    for (const auto& c : cases) {
        const auto landings = Landings_Of(c.made, c.sampling);
        ASSERT_EQ(landings.size(), 1U) << c.name;
        const auto rate = landings[0].touches[0].rate_fpm;
        EXPECT_EQ(rate.has_value(), c.has_rate) << c.name;
        EXPECT_NEAR(rate.value_or(-300), -300, c.sampling.rate_hz > 2 ? 10 : 60) << c.name;
    }
}

/// A landing at 50 Hz in which a variable has another value for a while.
Landings Landings_With(Variable variable, double value, double from_s, double to_s) {
    const Made_Landing made;
    return Landings_Of(
        [&](double seconds) {
            Made_State state = made.At(seconds);
            if (seconds >= from_s && seconds < to_s)
                state.values[variable] = value;
            return state;
        },
        {0.01, 50, 50});
}

TEST(Landing_Rate, Is_Not_Made_Of_What_Was_Not_Flown) {
    const auto paused = [](double seconds) {
        constexpr double pause_s = contact_s - 0.5;
        Made_State state =
            Made_Landing().At(seconds < pause_s ? seconds : std::max(pause_s, seconds - 5));
        state.values[Variable::paused] = seconds > pause_s && seconds < pause_s + 5 ? 1 : 0;
        return state;
    };
    const auto landings = Landings_Of(paused, {0.01, 60, 50});
    ASSERT_EQ(landings.size(), 1U);
    EXPECT_FALSE(landings[0].touches[0].rate_fpm);
    // What follows a replay was not flown to there.
    EXPECT_THAT(Landings_With(Variable::replaying, 1, contact_s - 3, contact_s - 0.5),
                testing::IsEmpty());
    // Contacts that were shown and not flown.
    EXPECT_THAT(Landings_With(Variable::replaying, 1, contact_s - 3, 50), testing::IsEmpty());
    // A sample that failed is one of many.
    for (const double failed_s : {contact_s - 0.02, contact_s - 0.1}) {
        const auto failed =
            Landings_With(Variable::vertical_speed_fpm, 0, failed_s - 0.01, failed_s + 0.01);
        ASSERT_EQ(failed.size(), 1U);
        EXPECT_NEAR(failed[0].touches[0].rate_fpm.value_or(0), -300, 10) << failed_s;
    }
}

TEST(Landing_Rate, Is_Relative_To_A_Runway_That_Rises_Or_Falls) {
    for (const double slope : {-0.02, 0.02}) {
        Made_Landing made;
        made.slope = slope;
        Recorded_Flight flight = Decode_Moments(
            Sample_World([&](double seconds) { return made.At(seconds); }, {0.01, 50, 50}));
        (void)Mark_Segments(flight.samples, {});
        std::size_t contact = 0;
        while (!flight.samples.at(contact).point.on_ground)
            ++contact;
        const auto rate = Rate_At_Contact(flight, contact, slope);
        ASSERT_TRUE(rate);
        EXPECT_NEAR(rate->fpm, -300, 10) << slope;
        // 2 % of 100 kt.
        EXPECT_NEAR(Rate_At_Contact(flight, contact)->fpm - rate->fpm, slope * 10127, 3);
    }
}

TEST(Landings, Bounces_Stay_One_Landing_And_Flying_On_Makes_Another) {
    const struct {
        const char* name;
        std::vector<Made_Landing::Hop> hops;
        std::vector<std::size_t> touches;
        double last_rate_fpm;
    } cases[] = {
        {"wheels light for a moment", {{40.5, 1, 0.8}, {42, 3, 0.2}}, {1}, -300},
        {"a double bounce", {{40.5, 3, 1.2}, {42.5, 2, 1}}, {3}, -480},
        {"a hop of 40 ft", {{41, 40, 8}}, {2}, -1200},
        {"a touch-and-go at 300 ft", {{42, 300, 60}}, {1, 1}, -1200},
        {"a short hop of 60 ft", {{42, 60, 12}}, {1, 1}, -1200},
        {"a hop long after the landing", {{140, 3, 1.2}}, {1}, -300},
    };
    for (const auto& c : cases) {
        Made_Landing made;
        made.hops = c.hops;
        const auto landings = Landings_Of(made, {0.01, 150, 50});
        std::vector<std::size_t> touches;
        for (const auto& landing : landings) {
            touches.push_back(landing.touches.size());
            EXPECT_EQ(landing.is_touch_and_go, &landing != &landings.back()) << c.name;
        }
        ASSERT_EQ(touches, c.touches) << c.name;
        EXPECT_NEAR(landings.back().touches.back().rate_fpm.value_or(0), c.last_rate_fpm, 20)
            << c.name;
        EXPECT_EQ(landings.back().Worst_Rate(), landings.back().touches.size() == 1
                                                    ? landings.back().touches[0].rate_fpm
                                                    : landings.back().touches[1].rate_fpm)
            << c.name;
    }
}

TEST(Landings, Nothing_Else_Is_A_Landing) {
    const auto low_pass = [](double seconds) {
        // Down to 10 ft and up again.
        Made_State state = Made_Landing().At(20);
        state.altitude_ft =
            state.values[Variable::ground_elevation_ft] + 15 + std::pow(seconds - 40, 2);
        return state;
    };
    EXPECT_THAT(Landings_Of(low_pass, {0.01, 80, 50}), testing::IsEmpty());
    const auto placed = [](double seconds) {
        const Made_Landing made;
        return made.At(seconds < 30 ? 0 : 41 + seconds - 30);
    };
    // Set down from far away and from the same place.
    for (const double rate_hz : {2.0, 50.0})
        EXPECT_THAT(Landings_Of(placed, {0.01, 60, rate_hz}), testing::IsEmpty()) << rate_hz;
    // Off the ground for too short a time.
    Made_Landing hop;
    hop.hops = {{41, 60, 12}};
    EXPECT_THAT(Landings_Of(hop, {40.5, 70, 50}), testing::IsEmpty());
}

TEST(Landings, A_Touch_Tells_How_The_Aircraft_Stood_In_The_Wind) {
    Made_Landing made;
    made.values = {{Variable::true_heading_deg, 84},   {Variable::pitch_deg, -2.5},
                   {Variable::wind_speed_kt, 20},      {Variable::wind_direction_deg, 60},
                   {Variable::total_weight_lbs, 2300}, {Variable::indicated_airspeed_kt, 110}};
    const auto world = [&](double seconds) {
        Made_State state = made.At(seconds);
        if (seconds > contact_s) {
            const double rolled_s = seconds - contact_s;
            state.values[Variable::ground_speed_kt] = std::max(100 - 6 * rolled_s, 0.0);
            // One wild sample, then a peak of five.
            state.values[Variable::g_load] =
                rolled_s < 0.02 ? 9 : (rolled_s > 0.5 && rolled_s < 0.6 ? 1.6 : 1);
        } else {
            state.values[Variable::g_load] = 1;
        }
        return state;
    };
    const auto landings = Landings_Of(world, {0.01, 60, 50});
    ASSERT_EQ(landings.size(), 1U);
    const Touch& touch = landings[0].touches[0];
    EXPECT_NEAR(touch.pitch_deg.value_or(0), -2.5, 0.01);
    EXPECT_NEAR(touch.crab_deg.value_or(0), -6, 0.1);
    EXPECT_NEAR(touch.headwind_kt.value_or(0), 17.3, 0.2);
    EXPECT_NEAR(touch.crosswind_kt.value_or(0), -10, 0.2);
    EXPECT_NEAR(touch.peak_g.value_or(0), (9 + 1 + 1) / 3.0, 0.02);
    EXPECT_EQ(touch.weight_lbs, 2300);
    EXPECT_FALSE(touch.bank_deg);
    EXPECT_FALSE(touch.flaps_percent);
    // The made aircraft rolls on at 100 kt whatever it tells: 10 s.
    EXPECT_NEAR(landings[0].roll_out_ft.value_or(0), 1688, 10);
    // What the simulator does not tell is unknown, not 0.
    const Touch silent = Landings_Of(Made_Landing(), {0.01, 60, 50}).at(0).touches[0];
    EXPECT_TRUE(silent.ground_speed_kt && !silent.indicated_airspeed_kt && !silent.weight_lbs);
    // A calm is no wind from the left: the store keeps no sign of a zero.
    const auto calm = [&](double seconds) {
        Made_State state = world(seconds);
        state.values[Variable::wind_speed_kt] = seconds < 5 ? 3 : 0;
        return state;
    };
    const Touch becalmed = Landings_Of(calm, {0.01, 60, 50}).at(0).touches[0];
    EXPECT_FALSE(std::signbit(becalmed.crosswind_kt.value_or(-1)));
    // Twice a second, three samples show no peak.
    EXPECT_FALSE(Landings_Of(world, {0.01, 60, 2}).at(0).touches[0].peak_g);
}

}  // namespace
}  // namespace norvane
