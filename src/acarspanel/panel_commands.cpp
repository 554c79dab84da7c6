// The panel's commands and timers.

#include <utility>

#include "acars/cls_acars.h"
#include "acarspanel/uc_acars.h"
#include "common/boxes.h"
#include "common/log_error.h"

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

void ucACARS::ACARS_ON() {
    Guarded(m_services, "ucACARS.ACARS_ON()", Show::box, [&] {
        if (m_steps.Engine() == nullptr || (m_stage.Is_Finished() && !Begin_New_Flight()))
            return;
        const Busy_Cursor busy(m_services.desktop);
        const Wait_Notice notice(m_services.desktop, "Connecting to the simulator ...");
        Drop_Requests();
        const bool resumes = Is_Resumable();
        m_store.facts.plan_read = resumes;
        network_plan.Set_Applied(network_plan.Is_Applied() && resumes);
        if (!resumes) {
            m_store.facts.engine_destination.clear();
            m_store.facts.planned.clear();
        }
        std::string failure;
        const bool started = m_steps.Engine()->Start(
            failure, {true, resumes, Without_Placeholder(txtFlightNumber.Text()),
                      Without_Placeholder(txtAircraftType.Text())});
        if (!started)
            throw Run_Error(error_number::other, failure, m_steps.Engine()->For_Pilot(failure));
        Show_Paused(false);
        m_stage.Enter(Stage::tracked);
        Show_Active();
        tmrPos.Set_Enabled(Airborne_By_Engine());
        // Into the recording, which may be a new one.
        if (!m_store.facts.planned.empty())
            simbrief.planned.Emit(m_store.facts.planned);
        Show_Stored();
        // "On" cannot be used any longer, and what stands beside it would take the keyboard: a
        // blank typed there would pause the flight.
        m_pages.Focus_First_Field();
    });
    m_steps.Run_What_Waited();
}

void ucACARS::ACARS_MODE() {
    Guarded(m_services, "ucACARS.ACARS_MODE()", Show::box, [&] {
        const Busy_Cursor busy(m_services.desktop);
        const bool paused = !Is_Paused();
        m_stage.Enter(paused ? Stage::paused : Stage::tracked);
        Show_Paused(paused);
        tmr.Set_Enabled(!paused);
        tmrPos.Set_Enabled(!paused && Airborne_By_Engine());
        network_plan.Look(!paused);
        // Last, so that the panel agrees with its caption even when the engine fails.
        if (paused)
            m_steps.Engine()->Paused();
        else
            m_steps.Engine()->Resume_();
        // No step comes that would store again what the store did not take.
        if (paused && !m_steps.Engine()->Was_Stored())
            m_store.Note_Change();
        if (paused)
            m_store.Store_Soon();
        else
            m_store.Stop();
    });
}

void ucACARS::Log_Flight() {
    Guarded(m_services, "ucACARS.hypLog_Click()", Show::box, [&] {
        const bool was_finished = m_stage.Is_Finished();
        const bool was_logged = Is_Logged();
        if (!was_finished &&
            Ask(m_services.desktop, incomplete_question, Icon::information) != Answer::yes)
            return;
        if (was_logged && Ask(m_services.desktop, second_question) != Answer::yes)
            return;
        // The flight goes on behind the question: it may have reached the gate and the log.
        if (Is_Logged() && !was_logged)
            return;
        ACARS_LOG();
    });
}

void ucACARS::Tick() {
    Guarded(m_services, "ucACARS.tmr_Timer()", Show::silent, [&] {
        if (m_steps.Engine() != nullptr && !m_steps.Is_Stepping())
            m_steps.Engine()->Refresh();
    });
    Guarded(m_services, "ucACARS.tmr_Timer()", Show::silent, [&] { m_steps.Run_What_Waited(); });
}

void ucACARS::Position_Tick() {
    ++m_position_minutes;
    if (m_steps.Engine() == nullptr || m_position_minutes != position_report_minutes)
        return;
    m_position_minutes = 0;
    m_steps.After_Step([this] {
        Guarded(m_services, "ucACARS.tmrPos_Timer()", Show::silent,
                [&] { m_steps.Engine()->Report_Position(); });
    });
}

}  // namespace norvane
