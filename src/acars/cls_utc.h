#pragma once
// The computer's UTC clock. One for the whole program; the time-zone bias is worked out when the
// object is created and holds for the program's run.

#include <string>

namespace norvane {

class Clock;

class clsUTC {
  public:
    explicit clsUTC(Clock& clock);

    /// "hhmm".
    [[nodiscard]] std::string GetUTC() const;
    /// "hhmm" and "Z".
    [[nodiscard]] std::string GetUTCZ() const;
    /// Minutes; local time + bias = UTC.
    [[nodiscard]] int Bias() const { return m_bias; }

  private:
    Clock& m_clock;
    int m_bias = 0;
};

}  // namespace norvane
