// Every shipped scenario, read as a client reads it: a flight from gate to gate whose figures agree
// with each other and with what its aircraft can do.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>

#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/great_circle.h"
#include "common/line_reader.h"
#include "common/number.h"
#include "common/text.h"
#include "simhost/flight/flight_path.h"
#include "simhost/scenario/scenario.h"
#include "simhost/scenario_files.h"
#include "support/test_world.h"

namespace norvane::test {
namespace {

using enum Variable;

/// What is known of a scenario besides its file.
struct Scenario_Facts {
    std::filesystem::path file;
    std::string departure, arrival;
    int lift_offs;
    double least_minutes, most_minutes, fastest_kt, steepest_fpm;
};
const Scenario_Facts all_scenarios[] = {
    {Shipped_Scenario("kjfk-kbos"), "KJFK", "KBOS", 1, 40, 75, 440, 2800},
    {Shipped_Scenario("egll-lfpg"), "EGLL", "LFPG", 1, 40, 75, 440, 2800},
    {Shipped_Scenario("turboprop"), "EGPD", "EGPB", 1, 40, 75, 310, 1900},
    {Shipped_Scenario("piston-circuit"), "KHYA", "KHYA", 2, 8, 14, 120, 900},
    {Shipped_Scenario("helicopter"), "KBOS", "KACK", 1, 40, 75, 140, 1000},
    {short_jet_file, "KJFK", "KLGA", 1, 8, 12, 180, 2800},
};

void PrintTo(const Scenario_Facts& facts, std::ostream* stream) {
    *stream << facts.file;
}

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
    [[nodiscard]] Position Place() const { return {(*this)[latitude_deg], (*this)[longitude_deg]}; }

    double seconds, fuel_gal;
    double fuel_flow_pph = 0;  // of all engines
    int engines_running = 0;
    std::vector<double> values;
};

/// The whole flight, half a second apart; flown once.
const std::vector<Flight_Sample>& Samples_Of(const std::filesystem::path& file) {
    static std::map<std::filesystem::path, std::vector<Flight_Sample>> flights;
    std::vector<Flight_Sample>& samples = flights[file];
    if (samples.empty()) {
        const auto world = Load_Scenario(file, aircraft_files);
        Offset_Area area;
        for (double seconds = 0; seconds <= world->Length(); seconds += 0.5) {
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
    const int kind = scenario.aircraft.engine.kind;
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

TEST_P(Flown_Scenario, Weighs_What_It_Has_Not_Burnt) {
    const double pounds_a_gallon = scenario.aircraft.fuel_lb_per_gal;
    EXPECT_NEAR(samples.front().fuel_gal * pounds_a_gallon, scenario.fuel_lbs, 0.5);
    double burnt_lbs = 0;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        const Flight_Sample& before = samples[i - 1];
        const Flight_Sample& now = samples[i];
        // The weight is a whole number of pounds, cut off.
        const double weight = scenario.zero_fuel_weight_lbs + now.fuel_gal * pounds_a_gallon;
        ASSERT_NEAR(now[total_weight_lbs], weight - 0.5, 0.6) << now.seconds;
        ASSERT_LE(now.fuel_gal, before.fuel_gal) << now.seconds;
        burnt_lbs += (before.fuel_flow_pph + now.fuel_flow_pph) / 2 * 0.5 / 3600;
    }
    const double used_lbs = (samples.front().fuel_gal - samples.back().fuel_gal) * pounds_a_gallon;
    EXPECT_NEAR(used_lbs, burnt_lbs, burnt_lbs * 0.01) << "the flow shown is the fuel used";
    EXPECT_GT(used_lbs, 3);
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
        ASSERT_LE(now[ground_speed_kt], facts.fastest_kt) << now.seconds;
        ASSERT_LE(std::abs(now[vertical_speed_fpm]), facts.steepest_fpm) << now.seconds;
        // Only the wheels change a vertical speed at once.
        if (change(on_ground) == 0) {
            ASSERT_LE(std::abs(change(vertical_speed_fpm)), 260) << now.seconds;
        }
        if (now.Is_On_Ground()) {
            ASSERT_EQ(now[vertical_speed_fpm], 0) << now.seconds;
        }
    }
}

TEST_P(Flown_Scenario, Its_Speeds_Are_Those_Of_Its_Movement) {
    constexpr std::size_t span = 40;  // 20 s
    for (std::size_t i = span; i < samples.size(); i += span) {
        double climbed_ft = 0;
        double run_nm = 0;
        for (std::size_t j = i - span; j < i; ++j) {
            const auto both = [&](Variable speed) {
                return samples[j][speed] + samples[j + 1][speed];
            };
            climbed_ft += both(vertical_speed_fpm) / 2 / 120;
            run_nm += both(ground_speed_kt) / 2 / 7200;
        }
        const Flight_Sample& from = samples[i - span];
        const Flight_Sample& to = samples[i];
        // Altitudes come in whole metres, ground speeds in whole metres a second.
        ASSERT_NEAR(to[altitude_ft] - from[altitude_ft], climbed_ft, 6) << to.seconds;
        const double line_nm = Great_Circle_Nm(from.Place(), to.Place());
        ASSERT_LE(line_nm, run_nm + 0.008) << to.seconds;
        if (Half_Turn(to[true_heading_deg] - from[true_heading_deg]) == 0 && !to.Is_On_Ground()) {
            ASSERT_NEAR(line_nm, run_nm, 0.008) << to.seconds;
        }
    }
}

TEST_P(Flown_Scenario, Touches_Down_As_Asked) {
    EXPECT_NEAR(samples[touchdown - 1][vertical_speed_fpm], -scenario.touchdown_fpm, 60);
    EXPECT_NEAR(samples[touchdown][altitude_ft],
                scenario.arrival.elevation_ft + scenario.aircraft.gear_height_ft, 2);
    if (kind == engine_kind::helicopter)
        return;
    const auto& performance = scenario.aircraft.performance;
    EXPECT_GT(samples[lift_off][indicated_airspeed_kt], performance.rotate_kt - 1);
    EXPECT_NEAR(samples[touchdown][indicated_airspeed_kt],
                performance.approach.front().indicated_kt, 12);
    EXPECT_TRUE(kind != engine_kind::jet || samples[lift_off][engine_n1_percent] > 90);
}

/// The airport a client finds at a place, by its rule.
std::string Nearest_Airport(const Flight_Sample& sample) {
    double best = 999999;
    std::string code;
    for (const std::string& line : Read_Lines(repository / "data/bin/fs9.wld")) {
        const auto fields = Split(line, '|');
        if (Contains(line, "//") || fields.size() < 5)
            continue;
        const Position place{*Parse_Number(fields[0]), *Parse_Number(fields[1])};
        const double distance = Round_Half_Up(Great_Circle_Nm(sample.Place(), place));
        const double above_ft = sample[ground_elevation_ft] - *Parse_Number(fields[2]);
        if (std::abs(above_ft) < 10 && distance < best) {
            best = distance;
            code = fields[3];
        }
    }
    return code;
}

TEST_P(Flown_Scenario, Begins_And_Ends_At_Its_Stands) {
    const auto expect_at = [](const Flight_Sample& sample, const auto& airport, const auto& code) {
        EXPECT_LT(Great_Circle_Nm(sample.Place(), airport.stand), 0.003) << "a few metres";
        EXPECT_EQ(Nearest_Airport(sample), code);
        EXPECT_EQ(airport.icao, code);
    };
    expect_at(samples.front(), scenario.departure, facts.departure);
    expect_at(samples.back(), scenario.arrival, facts.arrival);
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

TEST_P(Flown_Scenario, Clients_Find_The_Aircraft_The_Texts_Name) {
    Offset_Area area;
    Load_Scenario(facts.file, aircraft_files)->Apply(0, area);
    const std::string simulator = area.Get_Text(simulator_directory);
    const std::string model = area.Get_Text(aircraft_path);
    ASSERT_TRUE(simulator.starts_with("\\") && simulator.ends_with("\\")) << simulator;
    const std::string aircraft = simulator + model.substr(0, model.rfind('\\') + 1);
    const auto config = Read_File(To_Path(Replace_All(aircraft, "\\", "/") + "aircraft.cfg"));
    EXPECT_TRUE(Contains(config, "title=" + area.Get_Text(aircraft_title)));
    EXPECT_TRUE(Contains(config, "atc_model="));
    EXPECT_NE(area.Get_Text(atc_identifier), "");
}

/// Half a minute a line: levels, taxiing, weather, the date and whatever else a client reads. Who
/// means the stand-in to fly otherwise looks at the difference and takes over the file it names.
TEST_P(Flown_Scenario, Is_The_Flight_That_Was_Looked_At) {
    std::string flown;
    for (std::size_t i = 0; i < samples.size(); i += 60) {
        flown += fmt::format("{} {:.5g}", samples[i].seconds, samples[i].fuel_flow_pph);
        for (const double value : samples[i].values)
            flown += fmt::format(" {:.7g}", value);
        flown += '\n';
    }
    const std::string name = facts.file.stem().string() + ".txt";
    const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / name;
    if (flown != Read_File(Data_File("flown/" + name))) {
        Write_File(file, flown);
        FAIL() << "compare tests/data/flown/" << name << " with " << file;
    }
}

}  // namespace
}  // namespace norvane::test
