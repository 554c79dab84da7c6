// What the engine's events do to the panel.

#include "acarspanel/uc_acars.h"

#include <optional>
#include <string>

#include "acars/cls_acars.h"
#include "acarspanel/panel_fields.h"
#include "common/log_error.h"
#include "common/services.h"

namespace norvane {

namespace {

/// How long a flight at the gate waits for the destination's weather at most.
constexpr std::chrono::seconds longest_gate_wait(10'000);
constexpr int plan_from_network = 1;

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
        m_engine_connections.push_back(event.connect(run));
    };
    // Connected after the table: the labels show the event before what follows from it is done.
    connect(events.ATCFlight, [this](const std::string& flight) {
        lblATCFlight.Set_Text(flight);
        lblATCFlight.Set_Visible(true);
    });
    connect(events.ICAODep, [this](const std::string& code, const std::string& name) {
        Take_Airport(code, name, txtOrigin, lblOriginName);
    });
    connect(events.ICAOArr, [this](const std::string& code, const std::string& name) {
        Take_Airport(code, name, txtDestination, lblDestinationName);
    });
    connect(events.FlightOFF, [this](const std::string&, int) { FlightOFF(); });
    connect(events.FlightON, [this](const std::string&, int) { FlightON(); });
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
    m_engine_connections.push_back(event.connect([this, &row](const std::string& value) {
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
        m_engine_connections.push_back(
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

/// An airport as the engine found it: taken unless the pilot named another one.
void ucACARS::Take_Airport(const std::string& code, const std::string& name, Text_Box& box,
                           Label& label) {
    if (!box.Is_Empty() && box.Text() != code)
        return;
    box.Set_Text(code);
    label.Set_Text(name);
}

void ucACARS::FlightOFF() {
    Persist();
    tmrPos.Set_Enabled(true);
}

void ucACARS::FlightON() {
    tmrPos.Set_Enabled(false);
    Persist();
}

/// The step's figures have all arrived: what changed in the air is stored with them, and what a
/// failed transaction of the step before took away.
void ucACARS::Step_Ended() {
    if ((m_changed || !m_objACARS->Was_Stored()) && Airborne())
        Persist();
}

void ucACARS::FlightAtGate() {
    Guarded(m_services, "ucACARS.FlightAtGate()", Show::silent, [&] {
        Stop_Timers();
        m_finish = Finish::unlogged;
        m_resume = false;
        Take_Engine_Airports();
        Await_Destination_Weather();
        // While it waited the flight may have been reset, or the panel closed.
        if (m_finish == Finish::none || m_closed)
            return;
        Set_Active_State(false);
        if (m_finish == Finish::unlogged)
            Keep_Old_Values();
        if (m_settings.OPT_AutoLog() && m_finish == Finish::unlogged)
            ACARS_LOG();
    });
}

void ucACARS::Await_Destination_Weather() {
    if (m_settings.WX_URL() == "FS" || txtFlightLevel.Is_Empty() || !m_weather_awaited)
        return;
    hypPause.Set_Enabled(false);
    m_waiting = true;
    m_services.desktop.Wait_Until([this] { return !m_weather_awaited; }, longest_gate_wait);
    m_waiting = false;
}

/// A plan that was to come from the network and did not come leaves the airports to the engine.
void ucACARS::Take_Engine_Airports() {
    if (m_settings.VATSIM_FP() != plan_from_network)
        return;
    if (txtOrigin.Is_Empty())
        Take_Airport(m_objACARS->Departure_ICAO(), m_objACARS->Departure_Name(), txtOrigin,
                     lblOriginName);
    if (txtDestination.Is_Empty())
        Take_Airport(m_objACARS->Arrival_ICAO(), m_objACARS->Arrival_Name(), txtDestination,
                     lblDestinationName);
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
        if (batch)
            Guarded(m_services, event, Show::silent, [&] { batch->Commit(); });
        Interrupted.emit();
        m_services.desktop.Show_Message(
            {"The connection to Flight Simulator has been interrupted.  "
             "Norvane has entered pause mode.  Please click 'Resume' to continue "
             "when you verify that Flight Simulator is running.",
             "Norvane Interrupted", Icon::exclamation, Buttons::ok});
    });
}

void ucACARS::NewLogEntrySaveFail() {
    m_services.desktop.Show_Message({"This log entry was NOT saved due to the application error",
                                     std::string(product_name) + " Log Entry", Icon::exclamation,
                                     Buttons::ok});
}

}  // namespace norvane
