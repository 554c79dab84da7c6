// Scenario files: what is refused and why, and what a client is told about the aircraft.

#include "simhost/scenario/scenario.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "common/line_reader.h"
#include "common/run_error.h"
#include "common/text.h"
#include "simhost/scenario_files.h"
#include "support/test_world.h"

namespace norvane::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class Scenario_File : public Test_World {
  protected:
    /// What is raised for a file of this content; empty when it loads.
    std::string Refusal(const std::string& content, bool is_flown = true) {
        try {
            const auto file = Write("flight.json", content);
            if (is_flown)
                (void)Load_Scenario(file, simulator);
            else
                (void)Read_Scenario(file, simulator);
        } catch (const Run_Error& error) {
            return error.Description();
        }
        return {};
    }

    /// A copy of the simulator's files, to be changed.
    const fs::path simulator = [this] {
        fs::copy(aircraft_files, directory, fs::copy_options::recursive);
        return directory;
    }();
    nlohmann::json short_jet = nlohmann::json::parse(Read_File(short_jet_file));
};

/// What becomes of a file when one thing of it is wrong: each number too low and too high, each
/// text a number, each member gone, in each object one that nobody knows.
std::string Wrong_In_Turn(const nlohmann::json& whole,
                          const std::function<std::string(const nlohmann::json&)>& refusal) {
    std::string told;
    const auto tell = [&](const std::string& place, const char* what, const nlohmann::json& wrong) {
        told += fmt::format("{} {}: {}\n", place, what, refusal(wrong));
    };
    std::set<std::string> objects;
    const nlohmann::json leaves = whole.flatten();
    for (const auto& [name, value] : leaves.items()) {
        const nlohmann::json::json_pointer place(name);
        for (auto above = place; !above.empty(); above = above.parent_pointer()) {
            nlohmann::json wrong = whole;
            if (wrong[above].is_array() || !objects.insert(above.to_string()).second)
                continue;
            if (wrong[above].is_object()) {
                wrong[above]["more"] = 1;
                tell(above.to_string(), "with more", wrong);
            } else if (wrong[above].is_number()) {
                wrong[above] = -1e9;
                tell(name, "low", wrong);
                wrong[above] = 1e9;
                tell(name, "high", wrong);
            } else {
                wrong[above] = 7;
                tell(name, "seven", wrong);
            }
            wrong = whole;
            if (nlohmann::json& holder = wrong[above.parent_pointer()]; holder.is_array())
                holder.erase(0);
            else
                holder.erase(above.back());
            tell(above.to_string(), "gone", wrong);
        }
    }
    return told;
}

TEST_F(Scenario_File, Tells_Of_Everything_That_Is_Wrong_In_It) {
    std::string told;
    const auto told_of = [&](const std::string& content) {
        std::string refusal = Refusal(content, false);
        return Replace_All(refusal, directory.string(), "");
    };
    for (const char* name : {"go-around", "held"}) {
        const auto file = short_jet_file.parent_path() / (name + std::string(".json"));
        told += Wrong_In_Turn(nlohmann::json::parse(Read_File(file)),
                              [&](const nlohmann::json& wrong) { return told_of(wrong.dump()); });
    }
    for (const char* scenario : {"helicopter", "kjfk-kbos", "piston-circuit", "turboprop"}) {
        const std::string flight = Read_File(Shipped_Scenario(scenario));
        const fs::path aircraft = fs::path("Aircraft") /
                                  nlohmann::json::parse(flight).at("aircraft").get<std::string>() /
                                  "aircraft.json";
        told += Wrong_In_Turn(nlohmann::json::parse(Read_File(simulator / aircraft)),
                              [&](const nlohmann::json& wrong) {
                                  Write(aircraft, wrong.dump());
                                  return told_of(flight);
                              });
    }
    Expect_As_Looked_At("refused.txt", told);
}

/// A line each: what is put into the scenario.
TEST_F(Scenario_File, Tells_Why_A_Flight_Cannot_Be_Flown) {
    ASSERT_EQ(Refusal(short_jet.dump()), "");
    std::string told;
    const std::string file = Read_File(short_jet_file.parent_path() / "wrong.txt");
    Line_Reader patches(file);
    while (patches.Next()) {
        nlohmann::json patched = short_jet;
        patched.merge_patch(nlohmann::json::parse(patches.Line()));
        told += fmt::format("{}\n    {}\n", patches.Line(),
                            Replace_All(Refusal(patched.dump()), directory.string(), ""));
    }
    Expect_As_Looked_At("unflyable.txt", told);
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
