// What the engine's events do to the panel.

#include "acarspanel/uc_acars.h"

#include <optional>
#include <string>

#include "acars/cls_acars.h"
#include "acarspanel/panel_fields.h"
#include "common/boxes.h"
#include "common/log_error.h"
#include "common/services.h"

namespace norvane {

namespace {

constexpr std::string_view gate_wait = "Waiting for the weather at the destination ...";

}  // namespace

void ucACARS::Connect_Engine() {
    for (const Panel_Field& row : Panel_Fields()) {
        if (std::holds_alternative<ACARS_Events::Text ACARS_Events::*>(row.event))
            Connect_Text(row);
        else if (std::holds_alternative<ACARS_Events::Figure ACARS_Events::*>(row.event))
            Connect_Figure(row);
    }
    ACARS_Events& events = m_objACARS->events;
    const auto connect = [this](auto& event, auto&& run) {
        m_engine_connections.Keep(event.connect(run));
    };
    // Connected after the table: the labels show the event before what follows from it is done.
    connect(events.ATCFlight, [this](const std::string& flight) {
        // The network's call sign came with its plan, and with a flight that was taken up again.
        if (m_network_plan && !lblATCFlight.Text().empty())
            return;
        lblATCFlight.Set_Text(flight);
        lblATCFlight.Set_Visible(true);
    });
    connect(events.ICAODep, [this](const std::string& code, const std::string& name) {
        Take_Airport(origin, code, name);
    });
    connect(events.ICAOArr, [this](const std::string& code, const std::string& name) {
        if (txtDestination.Is_Empty())
            m_engine_destination = code;
        Take_Airport(destination, code, name);
    });
    connect(events.FlightOFF, [this](const std::string&, int) { FlightOFF(); });
    connect(events.FlightON, [this](const std::string&, int) { FlightON(); });
    connect(events.TouchAndGo, [this] { TouchAndGo(); });
    connect(events.No_Airport, [this](const std::string& where) {
        After_Step([this, where] { Tell_No_Airport(where); });
    });
    connect(events.Elsewhere, [this](const std::string& away_nm) {
        After_Step([this, away_nm] { Tell_Elsewhere(away_nm); });
    });
    connect(events.FSTime, [this](const std::string&) { Step_Ended(); });
    connect(events.Reset, [this] { Stop_Timers(); });
    connect(events.FlightAtGate, [this] { After_Step([this] { FlightAtGate(); }); });
    connect(events.FSClosed, [this](const std::string&) {
        After_Step([this] { Interruption("ucACARS.FSClosed()"); });
    });
    connect(events.Error, [this](const std::string&) {
        After_Step([this] { Interruption("ucACARS.Error()"); });
    });
}

void ucACARS::Connect_Text(const Panel_Field& row) {
    auto& event = m_objACARS->events.*std::get<ACARS_Events::Text ACARS_Events::*>(row.event);
    m_engine_connections.Keep(event.connect([this, &row](const std::string& value) {
        if (Label* label = row.Find_Label(*this))
            label->Set_Text(value + std::string(row.suffix));
        Text_Box* box = row.Find_Box(*this);
        if (box != nullptr && (row.rule == Fill_Rule::replace || box->Is_Empty()))
            box->Set_Text(value);
    }));
}

void ucACARS::Connect_Figure(const Panel_Field& row) {
    auto& event = m_objACARS->events.*std::get<ACARS_Events::Figure ACARS_Events::*>(row.event);
    Label& label = *row.Find_Label(*this);
    const auto connect = [&](auto setting, auto shown) {
        m_engine_connections.Keep(
            event.connect([this, &label, setting, shown](const std::string& value, int code) {
                if (code == (m_settings.*setting)())
                    label.Set_Text(shown(value, code));
            }));
    };
    if (row.rule == Fill_Rule::time_figure)
        connect(&clsAppSettings::ACARS_Time, &Shown_Time);
    else if (row.rule == Fill_Rule::fuel_figure)
        connect(&clsAppSettings::ACARS_Fuel, &Shown_Fuel);
    else
        connect(&clsAppSettings::ACARS_Weight, &Shown_Weight);
}

/// An airport as the engine or a plan has it: taken unless the pilot named another one.
void ucACARS::Take_Airport(std::size_t end, const std::string& code, const std::string& name) {
    const End& at = m_ends.at(end);
    if (!at.code.Is_Empty() && at.code.Text() != code)
        return;
    at.code.Set_Text(code);
    at.name.Set_Text(name);
    if (at.weather.Is_Empty())
        Schedule_Weather(end);
}

void ucACARS::FlightOFF() {
    Persist();
    tmrPos.Set_Enabled(true);
}

void ucACARS::FlightON() {
    tmrPos.Set_Enabled(false);
    // The plan's airport has its weather from before the flight; the arrival's is of now.
    if (m_plan_read)
        Schedule_Weather(destination);
    Persist();
}

/// In the air again: the landing's figures are no longer the flight's, nor is the airport, unless
/// the pilot or a plan named it.
void ucACARS::TouchAndGo() {
    for (Label* label : {&lblTimeOn, &lblFuelOn, &lblLandingWeight, &lblVS, &lblIASLanding})
        label->Set_Text({});
    if (!m_engine_destination.empty() && txtDestination.Text() == m_engine_destination) {
        End& at = m_ends.at(destination);
        tmrWX.at(destination).Set_Enabled(false);
        if (at.weather.Text() == at.fetched)
            at.weather.Set_Text({});
        at.code.Set_Text({});
        at.name.Set_Text({});
    }
    m_engine_destination.clear();
    tmrPos.Set_Enabled(true);
    Persist();
}

/// Not where the pilot or a plan has named the airport already.
void ucACARS::Tell_No_Airport(const std::string& where) {
    if (m_ends.at(m_objACARS->TIME_ON().empty() ? origin : destination).code.Text().empty()) {
        m_services.desktop.Show_Message(
            {"No airport is known where the aircraft stands, so that its code stays empty.\r\n\r\n"
             "Type the code on the panel or in the flight log.  A place of your own can be added "
             "to the airports with \"FS World Locations ...\".",
             std::string(product_name), Icon::information, Buttons::ok, where});
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
    if (!m_objACARS->TIME_IN().empty() && m_active && m_finish == Finish::none)
        Take_Engine_Airports();
    if ((m_changed || !m_objACARS->Was_Stored()) && Has_Flight_To_Keep())
        Persist();
}

void ucACARS::FlightAtGate() {
    Guarded(m_services, "ucACARS.FlightAtGate()", Show::silent, [&] {
        // A command that waited for the same step may have ended the flight.
        if (!m_active || m_closed)
            return;
        Stop_Timers();
        m_resume = false;
        Set_Finish(Finish::unlogged);
        if (!m_objACARS->Was_Stored())
            m_changed = true;
        m_store_timer.Set_Enabled(m_changed);
        if (m_settings.WX_URL() == "FS" || txtFlightLevel.Is_Empty() ||
            !Awaits_Destination_Weather()) {
            Settle_At_Gate();
            return;
        }
        // Nothing waits here: the request that the flight waits for may itself be waiting for this
        // procedure to end.
        hypPause.Set_Enabled(false);
        m_waiting = true;
        m_gate_notice.emplace(m_services.desktop, gate_wait);
        m_gate_timer.Set_Enabled(true);
    });
}

bool ucACARS::Awaits_Destination_Weather() const {
    return tmrWX.at(destination).Enabled() || m_ends.at(destination).is_fetching;
}

/// The flight at the gate has all that it will have.
void ucACARS::End_Tracking() {
    m_waiting = false;
    m_gate_timer.Set_Enabled(false);
    m_gate_notice.reset();
    Set_Active_State(false);
    Keep_Old_Values();
    if (m_changed)
        Persist();
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
    if (m_settings.VATSIM_FP() != plan_from_network)
        return;
    if (txtOrigin.Is_Empty())
        Take_Airport(origin, m_objACARS->Departure_ICAO(), m_objACARS->Departure_Name());
    if (txtDestination.Is_Empty())
        Take_Airport(destination, m_objACARS->Arrival_ICAO(), m_objACARS->Arrival_Name());
}

/// The link to the simulator dropped: the flight pauses until the pilot resumes it.
void ucACARS::Interruption(std::string_view event) {
    Guarded(m_services, event, Show::silent, [&] {
        if (!tmr.Enabled() || m_paused)
            return;
        // A store that fails must not keep the flight from pausing.
        std::optional<Settings_Batch> batch;
        Guarded(m_services, event, Show::silent, [&] { batch.emplace(m_services.settings); });
        ACARS_MODE();
        Persist();
        if (batch && !Guarded(m_services, event, Show::silent, [&] { batch->Commit(); })) {
            m_changed = true;
            m_store_timer.Set_Enabled(true);
        }
        Interrupted.emit();
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
