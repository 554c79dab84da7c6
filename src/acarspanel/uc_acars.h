#pragma once
// The ACARS panel: the pilot's working panel for the flight in progress. It switches tracking on,
// pauses, resets and logs the flight, drives the engine with its timers, shows every figure as the
// engine settles it and turns the finished flight into the log entry. One object, owned by the
// program. What it shows is its form; what it asks of the web, stores and posts are parts of their
// own, which the panel tells how far the flight is.

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "acarspanel/acars_form.h"
#include "acarspanel/flight_stage.h"
#include "acarspanel/network_plan.h"
#include "acarspanel/panel_pages.h"
#include "acarspanel/panel_parts.h"
#include "acarspanel/panel_store.h"
#include "acarspanel/pirep_queue.h"
#include "acarspanel/request_round.h"
#include "acarspanel/row_keeper.h"
#include "acarspanel/simbrief_desk.h"
#include "acarspanel/step_queue.h"
#include "acarspanel/weather_desk.h"
#include "common/services.h"
#include "common/signal.h"
#include "common/timer_queue.h"

namespace norvane {

class clsACARS;

class ucACARS : public ACARS_Form {
  public:
    using Parts = Panel_Parts;

    explicit ucACARS(const Parts& parts);

    /// Start-up: loads the field files, clears the panel and puts a stored flight back onto it.
    void UCI();
    /// The engine that the panel drives from now on; it outlives the panel's use of it.
    void Set_ACARS(clsACARS& engine);
    /// The active airline changed: its fields are loaded anew.
    void VA_Change() { m_pages.VA_Settings(); }

    /// Logs a finished flight that an earlier run of the program left stored, or asks the pilot
    /// whether to: for the start, when the pilot can be asked. No simulator is needed.
    void Settle_Stored_Flight();
    /// Gives up a stored flight that was not switched on again: its row goes to the log's
    /// ".unsaved" file, which is returned. Nothing happens without one (empty); a row that cannot
    /// be written keeps the flight.
    std::filesystem::path Drop_Stored_Flight();

    enum class Closing {
        by_pilot,        // a finished flight that is not in the log is asked about
        by_signal,       // its row goes to the log's ".unsaved" file
        keeping_flight,  // it stays stored for the next start
    };
    /// Ends waits, stops the timers and stores the flight, then raises `Closed`: at once, or at the
    /// end of the step that is running. The engine's owner stops the engine afterwards. A pilot who
    /// leaves a question unanswered, or whose flight could be kept nowhere, goes on as before. A
    /// second call counts while the pilot is asked, when it is not the pilot's.
    void Close(Closing how);

    /// The flight is tracked, paused or not.
    [[nodiscard]] bool Is_Active() const { return m_stage.Is_Active(); }
    [[nodiscard]] bool Is_Paused() const { return m_stage.Now() == Stage::paused; }
    /// A finished flight stands on the panel, and nothing is waited for any longer.
    [[nodiscard]] bool Is_At_Gate() const {
        return m_stage.Is_Finished() && m_stage.Now() != Stage::at_gate;
    }
    /// The finished flight on the panel is in the log.
    [[nodiscard]] bool Is_Logged() const { return m_stage.Now() == Stage::logged; }
    /// "On" will go on with a stored flight.
    [[nodiscard]] bool Is_Resumable() const { return m_stage.Now() == Stage::stored; }
    /// A flight is under way, waits to be taken up again, or is finished and not in the log: what
    /// its figures mean must not be changed.
    [[nodiscard]] bool Is_Tracked_Or_Stored() const {
        return m_stage.Now() != Stage::none && m_stage.Is_To_Be_Kept();
    }
    /// The ".unsaved" file that keeps the flight given up last; empty before.
    [[nodiscard]] const std::filesystem::path& Kept_In() const { return m_keeper.Last_File(); }
    /// The store has all that the panel shows of a flight that is to be kept.
    [[nodiscard]] bool Is_Stored_Whole() const { return m_store.Is_Stored_Whole(); }
    /// The title's context menu opens only in the air.
    [[nodiscard]] bool Context_Menu_Opens() const { return tmrPos.Enabled(); }

    /// Asks for a flight plan file; empty when the pilot chose none.
    [[nodiscard]] std::filesystem::path Get_Flight_Plan();
    /// Takes route, airports, level and rules from a flight plan file, in place of what the fields
    /// hold; a file that is missing empties them.
    void Read_Flight_Plan(const std::filesystem::path& file);
    /// Takes the same from the pilot's line of the online network's data, and the call sign and the
    /// aircraft type; a line that ends too soon is applied as far as it goes.
    void Read_VATSIM_Data(std::string_view line);
    /// Takes from a plan of SimBrief whatever it tells, in place of what the fields hold.
    void Read_SimBrief_Plan(const Simbrief_Plan& plan);
    [[nodiscard]] std::string Get_WX(std::string_view icao) { return weather.Get_WX(icao); }

    /// Tracking became active (true) or stopped.
    Signal<bool> Active_State;
    /// The link dropped; the flight is paused and stored.
    Signal<> Interrupted;
    /// `Is_Tracked_Or_Stored` may be another one now.
    Signal<> Stored_State;
    /// The pilot closes the program: listeners ask their questions now; false calls it off.
    Signal<bool&> Close_Asked;
    Signal<> Close_Called_Off;
    /// Nothing calls it off any more.
    Signal<> Closing_Now;
    Signal<> Closed;

    Timer tmr;
    Timer tmrPos;
    Weather_Desk weather;
    Network_Plan network_plan;
    Simbrief_Desk simbrief;

  private:
    // Wiring.
    void Connect_Controls();
    void Connect_Airport(std::size_t end);
    void Connect_Engine();
    // Commands and timers.
    void ACARS_ON();
    void ACARS_MODE();
    void Log_Flight();
    bool ACARS_LOG();
    void ACARS_RESET();
    void ACARS_REPORT();
    void Load_Flight_Plan();
    void Tick();
    void Position_Tick();
    // The engine's events.
    void FlightOFF();
    void FlightON();
    void TouchAndGo();
    void FlightAtGate();
    void Settle_At_Gate();
    void End_Tracking();
    void Step_Ended();
    void Interruption(std::string_view event);
    void Tell_No_Airport(const std::string& where);
    void Tell_Elsewhere(const std::string& away_nm);
    void Take_Airport(std::size_t end, const std::string& code, const std::string& name);
    void Take_Engine_Airports();
    // How a flight leaves the panel.
    bool Begin_New_Flight();
    bool Ask_About_Finished_Flight();
    void Take_Logged_Row(const std::string& row, bool at_gate);
    void NewLogEntrySaveFail();
    void Close_Now();
    bool May_Close();
    bool Is_Kept_Beyond_The_End();
    [[nodiscard]] bool Would_Lose_Flight();
    [[nodiscard]] bool Logs_By_Itself() const;
    void Forget_Flight();
    void Clear_Flight();
    // What the panel shows.
    void Enter(Stage stage);
    void Show_Active();
    void Show_Paused(bool paused);
    void Show_Stored();
    void Stop_Timers();
    void Drop_Requests();
    void Clear();
    void Hand_Over_Codes();
    void Settle_Code(Text_Box& box, Label& name);
    void Derive_Name(const Text_Box& box, Label& name);
    [[nodiscard]] bool Airborne_By_Engine() const;

    Panel_Parts m_parts;
    Services& m_services;
    Step_Queue m_steps;
    Request_Round m_round;
    Flight_Stage m_stage;
    Panel_Pages m_pages;
    Panel_Store m_store;
    Row_Keeper m_keeper;
    Pirep_Queue m_pireps;
    /// At the gate, while the destination's weather is waited for.
    std::optional<Wait_Notice> m_gate_notice;
    Timer m_gate_timer;
    /// `Close` was called; how, until it is done or called off.
    std::optional<Closing> m_closing;
    bool m_closed = false;
    /// What follows once the log has the flight that is being logged.
    std::function<void()> m_on_saved;
    /// Minutes counted by `tmrPos` since the last position report was asked for.
    int m_position_minutes = 0;
    Connections m_engine_connections;
    Connections m_entry_connections;
};

}  // namespace norvane
