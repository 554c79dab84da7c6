#pragma once
// How often a server is asked again that fails: each failure in a row doubles the pause, so that a
// server in trouble, or one that has changed its address, is left alone. Owned by the poll.

#include <algorithm>

namespace norvane {

class Poll_Pauses {
  public:
    /// To be asked at every tick of the poll's timer: whether this one asks the server.
    [[nodiscard]] bool Is_Due() {
        if (m_ticks_left == 0)
            return true;
        --m_ticks_left;
        return false;
    }
    void Note_Failure() {
        m_pause = std::min(2 * m_pause + 1, longest);
        m_ticks_left = m_pause;
    }
    /// An answer, or another reason to ask at the next tick.
    void Reset() { m_pause = m_ticks_left = 0; }

  private:
    /// Ticks that are passed over; with the one that asks, every thirty-second.
    static constexpr int longest = 31;
    int m_pause = 0;
    int m_ticks_left = 0;
};

}  // namespace norvane
