// What the engine's events do to the panel.

#include "acarspanel/uc_acars.h"

#include <optional>
#include <string>

#include "acars/cls_acars.h"
#include "acarspanel/panel_fields.h"
#include "common/boxes.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/setting_codes.h"

namespace norvane {

namespace {

/// Of the box that says that the link dropped.
constexpr std::string_view interrupted_topic = "interrupted";
constexpr std::string_view gate_wait = "Waiting for the weather at the destination ...";

}  // namespace

void ucACARS::Connect_Engine() {
    ACARS_Events& events = m_steps.Engine()->events;
    Connect_Fields(events, *this, m_parts.settings, m_engine_connections);
    const auto connect = [this](auto& event, auto&& run) {
        m_engine_connections.Keep(event.Connect(run));
    };
    // Connected after the table: the labels show the event before what follows from it is done.
    connect(events.ATCFlight, [this](const std::string& flight) {
        // The network's call sign came with its plan, and with a flight that was taken up again.
        if (!network_plan.Is_Applied() || lblATCFlight.Text().empty())
            Show_ATC_Flight(flight);
    });
    connect(events.ICAODep, [this](const std::string& code, const std::string& name) {
        Take_Airport(flight_end::origin, code, name);
    });
    connect(events.ICAOArr, [this](const std::string& code, const std::string& name) {
        if (txtDestination.Is_Empty())
            m_store.facts.engine_destination = code;
        Take_Airport(flight_end::destination, code, name);
    });
    connect(events.FlightOFF, [this](const std::string&, int) { FlightOFF(); });
    connect(events.FlightON, [this](const std::string&, int) { FlightON(); });
    connect(events.TouchAndGo, [this] { TouchAndGo(); });
    connect(events.No_Airport, [this](const std::string& where) {
        m_steps.After_Step([this, where] { Tell_No_Airport(where); });
    });
    connect(events.Elsewhere, [this](const std::string& away_nm) {
        m_steps.After_Step([this, away_nm] { Tell_Elsewhere(away_nm); });
    });
    connect(events.FSTime, [this](const std::string&) { Step_Ended(); });
    connect(events.Reset, [this] { Stop_Timers(); });
    connect(events.FlightAtGate, [this] { m_steps.After_Step([this] { FlightAtGate(); }); });
    connect(events.FSClosed, [this](const std::string&) {
        m_steps.After_Step([this] { Interruption("ucACARS.FSClosed()"); });
    });
    connect(events.Error, [this](const std::string&) {
        m_steps.After_Step([this] { Interruption("ucACARS.Error()"); });
    });
}

/// An airport as the engine or a plan has it: taken unless the pilot named another one.
void ucACARS::Take_Airport(std::size_t end, const std::string& code, const std::string& name) {
    if (!Code(end).Is_Empty() && Code(end).Text() != code)
        return;
    Code(end).Set_Text(code);
    Name(end).Set_Text(name);
    if (Weather(end).Is_Empty())
        weather.Schedule(end);
}

void ucACARS::FlightOFF() {
    m_store.Persist();
    tmrPos.Set_Enabled(true);
}

void ucACARS::FlightON() {
    tmrPos.Set_Enabled(false);
    // The plan's airport has its weather from before the flight; the arrival's is of now.
    if (m_store.facts.plan_read)
        weather.Schedule(flight_end::destination);
    m_store.Persist();
}

/// In the air again: the landing's figures are no longer the flight's, nor is the airport, unless
/// the pilot or a plan named it.
void ucACARS::TouchAndGo() {
    for (Label* label : {&lblTimeOn, &lblFuelOn, &lblLandingWeight, &lblVS, &lblIASLanding})
        label->Set_Text({});
    if (!m_store.facts.engine_destination.empty() &&
        txtDestination.Text() == m_store.facts.engine_destination) {
        weather.Drop(flight_end::destination);
        txtDestination.Set_Text({});
        lblDestinationName.Set_Text({});
    }
    m_store.facts.engine_destination.clear();
    tmrPos.Set_Enabled(true);
    m_store.Persist();
}

/// Not where the pilot or a plan has named the airport already.
void ucACARS::Tell_No_Airport(const std::string& where) {
    const bool departs = m_steps.Engine()->TIME_ON().empty();
    if (Code(departs ? flight_end::origin : flight_end::destination).Text().empty()) {
        Tell(m_services.desktop,
             "No airport is known where the aircraft stands, so that its code stays empty.\r\n\r\n"
             "Type the code on the panel or in the flight log.  A place of your own can be added "
             "to the airports with \"FS World Locations ...\".",
             Icon::information, product_name, where);
    }
}

void ucACARS::Tell_Elsewhere(const std::string& away_nm) {
    Tell(m_services.desktop,
         "The stored flight had landed already, " + away_nm +
             " nm from where the aircraft is now.  It waits until the aircraft is back there.\r\n"
             "\r\n\"Log Flight\" logs it as it stands, \"Reset\" gives it up.");
}

/// The step's figures have all arrived: what changed is stored with them, and what a failed
/// transaction of the step before took away. With the step that came to the gate the finished
/// flight is stored, whatever becomes of the program from then on.
void ucACARS::Step_Ended() {
    if (!m_steps.Engine()->TIME_IN().empty() && Is_Active() && !m_stage.Is_Finished())
        Take_Engine_Airports();
    m_store.Persist_What_Changed();
}

void ucACARS::FlightAtGate() {
    Guarded(m_services, "ucACARS.FlightAtGate()", Show::silent, [&] {
        // A command that waited for the same step may have ended the flight.
        if (!Is_Active() || m_closed)
            return;
        Stop_Timers();
        Enter(Stage::at_gate);
        if (!m_steps.Engine()->Was_Stored())
            m_store.Note_Change();
        m_store.Store_Soon();
        if (Weather_Source_Of(m_parts.settings.WX_URL()) == Weather_Source::simulator ||
            txtFlightLevel.Is_Empty() || !weather.Awaits(flight_end::destination)) {
            Settle_At_Gate();
            return;
        }
        // Nothing waits here: the request that the flight waits for may itself be waiting for this
        // procedure to end.
        hypPause.Set_Enabled(false);
        m_gate_notice.emplace(m_services.desktop, gate_wait);
        m_gate_timer.Set_Enabled(true);
    });
}

/// The flight at the gate has all that it will have.
void ucACARS::End_Tracking() {
    m_gate_timer.Set_Enabled(false);
    m_gate_notice.reset();
    m_stage.Enter(Stage::unlogged);
    Show_Active();
    Keep_Old_Values();
    if (!m_store.Is_Stored_Whole())
        m_store.Persist();
    Show_Stored();
}

void ucACARS::Settle_At_Gate() {
    Guarded(m_services, "ucACARS.FlightAtGate()", Show::silent, [&] {
        End_Tracking();
        if (Logs_By_Itself())
            ACARS_LOG();
    });
}

/// A plan that was to come from the network and did not come leaves the airports to the engine.
void ucACARS::Take_Engine_Airports() {
    if (!network_plan.Is_Chosen())
        return;
    const clsACARS& engine = *m_steps.Engine();
    if (txtOrigin.Is_Empty())
        Take_Airport(flight_end::origin, engine.Departure_ICAO(), engine.Departure_Name());
    if (txtDestination.Is_Empty())
        Take_Airport(flight_end::destination, engine.Arrival_ICAO(), engine.Arrival_Name());
}

void ucACARS::Show_Paused(bool paused) {
    hypPause.Set_Caption(paused ? "Resume" : "Pause");
    if (!paused)
        m_services.desktop.Withdraw(interrupted_topic);
}

/// The link to the simulator dropped: the flight pauses until the pilot resumes it.
void ucACARS::Interruption(std::string_view event) {
    Guarded(m_services, event, Show::silent, [&] {
        if (!tmr.Enabled() || Is_Paused())
            return;
        // A store that fails must not keep the flight from pausing.
        std::optional<Settings_Batch> batch;
        Guarded(m_services, event, Show::silent, [&] { batch.emplace(m_services.settings); });
        ACARS_MODE();
        m_store.Persist();
        if (batch && !Guarded(m_services, event, Show::silent, [&] { batch->Commit(); })) {
            m_store.Note_Change();
            m_store.Store_Soon();
        }
        Interrupted.Emit();
        m_services.desktop.Show_Message(
            {"The connection to Flight Simulator has been interrupted.  "
             "Norvane has entered pause mode.  Please click 'Resume' to continue "
             "when you verify that Flight Simulator is running.",
             "Norvane Interrupted",
             Icon::exclamation,
             Buttons::ok,
             {},
             std::string(interrupted_topic)});
    });
}

void ucACARS::NewLogEntrySaveFail() {
    Tell(
        m_services.desktop,
        "This log entry was NOT saved due to the application error.  The flight stays on the ACARS "
        "panel and is offered again at the next start; its PIREP leaves when it is in the log.  "
        "Put "
        "right what the error names, then click \"Log Flight\" again.",
        Icon::exclamation, std::string(product_name) + " Log Entry");
}

}  // namespace norvane
