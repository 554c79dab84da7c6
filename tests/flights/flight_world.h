#pragma once
// A whole program in one process, flown by a world on the virtual clock: what a pilot's evening
// looks like to the code, in milliseconds. The link can be troubled at any exchange, the program
// killed and started again at any moment.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simhost/world_source.h"
#include "support/test_flight.h"

namespace norvane::test {

using Row = std::vector<std::string>;

/// The world that `norvane-sim fly` plays for a scenario file.
[[nodiscard]] std::unique_ptr<World_Source> Scenario_World(const std::filesystem::path& file);
/// A short hop of a jet, from KJFK to KLGA.
[[nodiscard]] World_Source& Short_Hop();

class Flight_World : public Test_Flight {
  public:
    /// The short hop, five seconds from one sampling step to the next, with fields of the pilot's.
    Flight_World();
    /// `step_s`: world seconds from one sampling step to the next.
    Flight_World(World_Source& world, double step_s);

    /// Starts the program, anew when one runs.
    Program& Start();
    [[nodiscard]] Program& Running() { return *program; }

    /// "On", then flies until the take-off.
    void Take_Off();
    /// "On", then resumes whenever the flight is paused. True when the gate was reached in time.
    bool Fly_To_Gate();
    /// Logs as the pilot does.
    void Log() { program->panel.hypLog.Click(); }
    /// The one row of the log after flying to the gate; empty when anything else came out.
    Row Fly();
    /// Fields of the active log's rows.
    [[nodiscard]] std::vector<Row> Rows() const;

    /// The error log's entries so far.
    std::vector<std::string> Take_Reports() { return Take_Errors(); }
    using Test_Flight::Kill;
    using Test_Flight::linked;
    using Test_World::clock;
    using Test_World::desktop;
    using Test_World::directory;
    using Test_World::store;
    using Test_World::Write;

    /// Asked at each exchange with its number from 0; what it gives takes the answer's place.
    std::function<std::optional<Delivery>(std::size_t, std::span<std::byte>)> trouble;
    std::size_t exchanges = 0;
    /// Called at the end of each step.
    std::function<void()> on_step;
    /// ACARS messages of all programs started, in order.
    std::vector<std::string> messages;

  private:
    void TestBody() override {}
    std::optional<Delivery> Exchange(std::span<std::byte> block);

    World_Source& m_world;
    double m_step_s;
    /// It moves at the end of each of the program's steps, so that what comes out does not depend
    /// on how long some trouble lasted.
    double m_moment_s = 0;
    double m_applied_s = -1;
};

}  // namespace norvane::test
