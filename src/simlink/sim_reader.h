#pragma once
// Typed readers of simulator variables: each value is one request and one exchange. The engine
// reads in steps; after the first failed exchange of a step its further reads fail at once without
// touching the link, so that a value that was not read decides nothing.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simlink/catalogue.h"
#include "simlink/recording.h"

namespace norvane {

class modFSUIPC;

class Sim_Reader {
  public:
    struct Failure {
        /// True when the exchange failed (simulator gone, time-out), false when the request could
        /// not be queued.
        bool exchange = false;
        /// The link's text.
        std::string text;
    };

    explicit Sim_Reader(modFSUIPC& link);

    /// Forgets the last step's failure, and what it read.
    void Begin_Step();
    /// What the step has read so far, in its order.
    [[nodiscard]] const std::vector<Recorded_Change>& Reads() const { return m_reads; }
    /// The step's first failure; empty while all of its reads succeeded.
    [[nodiscard]] const std::optional<Failure>& Failed() const { return m_failure; }

    /// The decoded value, 0 when it was not read. `engine` 1 to 4 for engine variables.
    double Read(Variable variable, int engine = 1);
    /// As `Read`, for values that are whole numbers by their decoding; halves go to even.
    std::int32_t Read_Whole(Variable variable, int engine = 1);
    /// The text up to its first NUL, empty when it was not read.
    std::string Read_Text(Variable variable);
    /// Fuel on board: US gallons over all tanks, 0 when one was not read.
    double Read_Fuel_Gallons();
    /// Shows one line in the simulator: the text with its NUL and the display control value,
    /// written in one exchange. A failure counts as the step's.
    bool Write_Display(const std::string& line, std::int16_t control);

  private:
    bool Exchange(std::uint32_t offset, std::uint32_t size, void* destination);
    bool Fail(bool exchange, int result);

    modFSUIPC& m_link;
    std::optional<Failure> m_failure;
    std::vector<Recorded_Change> m_reads;
};

}  // namespace norvane
