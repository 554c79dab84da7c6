#include "acarspanel/network_plan.h"

#include <utility>

#include "acarspanel/flight_stage.h"
#include "acarspanel/request_round.h"
#include "acarspanel/step_queue.h"
#include "common/boxes.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/cls_app_settings.h"
#include "config/setting_codes.h"

namespace norvane {

namespace {

constexpr std::chrono::seconds network_interval(10);

constexpr std::string_view no_pilot_id =
    "Your flight plan is to come from the online network, but the settings hold no VATSIM PID.  "
    "The flight goes on without it: please enter the plan here, or the PID in Settings before the "
    "next flight.";

}  // namespace

Network_Plan::Network_Plan(const Panel_Parts& parts, const Flight_Stage& stage, Step_Queue& steps,
                           const Request_Round& round)
    : tmrVATSIM(parts.services.desktop.Timers(), network_interval),
      m_parts(parts),
      m_stage(stage),
      m_steps(steps),
      m_round(round),
      m_network(parts.services, parts.settings, parts.airline,
                Given_Up_When([this] { return m_round.Is_Over(m_polled_in_round); }, parts.http)) {
    tmrVATSIM.tick.Connect(*this, &Network_Plan::Tick);
}

bool Network_Plan::Is_Chosen() const {
    return Plan_Source{m_parts.settings.VATSIM_FP()} == Plan_Source::network;
}

void Network_Plan::Tick() {
    if (m_steps.Is_Stepping())
        return;
    Guarded(m_parts.services, "ucACARS.tmrVATSIM_Timer()", Show::silent, [&] {
        const std::string pilot_id = m_parts.settings.VATSIM_PID();
        if (pilot_id.empty()) {
            tmrVATSIM.Set_Enabled(false);
            Tell(m_parts.services.desktop, no_pilot_id, Icon::exclamation);
            return;
        }
        if (m_round.Is_Over(std::exchange(m_polled_in_round, m_round.Now())))
            m_pauses.Reset();
        if (!m_pauses.Is_Due())
            return;
        const Wait_Notice notice(m_parts.services.desktop,
                                 "Looking for your flight plan on the network ...");
        const auto line = m_network.Get_VATSIM_FlightPlan(pilot_id);
        if (!line) {
            m_pauses.Note_Failure();
            return;
        }
        m_pauses.Reset();
        m_steps.After_Step([this, line = *line, round = m_polled_in_round] {
            if (!m_round.Is_Over(round))
                Take(line);
        });
    });
}

/// The flight may have been reset while the answer was on its way, or be at the gate.
void Network_Plan::Take(const std::string& line) {
    if (line.empty() || !m_stage.Is_Active() || m_stage.Is_Finished())
        return;
    tmrVATSIM.Set_Enabled(false);
    found.Emit(line);
}

}  // namespace norvane
