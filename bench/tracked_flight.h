#pragma once
// A scenario tracked from the stand to the gate, over a socket as ever, by a clock that does not
// wait: what tracking costs, and a recording of it.

#include <filesystem>
#include <string>
#include <vector>

#include "bench_world.h"

namespace norvane {

/// The tracking thread's processor time, of one second of the flight.
struct Tracked_Second {
    double cpu_s = 0;
    /// Samples of the black box between the steps.
    int fast_samples = 0;
};

class Tracked_Flight {
  public:
    /// `scenario`: the name of a file in data/scenarios/, without its ending.
    Tracked_Flight(const std::string& scenario, bool recorded);

    [[nodiscard]] const std::vector<Tracked_Second>& Seconds() const { return m_seconds; }
    /// Plain, and gone with the flight; empty when nothing was recorded.
    [[nodiscard]] const std::filesystem::path& Recording() const { return m_recording; }

  private:
    void Fly(const std::string& scenario, bool recorded);
    void Count_Fast_Samples();

    Temporary_Directory m_directory;
    std::vector<Tracked_Second> m_seconds;
    std::filesystem::path m_recording;
};

}  // namespace norvane
