#pragma once
// norvane-cli and norvane-sim as a pilot starts them: processes with a program directory, a store
// and a socket of their own.

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/text.h"
#include "support/child_process.h"
#include "support/test_world.h"

namespace norvane::test {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using testing::HasSubstr;

class Cli_World : public testing::Test {
  protected:
    Cli_World() {
        fs::remove_all(directory);
        Start_Anew();
    }
    ~Cli_World() override {
        Kill_Simulator();
        std::error_code ignored;
        fs::remove_all(directory, ignored);
    }
    /// A program directory and store without a flight.
    void Start_Anew() {
        fs::remove_all(home);
        // The simulator's date: what comes out must not depend on the day of the test.
        EXPECT_EQ(Status("settings set ACARS_Date 0"), 0);
    }

    /// A stand-in that flies the short jet hop and moves on five seconds with each sampling step,
    /// from `at_s` on. Returns when it listens.
    void Start_Simulator(int at_s = 0) {
        Kill_Simulator();
        simulator = std::make_unique<Child_Process>(std::vector<std::string>{
            NORVANE_SIM, "fly", "--scenario",
            NORVANE_SOURCE_DIR "/tests/data/scenarios/short-jet.json", "--step", "5000", "--at",
            std::to_string(at_s), "--listen", sim_address});
        const bool listening = simulator->Read_Until(
            [](const std::string& output) { return output.find('\n') != std::string::npos; });
        ASSERT_TRUE(listening) << simulator->Errors();
    }
    void Kill_Simulator() { simulator.reset(); }

    /// The command line of norvane-cli with this world's places, then `arguments`.
    [[nodiscard]] std::vector<std::string> Command(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {NORVANE_CLI, "--home", home, "--sim", sim_address});
        return arguments;
    }
    [[nodiscard]] Run_Result Run(std::vector<std::string> arguments) const {
        return Run_Program(Command(std::move(arguments)));
    }
    /// The same for words with blanks between them.
    [[nodiscard]] Run_Result Type(std::string_view line) const { return Run(Split(line, ' ')); }
    [[nodiscard]] int Status(std::string_view line) const { return Type(line).status; }
    /// Flies to the gate without trouble.
    [[nodiscard]] Run_Result Fly() const { return Run(fly); }
    /// The fields of a log's rows.
    [[nodiscard]] std::vector<std::vector<std::string>> Rows(
        const std::string& log = "My Flight Log") const {
        std::vector<std::vector<std::string>> rows;
        for (const auto& line : Read_Lines(home / "logs" / (log + ".txt"))) {
            if (!line.empty())
                rows.push_back(Split(line, '|'));
        }
        return rows;
    }
    [[nodiscard]] std::string Error_Log() const {
        return fs::exists(home / "ErrorLog.Log") ? Read_File(home / "ErrorLog.Log") : "";
    }

    const fs::path directory =
        fs::temp_directory_path() / ("norvane-cli-test-" + std::to_string(::getpid()));
    const fs::path home = directory / "home";
    const std::string sim_address = "unix:" + (directory / "sim").string();
    const std::vector<std::string> fly{"fly", "--time-scale", "1000"};
    std::unique_ptr<Child_Process> simulator;
};

}  // namespace norvane::test
