#pragma once
// norvane-cli and norvane-sim as a pilot starts them: processes with a program directory, a store
// and a socket of their own.

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "common/text.h"
#include "support/child_process.h"

namespace norvane::test {

using testing::HasSubstr;

class Cli_World : public testing::Test {
  protected:
    Cli_World();
    ~Cli_World() override;

    /// A stand-in that flies the short jet hop and moves on five seconds with each sampling step,
    /// from `at_s` on. Returns when it listens.
    void Start_Simulator(int at_s = 0);
    void Kill_Simulator() { m_simulator.reset(); }
    /// The stand-in has printed this text, which a client showed in the simulator.
    [[nodiscard]] bool Simulator_Shows(const std::string& text) const;

    /// The command line of norvane-cli with this world's places, then `arguments`.
    [[nodiscard]] std::vector<std::string> Command(std::vector<std::string> arguments) const;
    [[nodiscard]] Run_Result Run(std::vector<std::string> arguments) const {
        return Run_Program(Command(std::move(arguments)));
    }
    /// The same for words with blanks between them.
    [[nodiscard]] Run_Result Type(std::string_view line) const { return Run(Split(line, ' ')); }
    [[nodiscard]] int Status(std::string_view line) const { return Type(line).status; }
    /// Flies to the gate without trouble.
    [[nodiscard]] Run_Result Fly() const { return Run(fly); }
    /// The fields of the log's rows.
    [[nodiscard]] std::vector<std::vector<std::string>> Rows() const;
    [[nodiscard]] std::string Error_Log() const;
    /// A program directory and store without a flight.
    void Start_Anew();

    std::filesystem::path directory;
    std::filesystem::path home;
    const std::vector<std::string> fly{"fly", "--time-scale", "1000"};

  private:
    std::unique_ptr<Child_Process> m_simulator;
};

}  // namespace norvane::test
