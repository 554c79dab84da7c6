#include "acarspanel/pirep_queue.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "acarspanel/step_queue.h"
#include "common/boxes.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "logentry/cls_log_entry.h"
#include "logentry/frm_response.h"

namespace norvane {

namespace {

constexpr std::chrono::milliseconds post_delay(1);
/// How long a pilot who leaves waits for the airline to take the last PIREP, whose file remains.
constexpr std::chrono::milliseconds longest_last_post(15'000);

}  // namespace

Pirep_Queue::Pirep_Queue(const Panel_Parts& parts, const Step_Queue& steps)
    : m_parts(parts),
      m_steps(steps),
      m_due(parts.services),
      m_timer(parts.services.desktop.Timers(), post_delay) {
    m_timer.tick.Connect(*this, &Pirep_Queue::Post_All);
}

/// An airline without a script has nobody to send to.
bool Pirep_Queue::Sends_PIREPs() const {
    return m_parts.settings.OPT_PIREP_SEND() && !m_parts.airline.Script_PIREP().empty();
}

/// The row of a flight and its PIREP cannot be written in one stroke, and the post takes its time:
/// a program that ends between them makes up by this note what is missing.
void Pirep_Queue::Note_Due(const std::string& row, bool was_logged_before) {
    if (!m_parts.settings.OPT_PIREP())
        return;
    const clsLogEntry& entry = m_parts.log_entry;
    m_due.Note({entry.Get(Log_Field::PIREP_FILE_NAME), entry.PIREP_Line(), row,
                m_parts.airline.Name(), Sends_PIREPs() && !was_logged_before,
                Due_PIREP::Stage::noted});
}

/// An airline that has the PIREP of a flight logged before its gate would count a second one as
/// another flight.
void Pirep_Queue::Send(bool was_logged_before) {
    const std::string file = m_parts.log_entry.Get(Log_Field::PIREP_FILE_NAME);
    if (!Sends_PIREPs() || was_logged_before)
        m_due.Take_Off(file);
    if (!Sends_PIREPs())
        return;
    if (was_logged_before) {
        Tell(m_parts.services.desktop,
             fmt::format(
                 "This flight was logged before the gate, and its PIREP was given out then.  So "
                 "that the airline does not count it twice, the complete one is not sent by "
                 "itself.  If the airline has none, please send it with \"Send PIREP ...\"; it is "
                 "kept in {}",
                 file));
        return;
    }
    m_due.Set_Stage(file, Due_PIREP::Stage::written);
    m_posts.push_back(
        {file, m_parts.airline.Name(), !m_parts.services.desktop.Timers().Is_Ticking()});
    m_timer.Set_Enabled(true);
}

void Pirep_Queue::Take_Up(const std::function<bool(const std::string& row)>& stands_in_log) {
    using Stage = Due_PIREP::Stage;
    m_due.Load();
    const std::vector<Due_PIREP> left = m_due.All();
    for (const Due_PIREP& due : left) {
        if (due.stage == Stage::noted) {
            clsLogEntry entry(m_parts.services);
            if (!stands_in_log(due.row) || !entry.Make_Up_PIREP(due.file, due.line))
                continue;
            if (!due.is_sent) {
                m_due.Take_Off(due.file);
                continue;
            }
            m_due.Set_Stage(due.file, Stage::written);
        }
        m_posts.push_back({due.file, due.airline, false, due.stage == Stage::sending});
    }
    m_timer.Set_Enabled(!m_posts.empty());
}

void Pirep_Queue::Post_All() {
    // The timer is still enabled and ticks again.
    if (m_steps.Is_Stepping())
        return;
    m_timer.Set_Enabled(false);
    m_posting = true;
    while (!m_posts.empty()) {
        const Post post = std::move(m_posts.front());
        m_posts.pop_front();
        if (post.is_uncertain)
            Tell_Uncertain(post);
        else
            Post_One(post);
    }
    m_posting = false;
}

/// A second post could reach the airline as a second flight: the pilot decides.
void Pirep_Queue::Tell_Uncertain(const Post& post) {
    m_due.Take_Off(post.file);
    Tell(m_parts.services.desktop,
         fmt::format("Norvane was ended while it sent a PIREP to the airline {}, which may have "
                     "got it or not.  The flight is in the flight log, and the PIREP is kept "
                     "in\r\n\r\n{}\r\n\r\nIf the airline does not have it, please send it with "
                     "\"File\" / \"Send PIREP ...\".",
                     post.airline, post.file),
         Icon::information);
}

void Pirep_Queue::Tell_No_Script(const Post& post) {
    m_due.Take_Off(post.file);
    const Run_Error lost(error_number::other,
                         "No PIREP script is known of the airline " + post.airline,
                         "The PIREP was not sent: the files of the airline " + post.airline +
                             " name no script.  It is kept in\r\n\r\n" + post.file +
                             "\r\n\r\nPlease send it with \"Send PIREP ...\".");
    Log_Error(m_parts.services, "ucACARS.Post_PIREP()", lost, Show::silent);
    Tell_PIREP_Failure(m_parts.services.desktop, lost);
}

void Pirep_Queue::Post_One(const Post& post) {
    std::optional<Timer_Queue::Ticks_Set_Aside> aside;
    if (post.by_pilot)
        aside.emplace(m_parts.services.desktop.Timers());
    Guarded(m_parts.services, "ucACARS.ACARS_LOG()", Show::box, [&] {
        // A change of the airline on the panel would take its fields away from the next flight.
        const Airline_By_Name of_flight(m_parts.services, m_parts.airline, post.airline);
        if (of_flight.Get().Script_PIREP().empty())
            Tell_No_Script(post);
        else if (!Is_Given_Up())
            Send_To(of_flight.Get(), post);
        // Not begun, it stays due.
    });
}

bool Pirep_Queue::Is_Given_Up() const {
    return m_parts.http.given_up && m_parts.http.given_up();
}

void Pirep_Queue::Send_To(const clsVASettings& airline, const Post& post) {
    // An entry of its own: the shared one may be the next flight's before the post is over.
    clsLogEntry entry(m_parts.services);
    entry.Set(Log_Field::PIREP_FILE_NAME, post.file);
    // Closing ends a post, but not one that began with it.
    const bool began_closed = m_closed;
    Http_Options limits =
        Given_Up_When([this, began_closed] { return m_closed && !began_closed; }, m_parts.http);
    if (m_closed)
        limits.all_within = std::min(limits.all_within, longest_last_post);
    std::optional<Run_Error> failure;
    {
        const Busy_Cursor busy(m_parts.services.desktop);
        const Wait_Notice notice(m_parts.services.desktop, "Contacting the airline's server ...");
        m_parts.response.Contact_Server();
        m_due.Set_Stage(post.file, Due_PIREP::Stage::sending);
        failure = entry.Send_PIREP(m_parts.settings, airline, limits);
    }
    // A post that was broken off may have arrived: the next start tells.
    const bool is_broken_off = failure && ((m_closed && !began_closed) || Is_Given_Up());
    if (!is_broken_off)
        m_due.Take_Off(post.file);
    if (!failure && !m_closed)
        m_parts.response.Show_Response();
    else
        m_parts.response.Close();
    if (failure && !is_broken_off)
        Tell_PIREP_Failure(m_parts.services.desktop, *failure);
}

void Pirep_Queue::End(bool sends_rest) {
    m_timer.Set_Enabled(false);
    if (!m_posting && sends_rest)
        Post_All();
    for (const Post& post : std::exchange(m_posts, {})) {
        Log_Error(
            m_parts.services, "ucACARS.Close()",
            {error_number::other, "The PIREP is not sent before the next start: " + post.file},
            Show::silent);
    }
}

}  // namespace norvane
