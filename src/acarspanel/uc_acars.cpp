#include "acarspanel/uc_acars.h"

#include <fmt/format.h>

#include <utility>

#include "acars/cls_acars.h"
#include "acarspanel/panel_fields.h"
#include "common/log_error.h"
#include "logentry/cls_log_entry.h"

namespace norvane {

namespace {

constexpr std::chrono::milliseconds step_interval(500);
constexpr std::chrono::minutes position_interval(1);
/// How long a flight at the gate waits for the destination's weather at most.
constexpr std::chrono::seconds longest_gate_wait(10'000);

}  // namespace

ucACARS::ucACARS(const Parts& parts)
    : tmr(parts.services.desktop.Timers(), step_interval),
      tmrPos(parts.services.desktop.Timers(), position_interval),
      weather(parts, *this, m_steps, m_round),
      network_plan(parts, m_stage, m_steps, m_round),
      simbrief(parts, *this, m_stage, m_steps, m_round),
      m_parts(parts),
      m_services(parts.services),
      m_pages(parts, *this),
      m_store(parts, {*this, m_stage, weather, network_plan}, m_steps),
      m_keeper(parts, m_store),
      m_pireps(parts),
      m_gate_timer(m_services.desktop.Timers(), longest_gate_wait) {
    Connect_Controls();
}

void ucACARS::UCI() {
    Guarded(m_services, "ucACARS.UCI()", Show::box, [&] {
        Stop_Timers();
        Drop_Requests();
        Show_Paused(false);
        Forget_Flight();
        m_position_minutes = 0;
        m_pages.Load();
        Clear();
        Show_Active();
        m_store.Restore();
        Show_Stored();
        m_pireps.Take_Up([this](const std::string& row) { return m_store.Stands_In_Log(row); });
    });
}

void ucACARS::Set_ACARS(clsACARS& engine) {
    m_engine_connections.Disconnect();
    m_steps.Set_Engine(engine);
    Connect_Engine();
    Hand_Over_Codes();
}

void ucACARS::Connect_Controls() {
    const auto command = [this](Link& link, void (ucACARS::*run)()) {
        // A click that had to wait for a step's end counts only if the link is still usable then.
        link.clicked.Connect([this, &link, run] {
            m_steps.After_Step([this, &link, run] {
                if (link.Enabled() && !m_closed)
                    (this->*run)();
            });
        });
    };
    command(hypOn, &ucACARS::ACARS_ON);
    command(hypPause, &ucACARS::ACARS_MODE);
    command(hypLog, &ucACARS::Log_Flight);
    command(hypReset, &ucACARS::ACARS_RESET);
    command(hypReport, &ucACARS::ACARS_REPORT);
    command(hypFP, &ucACARS::Load_Flight_Plan);
    tmr.tick.Connect(*this, &ucACARS::Tick);
    tmrPos.tick.Connect(*this, &ucACARS::Position_Tick);
    m_gate_timer.tick.Connect(*this, &ucACARS::Settle_At_Gate);
    mnuPosition.chosen.Connect([this] {
        m_steps.After_Step([this] {
            if (m_steps.Engine() != nullptr)
                m_steps.Engine()->Report_Position();
        });
    });
    weather.taken.Connect([this](std::size_t end) {
        // The finished flight's, however late it comes.
        if (m_stage.Is_Finished())
            Keep_Old_Value(Weather(end));
    });
    weather.settled.Connect([this] {
        if (m_stage.Now() == Stage::at_gate && !weather.Awaits(flight_end::destination))
            Settle_At_Gate();
    });
    network_plan.found.Connect([this](const std::string& line) { Read_VATSIM_Data(line); });
    simbrief.agreed.Connect(*this, &ucACARS::Read_SimBrief_Plan);
    Connect_Airport(flight_end::origin);
    Connect_Airport(flight_end::destination);
    txtDestination.edited.Connect([this] { m_store.facts.engine_destination.clear(); });
    txtFlightNumber.left.Connect([this] {
        if (m_steps.Engine() != nullptr && !txtFlightNumber.Is_Empty())
            m_steps.Engine()->Set_Airline_Flight_Number(txtFlightNumber.Text());
    });
    // What changes on the panel is stored at the end of a step, or soon where no steps are made.
    Note_Changes([this] {
        m_store.Note_Change();
        if (!tmr.Enabled() && m_store.Has_Flight_To_Keep())
            m_store.Store_Soon();
    });
    m_entry_connections.Keep({
        m_parts.log_entry.NewLogEntrySaveOK.Connect([this] {
            if (m_on_saved)
                std::exchange(m_on_saved, {})();
        }),
        m_parts.log_entry.NewLogEntrySaveFail.Connect(*this, &ucACARS::NewLogEntrySaveFail),
    });
}

void ucACARS::Connect_Airport(std::size_t end) {
    Text_Box& box = Code(end);
    Label& name = Name(end);
    box.changed.Connect(*this, &ucACARS::Hand_Over_Codes);
    box.edited.Connect([this, &box, &name] { Derive_Name(box, name); });
    box.left.Connect([this, &box, &name] { Settle_Code(box, name); });
    name.changed.Connect([&box, &name] {
        if (!name.Text().empty())
            box.Set_Remark({});
    });
}

void ucACARS::Enter(Stage stage) {
    m_stage.Enter(stage);
    Show_Stored();
}

/// Shows whether a flight is tracked, and starts or stops what follows it.
void ucACARS::Show_Active() {
    const bool on = m_stage.Is_Active();
    for (const Panel_Field& row : Panel_Fields()) {
        if (row.Is_Figure())
            row.Find_Label(*this)->Set_Enabled(on);
    }
    // What becomes usable comes first: the keyboard goes from the one to the other.
    (on ? hypPause : hypOn).Set_Enabled(true);
    (on ? hypOn : hypPause).Set_Enabled(false);
    hypFP.Set_Enabled(on);
    hypSimBrief.Set_Enabled(on);
    Active_State.Emit(on);
    tmr.Set_Enabled(on);
    network_plan.Look(on);
}

/// Says on the panel which flight waits, and for what.
void ucACARS::Show_Stored() {
    std::string text;
    if (m_stage.Now() == Stage::stored) {
        text =
            fmt::format("A flight is stored: {}.  \"On\" goes on with it, \"Reset\" gives it up.",
                        Flight_Words());
    } else if (m_stage.Now() == Stage::unlogged) {
        text = fmt::format(
            "A finished flight is not in the log: {}.  \"Log Flight\" logs it, \"Reset\" gives it "
            "up.",
            Flight_Words());
    }
    lblStored.Set_Text(text);
    lblStored.Set_Visible(!text.empty());
    Stored_State.Emit();
}

void ucACARS::Stop_Timers() {
    tmr.Set_Enabled(false);
    tmrPos.Set_Enabled(false);
    network_plan.Look(false);
}

/// What was asked for the flight so far is of no use any longer, answers on their way included.
void ucACARS::Drop_Requests() {
    m_round.End();
    weather.Stop();
}

void ucACARS::Clear() {
    Clear_All_Fields();
    weather.Forget_All();
}

/// The airport of a code that the pilot entered.
void ucACARS::Derive_Name(const Text_Box& box, Label& name) {
    name.Set_Text(box.Is_Empty() ? std::string() : Get_Airport_Name(m_services, box.Text()));
}

/// The pilot has left the box of a code: codes are written in capitals, and one that no airport
/// file knows is marked.
void ucACARS::Settle_Code(Text_Box& box, Label& name) {
    if (box.Is_Empty())
        return;
    const std::string code = Upper(Trim(box.Text()));
    if (code != box.Text()) {
        box.Set_Text(code);
        Derive_Name(box, name);
    }
    if (name.Text().empty())
        box.Set_Remark("No airport file of the program directory knows this code");
}

/// The codes of the form go with every message that the engine composes.
void ucACARS::Hand_Over_Codes() {
    if (m_steps.Engine() == nullptr)
        return;
    m_steps.Engine()->Set_Form_ICAO_Depart(txtOrigin.Text());
    m_steps.Engine()->Set_Form_ICAO_Arrive(txtDestination.Text());
}

bool ucACARS::Airborne_By_Engine() const {
    const clsACARS& engine = *m_steps.Engine();
    return !engine.TIME_OFF().empty() && engine.TIME_ON().empty();
}

}  // namespace norvane
