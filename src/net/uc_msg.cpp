#include "net/uc_msg.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "acars/cls_acars.h"
#include "common/boxes.h"
#include "common/file_writer.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"

namespace norvane {

namespace {

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
    : tmrPost(parts.services.desktop.Timers(), std::chrono::milliseconds(1)),
      m_wx_timer(parts.services.desktop.Timers(), std::chrono::milliseconds(1)),
      m_services(parts.services),
      m_settings(parts.settings),
      m_airline(parts.airline),
      m_http(std::move(parts.http)) {
    Connect_Controls();
    Enable_Input(false);
}

ucMSG::~ucMSG() {
    for (sigc::connection& connection : m_engine_connections)
        connection.disconnect();
}

void ucMSG::Connect_Controls() {
    hypComment.clicked.connect([this] { Enter_Comment(); });
    hypWX.clicked.connect([this] { Get_WX(); });
    tmrPost.tick.connect([this] { Post_Next(); });
    m_wx_timer.tick.connect([this] {
        m_wx_timer.Set_Enabled(false);
        Get_WX();
    });
}

void ucMSG::Set_ACARS(clsACARS& engine) {
    for (sigc::connection& connection : std::exchange(m_engine_connections, {}))
        connection.disconnect();
    m_objACARS = &engine;
    ACARS_Events& events = engine.events;
    m_engine_connections = {
        events.ACARSMessage.connect(
            [this](Message_Type type, const std::string& text) { Take_Message(type, text); }),
        events.Start.connect([this] { Enable_Input(!m_closed); }),
        events.FlightAtGate.connect([this] { Enable_Input(false); }),
        events.Reset.connect([this] { Clear_Log(); }),
    };
}

void ucMSG::Take_Message(Message_Type type, const std::string& text) {
    const std::string added = text + "\r\n\r\n";
    m_log += added;
    Log_Appended.emit(added);
    if (m_settings.OPT_MessageLog() && type == Message_Type::times)
        Export_Message_Log();
    Send_ACARS_Report(added);
}

void ucMSG::Clear_Log() {
    Enable_Input(false);
    m_log.clear();
    Log_Cleared.emit();
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
    Guarded(m_services, "ucMSG.Export_Message_Log()", Show::box,
            [&] { Write_File_Atomically(New_Log_File(m_services), m_log + std::string(cr_lf)); });
}

void ucMSG::Send_ACARS_Report(std::string_view text) {
    Guarded(m_services, "ucMSG.Send_ACARS_Report()", Show::silent, [&] {
        const std::string airline = m_settings.Virtual_Airline();
        // Another airline's script is not known before that airline is loaded.
        const bool has_script = m_airline.Name() != airline || !m_airline.Script_ACARS().empty();
        if (m_objACARS == nullptr || !has_script)
            return;
        if (m_closed)
            throw Run_Error(error_number::other, "An ACARS message came too late to be sent");
        m_reports.push_back({airline,
                             {std::string(text), m_settings.PilotID(),
                              m_objACARS->Form_ICAO_Depart(), m_objACARS->Form_ICAO_Arrive()}});
        tmrPost.Set_Enabled(true);
    });
}

bool ucMSG::Is_Posting() const {
    return m_posting || !m_reports.empty();
}

/// One report a tick: between two of them whoever waits around this tick gets its turn.
void ucMSG::Post_Next() {
    // Within a step the request would hold the step up; this timer ticks again at once.
    if (m_objACARS != nullptr && m_objACARS->Is_Stepping())
        return;
    if (!m_posting && !m_reports.empty())
        Post_First();
    tmrPost.Set_Enabled(!m_reports.empty());
}

/// True when the airline's script took the report, or there is none.
bool ucMSG::Post_First() {
    m_posting = true;
    const Waiting_Report waiting = std::move(m_reports.front());
    m_reports.pop_front();
    const bool sent = Post(waiting);
    m_posting = false;
    return sent;
}

bool ucMSG::Post(const Waiting_Report& waiting) {
    bool sent = false;
    Guarded(m_services, "ucMSG.Send_ACARS_Report()", Show::silent, [&] {
        // A change of the airline on the panel would take its fields away from the flight.
        const Airline_By_Name of_message(m_services, m_airline, waiting.airline);
        const clsVASettings& airline = of_message.Get();
        if (airline.Script_ACARS().empty()) {
            sent = true;
            return;
        }
        const Wait_Notice notice(m_services.desktop, "Sending an ACARS message to the airline ...");
        // What the pilot does meanwhile is his own doing, not this tick's.
        const Timer_Queue::Ticks_Set_Aside aside(m_services.desktop.Timers());
        clsWinInet client(m_services, m_settings, airline,
                          Given_Up_When([this] { return m_closed; }, m_http));
        sent = client.Send_ACARS_Report(airline.WebServer(), airline.Script_ACARS(), waiting.report)
                   .success;
    });
    return sent;
}

/// Behind a request that is running nothing can be sent. A script that takes one report too long
/// gets no other.
void ucMSG::Send_Farewell(std::chrono::milliseconds at_most) {
    using std::chrono::milliseconds;
    const auto end = m_services.clock.Monotonic() + at_most;
    while (!m_posting && !m_reports.empty()) {
        const auto left =
            std::chrono::duration_cast<milliseconds>(end - m_services.clock.Monotonic());
        if (left <= milliseconds::zero())
            return;
        m_http.all_within = std::min(m_http.all_within, left);
        if (!Post_First())
            return;
    }
}

void ucMSG::Close(std::chrono::milliseconds farewell) {
    tmrPost.Set_Enabled(false);
    m_wx_timer.Set_Enabled(false);
    Enable_Input(false);
    Send_Farewell(farewell);
    m_closed = true;
    const std::size_t unsent = std::exchange(m_reports, {}).size();
    if (unsent == 0)
        return;
    Log_Error(m_services, "ucMSG.Close()",
              {error_number::other, fmt::format("ACARS messages not sent: {}", unsent)},
              Show::silent);
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
