#pragma once
// The computer's clock and time zone.

#include "common/services.h"

namespace norvane {

class System_Clock : public Clock {
  public:
    [[nodiscard]] Date_Time Local_Now() override;
    [[nodiscard]] std::optional<Date_Time> Utc_Now() override;
    [[nodiscard]] std::chrono::microseconds Monotonic() override;
    void Sleep(std::chrono::microseconds duration) override;
    /// The zone of the current year, its changes found by walking the year's hours.
    [[nodiscard]] Time_Zone Zone() override;
};

}  // namespace norvane
