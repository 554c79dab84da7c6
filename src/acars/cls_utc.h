#pragma once
// The computer's UTC clock. One for the whole program. Where the platform's clock has no UTC of its
// own, it is local time and the zone's bias, which is worked out when the object is created and
// holds for the program's run.

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
    /// Minutes by the zone's rules; local time + bias = UTC.
    [[nodiscard]] int Bias() const { return m_bias; }

  private:
    Clock& m_clock;
    int m_bias = 0;
};

}  // namespace norvane
