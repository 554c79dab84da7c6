#include "app/program.h"

#include <utility>

#include "common/boxes.h"
#include "common/code_page.h"
#include "common/log_error.h"
#include "deliveries/delivery_rules.h"
#include "flightlog/log_columns.h"

namespace norvane {

namespace {

/// How long a pilot who leaves waits for what is on its way to an airline to arrive.
constexpr std::chrono::seconds longest_farewell(3);

}  // namespace

Program::Program(const Services& outside, Transport& transport, const Http_Options& http)
    : services(outside),
      settings(services),
      airline(services),
      log_entry(services),
      utc(services.clock),
      link(transport, services.clock),
      flight_log(services, settings, airline, log_entry),
      statistics(services, settings),
      manage_logs(services, settings),
      convert_log(services),
      recover(services, settings, flight_log),
      engine({services, link, settings, airline, utc}),
      response(services),
      http_limits(Limits(http)),
      outbox(services, http, Random_Share()),
      panel({services, settings, airline, log_entry, response, outbox, http_limits}),
      recorder({services, link, settings, airline, engine}),
      archive(services, settings),
      messages({services, settings, airline, outbox, http_limits}),
      settings_panel(services, settings, airline),
      pirep_editor({services, settings, airline, response, http_limits}),
      world_locations({services, link, settings, airline, utc}),
      airport_lookup(services, [this] {
          return frmICAO::World_Files{engine.World(), engine.WorldUD()};
      }) {
    airline.Get_VA_Settings(settings.Virtual_Airline());
    outbox.Begin();
    flight_log.Set_Simulator({services, link, settings, airline, utc});
    flight_log.UCI();
    panel.UCI();
    panel.Set_ACARS(engine);
    messages.Set_ACARS(engine);
    Connect();
    Connect_Recorder();
    archive.Take_Leftovers(panel.Is_Resumable());
}

Http_Options Program::Limits(const Http_Options& http) const {
    Http_Options options = Given_Up_When([this] { return m_closing; }, http);
    if (!options.together)
        options.together = std::make_shared<Http_Transfers>();
    return options;
}

void Program::Connect() {
    settings.ActiveLogChange.Connect([this] { flight_log.FlightLog_Change(); });
    settings.ACTypeChange.Connect([this] { flight_log.Load_Aircraft(); });
    airline.Change.Connect([this] {
        panel.VA_Change();
        flight_log.VA_Change();
    });
    panel.Close_Asked.Connect([this](bool& may) { may = flight_log.Closing(); });
    panel.Close_Called_Off.Connect([this] { m_close_called = false; });
    panel.Closing_Now.Connect([this] { Closing.Emit(); });
    panel.Closed.Connect([this] { End_The_Rest(); });
}

/// What is recorded of a flight follows the flight: to its end, and into the log.
void Program::Connect_Recorder() {
    panel.Active_State.Connect([this](bool active) {
        if (!active)
            archive.Take_Soon(recorder.End(panel.Is_At_Gate() ? "gate" : "given up"));
    });
    engine.Stepped.Connect([this](const Engine_Step& step) {
        if (step.kind == Engine_Step::Kind::started)
            archive.Forget_Last();
    });
    panel.simbrief.planned.Connect(
        [this](const std::string& planned) { recorder.Note_Planned(planned); });
    log_entry.NewLogEntrySaveOK.Connect([this] {
        // A flight that was only typed has no recording.
        if (panel.Is_Active() || panel.Is_Logged())
            Note_Logged(settings.FlightLog(), Log_Line(log_entry));
    });
}

void Program::Note_Logged(const std::string& log_name, const std::string& line) {
    if (!recorder.Note_Logged(log_name, line))
        archive.Note_Logged(log_name, line);
}

void Program::Close(ucACARS::Closing how) {
    const bool by_pilot = how == ucACARS::Closing::by_pilot;
    // A second request to end waits for no server.
    m_closing = m_closing || (m_close_called && !by_pilot);
    m_close_called = true;
    m_signalled = m_signalled || !by_pilot;
    m_farewell = m_signalled ? std::chrono::seconds(0) : longest_farewell;
    panel.Close(how);
}

/// The panel has ended: a step that was running is over, and what it stored is in the store.
void Program::End_The_Rest() {
    const auto end = [this](auto&& part) {
        Guarded(services, "Program.Close()", Show::silent, part);
    };
    end([this] { engine.Stop_(); });
    // The flight's last message is the engine's that it ended.
    end([this] { messages.Close(); });
    end([this] { outbox.Close(m_farewell); });
    m_closing = true;
    end([this] { link.IPC_Close(); });
    end([this] { flight_log.End(); });
    // Asked to end by a signal, the next start does it.
    if (!m_signalled)
        end([this] { archive.Finish(); });
    end([this] { Keep_PIREP_Edits(); });
    Closed.Emit();
}

void Program::Keep_PIREP_Edits() {
    const std::filesystem::path kept = pirep_editor.Keep_Edits();
    if (!kept.empty() && m_farewell > std::chrono::milliseconds::zero()) {
        Tell(services.desktop,
             "The PIREP that was open has changes that were not saved.  They are "
             "kept in\r\n\r\n" +
                 From_Path(kept));
    }
}

}  // namespace norvane
