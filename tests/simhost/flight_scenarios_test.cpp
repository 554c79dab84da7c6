// Every shipped scenario, read as a client reads it: a flight from gate to gate whose figures agree
// with each other and with what its aircraft can do.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

#include "common/line_reader.h"
#include "common/number.h"
#include "common/text.h"
#include "simhost/flight_path.h"
#include "simhost/flight_samples.h"
#include "simhost/scenario.h"

namespace norvane::test {
namespace {

class Flown_Scenario : public testing::TestWithParam<Scenario_Facts> {
  protected:
    void SetUp() override {
        scenario = Read_Scenario(Repository_File(GetParam().file), Simulator_Directory());
    }

    [[nodiscard]] const std::vector<Flight_Sample>& Samples() const {
        return Samples_Of(GetParam());
    }
    [[nodiscard]] int Kind() const { return scenario.aircraft.engine.kind; }

    Scenario_Data scenario;
};

INSTANTIATE_TEST_SUITE_P(All, Flown_Scenario, testing::ValuesIn(All_Scenarios()),
                         [](const auto& test) {
                             std::string name =
                                 std::filesystem::path(test.param.file).stem().string();
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

double Minutes_Between(const Flight_Sample& from, const Flight_Sample& to) {
    const int minutes = to.utc_minute_of_day - from.utc_minute_of_day;
    return minutes < 0 ? minutes + 1440 : minutes;
}

TEST_P(Flown_Scenario, Goes_From_Gate_To_Gate_In_Order) {
    const auto& samples = Samples();
    const Flight_Marks marks = Marks_Of(samples);
    const double block = Minutes_Between(samples[marks.out], samples[marks.in]);
    EXPECT_GT(block, Minutes_Between(samples[marks.lift_off], samples[marks.touchdown]));
    EXPECT_GE(samples.back().seconds / 60, GetParam().least_minutes);
    EXPECT_LE(samples.back().seconds / 60, GetParam().most_minutes);
    EXPECT_GE(samples[marks.out].seconds, 10) << "time for a client to connect at the gate";

    // The engines run until the brake is set, and stop one after the other.
    const int count = scenario.aircraft.engine.count;
    int running = count;
    for (const Flight_Sample& sample : samples) {
        if (sample.seconds < samples[marks.in].seconds) {
            ASSERT_EQ(sample.engines_running, count) << sample.seconds;
        }
        ASSERT_LE(running - sample.engines_running, 1) << sample.seconds;
        ASSERT_LE(sample.engines_running, running) << sample.seconds;
        running = sample.engines_running;
    }
    EXPECT_EQ(running, 0);
    EXPECT_EQ(samples.back().fuel_flow_pph, 0);
    EXPECT_LT(samples.back().n1_percent, 3);
}

TEST_P(Flown_Scenario, Leaves_The_Ground_As_Often_As_It_Should) {
    const auto& samples = Samples_Of(GetParam(), 0.25);
    int changes = 0;
    for (std::size_t i = 1; i < samples.size(); ++i)
        changes += samples[i].on_ground != samples[i - 1].on_ground ? 1 : 0;
    EXPECT_EQ(changes, GetParam().bounces ? 4 : 2);
}

TEST_P(Flown_Scenario, Weighs_What_It_Has_Not_Burnt) {
    const auto& samples = Samples();
    const double pounds_a_gallon = scenario.aircraft.fuel_lb_per_gal;
    EXPECT_NEAR(samples.front().fuel_gal * pounds_a_gallon, scenario.fuel_lbs, 0.5);
    double burnt_lbs = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const Flight_Sample& now = samples[i];
        // The weight is a whole number of pounds, cut off.
        const double weight = scenario.zero_fuel_weight_lbs + now.fuel_gal * pounds_a_gallon;
        ASSERT_NEAR(now.weight_lbs, weight - 0.5, 0.6) << now.seconds;
        if (i == 0)
            continue;
        const Flight_Sample& before = samples[i - 1];
        ASSERT_LE(now.fuel_gal, before.fuel_gal) << now.seconds;
        burnt_lbs += (before.fuel_flow_pph + now.fuel_flow_pph) / 2 * 0.5 / 3600;
    }
    const double used_lbs = (samples.front().fuel_gal - samples.back().fuel_gal) * pounds_a_gallon;
    EXPECT_NEAR(used_lbs, burnt_lbs, burnt_lbs * 0.01) << "the flow shown is the fuel used";
    EXPECT_GT(used_lbs, 3);
}

TEST_P(Flown_Scenario, Moves_Without_Jumps) {
    const auto& samples = Samples();
    for (std::size_t i = 1; i < samples.size(); ++i) {
        const Flight_Sample& a = samples[i - 1];
        const Flight_Sample& b = samples[i];
        ASSERT_LE(std::abs(b.ground_kt - a.ground_kt), 8) << b.seconds;
        ASSERT_LE(std::abs(b.indicated_kt - a.indicated_kt), 6) << b.seconds;
        ASSERT_LE(std::abs(Half_Turn(b.heading_deg - a.heading_deg)), 9) << b.seconds;
        ASSERT_LE(b.ground_kt, GetParam().fastest_kt) << b.seconds;
        ASSERT_LE(std::abs(b.vertical_fpm), GetParam().steepest_fpm) << b.seconds;
        // Only the wheels change a vertical speed at once.
        if (a.on_ground == b.on_ground) {
            ASSERT_LE(std::abs(b.vertical_fpm - a.vertical_fpm), 260) << b.seconds;
        }
        if (b.on_ground) {
            ASSERT_EQ(b.vertical_fpm, 0) << b.seconds;
        }
    }
}

TEST_P(Flown_Scenario, Its_Speeds_Are_Those_Of_Its_Movement) {
    const auto& samples = Samples();
    constexpr std::size_t span = 40;  // 20 s
    for (std::size_t i = span; i < samples.size(); i += span) {
        double climbed_ft = 0;
        double run_nm = 0;
        for (std::size_t j = i - span; j < i; ++j) {
            climbed_ft += (samples[j].vertical_fpm + samples[j + 1].vertical_fpm) / 2 / 120;
            run_nm += (samples[j].ground_kt + samples[j + 1].ground_kt) / 2 / 7200;
        }
        const Flight_Sample& from = samples[i - span];
        const Flight_Sample& to = samples[i];
        // Altitudes come in whole metres, ground speeds in whole metres a second.
        ASSERT_NEAR(to.altitude_ft - from.altitude_ft, climbed_ft, 6) << to.seconds;
        const double line_nm = Great_Circle_Nm(from.position, to.position);
        ASSERT_LE(line_nm, run_nm + 0.008) << to.seconds;
        if (Half_Turn(to.heading_deg - from.heading_deg) == 0 && !to.on_ground) {
            ASSERT_NEAR(line_nm, run_nm, 0.008) << to.seconds;
        }
    }
}

TEST_P(Flown_Scenario, Levels_Off_Where_A_Client_Reports_It) {
    const auto& samples = Samples();
    const Flight_Marks marks = Marks_Of(samples);
    std::vector<int> levels;
    bool level = false;
    double level_ft = 0;
    for (std::size_t i = marks.lift_off; i < marks.touchdown; ++i) {
        const double speed = std::abs(samples[i].vertical_fpm);
        if (speed < 31 && !level) {
            level = true;
            level_ft = samples[i].altitude_ft;
            levels.push_back(static_cast<int>(std::lround(level_ft / 100)));
        } else if (speed >= 200 && level && std::abs(samples[i].altitude_ft - level_ft) >= 200) {
            level = false;
        }
    }
    EXPECT_EQ(levels, GetParam().levels);
}

TEST_P(Flown_Scenario, Touches_Down_As_Asked) {
    const auto& samples = Samples();
    const Flight_Marks marks = Marks_Of(samples);
    EXPECT_NEAR(samples[marks.touchdown - 1].vertical_fpm, -scenario.touchdown_fpm, 60);
    EXPECT_NEAR(samples[marks.touchdown].altitude_ft,
                scenario.arrival.elevation_ft + scenario.aircraft.gear_height_ft, 2);
    if (Kind() == engine_kind::helicopter)
        return;
    EXPECT_GT(samples[marks.lift_off].indicated_kt, scenario.aircraft.performance.rotate_kt - 1);
    EXPECT_NEAR(samples[marks.touchdown].indicated_kt,
                scenario.aircraft.performance.approach.front().indicated_kt, 12);
    if (Kind() == engine_kind::jet) {
        EXPECT_GT(samples[marks.lift_off].n1_percent, 90);
    }
}

TEST_P(Flown_Scenario, Taxies_Slowly_With_Little_Power) {
    const auto& samples = Samples();
    if (Kind() == engine_kind::helicopter) {
        for (const Flight_Sample& sample : samples)
            ASSERT_TRUE(!sample.on_ground || sample.ground_kt == 0) << sample.seconds;
        return;
    }
    const Flight_Marks marks = Marks_Of(samples);
    const bool jet = Kind() == engine_kind::jet;
    double fastest_out = 0;
    for (std::size_t i = marks.out; i < marks.lift_off; ++i)
        if (!jet || samples[i].n1_percent <= 60)
            fastest_out = std::max(fastest_out, samples[i].ground_kt);
    double fastest_in = 0;
    double strongest_in = 0;
    bool armed = false;
    for (std::size_t i = marks.touchdown; i < marks.in; ++i) {
        armed = armed || samples[i].ground_kt < 11;
        if (!armed)
            continue;
        fastest_in = std::max(fastest_in, samples[i].ground_kt);
        strongest_in = std::max(strongest_in, samples[i].n1_percent);
    }
    EXPECT_TRUE(armed) << "below 11 kt at least once after landing";
    EXPECT_GE(fastest_in, 12);
    EXPECT_LT(fastest_in, 25);
    if (jet) {
        EXPECT_GE(fastest_out, 12);
        EXPECT_LT(fastest_out, 25);
        EXPECT_LT(strongest_in, 60);
    }
}

/// The airport a client finds at a place, by its rule.
std::string Nearest_Airport(const Flight_Sample& sample) {
    double best = 999999;
    std::string code;
    for (const std::string& line : Read_Lines(Repository_File("data/bin/fs9.wld"))) {
        const auto fields = Split(line, '|');
        if (Contains(line, "//") || fields.size() < 5)
            continue;
        const Position place{*Parse_Number(fields[0]), *Parse_Number(fields[1])};
        const double distance = Round_Half_Up(Great_Circle_Nm(sample.position, place));
        if (std::abs(*Parse_Number(fields[2]) - sample.ground_ft) < 10 && distance < best) {
            best = distance;
            code = fields[3];
        }
    }
    return code;
}

TEST_P(Flown_Scenario, Begins_And_Ends_At_Its_Stands) {
    const Flight_Sample& first = Samples().front();
    const Flight_Sample& last = Samples().back();
    constexpr double few_metres_nm = 0.003;
    EXPECT_LT(Great_Circle_Nm(first.position, scenario.departure.stand), few_metres_nm);
    EXPECT_LT(Great_Circle_Nm(last.position, scenario.arrival.stand), few_metres_nm);
    EXPECT_EQ(Nearest_Airport(first), GetParam().departure);
    EXPECT_EQ(Nearest_Airport(last), GetParam().arrival);
    EXPECT_EQ(scenario.departure.icao, GetParam().departure);
    EXPECT_EQ(scenario.arrival.icao, GetParam().arrival);
}

TEST_P(Flown_Scenario, Same_Moment_Same_Bytes) {
    const auto world = Load_Scenario(Repository_File(GetParam().file), Simulator_Directory());
    const auto again = Load_Scenario(Repository_File(GetParam().file), Simulator_Directory());
    std::vector<double> moments{-5, 0, 0.05, world->Length(), world->Length() + 900};
    std::mt19937 random(20260423);  // NOLINT: the same moments every time
    std::uniform_real_distribution<double> any(0, world->Length());
    while (moments.size() < 120)
        moments.push_back(any(random));
    Offset_Area reused;
    for (const double moment : moments) {
        Offset_Area fresh;
        world->Apply(moment, reused);
        again->Apply(moment, fresh);
        const auto a = reused.Bytes(0, Offset_Area::size);
        const auto b = fresh.Bytes(0, Offset_Area::size);
        ASSERT_TRUE(std::equal(a.begin(), a.end(), b.begin())) << moment;
    }
}

TEST(Flown_Midnight, Changes_Day_And_Year) {
    struct Case {
        std::string file;
        int day, year, local_hour;  // at the start
        int end_day, end_year, end_local_hour;
    };
    const std::vector<Case> cases{
        {"data/scenarios/egll-lfpg.json", 318, 2026, 23, 319, 2026, 1},
        {"data/scenarios/helicopter.json", 365, 2026, 18, 1, 2027, 19},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.file);
        const auto world = Load_Scenario(Repository_File(test.file), Simulator_Directory());
        Offset_Area area;
        world->Apply(0, area);
        EXPECT_EQ(area.Get(Variable::day_of_year), test.day);
        EXPECT_EQ(area.Get(Variable::year), test.year);
        EXPECT_EQ(area.Get(Variable::local_hour), test.local_hour);
        world->Apply(world->Length(), area);
        EXPECT_EQ(area.Get(Variable::day_of_year), test.end_day);
        EXPECT_EQ(area.Get(Variable::year), test.end_year);
        EXPECT_EQ(area.Get(Variable::local_hour), test.end_local_hour);
        EXPECT_EQ(area.Get(Variable::utc_hour), 0);
    }
}

}  // namespace
}  // namespace norvane::test
