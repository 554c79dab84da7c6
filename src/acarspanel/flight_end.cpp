// How a flight leaves the panel: into the log, given up, or kept for the next start.

#include <fmt/format.h>

#include <utility>

#include "acars/cls_acars.h"
#include "acarspanel/uc_acars.h"
#include "common/boxes.h"
#include "common/code_page.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/cls_va_settings.h"
#include "flightlog/log_columns.h"
#include "flightlog/log_keeping.h"
#include "logentry/cls_log_entry.h"

namespace norvane {

namespace {

constexpr std::string_view unlogged_question =
    "This flight has not been logged.  Would you like to log it now?";

/// Where the row of a flight that is given up now would go.
std::filesystem::path Next_Unsaved(const std::filesystem::path& log) {
    std::filesystem::path file = Beside_Log(log, ".unsaved");
    std::error_code unknown;
    for (int number = 2; std::filesystem::exists(file, unknown); ++number)
        file = Beside_Log(log, fmt::format(".unsaved{}", number));
    return file;
}

}  // namespace

std::string ucACARS::Flight_Words() const {
    std::string words = Without_Placeholder(txtOrigin.Text());
    const std::string to = Without_Placeholder(txtDestination.Text());
    if (!to.empty())
        words += (words.empty() ? "to " : " to ") + to;
    const auto add = [&](std::string_view event, const Label& time) {
        if (!time.Text().empty())
            words += fmt::format("{}{} {}", words.empty() ? "" : ", ", event, time.Text());
    };
    add("OFF", lblTimeOff);
    add("IN", lblTimeIn);
    return words;
}

/// Says on the panel which flight waits, and for what.
void ucACARS::Show_Stored() {
    std::string text;
    if (m_resume && !m_active) {
        text =
            fmt::format("A flight is stored: {}.  \"On\" goes on with it, \"Reset\" gives it up.",
                        Flight_Words());
    } else if (m_finish == Finish::unlogged && !m_active) {
        text = fmt::format(
            "A finished flight is not in the log: {}.  \"Log Flight\" logs it, \"Reset\" gives it "
            "up.",
            Flight_Words());
    }
    lblStored.Set_Text(text);
    lblStored.Set_Visible(!text.empty());
    Stored_State.emit();
}

void ucACARS::Set_Finish(Finish finish) {
    m_finish = finish;
    Show_Stored();
}

/// A flight that the pilot logged before its gate is the log's already.
bool ucACARS::Logs_By_Itself() const {
    return m_settings.OPT_AutoLog() || !m_row_in_log.empty();
}

void ucACARS::Settle_Stored_Flight() {
    Guarded(m_services, "ucACARS.Settle_Stored_Flight()", Show::box, [&] {
        if (m_finish != Finish::unlogged || m_active)
            return;
        if (!Logs_By_Itself()) {
            const std::string question = fmt::format(
                "A finished flight {}: {}.\r\n\r\nWould you like to log it now?",
                m_save_failed ? "could not be saved to the flight log" : "has not been logged",
                Flight_Words());
            if (Ask(m_services.desktop, question) != Answer::yes || m_finish != Finish::unlogged)
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
        if (m_waiting)
            End_Tracking();
        // What comes from now on would be the panel's alone.
        const bool at_gate = m_finish != Finish::none;
        if (at_gate)
            Drop_Requests();
        const std::string row = Row();
        const bool was_logged_before = m_finish != Finish::logged && !m_row_in_log.empty();
        m_objNewLogEntry.Set_Row_In_Log(was_logged_before ? m_row_in_log : "");
        Note_Due_PIREP(row, was_logged_before);
        if (at_gate)
            Note_Row_To_Be_Logged(row);
        const std::string pirep = m_objNewLogEntry.Get(Log_Field::PIREP_FILE_NAME);
        // Before the log's boxes: the flight goes on behind them, and may come to the gate.
        m_on_saved = [&] {
            saved = true;
            Take_Logged_Row(row, at_gate);
        };
        m_objNewLogEntry.New_Log_Entry_Save();
        // What was stored meanwhile has named the entry anew; the name that is noted counts.
        m_objNewLogEntry.Set(Log_Field::PIREP_FILE_NAME, pirep);
        const bool has_pirep = m_settings.OPT_PIREP() && m_objNewLogEntry.Export_ACARS_Report();
        // Before the post, which takes its time: a program killed meanwhile has nothing left to
        // log. Behind the export, which a store that fails does not cost.
        if (saved && at_gate) {
            Guarded(m_services, "ucACARS.ACARS_LOG()", Show::box,
                    [&] { Delete_Stored_Flight(m_services); });
        }
        if (has_pirep && saved)
            Send_PIREP_Of(was_logged_before);
    });
    m_on_saved = {};
    return saved;
}

/// The log has the flight: for good, or as far as it went.
void ucACARS::Take_Logged_Row(const std::string& row, bool at_gate) {
    if (at_gate) {
        m_row_in_log.clear();
        Set_Finish(Finish::logged);
        Keep_Old_Values();
        return;
    }
    m_row_in_log = row;
    if (Has_Flight_To_Keep())
        Persist();
}

/// An airline that has the PIREP of a flight logged before its gate would count a second one as
/// another flight.
void ucACARS::Send_PIREP_Of(bool was_logged_before) {
    if (!was_logged_before) {
        Queue_PIREP();
        return;
    }
    m_due_pireps.Take_Off(m_objNewLogEntry.Get(Log_Field::PIREP_FILE_NAME));
    if (m_settings.OPT_PIREP_SEND() && !m_airline.Script_PIREP().empty()) {
        Tell(m_services.desktop,
             fmt::format(
                 "This flight was logged before the gate, and its PIREP was given out then.  So "
                 "that the airline does not count it twice, the complete one is not sent by "
                 "itself.  If the airline has none, please send it with \"Send PIREP ...\"; it is "
                 "kept in {}",
                 m_objNewLogEntry.Get(Log_Field::PIREP_FILE_NAME)));
    }
}

void ucACARS::ACARS_RESET() {
    std::filesystem::path kept;
    Guarded(m_services, "ucACARS.ACARS_RESET()", Show::box, [&] {
        if (Would_Lose_Flight()) {
            const std::string question =
                fmt::format("Give up this flight?  Its figures so far are kept in {}",
                            From_Path(Next_Unsaved(m_settings.FlightLog_Path())));
            if (Ask(m_services.desktop, question) != Answer::yes)
                return;
            // The flight goes on behind the question: it may have reached the gate and the log.
            if (Would_Lose_Flight())
                kept = Keep_Row();
        }
        const Busy_Cursor busy(m_services.desktop);
        Stop_Timers();
        Drop_Requests();
        if (m_waiting)
            End_Tracking();
        m_finish = Finish::none;
        m_resume = false;
        m_plan_read = false;
        m_network_plan = false;
        m_row_in_log.clear();
        if (m_objACARS != nullptr) {
            // A flight that was stored and never taken up was not connected either.
            if (!m_objACARS->Flight_Date().empty())
                m_objACARS->Send_Disconnect_Message();
            m_objACARS->Reset();
            m_objACARS->Stop_();
        }
        Set_Paused(false);
        Set_Active_State(false);
        Clear_All_Fields();
        Show_Stored();
        Delete_Stored_Flight(m_services);
    });
    Tell_Where(kept);
}

std::filesystem::path ucACARS::Drop_Stored_Flight() {
    std::filesystem::path kept;
    Guarded(m_services, "ucACARS.Drop_Stored_Flight()", Show::box, [&] {
        if (m_active || !Is_Tracked_Or_Stored())
            return;
        kept = Keep_Row();
        m_finish = Finish::none;
        m_resume = false;
        m_network_plan = false;
        m_row_in_log.clear();
        Clear_All_Fields();
        Show_Stored();
        Delete_Stored_Flight(m_services);
        Active_State.emit(false);
    });
    return kept;
}

/// Puts the finished flight off the panel; false when the pilot wanted it logged first and that
/// failed, or did not say what is to become of it.
bool ucACARS::Begin_New_Flight() {
    // A signal may have ended the panel behind the question.
    if (!Ask_About_Finished_Flight() || m_finish == Finish::unlogged || m_closed)
        return false;
    m_objACARS->Reset();
    Clear_Old_Values();
    m_row_in_log.clear();
    Set_Finish(Finish::none);
    // One that cannot be deleted now is written over by the next.
    Guarded(m_services, "ucACARS.ACARS_ON()", Show::silent,
            [&] { Delete_Stored_Flight(m_services); });
    return true;
}

/// Asks about a finished flight that is not in the log, and does what the pilot says. False when he
/// said nothing, or would not lose a flight that can be kept nowhere.
bool ucACARS::Ask_About_Finished_Flight() {
    if (m_finish != Finish::unlogged)
        return true;
    const Answer answer = Ask(m_services.desktop, unlogged_question);
    // It may have been logged behind the question.
    if (m_finish != Finish::unlogged)
        return true;
    if (answer == Answer::yes)
        ACARS_LOG();
    if (answer != Answer::no)
        return answer == Answer::yes;
    const auto kept = Keep_Row_Or_Ask("Give it up all the same?");
    if (!kept)
        return false;
    Set_Finish(Finish::given_up);
    Persist();
    Tell_Where(*kept);
    return true;
}

/// The flight as a row of the log.
std::string ucACARS::Row() {
    Create_Log_Entry();
    return Log_Line(m_objNewLogEntry);
}

/// What the panel shows has begun and stands nowhere else.
bool ucACARS::Would_Lose_Flight() {
    return !lblTimeOut.Text().empty() &&
           (m_finish == Finish::none || m_finish == Finish::unlogged) && Row() != m_row_in_log;
}

/// Keeps the flight's row beside the log; raises when it cannot be written.
std::filesystem::path ucACARS::Keep_Row() {
    m_kept_in = Write_Unsaved(m_services, m_settings.FlightLog_Path(), Row());
    return m_kept_in;
}

/// The file that keeps the row. Where none can be written the pilot is asked: empty when he lets
/// the flight go, none when he does not.
std::optional<std::filesystem::path> ucACARS::Keep_Row_Or_Ask(std::string_view question) {
    std::string failure;
    try {
        return Keep_Row();
    } catch (...) {
        const Run_Error error = Caught_Error();
        Log_Error(m_services, "ucACARS.Keep_Row()", error, Show::silent);
        failure = error.Description();
    }
    const Answer answer = Ask(
        m_services.desktop,
        fmt::format("This flight could be kept nowhere ({}), and its figures would be lost.  Make "
                    "room on the disk, or answer Yes to lose them.\r\n\r\n{}",
                    failure, question),
        Icon::exclamation);
    if (answer != Answer::yes)
        return std::nullopt;
    return std::filesystem::path();
}

/// For a flight that the store does not take and nobody can be asked about: beside the log, or in
/// the error log at least.
void ucACARS::Keep_Row_Somewhere() {
    if (!Guarded(m_services, "ucACARS.Close()", Show::box, [&] { Keep_Row(); })) {
        Log_Error(m_services, "ucACARS.Close()",
                  {error_number::other, "The flight could be kept nowhere else: " + Row()},
                  Show::silent);
    }
}

void ucACARS::Tell_Where(const std::filesystem::path& kept) {
    if (!kept.empty()) {
        Tell(m_services.desktop,
             fmt::format("The row of this flight is kept in {}; \"Recover Unsaved Flights ...\" in "
                         "the menu \"Flight Logs\" brings it back.",
                         From_Path(kept)));
    }
}

void ucACARS::Close(Closing how) {
    if (!m_closing) {
        m_closing = how;
        After_Step([this] { Close_Now(); });
    } else if (how != Closing::by_pilot) {
        // Somebody without patience, while the pilot is still asked.
        m_closing = how;
    }
}

void ucACARS::Close_Now() {
    if (m_closing == Closing::by_pilot && !May_Close() && m_closing == Closing::by_pilot) {
        m_closing.reset();
        Close_Called_Off.emit();
        return;
    }
    m_closed = true;
    Closing_Now.emit();
    Stop_Timers();
    Drop_Requests();
    Guarded(m_services, "ucACARS.Close()", Show::box, [&] {
        // A flight that was on its way into the log is logged without asking.
        if (m_waiting)
            Settle_At_Gate();
        if (m_closing == Closing::by_signal && m_finish == Finish::unlogged) {
            Keep_Row();
            Set_Finish(Finish::given_up);
        }
    });
    if (!Persist() && Has_Flight_To_Keep() && m_closing != Closing::by_pilot)
        Keep_Row_Somewhere();
    m_store_timer.Set_Enabled(false);
    End_Posts(*m_closing);
    Closed.emit();
}

/// Asks what has to be asked before anything ends; false calls the closing off, and all goes on.
bool ucACARS::May_Close() {
    bool may = false;
    Guarded(m_services, "ucACARS.Close()", Show::box, [&] {
        bool others_may = true;
        Close_Asked.emit(others_may);
        // A signal ends the question, and what is to come needs no other.
        if (!others_may || m_closing != Closing::by_pilot)
            return;
        if (m_waiting && Logs_By_Itself())
            Settle_At_Gate();
        may = Ask_About_Finished_Flight() && Is_Kept_Beyond_The_End();
    });
    return may;
}

/// A flight that the store does not take is kept beside the log, as far as it went.
bool ucACARS::Is_Kept_Beyond_The_End() {
    if (!Has_Flight_To_Keep() || Persist())
        return true;
    const auto kept = Keep_Row_Or_Ask("Close all the same?");
    if (kept)
        Tell_Where(*kept);
    return kept.has_value();
}

}  // namespace norvane
