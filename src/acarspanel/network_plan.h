#pragma once
// Looks for the pilot's flight plan in the online network's data, while a flight that has none is
// tracked, less often after failures. Owned by the ACARS panel, which applies what is found.

#include <string>

#include "acarspanel/panel_parts.h"
#include "common/signal.h"
#include "common/timer_queue.h"
#include "net/cls_win_inet.h"
#include "net/poll_pauses.h"

namespace norvane {

class Flight_Stage;
class Request_Round;
class Step_Queue;

class Network_Plan {
  public:
    Network_Plan(const Panel_Parts& parts, const Flight_Stage& stage, Step_Queue& steps,
                 const Request_Round& round);

    /// The settings have the plan taken from the network.
    [[nodiscard]] bool Is_Chosen() const;
    /// The plan stands on the panel.
    [[nodiscard]] bool Is_Applied() const { return m_is_applied; }
    void Set_Applied(bool applied) { m_is_applied = applied; }
    /// Looks for it from now on, if it is wanted and not there.
    void Look(bool wanted) { tmrVATSIM.Set_Enabled(wanted && Is_Chosen() && !m_is_applied); }

    /// The pilot's line of the network's data, for the flight that is tracked.
    Signal<const std::string&> found;

    Timer tmrVATSIM;

  private:
    void Tick();
    void Take(const std::string& line);

    Panel_Parts m_parts;
    const Flight_Stage& m_stage;
    Step_Queue& m_steps;
    const Request_Round& m_round;
    bool m_is_applied = false;
    int m_polled_in_round = 0;
    Poll_Pauses m_pauses;
    clsWinInet m_network;
};

}  // namespace norvane
