// What the panel asks of the web: the weather of both ends of the flight, the online network's
// plan, and the way of a finished flight to the airline.

#include "acarspanel/uc_acars.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "acars/cls_acars.h"
#include "common/boxes.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/cls_va_settings.h"
#include "logentry/cls_log_entry.h"
#include "logentry/frm_response.h"

namespace norvane {

namespace {

/// How long a pilot who leaves waits for the airline to take his last PIREP, whose file remains.
constexpr std::chrono::milliseconds longest_last_post(15'000);

constexpr std::string_view no_pilot_id =
    "Your flight plan is to come from the online network, but the settings hold no VATSIM PID.  "
    "The flight goes on without it: please enter the plan here, or the PID in Settings before the "
    "next flight.";

}  // namespace

/// What was asked for the flight so far is of no use any longer, answers on their way included.
void ucACARS::Drop_Requests() {
    ++m_request_round;
    for (Timer& timer : tmrWX)
        timer.Set_Enabled(false);
}

/// Fetches the weather of one end in a moment, unless the simulator tells it or the pilot typed it.
void ucACARS::Schedule_Weather(std::size_t end) {
    const End& at = m_ends.at(end);
    const std::string& source = m_settings.WX_URL();
    const bool is_typed = !at.weather.Is_Empty() && at.weather.Text() != at.fetched;
    if (!at.code.Is_Empty() && source != "FS" && source != "NONE" && !is_typed)
        tmrWX.at(end).Set_Enabled(true);
}

/// A request begun while a step lets events through would hold the step up until its answer. The
/// timers are still enabled and tick again.
bool ucACARS::May_Ask() const {
    return m_objACARS == nullptr || !m_objACARS->Is_Stepping();
}

void ucACARS::Weather_Tick(std::size_t end) {
    if (!May_Ask())
        return;
    Guarded(m_services, "ucACARS.tmrWX_Timer()", Show::silent, [&] {
        tmrWX.at(end).Set_Enabled(false);
        End& at = m_ends.at(end);
        const int round = m_request_round;
        if (at.code.Is_Empty())
            return;
        const std::string code = at.code.Text();
        at.is_fetching = true;
        const std::string report = Get_WX(code);
        if (round == m_request_round && at.code.Text() == code)
            Take_Weather(end, report);
    });
    m_ends.at(end).is_fetching = false;
    if (m_waiting && !Awaits_Destination_Weather())
        Settle_At_Gate();
}

/// A report that did not come leaves the one that is there.
void ucACARS::Take_Weather(std::size_t end, const std::string& report) {
    End& at = m_ends.at(end);
    const bool is_typed = !at.weather.Is_Empty() && at.weather.Text() != at.fetched;
    if (report.empty() || is_typed)
        return;
    at.weather.Set_Text(report);
    at.fetched = at.weather.Text();
    // The finished flight's, however late it comes.
    if (m_finish != Finish::none)
        m_old_values[&at.weather] = at.fetched;
}

std::string ucACARS::Get_WX(std::string_view icao) {
    const Wait_Notice notice(m_services.desktop,
                             fmt::format("Fetching the weather of {} ...", icao));
    const auto is_over = [this, round = m_request_round] { return round != m_request_round; };
    clsWinInet client(m_services, m_settings, m_airline, Given_Up_When(is_over, m_http));
    return client.Get_METAR(icao);
}

bool ucACARS::Polls_Network() const {
    return m_settings.VATSIM_FP() == plan_from_network && !m_network_plan;
}

void ucACARS::VATSIM_Tick() {
    if (!May_Ask())
        return;
    Guarded(m_services, "ucACARS.tmrVATSIM_Timer()", Show::silent, [&] {
        const std::string pilot_id = m_settings.VATSIM_PID();
        if (pilot_id.empty()) {
            tmrVATSIM.Set_Enabled(false);
            Tell(m_services.desktop, no_pilot_id, Icon::exclamation);
            return;
        }
        if (std::exchange(m_polled_in_round, m_request_round) != m_request_round)
            m_network_pauses.Reset();
        if (!m_network_pauses.Is_Due())
            return;
        const Wait_Notice notice(m_services.desktop,
                                 "Looking for your flight plan on the network ...");
        const auto line = m_network.Get_VATSIM_FlightPlan(pilot_id);
        if (!line) {
            m_network_pauses.Note_Failure();
            return;
        }
        m_network_pauses.Reset();
        After_Step([this, line = *line, round = m_polled_in_round] {
            // The flight may have been reset while the answer was on its way, or be at the gate.
            const bool is_wanted = round == m_request_round && m_active && m_finish == Finish::none;
            if (line.empty() || !is_wanted)
                return;
            tmrVATSIM.Set_Enabled(false);
            Read_VATSIM_Data(line);
        });
    });
}

/// The row of a flight and its PIREP cannot be written in one stroke, and the post takes its time:
/// a program that ends between them makes up by this note what is missing.
void ucACARS::Note_Due_PIREP(const std::string& row, bool was_logged_before) {
    if (!m_settings.OPT_PIREP())
        return;
    const clsLogEntry& entry = m_objNewLogEntry;
    m_due_pireps.Note({entry.Get(Log_Field::PIREP_FILE_NAME), entry.PIREP_Line(), row,
                       m_airline.Name(), Sends_PIREPs() && !was_logged_before,
                       Due_PIREP::Stage::noted});
}

/// An airline without a script has nobody to send to.
bool ucACARS::Sends_PIREPs() const {
    return m_settings.OPT_PIREP_SEND() && !m_airline.Script_PIREP().empty();
}

/// The PIREP of the flight just logged is written: what is left of it is its post.
void ucACARS::Queue_PIREP() {
    const std::string file = m_objNewLogEntry.Get(Log_Field::PIREP_FILE_NAME);
    if (!Sends_PIREPs()) {
        m_due_pireps.Take_Off(file);
        return;
    }
    m_due_pireps.Set_Stage(file, Due_PIREP::Stage::written);
    m_posts.push_back({file, m_airline.Name(), !m_services.desktop.Timers().Is_Ticking()});
    m_post_timer.Set_Enabled(true);
}

/// Makes up what an earlier run left between a flight's row and the airline. A row that is not in
/// the log has no PIREP yet.
void ucACARS::Take_Up_Due_PIREPs() {
    using Stage = Due_PIREP::Stage;
    m_due_pireps.Load();
    const std::vector<Due_PIREP> left = m_due_pireps.All();
    for (const Due_PIREP& due : left) {
        if (due.stage == Stage::noted) {
            clsLogEntry entry(m_services);
            if (!Stands_In_Log(due.row) || !entry.Make_Up_PIREP(due.file, due.line))
                continue;
            if (!due.is_sent) {
                m_due_pireps.Take_Off(due.file);
                continue;
            }
            m_due_pireps.Set_Stage(due.file, Stage::written);
        }
        m_posts.push_back({due.file, due.airline, false, due.stage == Stage::sending});
    }
    m_post_timer.Set_Enabled(!m_posts.empty());
}

void ucACARS::Post_PIREPs() {
    if (!May_Ask())
        return;
    m_post_timer.Set_Enabled(false);
    m_posting = true;
    while (!m_posts.empty()) {
        const PIREP_Post post = std::move(m_posts.front());
        m_posts.pop_front();
        if (post.is_uncertain)
            Tell_Of_Uncertain_PIREP(post);
        else
            Post_PIREP(post);
    }
    m_posting = false;
}

/// A second post could reach the airline as a second flight: the pilot decides.
void ucACARS::Tell_Of_Uncertain_PIREP(const PIREP_Post& post) {
    m_due_pireps.Take_Off(post.file);
    Tell(m_services.desktop,
         fmt::format("Norvane was ended while it sent a PIREP to the airline {}, which may have "
                     "got it or not.  The flight is in the flight log, and the PIREP is kept "
                     "in\r\n\r\n{}\r\n\r\nIf the airline does not have it, please send it with "
                     "\"File\" / \"Send PIREP ...\".",
                     post.airline, post.file),
         Icon::information);
}

void ucACARS::Post_PIREP(const PIREP_Post& post) {
    std::optional<Timer_Queue::Ticks_Set_Aside> aside;
    if (post.by_pilot)
        aside.emplace(m_services.desktop.Timers());
    Guarded(m_services, "ucACARS.ACARS_LOG()", Show::box, [&] {
        // A change of the airline on the panel would take its fields away from the next flight.
        const Airline_By_Name of_flight(m_services, m_airline, post.airline);
        const clsVASettings& airline = of_flight.Get();
        if (airline.Script_PIREP().empty()) {
            m_due_pireps.Take_Off(post.file);
            const Run_Error lost(error_number::other,
                                 "No PIREP script is known of the airline " + post.airline,
                                 "The PIREP was not sent: the files of the airline " +
                                     post.airline + " name no script.  It is kept in\r\n\r\n" +
                                     post.file + "\r\n\r\nPlease send it with \"Send PIREP ...\".");
            Log_Error(m_services, "ucACARS.Post_PIREP()", lost, Show::silent);
            Tell_PIREP_Failure(m_services.desktop, lost);
            return;
        }
        const auto is_given_up = [this] { return m_http.given_up && m_http.given_up(); };
        // Not begun, it stays due.
        if (is_given_up())
            return;
        // An entry of its own: the shared one may be the next flight's before the post is over.
        clsLogEntry entry(m_services);
        entry.Set(Log_Field::PIREP_FILE_NAME, post.file);
        // Closing ends a post, but not one that began with it.
        const bool began_closed = m_closed;
        Http_Options limits =
            Given_Up_When([this, began_closed] { return m_closed && !began_closed; }, m_http);
        if (m_closed)
            limits.all_within = std::min(limits.all_within, longest_last_post);
        std::optional<Run_Error> failure;
        {
            const Busy_Cursor busy(m_services.desktop);
            const Wait_Notice notice(m_services.desktop, "Contacting the airline's server ...");
            m_response.Contact_Server();
            m_due_pireps.Set_Stage(post.file, Due_PIREP::Stage::sending);
            failure = entry.Send_PIREP(m_settings, airline, limits);
        }
        // A post that was broken off may have arrived: the next start tells.
        const bool is_broken_off = failure && ((m_closed && !began_closed) || is_given_up());
        if (!is_broken_off)
            m_due_pireps.Take_Off(post.file);
        if (!failure && !m_closed)
            m_response.Show_Response();
        else
            m_response.Close();
        if (failure && !is_broken_off)
            Tell_PIREP_Failure(m_services.desktop, *failure);
    });
}

/// Sends what waits; a post that is under way is given up, and what waits behind it stays due.
void ucACARS::End_Posts(Closing how) {
    m_post_timer.Set_Enabled(false);
    if (!m_posting && how == Closing::by_pilot)
        Post_PIREPs();
    for (const PIREP_Post& post : std::exchange(m_posts, {})) {
        Log_Error(
            m_services, "ucACARS.Close()",
            {error_number::other, "The PIREP is not sent before the next start: " + post.file},
            Show::silent);
    }
}

}  // namespace norvane
