// The panel's commands and timers.

#include "acarspanel/uc_acars.h"

#include <utility>

#include "acars/cls_acars.h"
#include "common/log_error.h"
#include "common/services.h"
#include "flightlog/log_columns.h"
#include "flightlog/log_keeping.h"
#include "logentry/cls_log_entry.h"

namespace norvane {

namespace {

/// Minutes in the air from one position report to the next.
constexpr int position_report_minutes = 15;

constexpr std::string_view incomplete_question =
    "This flight appears to be incomplete.  You will need to manually enter some items in the "
    "Flight Log.\r\n\r\nWould you like to log this flight anyway?";
constexpr std::string_view second_question =
    "This flight has already been logged.  Would you like to log it again?";
constexpr std::string_view unlogged_question =
    "This flight has not been logged.  Would you like to log it now?";

bool Ask(Desktop& desktop, std::string_view question, Icon icon) {
    return desktop.Show_Message({std::string(question), std::string(product_name), icon,
                                 Buttons::yes_no}) == Answer::yes;
}

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
        // "On" cannot be used any longer, and what stands beside it would take the keyboard: a
        // blank typed there would pause the flight.
        if (const Control* field = First_Field())
            Focus_Moved.emit(*field);
    });
    Run_What_Waited();
}

/// Puts the finished flight off the panel; false when the pilot wanted it logged first and that
/// failed.
bool ucACARS::Begin_New_Flight() {
    if (!May_Drop_Finished_Flight())
        return false;
    m_objACARS->Reset();
    Clear_Old_Values();
    m_finish = Finish::none;
    Delete_Stored_Flight(m_services);
    return true;
}

/// Asks about a finished flight that is not in the log. True when it is logged now, or given up.
bool ucACARS::May_Drop_Finished_Flight() {
    if (m_finish != Finish::unlogged)
        return true;
    if (Ask(m_services.desktop, unlogged_question, Icon::question))
        return ACARS_LOG();
    m_finish = Finish::given_up;
    return true;
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
    });
}

void ucACARS::Log_Flight() {
    Guarded(m_services, "ucACARS.hypLog_Click()", Show::box, [&] {
        const Finish asked_at = m_finish;
        if (asked_at == Finish::none &&
            !Ask(m_services.desktop, incomplete_question, Icon::information))
            return;
        if (asked_at == Finish::logged && !Ask(m_services.desktop, second_question, Icon::question))
            return;
        // The flight goes on behind the question: it may have reached the gate and the log.
        if (m_finish == Finish::logged && asked_at != Finish::logged)
            return;
        ACARS_LOG();
    });
}

/// True when the flight log has saved the flight.
bool ucACARS::ACARS_LOG() {
    m_saved = false;
    Guarded(m_services, "ucACARS.ACARS_LOG()", Show::box, [&] {
        const Busy_Cursor busy(m_services.desktop);
        if (m_waiting)
            End_Tracking();
        // What comes from now on would be the panel's alone.
        if (m_finish != Finish::none)
            Drop_Requests();
        Create_Log_Entry();
        if (m_finish != Finish::none)
            Note_Row_To_Be_Logged();
        m_objNewLogEntry.New_Log_Entry_Save();
        const bool complete = m_saved && m_finish != Finish::none;
        if (complete) {
            m_finish = Finish::logged;
            Keep_Old_Values();
        }
        const bool has_pirep = m_settings.OPT_PIREP() && m_objNewLogEntry.Export_ACARS_Report();
        // Before the post, which takes its time: a program killed meanwhile has nothing left to
        // log. Behind the export, which a store that fails does not cost.
        if (complete) {
            Guarded(m_services, "ucACARS.ACARS_LOG()", Show::box,
                    [&] { Delete_Stored_Flight(m_services); });
        }
        if (has_pirep && m_saved && m_settings.OPT_PIREP_SEND())
            Queue_PIREP();
    });
    return m_saved;
}

void ucACARS::ACARS_RESET() {
    Guarded(m_services, "ucACARS.ACARS_RESET()", Show::box, [&] {
        const Busy_Cursor busy(m_services.desktop);
        Stop_Timers();
        Drop_Requests();
        if (m_waiting)
            End_Tracking();
        if (m_finish == Finish::unlogged)
            Save_Row_As_Unsaved();
        m_finish = Finish::none;
        m_resume = false;
        m_plan_read = false;
        m_network_plan = false;
        if (m_objACARS != nullptr) {
            m_objACARS->Send_Disconnect_Message();
            m_objACARS->Reset();
            m_objACARS->Stop_();
        }
        Set_Paused(false);
        Set_Active_State(false);
        Clear_All_Fields();
        Delete_Stored_Flight(m_services);
    });
}

void ucACARS::Drop_Stored_Flight() {
    Guarded(m_services, "ucACARS.Drop_Stored_Flight()", Show::box, [&] {
        if (!m_resume || m_active)
            return;
        Save_Row_As_Unsaved();
        m_finish = Finish::none;
        m_resume = false;
        m_network_plan = false;
        Clear_All_Fields();
        Delete_Stored_Flight(m_services);
        Active_State.emit(false);
    });
}

void ucACARS::Close(Closing how) {
    After_Step([this, how] { Close_Now(how); });
}

void ucACARS::Close_Now(Closing how) {
    if (std::exchange(m_closed, true))
        return;
    Stop_Timers();
    Drop_Requests();
    Guarded(m_services, "ucACARS.Close()", Show::box, [&] {
        // A flight that was on its way into the log is logged without asking.
        if (m_waiting)
            Settle_At_Gate();
        if (how == Closing::by_pilot)
            May_Drop_Finished_Flight();
        else if (m_finish == Finish::unlogged)
            Save_Row_As_Unsaved();
    });
    Persist();
    End_Posts(how);
    Closed.emit();
}

/// Keeps the finished flight's row beside the log; raises when it cannot be written.
void ucACARS::Save_Row_As_Unsaved() {
    Create_Log_Entry();
    Write_Unsaved(m_services, m_settings.FlightLog_Path(), Log_Line(m_objNewLogEntry));
    m_finish = Finish::given_up;
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
