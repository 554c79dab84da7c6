#include "cli/cli_world.h"

#include <unistd.h>

#include <stdexcept>

#include "common/line_reader.h"
#include "common/text.h"

namespace norvane::test {

namespace fs = std::filesystem;

Cli_World::Cli_World() {
    std::string name = (fs::temp_directory_path() / "norvane-cli-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary directory");
    directory = name;
    home = directory / "home";
    Start_Anew();
}

Cli_World::~Cli_World() {
    Kill_Simulator();
    std::error_code ignored;
    fs::remove_all(directory, ignored);
}

void Cli_World::Start_Anew() {
    fs::remove_all(home);
    // The simulator's date: what comes out must not depend on the day of the test.
    EXPECT_EQ(Run({"settings", "set", "ACARS_Date", "0"}).status, 0);
}

void Cli_World::Start_Simulator(int at_s) {
    const auto scenario = fs::path(NORVANE_SOURCE_DIR) / "tests/data/scenarios/short-jet.json";
    Kill_Simulator();
    m_simulator = std::make_unique<Child_Process>(std::vector<std::string>{
        NORVANE_SIM, "fly", "--scenario", scenario.string(), "--step", "5000", "--at",
        std::to_string(at_s), "--listen", "unix:" + (directory / "sim").string()});
    const bool listening = m_simulator->Read_Until(
        [](const std::string& output) { return output.find('\n') != std::string::npos; });
    ASSERT_TRUE(listening) << m_simulator->Errors();
}

bool Cli_World::Simulator_Shows(const std::string& text) const {
    return m_simulator->Read_Until(
        [&](const std::string& output) { return output.find(text) != std::string::npos; },
        std::chrono::seconds(2));
}

std::vector<std::string> Cli_World::Command(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {NORVANE_CLI, "--home", home.string(), "--sim",
                                         "unix:" + (directory / "sim").string()});
    return arguments;
}

std::vector<std::vector<std::string>> Cli_World::Rows() const {
    std::vector<std::vector<std::string>> rows;
    for (const auto& line : Read_Lines(home / "logs" / "My Flight Log.txt")) {
        if (!line.empty())
            rows.push_back(Split(line, '|'));
    }
    return rows;
}

std::string Cli_World::Error_Log() const {
    return fs::exists(home / "ErrorLog.Log") ? Read_File(home / "ErrorLog.Log") : std::string();
}

}  // namespace norvane::test
