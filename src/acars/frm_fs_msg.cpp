#include "acars/frm_fs_msg.h"

#include <utility>

#include "acars/cls_acars.h"

namespace norvane {

frmFSMsg::frmFSMsg(Timer_Queue& timers) : tmr(timers, std::chrono::milliseconds(1)) {
    tmr.tick.Connect([this] { tmr_Timer(); });
}

void frmFSMsg::Queue_Message(clsACARS& engine, std::string text) {
    m_engine = &engine;
    m_text = std::move(text);
    tmr.Set_Enabled(true);
}

void frmFSMsg::tmr_Timer() {
    // A step is never interrupted: the carrier comes back on a later turn.
    if (m_engine->Is_Stepping())
        return;
    tmr.Set_Enabled(false);
    // A display that was stopped has taken its carrier with it.
    if (m_engine->Show_Message(m_text))
        m_done = true;
}

}  // namespace norvane
