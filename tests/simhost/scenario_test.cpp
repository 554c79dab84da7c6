// Scenario files: what is refused and why, and what a client is told about the aircraft.

#include "simhost/scenario/scenario.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

#include "common/line_reader.h"
#include "common/run_error.h"
#include "common/text.h"
#include "simhost/scenario_files.h"
#include "support/test_world.h"

namespace norvane::test {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;

class Scenario_File : public Test_World {
  protected:
    /// Each patch makes the scenario one that is refused for this reason.
    void Expect_Refusals(const std::vector<std::pair<std::string, std::string>>& cases) {
        ASSERT_EQ(Refusal(short_jet.dump()), "");
        for (const auto& [patch, reason] : cases) {
            nlohmann::json patched = short_jet;
            patched.merge_patch(nlohmann::json::parse(patch));
            EXPECT_THAT(Refusal(patched.dump()),
                        AllOf(ContainsRegex("(flight|aircraft)\\.json"), HasSubstr(reason)))
                << patch;
        }
    }
    /// What is raised for a file of this content; empty when it loads.
    std::string Refusal(const std::string& content) {
        try {
            (void)Load_Scenario(Write("flight.json", content), aircraft_files);
        } catch (const Run_Error& error) {
            return error.Description();
        }
        return {};
    }

    nlohmann::json short_jet = nlohmann::json::parse(Read_File(short_jet_file));
};

TEST_F(Scenario_File, Faults_Are_Named_With_Their_Place) {
    Expect_Refusals({
        {R"({"colour": "red"})", "colour: is not known"},
        {R"({"departure": {"weather": {"fog": 1}}})", "departure.weather.fog: is not known"},
        {R"({"fuel_lbs": null})", "fuel_lbs: is missing"},
        {R"({"departure": {"runway": null}})", "departure.runway: is missing"},
        {R"({"arrival": 7})", "arrival: an object is expected"},
        {R"({"tail": 7})", "tail: a text is expected"},
        {R"({"tail": "N1234567890123"})", "tail: 1 to 12 characters are expected"},
        {R"({"fuel_lbs": "much"})", "fuel_lbs: a number is expected"},
        {R"({"fuel_lbs": -1})", "fuel_lbs: -1 lies outside 1 to"},
        {R"({"zero_fuel_weight_lbs": 170000})", "fuel_lbs: makes the aircraft heavier"},
        {R"({"bounce_s": 60})", "bounce_s: 60 lies outside 0.25 to 3"},
        {R"({"departure": {"stand": [40.6]}})", "departure.stand: 2 numbers are expected"},
        {R"({"departure": {"stand": [140, 7]}})", "departure.stand: a latitude"},
        {R"({"departure": {"taxi": [{"at": [40.63, -73.77], "hold": 1}]}})",
         "departure.taxi[0].hold: is not known"},
        {R"({"departure": {"utc_offset_minutes": 0.5}})", "a whole number is expected"},
        {R"({"arrival": {"weather": {"precipitation": "frogs"}}})", "\"rain\" or \"snow\""},
        {R"({"arrival": {"weather": {"clouds": [{}, {}, {}]}}})", "at most two layers"},
        {R"({"start_utc": "yesterday"})", "start_utc: a moment like"},
        {R"({"cruise": {"steps": [{"at_nm": 3, "altitude_ft": 900}]}})",
         "cruise.steps[0].altitude_ft: must be higher than before"},
        {R"({"cruise": {"climb_level_offs": [{"altitude_ft": 9000, "for_nm": 3}]}})",
         "cruise.climb_level_offs: 9000 ft do not lie between"},
        {R"({"arrival": {"circuits": [{"after": "landing"}]}})", "arrival.circuits[0].after: "},
        {R"({"arrival": {"circuits": [{"after": "go-around"}]}})", "[0].from_ft: is missing"},
        {R"({"rates": [{"from_s": 9, "until_s": 20, "rate": 2}, {"from_s": 19}]})",
         "rates[1].from_s: 19 lies outside 20 to"},
        {R"({"aircraft": "zeppelin"})", "zeppelin"},
        {R"({"aircraft": "../secrets"})", "aircraft: the name of a folder is expected"},
    });
}

TEST_F(Scenario_File, Flights_That_Cannot_Be_Flown_Are_Refused) {
    Expect_Refusals({
        {R"({"fuel_lbs": 60})", "the fuel is used up after"},
        {R"({"departure": {"runway": {"length_m": 900}}})", "too short for the take-off"},
        {R"({"pauses": [{"at_s": 7200, "for_s": 60}]})", "it has ended before second 7200"},
        {R"({"teleports": [{"at_nm": 3.5, "by_nm": 5}]})", "lead out of the cruise"},
        {R"({"teleports": [{"at_nm": 300, "by_nm": 5}]})", "300 nm, where it is to be"},
        {R"({"cruise": {"altitude_ft": 39000}})", "the descent has to begin before 39000 ft"},
        {R"({"arrival": {"exit_m": 1300, "taxi": [{"at": [40.779832, -73.87741]}]}})",
         "the runway's exit comes"},
        {R"({"fuel_lbs": 20000, "parked_s": 3600, "line_up_s": 3600, "departure": {"taxi": [
             {"at": [40.6301, -73.7725], "hold_s": 3600}, {"at": [40.6299, -73.7721], "hold_s": 3600},
             {"at": [40.6297, -73.7717], "hold_s": 3600}, {"at": [40.6295, -73.7713], "hold_s": 3600},
             {"at": [40.6293, -73.7709], "hold_s": 3600}, {"at": [40.6287, -73.7709], "hold_s": 3600}
           ]}})",
         "it takes longer than 8 hours"},
        {R"({"route": [[40.7, -73.9], [40.7, -73.9]]})", "are the same place"},
        {R"({"route": [[41.2, -74.9], [40.65, -73.82]]})", "route: turns back on itself at point"},
    });
}

TEST_F(Scenario_File, Broken_Files_End_In_A_Report) {
    const std::string whole = short_jet.dump();
    const std::vector<std::string> contents{
        "",
        whole.substr(0, whole.size() / 2),
        std::string("\x7f\x45\x4c\x46\x00\x01\xff\xfe", 8),
    };
    for (const std::string& content : contents)
        EXPECT_THAT(Refusal(content), HasSubstr("flight.json: ")) << content.substr(0, 40);
    EXPECT_THROW((void)Load_Scenario(directory / "missing.json", aircraft_files), Run_Error);
}

}  // namespace
}  // namespace norvane::test
