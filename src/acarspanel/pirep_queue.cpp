#include "acarspanel/pirep_queue.h"

#include <fmt/format.h>

#include <utility>

#include "common/boxes.h"
#include "common/code_page.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "deliveries/outbox.h"
#include "logentry/cls_log_entry.h"
#include "logentry/frm_response.h"
#include "net/http_exchange.h"

namespace norvane {

namespace {

constexpr std::chrono::milliseconds hand_over_delay(1);

}  // namespace

Pirep_Queue::Pirep_Queue(const Panel_Parts& parts)
    : m_parts(parts),
      m_due(parts.services),
      m_timer(parts.services.desktop.Timers(), hand_over_delay) {
    m_timer.tick.Connect([this] { Hand_Over_All(); });
    m_outbox_connections.Keep({parts.outbox.Changed.Connect(
        [this](const Airline_Delivery& delivery) { Delivery_Changed(delivery); })});
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
    Hand_Over({file, {}, {}, m_parts.airline.Name(), true, Due_PIREP::Stage::written});
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
        m_left.push_back(due);
    }
    m_timer.Set_Enabled(!m_left.empty());
}

void Pirep_Queue::Hand_Over_All() {
    m_timer.Set_Enabled(false);
    for (const Due_PIREP& due : std::exchange(m_left, {}))
        Hand_Over(due);
}

/// What an earlier run had handed over and not yet taken off is there already.
void Pirep_Queue::Hand_Over(const Due_PIREP& due) {
    try {
        // A change of the airline on the panel would take its fields away from the next flight.
        const Airline_By_Name of_flight(m_parts.services, m_parts.airline, due.airline);
        const clsVASettings& airline = of_flight.Get();
        if (airline.Script_PIREP().empty()) {
            throw Run_Error(error_number::other,
                            "No PIREP script is known of the airline " + due.airline,
                            "The PIREP was not sent: the files of the airline " + due.airline +
                                " name no script.  It is kept in\r\n\r\n" + due.file +
                                "\r\n\r\nPlease send it with \"Send PIREP ...\".");
        }
        clsLogEntry entry(m_parts.services);
        entry.Set(Log_Field::PIREP_FILE_NAME, due.file);
        Airline_Delivery delivery;
        delivery.airline = due.airline;
        delivery.flight = From_Path(To_Path(due.file).stem());
        delivery.address = Request_Address(airline.WebServer(), airline.Script_PIREP());
        delivery.headers = {form_content_type};
        delivery.body = entry.Form_To_Post(airline);
        delivery.file = due.file;
        // An older program was ended while it sent this one: it may have arrived.
        if (due.stage == Due_PIREP::Stage::sending)
            delivery.state = Delivery_State::uncertain;
        const bool is_new = due.row.empty();
        if (is_new || !m_parts.outbox.Holds(delivery.file, delivery.body))
            m_parts.outbox.Put(std::move(delivery));
        m_due.Take_Off(due.file);
    } catch (...) {
        Tell_Failure(due, Caught_Error());
    }
}

/// One that could not be stored stays due for the next start.
void Pirep_Queue::Tell_Failure(const Due_PIREP& due, const Run_Error& error) {
    const bool may_come_right = error.Number() == error_number::disk_full ||
                                error.Number() == error_number::device_io_error ||
                                error.Number() == error_number::path_file_access ||
                                error.Number() == error_number::permission_denied;
    if (!may_come_right)
        m_due.Take_Off(due.file);
    Log_Error(m_parts.services, "ucACARS.Post_PIREP()", error, Show::silent);
    Tell_PIREP_Failure(m_parts.services.desktop, error);
}

/// The viewer follows a PIREP that is sent for the first time, or by the pilot's word, and shows
/// each answer.
void Pirep_Queue::Delivery_Changed(const Airline_Delivery& delivery) {
    if (delivery.kind != Delivery_Kind::pirep)
        return;
    if (delivery.state == Delivery_State::sending) {
        if (delivery.attempts > 1)
            return;
        m_shown = delivery.id;
        m_notice.emplace(m_parts.services.desktop, "Contacting the airline's server ...");
        m_parts.response.Contact_Server();
        return;
    }
    if (m_shown == delivery.id)
        m_notice.reset();
    const bool is_answered = (delivery.state == Delivery_State::delivered ||
                              delivery.state == Delivery_State::refused) &&
                             delivery.status != 0;
    if (is_answered)
        m_parts.response.Show_Answer(delivery.answer);
    else if (m_shown == delivery.id)
        m_parts.response.Close();
    if (m_shown == delivery.id)
        m_shown = 0;
}

void Pirep_Queue::Close() {
    m_timer.Set_Enabled(false);
    m_outbox_connections.Disconnect();
    m_notice.reset();
    if (std::exchange(m_shown, 0) != 0)
        m_parts.response.Close();
}

}  // namespace norvane
