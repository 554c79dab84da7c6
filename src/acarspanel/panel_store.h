#pragma once
// The flight on the ACARS panel as a log entry, and the flight in progress in the settings store: a
// program that is killed resumes what was stored last. Owned by the panel.

#include <string>

#include "acarspanel/acars_form.h"
#include "acarspanel/panel_parts.h"
#include "common/timer_queue.h"

namespace norvane {

class Flight_Stage;
class Network_Plan;
class Step_Queue;
class Weather_Desk;

/// What belongs to the flight and no control shows.
struct Flight_Facts {
    /// The codes were taken from a plan, or with a stored flight.
    bool plan_read = false;
    /// The row by which the flight was logged before its gate; empty: it was not.
    std::string row_in_log;
    /// The destination that the engine found and nobody had named before; empty: none.
    std::string engine_destination;
    /// `Planned_Text` of the plan that the flight is flown by; empty: none is known.
    std::string planned;
};

class Panel_Store {
  public:
    /// The parts of the panel whose state is stored with a flight.
    struct Stored {
        ACARS_Form& form;
        Flight_Stage& stage;
        Weather_Desk& weather;
        Network_Plan& plan;
    };

    Panel_Store(const Panel_Parts& parts, const Stored& stored, const Step_Queue& steps);

    /// Fills the log entry from the form.
    void Create_Log_Entry();
    /// The flight as a row of the log.
    [[nodiscard]] std::string Row();
    /// The log and the store cannot be written in one stroke. A program that ends between the two
    /// knows by this row, when it starts again, that the stored flight is in the log already; and
    /// where the log could not be written, what was to be added to it.
    void Note_Row_To_Be_Logged(const std::string& row);
    /// The active log has the flight, as it was handed over or with what the pilot wrote into it
    /// since.
    [[nodiscard]] bool Stands_In_Log(const std::string& row);

    /// A flight is worth storing from take-off on, until it is in the log or given up.
    [[nodiscard]] bool Has_Flight_To_Keep() const;
    /// Stores the flight, or deletes what the store holds of one that is over. False when that
    /// failed, which is reported.
    bool Persist();
    /// As `Persist`, where something changed since or the engine's part is missing.
    void Persist_What_Changed();
    /// The form or the facts changed: stored at the end of the next step.
    void Note_Change() { m_changed = true; }
    /// No step comes that would store what changed: it is stored soon, and tried again.
    void Store_Soon() { m_timer.Set_Enabled(m_changed && Has_Flight_To_Keep()); }
    void Stop() { m_timer.Set_Enabled(false); }
    /// The store has all that the panel shows of a flight that is to be kept.
    [[nodiscard]] bool Is_Stored_Whole() const { return !m_changed; }

    /// Puts the stored flight back onto the form: one in the air waits for "On", a finished one for
    /// the log.
    void Restore();
    /// The log could not be written when the restored flight was to be logged.
    [[nodiscard]] bool Had_Failed() const { return m_save_failed; }

    Flight_Facts facts;

  private:
    void Store_Panel();
    void Restore_Panel();
    void Take_Row(const std::string& row);
    void Tick();

    Panel_Parts m_parts;
    ACARS_Form& m_form;
    Flight_Stage& m_stage;
    Weather_Desk& m_weather;
    Network_Plan& m_plan;
    const Step_Queue& m_steps;
    /// A field changed since the flight was stored.
    bool m_changed = false;
    bool m_save_failed = false;
    /// Stores what changes while no step does: paused, waiting, at the gate.
    Timer m_timer;
};

}  // namespace norvane
