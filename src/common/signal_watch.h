#pragma once
// SIGINT and SIGTERM as something to wait for: they are blocked for the process and read from a
// descriptor, so that they interrupt a wait and never a write.

#include <chrono>

namespace norvane {

class Signal_Watch {
  public:
    Signal_Watch();
    ~Signal_Watch();
    Signal_Watch(const Signal_Watch&) = delete;
    Signal_Watch& operator=(const Signal_Watch&) = delete;

    /// True once either signal has come.
    [[nodiscard]] bool Raised();
    /// As `Raised`, but the descriptor can still be read: for who only stops waiting and leaves the
    /// rest to the event loop.
    [[nodiscard]] bool Is_Pending() const;
    /// Sleeps for `span` or until a signal comes.
    void Sleep(std::chrono::microseconds span);
    /// Can be read once a signal has come; for an event loop that waits for several things.
    [[nodiscard]] int Descriptor() const { return m_descriptor; }

  private:
    int m_descriptor = -1;
    bool m_raised = false;
};

}  // namespace norvane
