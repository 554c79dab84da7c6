#pragma once
// The carrier of one message on its way into the simulator: hidden, short-lived, owned by the
// engine. Its timer starts the display on a later turn of the event loop, because a display takes
// many seconds.

#include <string>

#include "common/timer_queue.h"

namespace norvane {

class clsACARS;

class frmFSMsg {
  public:
    explicit frmFSMsg(Timer_Queue& timers);

    /// Keeps both and arms the timer.
    void Queue_Message(clsACARS& engine, std::string text);
    /// The message has been shown; the carrier can go.
    [[nodiscard]] bool Is_Done() const { return m_done; }

  private:
    void tmr_Timer();

    Timer tmr;
    clsACARS* m_engine = nullptr;
    std::string m_text;
    bool m_done = false;
};

}  // namespace norvane
