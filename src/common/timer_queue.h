#pragma once
// Timers of panels and carriers, and the queue that runs them. Each Desktop owns one queue and runs
// it from its event loop; timers are members of the panels and unregister themselves. A tick is the
// timer's signal, raised on the one thread.

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/run_error.h"
#include "common/signal.h"

namespace norvane {

class Clock;
class Timer;

class Timer_Queue {
  public:
    /// `speed` divides every interval: 20 makes a 500 ms timer tick every 25 ms. More than 0.
    explicit Timer_Queue(Clock& clock, double speed = 1);
    Timer_Queue(const Timer_Queue&) = delete;
    Timer_Queue& operator=(const Timer_Queue&) = delete;

    /// Runs each timer that is due, earliest first, once. A timer whose tick is still running is
    /// passed over. True when any ran.
    bool Run_Due();
    /// When the earliest timer that can run is due (the clock's monotonic time); empty when none
    /// is.
    [[nodiscard]] std::optional<std::chrono::microseconds> Next_Due() const;
    /// A span of the timers' time as a span of the clock's.
    [[nodiscard]] std::chrono::microseconds Scaled(std::chrono::milliseconds span) const;
    [[nodiscard]] std::chrono::microseconds Now() const;
    /// Seconds of the timers' time since a moment of the clock.
    [[nodiscard]] double Seconds_Since(std::chrono::microseconds moment) const;
    [[nodiscard]] double Speed() const { return m_speed; }
    /// True while a tick runs: what happens then was not asked for by the pilot.
    [[nodiscard]] bool Is_Ticking() const { return m_ticks_running > 0; }
    /// `Next_Due` may have become earlier; a sleeper looks again.
    Signal<> rescheduled;
    /// A tick failed and did not report it itself. The timer goes on.
    Signal<const Run_Error&> tick_failed;

    /// For the length of a nested event loop within a tick: what happens in it is the pilot's
    /// again.
    class Ticks_Set_Aside {
      public:
        explicit Ticks_Set_Aside(Timer_Queue& queue)
            : m_queue(queue), m_running(std::exchange(queue.m_ticks_running, 0)) {}
        ~Ticks_Set_Aside() { m_queue.m_ticks_running = m_running; }
        Ticks_Set_Aside(const Ticks_Set_Aside&) = delete;
        Ticks_Set_Aside& operator=(const Ticks_Set_Aside&) = delete;

      private:
        Timer_Queue& m_queue;
        int m_running;
    };

    /// True unless the same report was offered less than a minute ago.
    bool First_Within_A_Minute(const std::string& report);

  private:
    friend class Timer;
    void Tell_Of_Failure(const Run_Error& error);
    Timer* Earliest_Due(std::chrono::microseconds now) const;

    Clock& m_clock;
    double m_speed;
    int m_ticks_running = 0;
    std::vector<Timer*> m_timers;
    std::map<std::string, std::chrono::microseconds> m_recent_reports;
};

class Timer {
  public:
    /// Disabled at first.
    Timer(Timer_Queue& queue, std::chrono::milliseconds interval);
    ~Timer();
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    /// Enabling a timer that was disabled starts its interval anew.
    void Set_Enabled(bool enabled);
    [[nodiscard]] bool Enabled() const { return m_enabled; }

    Signal<> tick;

  private:
    friend class Timer_Queue;
    void Run();

    Timer_Queue& m_queue;
    std::chrono::milliseconds m_interval;
    std::chrono::microseconds m_due{0};
    bool m_enabled = false;
    bool m_running = false;
    /// Set by the destructor, so that a tick that deletes its own timer ends safely.
    bool* m_deleted = nullptr;
};

}  // namespace norvane
