// How a flight leaves the panel: into the log, given up, or kept for the next start.

#include <fmt/format.h>

#include <utility>

#include "acars/cls_acars.h"
#include "acarspanel/uc_acars.h"
#include "common/boxes.h"
#include "common/code_page.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/cls_app_settings.h"
#include "logentry/cls_log_entry.h"

namespace norvane {

namespace {

constexpr std::string_view unlogged_question =
    "This flight has not been logged.  Would you like to log it now?";

}  // namespace

/// A flight that the pilot logged before its gate is the log's already.
bool ucACARS::Logs_By_Itself() const {
    return m_parts.settings.OPT_AutoLog() || !m_store.facts.row_in_log.empty();
}

void ucACARS::Settle_Stored_Flight() {
    Guarded(m_services, "ucACARS.Settle_Stored_Flight()", Show::box, [&] {
        if (m_stage.Now() != Stage::unlogged)
            return;
        if (!Logs_By_Itself()) {
            const std::string question =
                fmt::format("A finished flight {}: {}.\r\n\r\nWould you like to log it now?",
                            m_store.Had_Failed() ? "could not be saved to the flight log"
                                                 : "has not been logged",
                            Flight_Words());
            if (Ask(m_services.desktop, question) != Answer::yes ||
                m_stage.Now() != Stage::unlogged)
                return;
        }
        ACARS_LOG();
    });
}

/// True when the flight log has saved the flight.
bool ucACARS::ACARS_LOG() {
    bool saved = false;
    Guarded(m_services, "ucACARS.ACARS_LOG()", Show::box, [&] {
        const Busy_Cursor busy(m_services.desktop);
        if (m_stage.Now() == Stage::at_gate)
            End_Tracking();
        // What comes from now on would be the panel's alone.
        const bool at_gate = m_stage.Is_Finished();
        if (at_gate)
            Drop_Requests();
        clsLogEntry& entry = m_parts.log_entry;
        const std::string row = m_store.Row();
        const bool was_logged_before = !Is_Logged() && !m_store.facts.row_in_log.empty();
        entry.Set_Row_In_Log(was_logged_before ? m_store.facts.row_in_log : "");
        m_pireps.Note_Due(row, was_logged_before);
        if (at_gate)
            m_store.Note_Row_To_Be_Logged(row);
        const std::string pirep = entry.Get(Log_Field::PIREP_FILE_NAME);
        // Before the log's boxes: the flight goes on behind them, and may come to the gate.
        m_on_saved = [&] {
            saved = true;
            Take_Logged_Row(row, at_gate);
        };
        entry.New_Log_Entry_Save();
        // What was stored meanwhile has named the entry anew; the name that is noted counts.
        entry.Set(Log_Field::PIREP_FILE_NAME, pirep);
        const bool has_pirep = m_parts.settings.OPT_PIREP() && entry.Export_ACARS_Report();
        // Before the post, which takes its time: a program killed meanwhile has nothing left to
        // log. Behind the export, which a store that fails does not cost.
        if (saved && at_gate) {
            Guarded(m_services, "ucACARS.ACARS_LOG()", Show::box,
                    [&] { Delete_Stored_Flight(m_services); });
        }
        if (has_pirep && saved)
            m_pireps.Send(was_logged_before);
    });
    m_on_saved = {};
    return saved;
}

/// The log has the flight: for good, or as far as it went.
void ucACARS::Take_Logged_Row(const std::string& row, bool at_gate) {
    if (at_gate) {
        m_store.facts.row_in_log.clear();
        // Not one that was given up behind the log's question.
        if (m_stage.Is_Finished())
            Enter(Stage::logged);
        Keep_Old_Values();
        return;
    }
    // Without a flight, what was logged is no beginning of the next one.
    if (m_stage.Now() == Stage::none)
        return;
    m_store.facts.row_in_log = row;
    if (m_store.Has_Flight_To_Keep())
        m_store.Persist();
}

void ucACARS::ACARS_RESET() {
    std::filesystem::path kept;
    Guarded(m_services, "ucACARS.ACARS_RESET()", Show::box, [&] {
        if (Would_Lose_Flight()) {
            const std::string question =
                fmt::format("Give up this flight?  Its figures so far are kept in {}",
                            From_Path(m_keeper.Next_File()));
            if (Ask(m_services.desktop, question) != Answer::yes)
                return;
            // The flight goes on behind the question: it may have reached the gate and the log.
            if (Would_Lose_Flight())
                kept = m_keeper.Keep();
        }
        const Busy_Cursor busy(m_services.desktop);
        Stop_Timers();
        Drop_Requests();
        if (m_stage.Now() == Stage::at_gate)
            End_Tracking();
        clsACARS* engine = m_steps.Engine();
        Forget_Flight();
        if (engine != nullptr) {
            // A flight that was stored and never taken up was not connected either.
            if (!engine->Flight_Date().empty())
                engine->Send_Disconnect_Message();
            engine->Reset();
            engine->Stop_();
        }
        Show_Paused(false);
        Show_Active();
        Clear_Flight();
    });
    m_keeper.Tell_Where(kept);
}

/// No flight is under way, and what was known of one goes.
void ucACARS::Forget_Flight() {
    m_stage.Enter(Stage::none);
    m_store.facts = {};
    network_plan.Set_Applied(false);
}

/// Takes a flight that was forgotten off the panel and out of the store.
void ucACARS::Clear_Flight() {
    Clear();
    Show_Stored();
    Delete_Stored_Flight(m_services);
}

std::filesystem::path ucACARS::Drop_Stored_Flight() {
    std::filesystem::path kept;
    Guarded(m_services, "ucACARS.Drop_Stored_Flight()", Show::box, [&] {
        if (Is_Active() || !Is_Tracked_Or_Stored())
            return;
        kept = m_keeper.Keep();
        Forget_Flight();
        Clear_Flight();
        Active_State.Emit(false);
    });
    return kept;
}

/// Puts the finished flight off the panel; false when the pilot wanted it logged first and that
/// failed, or did not say what is to become of it.
bool ucACARS::Begin_New_Flight() {
    // A signal may have ended the panel behind the question.
    if (!Ask_About_Finished_Flight() || m_stage.Is_Unlogged() || m_closed)
        return false;
    m_steps.Engine()->Reset();
    Clear_Old_Values();
    weather.Forget_All();
    Derive_Name(txtOrigin, lblOriginName);
    Derive_Name(txtDestination, lblDestinationName);
    m_store.facts.row_in_log.clear();
    Enter(Stage::none);
    // One that cannot be deleted now is written over by the next.
    Guarded(m_services, "ucACARS.ACARS_ON()", Show::silent,
            [&] { Delete_Stored_Flight(m_services); });
    return true;
}

/// Asks about a finished flight that is not in the log, and does what the pilot says. False for no
/// answer, and for a flight that can be kept nowhere and is not to be lost.
bool ucACARS::Ask_About_Finished_Flight() {
    if (!m_stage.Is_Unlogged())
        return true;
    const Answer answer = Ask(m_services.desktop, unlogged_question);
    // It may have been logged behind the question.
    if (!m_stage.Is_Unlogged())
        return true;
    if (answer == Answer::yes)
        ACARS_LOG();
    if (answer != Answer::no)
        return answer == Answer::yes;
    const auto kept = m_keeper.Keep_Or_Ask("Give it up all the same?");
    if (!kept)
        return false;
    // The weather that it waited for is of no use any longer.
    if (m_stage.Now() == Stage::at_gate)
        End_Tracking();
    if (m_stage.Is_Unlogged())
        Enter(Stage::given_up);
    m_store.Persist();
    m_keeper.Tell_Where(*kept);
    return true;
}

/// What the panel shows has begun and stands nowhere else.
bool ucACARS::Would_Lose_Flight() {
    return !lblTimeOut.Text().empty() && m_stage.Is_To_Be_Kept() &&
           m_store.Row() != m_store.facts.row_in_log;
}

void ucACARS::Close(Closing how) {
    if (!m_closing) {
        m_closing = how;
        m_steps.After_Step([this] { Close_Now(); });
    } else if (how != Closing::by_pilot) {
        // Somebody without patience, while the pilot is still asked.
        m_closing = how;
    }
}

void ucACARS::Close_Now() {
    if (m_closing == Closing::by_pilot && !May_Close() && m_closing == Closing::by_pilot) {
        m_closing.reset();
        Close_Called_Off.Emit();
        return;
    }
    m_closed = true;
    Closing_Now.Emit();
    Stop_Timers();
    Drop_Requests();
    Guarded(m_services, "ucACARS.Close()", Show::box, [&] {
        // A flight that was on its way into the log is logged without asking.
        if (m_stage.Now() == Stage::at_gate)
            Settle_At_Gate();
        if (m_closing == Closing::by_signal && m_stage.Is_Unlogged()) {
            m_keeper.Keep();
            Enter(Stage::given_up);
        }
    });
    if (!m_store.Persist() && m_store.Has_Flight_To_Keep() && m_closing != Closing::by_pilot)
        m_keeper.Keep_Somewhere();
    m_store.Stop();
    m_pireps.Close();
    Closed.Emit();
}

/// Asks what has to be asked before anything ends; false calls the closing off, and all goes on.
bool ucACARS::May_Close() {
    bool may = false;
    Guarded(m_services, "ucACARS.Close()", Show::box, [&] {
        bool others_may = true;
        Close_Asked.Emit(others_may);
        // A signal ends the question, and what is to come needs no other.
        if (!others_may || m_closing != Closing::by_pilot)
            return;
        if (m_stage.Now() == Stage::at_gate && Logs_By_Itself())
            Settle_At_Gate();
        may = Ask_About_Finished_Flight() && Is_Kept_Beyond_The_End();
    });
    return may;
}

/// A flight that the store does not take is kept beside the log, as far as it went.
bool ucACARS::Is_Kept_Beyond_The_End() {
    if (!m_store.Has_Flight_To_Keep() || m_store.Persist())
        return true;
    const auto kept = m_keeper.Keep_Or_Ask("Close all the same?");
    if (kept)
        m_keeper.Tell_Where(*kept);
    return kept.has_value();
}

}  // namespace norvane
