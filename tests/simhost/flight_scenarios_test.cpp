// Every shipped scenario, read as a client reads it: a flight from gate to gate whose figures agree
// with each other and with what its aircraft can do.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <set>

#include "common/text.h"
#include "simhost/flight/flight_world.h"
#include "simhost/scenario/scenario.h"
#include "simhost/scenario_files.h"

namespace norvane::test {
namespace {

using enum Variable;

/// What is known of a scenario besides its file.
struct Scenario_Facts {
    std::filesystem::path file;
    int lift_offs;
    double least_minutes, most_minutes;
};
const Scenario_Facts all_scenarios[] = {
    {Shipped_Scenario("kjfk-kbos"), 1, 40, 75},     {Shipped_Scenario("egll-lfpg"), 1, 40, 75},
    {Shipped_Scenario("turboprop"), 1, 40, 75},     {Shipped_Scenario("helicopter"), 1, 40, 75},
    {Shipped_Scenario("piston-circuit"), 2, 8, 14}, {short_jet_file, 1, 8, 12},
    {Test_Scenario("touch-and-go"), 3, 8, 60},      {Test_Scenario("go-around"), 1, 8, 60},
    {Test_Scenario("hard-landing"), 2, 8, 60},
};

/// What a client reads at one moment.
struct Flight_Sample {
    explicit Flight_Sample(double moment, const Offset_Area& area)
        : seconds(moment), fuel_gal(All_Gallons(area)) {
        for (const Variable_Row& row : All_Variables()) {
            if (row.raw != Raw::text)
                values.push_back(area.Get(row.id));
        }
        for (int engine = 1; engine <= area.Get(engine_count); ++engine) {
            engines_running += area.Get(engine_combustion, engine) != 0 ? 1 : 0;
            fuel_flow_pph += area.Get(engine_fuel_flow_pph, engine);
        }
    }
    double operator[](Variable variable) const {
        return values[static_cast<std::size_t>(variable)];
    }
    [[nodiscard]] bool Is_On_Ground() const { return (*this)[on_ground] != 0; }
    [[nodiscard]] bool Is_Braked() const { return (*this)[parking_brake] != 0; }

    double seconds, fuel_gal;
    double fuel_flow_pph = 0;  // of all engines
    int engines_running = 0;
    std::vector<double> values;
};

/// The whole flight, not quite half a second apart: between the steps it is made of, too.
const std::vector<Flight_Sample>& Samples_Of(const std::filesystem::path& file) {
    static std::map<std::filesystem::path, std::vector<Flight_Sample>> flights;
    std::vector<Flight_Sample>& samples = flights[file];
    if (samples.empty()) {
        const auto world = Load_Scenario(file, aircraft_files);
        Offset_Area area;
        for (double seconds = 0; seconds <= world->Length(); seconds += 0.45) {
            world->Apply(seconds, area);
            samples.emplace_back(seconds, area);
        }
    }
    return samples;
}

class Flown_Scenario : public testing::TestWithParam<Scenario_Facts> {
  protected:
    void SetUp() override {
        out = First_From(0, [](const auto& sample) { return !sample.Is_Braked(); });
        lift_off = First_From(out, [](const auto& sample) { return !sample.Is_On_Ground(); });
        touchdown = First_From(lift_off, [](const auto& sample) { return sample.Is_On_Ground(); });
        in = First_From(touchdown, [](const auto& sample) { return sample.Is_Braked(); });
        ASSERT_LT(in, samples.size()) << "the flight does not go from brake to brake";
    }
    std::size_t First_From(std::size_t place, bool (*is_wanted)(const Flight_Sample&)) const {
        while (place < samples.size() && !is_wanted(samples[place]))
            ++place;
        return place;
    }

    const Scenario_Facts& facts = GetParam();
    const Scenario_Data scenario = Read_Scenario(facts.file, aircraft_files);
    const std::vector<Flight_Sample>& samples = Samples_Of(facts.file);
    /// Places in the samples that the flight's log is made of.
    std::size_t out = 0, lift_off = 0, touchdown = 0, in = 0;
};

INSTANTIATE_TEST_SUITE_P(All, Flown_Scenario, testing::ValuesIn(all_scenarios),
                         [](const auto& test) {
                             return Replace_All(test.param.file.stem().string(), "-", "_");
                         });

TEST_P(Flown_Scenario, Goes_From_Gate_To_Gate_In_Order) {
    EXPECT_GE(samples.back().seconds / 60, facts.least_minutes);
    EXPECT_LE(samples.back().seconds / 60, facts.most_minutes);
    EXPECT_GE(samples[out].seconds, 10) << "time for a client to connect at the gate";
    // The engines run until the brake is set, and stop one after the other.
    int running = scenario.aircraft.engine.count;
    int lift_offs = 0;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        if (i < in) {
            ASSERT_EQ(samples[i].engines_running, running) << samples[i].seconds;
        }
        ASSERT_LE(running - samples[i].engines_running, 1) << samples[i].seconds;
        ASSERT_LE(samples[i].engines_running, running) << samples[i].seconds;
        running = samples[i].engines_running;
        lift_offs += samples[i - 1].Is_On_Ground() && !samples[i].Is_On_Ground() ? 1 : 0;
    }
    EXPECT_EQ(running, 0);
    EXPECT_EQ(samples.back().fuel_flow_pph, 0);
    EXPECT_LT(samples.back()[engine_n1_percent], 3);
    EXPECT_EQ(lift_offs, facts.lift_offs);
}

TEST_P(Flown_Scenario, Moves_Without_Jumps) {
    for (std::size_t i = 1; i < samples.size(); ++i) {
        const Flight_Sample& now = samples[i];
        const auto change = [&](Variable variable) {
            return now[variable] - samples[i - 1][variable];
        };
        ASSERT_LE(std::abs(change(ground_speed_kt)), 8) << now.seconds;
        ASSERT_LE(std::abs(change(indicated_airspeed_kt)), 6) << now.seconds;
        ASSERT_LE(std::abs(Half_Turn(change(true_heading_deg))), 9) << now.seconds;
        // Only the wheels change a vertical speed at once.
        if (change(on_ground) == 0) {
            ASSERT_LE(std::abs(change(vertical_speed_fpm)), 260) << now.seconds;
        }
        if (now.Is_On_Ground()) {
            ASSERT_EQ(now[vertical_speed_fpm], 0) << now.seconds;
        }
    }
}

TEST_P(Flown_Scenario, Same_Moment_Same_Bytes) {
    const auto world = Load_Scenario(facts.file, aircraft_files);
    const auto again = Load_Scenario(facts.file, aircraft_files);
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
        ASSERT_TRUE(std::ranges::equal(reused.Bytes(0, Offset_Area::size),
                                       fresh.Bytes(0, Offset_Area::size)))
            << moment;
    }
}

/// Half a minute a line, and the moments that its log is made of: levels, taxiing, fuel, weather,
/// the date and whatever else a client reads.
TEST_P(Flown_Scenario, Is_The_Flight_That_Was_Looked_At) {
    std::string flown;
    std::set<std::size_t> places{out, lift_off, touchdown - 1, touchdown, in};
    for (std::size_t i = 1; i + 4 < samples.size(); ++i) {
        if (samples[i].Is_On_Ground() != samples[i - 1].Is_On_Ground())
            places.insert({i - 1, i, i + 4});
        if (i % 66 == 1)
            places.insert(i);
    }
    for (const std::size_t i : places) {
        flown += fmt::format("{} {:.5g} {:.6g}", samples[i].seconds, samples[i].fuel_flow_pph,
                             samples[i].fuel_gal);
        for (const double value : samples[i].values)
            flown += fmt::format(" {:.7g}", value);
        flown += '\n';
    }
    Expect_As_Looked_At("flown/" + facts.file.stem().string() + ".txt", flown);
}

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

}  // namespace
}  // namespace norvane::test
