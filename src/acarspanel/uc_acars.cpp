#include "acarspanel/uc_acars.h"

#include <filesystem>
#include <utility>

#include "acars/cls_acars.h"
#include "acarspanel/panel_fields.h"
#include "common/log_error.h"
#include "common/services.h"
#include "logentry/cls_log_entry.h"

namespace norvane {

namespace {

constexpr std::chrono::milliseconds step_interval(500);
constexpr std::chrono::minutes position_interval(1);
constexpr std::chrono::seconds weather_delay(1);
constexpr std::chrono::seconds network_interval(10);
/// How long a flight at the gate waits for the destination's weather at most.
constexpr std::chrono::seconds longest_gate_wait(10'000);
constexpr std::chrono::milliseconds post_delay(1);
/// How soon what changes outside of steps is stored, and how soon a store that failed is tried
/// again.
constexpr std::chrono::seconds store_delay(5);

}  // namespace

ucACARS::ucACARS(Parts parts)
    : tmr(parts.services.desktop.Timers(), step_interval),
      tmrPos(parts.services.desktop.Timers(), position_interval),
      tmrWX{{{parts.services.desktop.Timers(), weather_delay},
             {parts.services.desktop.Timers(), weather_delay}}},
      tmrVATSIM(parts.services.desktop.Timers(), network_interval),
      m_services(parts.services),
      m_settings(parts.settings),
      m_airline(parts.airline),
      m_objNewLogEntry(parts.log_entry),
      m_response(parts.response),
      m_http(std::move(parts.http)),
      m_gate_timer(m_services.desktop.Timers(), longest_gate_wait),
      m_store_timer(m_services.desktop.Timers(), store_delay),
      m_network(m_services, m_settings, m_airline,
                Given_Up_When([this] { return m_polled_in_round != m_request_round; }, m_http)),
      m_ends{{{txtOrigin, lblOriginName, txtWXOrigin, {}},
              {txtDestination, lblDestinationName, txtWXDestination, {}}}},
      m_due_pireps(m_services),
      m_post_timer(m_services.desktop.Timers(), post_delay) {
    for (const Panel_Field& row : Panel_Fields()) {
        if (Label* label = row.Find_Label(*this))
            m_labels.push_back(label);
        if (Text_Box* box = row.Find_Box(*this))
            m_boxes.push_back(box);
    }
    const auto gather = [this](auto& fields) {
        for (Custom_Field& field : fields) {
            m_boxes.push_back(&field.txt);
            m_lists.push_back(&field.cbo);
        }
    };
    gather(optFields);
    gather(vaFields);
    Connect_Controls();
}

ucACARS::~ucACARS() = default;

void ucACARS::UCI() {
    Guarded(m_services, "ucACARS.UCI()", Show::box, [&] {
        m_has_optional_fields = std::filesystem::exists(Optional_Fields_File());
        Stop_Timers();
        Drop_Requests();
        Set_Paused(false);
        m_resume = false;
        m_plan_read = false;
        m_network_plan = false;
        m_finish = Finish::none;
        m_row_in_log.clear();
        m_position_minutes = 0;
        Show_Page(0);
        if (m_has_optional_fields)
            Load_Optional_Fields();
        VA_Settings();
        Clear_All_Fields();
        Set_Active_State(false);
        Restore();
        Show_Stored();
        Take_Up_Due_PIREPs();
    });
}

void ucACARS::Set_ACARS(clsACARS& engine) {
    m_engine_connections.Disconnect();
    m_objACARS = &engine;
    Connect_Engine();
    Hand_Over_Codes();
}

void ucACARS::Connect_Controls() {
    const auto command = [this](Link& link, void (ucACARS::*run)()) {
        // A click that had to wait for a step's end counts only if the link is still usable then.
        link.clicked.connect([this, &link, run] {
            After_Step([this, &link, run] {
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
    hypNext.clicked.connect([this] { Move_To_Page(Page_Beside(+1)); });
    hypBack.clicked.connect([this] { Move_To_Page(Page_Beside(-1)); });
    tmr.tick.connect(*this, &ucACARS::Tick);
    tmrPos.tick.connect(*this, &ucACARS::Position_Tick);
    for (std::size_t end = 0; end < tmrWX.size(); ++end)
        tmrWX.at(end).tick.connect([this, end] { Weather_Tick(end); });
    tmrVATSIM.tick.connect(*this, &ucACARS::VATSIM_Tick);
    m_gate_timer.tick.connect(*this, &ucACARS::Settle_At_Gate);
    m_post_timer.tick.connect(*this, &ucACARS::Post_PIREPs);
    m_store_timer.tick.connect(*this, &ucACARS::Store_Tick);
    mnuPosition.chosen.connect([this] {
        After_Step([this] {
            if (m_objACARS != nullptr)
                m_objACARS->Report_Position();
        });
    });

    const auto airport = [this](Text_Box& box, Label& name) {
        box.changed.connect(*this, &ucACARS::Hand_Over_Codes);
        box.edited.connect([this, &box, &name] { Derive_Name(box, name); });
        box.left.connect([this, &box, &name] { Settle_Code(box, name); });
        name.changed.connect([&box, &name] {
            if (!name.Text().empty())
                box.Set_Remark({});
        });
    };
    airport(txtOrigin, lblOriginName);
    airport(txtDestination, lblDestinationName);
    txtDestination.edited.connect([this] { m_engine_destination.clear(); });
    txtFlightNumber.left.connect([this] {
        if (m_objACARS != nullptr && !txtFlightNumber.Is_Empty())
            m_objACARS->Set_Airline_Flight_Number(txtFlightNumber.Text());
    });
    chkIFR.edited.connect([this] { chkVFR.Set_Checked(!chkIFR.Checked()); });
    chkVFR.edited.connect([this] { chkIFR.Set_Checked(!chkVFR.Checked()); });
    Note_Changes();
    m_entry_connections.Keep({
        m_objNewLogEntry.NewLogEntrySaveOK.connect([this] {
            if (m_on_saved)
                std::exchange(m_on_saved, {})();
        }),
        m_objNewLogEntry.NewLogEntrySaveFail.connect(*this, &ucACARS::NewLogEntrySaveFail),
    });
}

/// What changes on the panel is stored at the end of a step, or soon where no steps are made.
void ucACARS::Note_Changes() {
    const auto note = [this](Control& control) {
        control.changed.connect([this] {
            m_changed = true;
            if (!tmr.Enabled() && Has_Flight_To_Keep())
                m_store_timer.Set_Enabled(true);
        });
    };
    for (Label* label : m_labels)
        note(*label);
    for (Text_Box* box : m_boxes)
        note(*box);
    for (Combo_Box* list : m_lists)
        note(*list);
    note(chkIFR);
    note(chkVFR);
}

void ucACARS::Set_Active_State(bool on) {
    m_active = on;
    for (const Panel_Field& row : Panel_Fields()) {
        if (row.Is_Figure())
            row.Find_Label(*this)->Set_Enabled(on);
    }
    // What becomes usable comes first: the keyboard goes from the one to the other.
    (on ? hypPause : hypOn).Set_Enabled(true);
    (on ? hypOn : hypPause).Set_Enabled(false);
    hypFP.Set_Enabled(on);
    Active_State.emit(on);
    tmr.Set_Enabled(on);
    tmrVATSIM.Set_Enabled(on && Polls_Network());
}

void ucACARS::Set_Paused(bool paused) {
    m_paused = paused;
    hypPause.Set_Caption(paused ? "Resume" : "Pause");
    if (!paused)
        m_services.desktop.Withdraw(interrupted_topic);
}

void ucACARS::Stop_Timers() {
    tmr.Set_Enabled(false);
    tmrPos.Set_Enabled(false);
    tmrVATSIM.Set_Enabled(false);
}

void ucACARS::Clear_All_Fields() {
    lblATCFlight.Set_Visible(false);
    for (Label* label : m_labels)
        label->Set_Text({});
    for (Text_Box* box : m_boxes)
        box->Set_Text({});
    for (Combo_Box* list : m_lists)
        list->Select(-1);
    chkIFR.Set_Checked(false);
    chkVFR.Set_Checked(false);
    for (End& end : m_ends)
        end.fetched.clear();
}

void ucACARS::Keep_Old_Values() {
    m_old_values.clear();
    for (const Text_Box* box : m_boxes)
        m_old_values[box] = box->Text();
    for (const Combo_Box* list : m_lists)
        m_old_values[list] = list->Text();
    m_old_rules = {chkIFR.Checked(), chkVFR.Checked()};
}

/// What the pilot entered since the old flight was complete belongs to the new one and stays.
void ucACARS::Clear_Old_Values() {
    lblATCFlight.Set_Visible(false);
    for (Text_Box* box : m_boxes) {
        if (box->Text() == m_old_values[box])
            box->Set_Text({});
    }
    for (Combo_Box* list : m_lists) {
        if (list->Text() == m_old_values[list])
            list->Select(-1);
    }
    if (m_old_rules == std::pair(chkIFR.Checked(), chkVFR.Checked())) {
        chkIFR.Set_Checked(false);
        chkVFR.Set_Checked(false);
    }
    for (Label* label : m_labels)
        label->Set_Text({});
    for (End& end : m_ends)
        end.fetched.clear();
    Derive_Name(txtOrigin, lblOriginName);
    Derive_Name(txtDestination, lblDestinationName);
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
    if (m_objACARS == nullptr)
        return;
    m_objACARS->Set_Form_ICAO_Depart(txtOrigin.Text());
    m_objACARS->Set_Form_ICAO_Arrive(txtDestination.Text());
}

}  // namespace norvane
