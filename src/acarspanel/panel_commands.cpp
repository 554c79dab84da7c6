// The panel's commands and timers.

#include "acarspanel/uc_acars.h"

#include <utility>

#include "acars/cls_acars.h"
#include "common/boxes.h"
#include "common/log_error.h"
#include "common/services.h"

namespace norvane {

namespace {

/// Minutes in the air from one position report to the next.
constexpr int position_report_minutes = 15;

constexpr std::string_view incomplete_question =
    "This flight appears to be incomplete.  You will need to manually enter some items in the "
    "Flight Log.\r\n\r\nWould you like to log this flight anyway?";
constexpr std::string_view second_question =
    "This flight has already been logged.  Would you like to log it again?";

}  // namespace

/// Runs `work` now, or at the end of the step that is running: a step is never interrupted.
void ucACARS::After_Step(std::function<void()> work) {
    if (m_objACARS != nullptr && m_objACARS->Is_Stepping())
        m_after_step.push_back(std::move(work));
    else
        work();
}

void ucACARS::Run_What_Waited() {
    while (!m_after_step.empty()) {
        const auto work = std::move(m_after_step.front());
        m_after_step.pop_front();
        work();
    }
}

void ucACARS::ACARS_ON() {
    Guarded(m_services, "ucACARS.ACARS_ON()", Show::box, [&] {
        if (m_objACARS == nullptr || (m_finish != Finish::none && !Begin_New_Flight()))
            return;
        const Busy_Cursor busy(m_services.desktop);
        const Wait_Notice notice(m_services.desktop, "Connecting to the simulator ...");
        Drop_Requests();
        m_plan_read = m_resume;
        m_network_plan = m_network_plan && m_resume;
        if (!m_resume)
            m_engine_destination.clear();
        std::string failure;
        const bool started =
            m_objACARS->Start(failure, {true, m_resume, Without_Placeholder(txtFlightNumber.Text()),
                                        Without_Placeholder(txtAircraftType.Text())});
        if (!started)
            throw Run_Error(error_number::other, failure, m_objACARS->For_Pilot(failure));
        Set_Paused(false);
        Set_Active_State(true);
        tmrPos.Set_Enabled(Airborne_By_Engine());
        Show_Stored();
        // "On" cannot be used any longer, and what stands beside it would take the keyboard: a
        // blank typed there would pause the flight.
        if (const Control* field = First_Field())
            Focus_Moved.emit(*field);
    });
    Run_What_Waited();
}

void ucACARS::ACARS_MODE() {
    Guarded(m_services, "ucACARS.ACARS_MODE()", Show::box, [&] {
        const Busy_Cursor busy(m_services.desktop);
        Set_Paused(!m_paused);
        tmr.Set_Enabled(!m_paused);
        tmrPos.Set_Enabled(!m_paused && Airborne_By_Engine());
        tmrVATSIM.Set_Enabled(!m_paused && Polls_Network());
        // Last, so that the panel agrees with its caption even when the engine fails.
        if (m_paused)
            m_objACARS->Paused();
        else
            m_objACARS->Resume_();
        // No step comes that would store again what the store did not take.
        if (m_paused && !m_objACARS->Was_Stored())
            m_changed = true;
        m_store_timer.Set_Enabled(m_paused && m_changed && Has_Flight_To_Keep());
    });
}

void ucACARS::Log_Flight() {
    Guarded(m_services, "ucACARS.hypLog_Click()", Show::box, [&] {
        const Finish asked_at = m_finish;
        if (asked_at == Finish::none &&
            Ask(m_services.desktop, incomplete_question, Icon::information) != Answer::yes)
            return;
        if (asked_at == Finish::logged && Ask(m_services.desktop, second_question) != Answer::yes)
            return;
        // The flight goes on behind the question: it may have reached the gate and the log.
        if (m_finish == Finish::logged && asked_at != Finish::logged)
            return;
        ACARS_LOG();
    });
}

void ucACARS::Tick() {
    Guarded(m_services, "ucACARS.tmr_Timer()", Show::silent, [&] {
        if (m_objACARS != nullptr && !m_objACARS->Is_Stepping())
            m_objACARS->Refresh();
    });
    Guarded(m_services, "ucACARS.tmr_Timer()", Show::silent, [&] { Run_What_Waited(); });
}

void ucACARS::Position_Tick() {
    ++m_position_minutes;
    if (m_objACARS == nullptr || m_position_minutes != position_report_minutes)
        return;
    m_position_minutes = 0;
    After_Step([this] {
        Guarded(m_services, "ucACARS.tmrPos_Timer()", Show::silent,
                [&] { m_objACARS->Report_Position(); });
    });
}

}  // namespace norvane
