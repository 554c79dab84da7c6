#include "messagepanel/uc_msg.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "acars/cls_acars.h"
#include "acars/persistence.h"
#include "common/boxes.h"
#include "common/date_time.h"
#include "common/file_writer.h"
#include "common/log_error.h"
#include "common/number.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "deliveries/outbox.h"
#include "net/airline_forms.h"
#include "net/http_exchange.h"

namespace norvane {

namespace {

constexpr std::string_view flight_section = "ACARS";
/// Each message of the log is followed by an empty line.
constexpr const char* message_end = "\r\n\r\n";
constexpr std::string_view count_key = "Messages";

std::string Message_Key(std::size_t number) {
    return fmt::format("Message {}", number);
}

/// A flight is stored from OFF until it is in the log or given up.
bool Is_Flight_Stored(Services& services) {
    return Read_Stored_Flight(services).phase >= Flight_Phase::off;
}

/// A message log of this moment that is not there yet: flights may end within one second.
std::filesystem::path New_Log_File(const Services& services) {
    const std::filesystem::path directory = services.program_directory / "messagelogs";
    const std::string name = Format_File_Stamp(services.clock.Local_Now()) + "_ACARS";
    std::filesystem::path file = directory / (name + ".txt");
    for (int number = 2; std::filesystem::exists(file); ++number)
        file = directory / fmt::format("{}-{}.txt", name, number);
    return file;
}

}  // namespace

ucMSG::ucMSG(Parts parts)
    : m_wx_timer(parts.services.desktop.Timers(), std::chrono::milliseconds(1)),
      m_services(parts.services),
      m_settings(parts.settings),
      m_airline(parts.airline),
      m_outbox(parts.outbox),
      m_http(std::move(parts.http)) {
    Connect_Controls();
    Enable_Input(false);
}

void ucMSG::Connect_Controls() {
    hypComment.clicked.Connect([this] { Enter_Comment(); });
    hypWX.clicked.Connect([this] { Get_WX(); });
    m_wx_timer.tick.Connect([this] {
        m_wx_timer.Set_Enabled(false);
        Get_WX();
    });
}

void ucMSG::Set_ACARS(clsACARS& engine) {
    m_engine_connections.Disconnect();
    m_objACARS = &engine;
    ACARS_Events& events = engine.events;
    m_engine_connections.Keep({
        events.ACARSMessage.Connect(
            [this](Message_Type type, const std::string& text) { Take_Message(type, text); }),
        events.Start.Connect([this] {
            Drop_Other_Flights_Messages();
            Enable_Input(!m_closed);
        }),
        events.FSTime.Connect([this](const std::string&) { Step_Ended(); }),
        events.FlightAtGate.Connect([this] { Enable_Input(false); }),
        events.Reset.Connect([this] { Clear_Log(); }),
    });
    Restore_Messages();
}

void ucMSG::Take_Message(Message_Type type, const std::string& text) {
    Drop_Other_Flights_Messages();
    const Date_Time now = m_services.clock.Local_Now();
    m_messages.push_back({fmt::format("{} {:02}:{:02}:{:02}", Format_Iso_Date(now.date),
                                      now.time.hour, now.time.minute, now.time.second),
                          type, text});
    Store_Messages();
    Add_To_Log(text);
    Send_ACARS_Report(text + message_end);
    if (m_settings.OPT_MessageLog() && type == Message_Type::times)
        Export_Message_Log();
}

void ucMSG::Add_To_Log(const std::string& text) {
    const std::string added = text + message_end;
    m_log += added;
    Log_Appended.Emit(added);
}

void ucMSG::Clear_Log() {
    Enable_Input(false);
    m_log.clear();
    m_messages.clear();
    m_stored = 0;
    m_restored = false;
    Log_Cleared.Emit();
}

/// The step stored the flight, or lost what was stored with its transaction.
void ucMSG::Step_Ended() {
    if (!m_objACARS->Was_Stored())
        m_stored = 0;
    Store_Messages();
}

/// Puts what is new beside the stored flight; before there is one, nothing. Within a step this is
/// part of the step's transaction.
void ucMSG::Store_Messages() {
    Guarded(m_services, "ucMSG.Store_Messages()", Show::silent, [&] {
        if (m_stored == m_messages.size() || !Is_Flight_Stored(m_services))
            return;
        Settings_Store& store = m_services.settings;
        Settings_Batch batch(store);
        for (std::size_t i = m_stored; i < m_messages.size(); ++i) {
            const Message& message = m_messages[i];
            store.Set(
                flight_section, Message_Key(i + 1),
                fmt::format("{}|{}|{}", message.time,
                            Format_Whole(static_cast<std::int32_t>(message.type)), message.text));
        }
        store.Set(flight_section, count_key,
                  Format_Whole(static_cast<std::int32_t>(m_messages.size())));
        batch.Commit();
        m_stored = m_messages.size();
    });
}

void ucMSG::Restore_Messages() {
    Guarded(m_services, "ucMSG.Restore_Messages()", Show::silent, [&] {
        Settings_Store& store = m_services.settings;
        const auto count = Parse_Int32(store.Get(flight_section, count_key));
        if (!count || !Is_Flight_Stored(m_services))
            return;
        for (std::int32_t number = 1; number <= *count; ++number) {
            const std::string stored =
                store.Get(flight_section, Message_Key(static_cast<std::size_t>(number)));
            const std::size_t type = stored.find(field_separator);
            const std::size_t text = stored.find(field_separator, type + 1);
            if (type == std::string::npos || text == std::string::npos)
                continue;
            const auto type_number = Parse_Int32(stored.substr(type + 1, text - type - 1));
            m_messages.push_back({stored.substr(0, type),
                                  static_cast<Message_Type>(type_number.value_or(
                                      static_cast<std::int32_t>(Message_Type::comment))),
                                  stored.substr(text + 1)});
            Add_To_Log(m_messages.back().text);
        }
        m_stored = m_messages.size();
        m_restored = true;
    });
}

/// A stored flight that was given up unseen has left its messages here.
void ucMSG::Drop_Other_Flights_Messages() {
    if (std::exchange(m_restored, false) && !Is_Flight_Stored(m_services)) {
        m_log.clear();
        m_messages.clear();
        m_stored = 0;
        Log_Cleared.Emit();
    }
}

void ucMSG::Enter_Comment() {
    if (m_objACARS == nullptr)
        return;
    Send_Message(Message_Type::comment, txtCommand.Text());
    txtCommand.Set_Text({});
}

void ucMSG::Send_Message(Message_Type type, std::string_view text) {
    if (m_objACARS == nullptr)
        return;
    Guarded(m_services, "ucMSG.Send_Message()", Show::silent,
            [&] { m_objACARS->Send_Message(type, text); });
}

void ucMSG::Get_WX() {
    const std::string typed = txtCommand.Text();
    const std::string code = Trim(typed);
    if (m_objACARS == nullptr || code.empty() || m_fetching)
        return;
    // A step is not kept waiting for a server.
    if (m_objACARS->Is_Stepping()) {
        m_wx_timer.Set_Enabled(true);
        return;
    }
    m_fetching = true;
    Guarded(m_services, "ucMSG.Get_WX()", Show::box, [&] {
        const auto is_over = [this, round = m_input_round] { return round != m_input_round; };
        std::string report;
        {
            const Busy_Cursor busy(m_services.desktop);
            const Wait_Notice notice(m_services.desktop,
                                     fmt::format("Fetching the weather of {} ...", code));
            clsWinInet client(m_services, m_settings, m_airline, Given_Up_When(is_over, m_http));
            report = client.Get_WX(code);
        }
        if (is_over())
            return;
        if (report.empty()) {
            Tell(m_services.desktop,
                 fmt::format("No weather report of {} came, and no message was sent.  Please check "
                             "the code, and the weather source in the settings; the error log says "
                             "whether the source failed.",
                             code));
            return;
        }
        Send_Message(Message_Type::weather, report);
        // What the pilot typed while the weather was on its way is another command.
        if (txtCommand.Text() == typed)
            txtCommand.Set_Text({});
    });
    m_fetching = false;
}

void ucMSG::Export_Message_Log() {
    try {
        Write_File_Atomically(New_Log_File(m_services), m_log + std::string(cr_lf));
    } catch (...) {
        const Run_Error error = Caught_Error();
        Log_Error(m_services, "ucMSG.Export_Message_Log()", error, Show::silent);
        Tell(m_services.desktop,
             "The messages of this flight could not be written to a file.  The flight and its "
             "times are not affected, and the messages stay on \"ACARS Messages\" until the next "
             "flight begins: please copy what you need from there.",
             Icon::exclamation, std::string(product_name) + " Error", error.Description());
    }
}

void ucMSG::Send_ACARS_Report(std::string_view text) {
    Guarded(m_services, "ucMSG.Send_ACARS_Report()", Show::silent, [&] {
        // The airline that is loaded is the one that was saved, whatever the pilot looks at.
        if (m_objACARS == nullptr || m_airline.Script_ACARS().empty())
            return;
        Airline_Delivery delivery;
        delivery.airline = m_airline.Name();
        delivery.kind = Delivery_Kind::acars_report;
        // The flight's first message tells it from others, whatever becomes of the program.
        delivery.flight =
            m_messages.empty() ? std::string("without messages") : m_messages.front().time;
        delivery.address = Request_Address(m_airline.WebServer(), m_airline.Script_ACARS());
        delivery.headers = {form_content_type};
        delivery.body = Report_Form(
            m_airline, {std::string(text), m_settings.PilotID(), m_objACARS->Form_ICAO_Depart(),
                        m_objACARS->Form_ICAO_Arrive()});
        m_outbox.Put(std::move(delivery));
    });
}

void ucMSG::Close() {
    m_wx_timer.Set_Enabled(false);
    Enable_Input(false);
    m_closed = true;
}

void ucMSG::Enable_Input(bool enabled) {
    if (!enabled)
        ++m_input_round;
    txtCommand.Set_Enabled(enabled);
    hypComment.Set_Enabled(enabled);
    hypWX.Set_Enabled(enabled);
    if (!enabled)
        txtCommand.Set_Text({});
}

}  // namespace norvane
