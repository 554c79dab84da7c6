#pragma once
// The ACARS panel: the pilot's working panel for the flight in progress. It switches tracking on,
// pauses, resets and logs the flight, drives the engine with its timers, shows every figure as the
// engine settles it and turns the finished flight into the log entry. One object, owned by the
// program; its controls are public models that the window binds to and the program without a window
// reads. A figure's caption in the window follows its label: shown and usable with it. OUT, OFF, ON
// and IN are the four block events of a flight; ZFW is the zero fuel weight, N settings the
// engines' speeds at take-off.

#include "common/signal.h"

#include <array>
#include <cstddef>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "acarspanel/due_pireps.h"
#include "common/controls.h"
#include "common/services.h"
#include "common/timer_queue.h"
#include "config/cls_app_settings.h"
#include "config/field_definitions.h"
#include "net/cls_win_inet.h"
#include "net/http_client.h"
#include "net/poll_pauses.h"

namespace norvane {

struct Panel_Field;
class clsACARS;
class clsLogEntry;
class frmResponse;

/// One position of the pilot's or the airline's own fields: a caption and, of the two inputs, the
/// one that the field's definition asks for; hidden and disabled without a definition.
struct Custom_Field {
    Custom_Field();
    /// Hidden, disabled and empty.
    void Remove();
    void Define(const Field_Definition& definition);
    /// The value of the enabled input, trimmed; empty when none is enabled.
    [[nodiscard]] std::string Value() const;
    /// Puts a stored value back into the enabled input; a list without it selects nothing.
    void Restore(std::string_view value);
    /// The input that the pilot sees; null when the position is hidden.
    [[nodiscard]] const Control* Shown() const;

    Label lblCaption;
    Text_Box txt;
    Combo_Box cbo;
};

class ucACARS {
  public:
    /// Who the panel works with, all of it longer lived than the panel.
    struct Parts {
        Services& services;
        const clsAppSettings& settings;
        clsVASettings& airline;
        clsLogEntry& log_entry;
        frmResponse& response;
        Http_Options http;
    };

    explicit ucACARS(Parts parts);
    ~ucACARS();
    ucACARS(const ucACARS&) = delete;
    ucACARS& operator=(const ucACARS&) = delete;

    /// Start-up: loads the field files, clears the panel and puts a stored flight back onto it.
    void UCI();
    /// The engine that the panel drives from now on; it outlives the panel's use of it.
    void Set_ACARS(clsACARS& engine);
    /// The active airline changed: its fields are loaded anew.
    void VA_Change() { VA_Settings(); }

    /// Logs a finished flight that an earlier run of the program left stored, or asks the pilot
    /// whether to: for the start, when he can be asked. No simulator is needed.
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
    /// second call counts while the pilot is asked, when it is not his.
    void Close(Closing how);

    /// The flight is tracked, paused or not.
    [[nodiscard]] bool Is_Active() const { return m_active; }
    [[nodiscard]] bool Is_Paused() const { return m_paused; }
    /// A finished flight stands on the panel, and nothing is waited for any longer.
    [[nodiscard]] bool Is_At_Gate() const { return m_finish != Finish::none && !m_waiting; }
    /// The finished flight on the panel is in the log.
    [[nodiscard]] bool Is_Logged() const { return m_finish == Finish::logged; }
    /// "On" will go on with a stored flight.
    [[nodiscard]] bool Is_Resumable() const { return m_resume; }
    /// A flight is under way, waits to be taken up again, or is finished and not in the log: what
    /// its figures mean must not be changed.
    [[nodiscard]] bool Is_Tracked_Or_Stored() const {
        return m_active || m_resume || m_finish == Finish::unlogged;
    }
    /// The ".unsaved" file that keeps the flight given up last; empty before.
    [[nodiscard]] const std::filesystem::path& Kept_In() const { return m_kept_in; }
    /// The store has all that the panel shows of a flight that is to be kept.
    [[nodiscard]] bool Is_Stored_Whole() const { return !m_changed; }
    /// Which flight the panel shows: "KJFK to KBOS, OFF 1414Z", as far as it is known.
    [[nodiscard]] std::string Flight_Words() const;
    /// The title's context menu opens only in the air.
    [[nodiscard]] bool Context_Menu_Opens() const { return tmrPos.Enabled(); }
    /// 0 identity and figures, 1 airline page, 2 optional fields, 3 airline fields.
    [[nodiscard]] int Page() const { return m_page; }
    /// PIREPs of logged flights are on their way to the airline, or wait for their turn.
    [[nodiscard]] bool Is_Posting() const { return m_posting || !m_posts.empty(); }

    /// Asks for a flight plan file; empty when the pilot chose none.
    [[nodiscard]] std::filesystem::path Get_Flight_Plan();
    /// Takes route, airports, level and rules from a flight plan file, in place of what the fields
    /// hold; a file that is missing empties them.
    void Read_Flight_Plan(const std::filesystem::path& file);
    /// Takes the same from the pilot's line of the online network's data, and the call sign and the
    /// aircraft type; a line that ends too soon is applied as far as it goes.
    void Read_VATSIM_Data(std::string_view line);
    /// The airport's report as `clsWinInet::Get_METAR` gives it; empty when the flight that it was
    /// asked for is over before the answer is there.
    [[nodiscard]] std::string Get_WX(std::string_view icao);

    /// Tracking became active (true) or stopped.
    Signal<bool> Active_State;
    /// The link dropped; the flight is paused and stored.
    Signal<> Interrupted;
    /// `Is_Tracked_Or_Stored` may be another one now.
    Signal<> Stored_State;
    /// The pilot closes the program: whoever has a question asks it now; false calls it off.
    Signal<bool&> Close_Asked;
    Signal<> Close_Called_Off;
    /// Nothing calls it off any more.
    Signal<> Closing_Now;
    Signal<> Closed;
    Signal<> Page_Changed;
    /// The input focus belongs to this control.
    Signal<const Control&> Focus_Moved;

    Timer tmr;
    Timer tmrPos;
    /// Fetch the weather once, a moment after they were enabled: of the origin, the destination.
    std::array<Timer, 2> tmrWX;
    /// Looks for the pilot's plan in the online network's data until it is there.
    Timer tmrVATSIM;

    Link hypOn{"On"};
    Link hypPause{"Pause"};
    Link hypLog{"Log Flight"};
    Link hypReset{"Reset"};
    Link hypReport{"ACARS Report"};
    Link hypFP{"Flight Plan:"};
    Link hypNext{"==>"};
    Link hypBack{"<=="};
    Menu_Command mnuPosition{"&Position Report"};
    Menu_Command mnuExit{"E&xit"};

    /// Which flight is stored, and what goes on with it; hidden while none waits.
    Label lblStored;
    Text_Box txtDate;
    Text_Box txtAircraftType;
    Text_Box txtAircraftID;
    Text_Box txtOrigin;
    Text_Box txtDestination;
    Label lblOriginName;
    Label lblDestinationName;
    Label lblATCFlight;

    Label lblTimeOut;
    Label lblTimeOff;
    Label lblTimeOn;
    Label lblTimeIn;
    Label lblBlockTime;
    Label lblBlockTimeHHMM;
    Label lblFlightTime;
    Label lblFlightTimeHHMM;

    Label lblFuelOut;
    Label lblFuelOff;
    Label lblFuelOn;
    Label lblFuelIn;
    Label lblBlockFuel;
    Label lblFlightFuel;

    Label lblZFW;
    Label lblTaxiWeight;
    Label lblTakeOffWeight;
    Label lblLandingWeight;
    Label lblRampWeight;
    Label lblDistance;

    Text_Box txtFlightNumber;
    Text_Box txtPax;
    Text_Box txtCargo;
    Text_Box txtFlightLevel;
    Text_Box txtWXOrigin;
    Text_Box txtWXDestination;
    Text_Box txtFlightPlan{Field_Lines::many};
    Text_Box txtComments{Field_Lines::many};
    /// Both clear until one is set; from then on exactly one is.
    Check_Box chkIFR;
    Check_Box chkVFR;

    Label lblMaxTaxiOrigin;
    Label lblNSettings;
    Label lblIASTakeOff;
    Label lblVS;
    Label lblIASLanding;
    Label lblMaxTaxiDestination;

    std::array<Custom_Field, optional_field_count> optFields;
    std::array<Custom_Field, airline_field_count> vaFields;

  private:
    /// What became of the flight that reached the gate.
    enum class Finish { none, unlogged, logged, given_up };

    // Places in the arrays of both ends.
    static constexpr std::size_t origin = 0;
    static constexpr std::size_t destination = 1;
    /// Of the box that says that the link dropped.
    static constexpr std::string_view interrupted_topic = "interrupted";
    /// The setting that has the plan taken from the online network.
    static constexpr int plan_from_network = 1;

    struct End {
        Text_Box& code;
        Label& name;
        Text_Box& weather;
        /// The report that was fetched last: what the field shows beside it is the pilot's.
        std::string fetched;
        bool is_fetching = false;
    };

    /// A PIREP that waits to be posted.
    struct PIREP_Post {
        std::string file;
        std::string airline;
        /// The pilot logged the flight and waits for the answer.
        bool by_pilot = false;
        /// An earlier run was ended while the airline's server had it.
        bool is_uncertain = false;
    };

    void Connect_Controls();
    void Note_Changes();
    void Connect_Engine();
    void Connect_Figure(const Panel_Field& row);
    void Connect_Text(const Panel_Field& row);

    void ACARS_ON();
    void ACARS_MODE();
    void Log_Flight();
    bool ACARS_LOG();
    void ACARS_RESET();
    void ACARS_REPORT();
    void Close_Now();
    bool May_Close();
    bool Is_Kept_Beyond_The_End();
    bool Begin_New_Flight();
    bool Ask_About_Finished_Flight();
    [[nodiscard]] std::string Row();
    [[nodiscard]] bool Would_Lose_Flight();
    std::filesystem::path Keep_Row();
    std::optional<std::filesystem::path> Keep_Row_Or_Ask(std::string_view question);
    void Keep_Row_Somewhere();
    void Tell_Where(const std::filesystem::path& kept);
    void Set_Finish(Finish finish);
    void Show_Stored();
    void Take_Logged_Row(const std::string& row, bool at_gate);
    void Send_PIREP_Of(bool was_logged_before);
    void Tick();
    void Position_Tick();
    void Weather_Tick(std::size_t end);
    void VATSIM_Tick();
    void Load_Flight_Plan();
    void Set_Rules(bool instrument);
    void After_Step(std::function<void()> work);
    void Run_What_Waited();

    void FlightOFF();
    void FlightON();
    void TouchAndGo();
    void Tell_No_Airport(const std::string& where);
    void Tell_Elsewhere(const std::string& away_nm);
    void FlightAtGate();
    [[nodiscard]] bool Awaits_Destination_Weather() const;
    void End_Tracking();
    void Settle_At_Gate();
    void Interruption(std::string_view event);
    void Step_Ended();
    void Take_Airport(std::size_t end, const std::string& code, const std::string& name);
    void Take_Engine_Airports();
    void NewLogEntrySaveFail();

    void Schedule_Weather(std::size_t end);
    void Take_Weather(std::size_t end, const std::string& report);
    [[nodiscard]] bool May_Ask() const;
    [[nodiscard]] bool Polls_Network() const;
    void Drop_Requests();
    void Note_Due_PIREP(const std::string& row, bool was_logged_before);
    void Take_Up_Due_PIREPs();
    [[nodiscard]] bool Sends_PIREPs() const;
    void Queue_PIREP();
    void Post_PIREPs();
    void Post_PIREP(const PIREP_Post& post);
    void Tell_Of_Uncertain_PIREP(const PIREP_Post& post);
    void End_Posts(Closing how);

    void Create_Log_Entry();
    void Note_Row_To_Be_Logged(const std::string& row);
    [[nodiscard]] bool Stands_In_Log(const std::string& row);
    [[nodiscard]] bool Logs_By_Itself() const;
    [[nodiscard]] bool Has_Flight_To_Keep() const;
    bool Persist();
    void Store_Panel();
    void Store_Tick();
    void Restore();
    void Restore_Panel();
    void Take_Row(const std::string& row);
    [[nodiscard]] bool Airborne_By_Engine() const;

    [[nodiscard]] std::filesystem::path Optional_Fields_File() const;
    void Load_Optional_Fields();
    void Load_VA_Fields();
    void VA_Settings();
    void Show_Page(int page);
    void Move_To_Page(int page);
    [[nodiscard]] int Last_Page() const;
    [[nodiscard]] int Page_Beside(int step) const;
    [[nodiscard]] const Control* First_Field() const;

    void Set_Active_State(bool on);
    void Set_Paused(bool paused);
    void Stop_Timers();
    void Clear_All_Fields();
    void Keep_Old_Values();
    void Clear_Old_Values();
    void Hand_Over_Codes();
    void Settle_Code(Text_Box& box, Label& name);
    void Derive_Name(const Text_Box& box, Label& name);

    Services& m_services;
    const clsAppSettings& m_settings;
    clsVASettings& m_airline;
    clsLogEntry& m_objNewLogEntry;
    frmResponse& m_response;
    Http_Options m_http;
    clsACARS* m_objACARS = nullptr;

    /// Every control of a kind, the custom fields' among them.
    std::vector<Label*> m_labels;
    std::vector<Text_Box*> m_boxes;
    std::vector<Combo_Box*> m_lists;

    bool m_has_optional_fields = false;
    bool m_has_airline_fields = false;
    /// The airline whose fields stand on the panel.
    std::string m_fields_of;
    bool m_active = false;
    bool m_paused = false;
    bool m_resume = false;
    /// At the gate, for the destination's weather.
    bool m_waiting = false;
    std::optional<Wait_Notice> m_gate_notice;
    Timer m_gate_timer;
    /// `Close` was called; how, until it is done or called off.
    std::optional<Closing> m_closing;
    bool m_closed = false;
    /// What follows once the log has the flight that is being logged.
    std::function<void()> m_on_saved;
    /// The row that could not be saved to the log was found at the start.
    bool m_save_failed = false;
    /// The row by which the flight was logged before its gate; empty: it was not.
    std::string m_row_in_log;
    std::filesystem::path m_kept_in;
    /// A field changed since the flight was stored.
    bool m_changed = false;
    /// Stores what changes while no step does: paused, waiting, at the gate.
    Timer m_store_timer;
    Finish m_finish = Finish::none;
    /// The codes of the flight were taken from a plan, or with a stored flight.
    bool m_plan_read = false;
    bool m_network_plan = false;
    /// The destination that the engine found and nobody had named before; empty: none.
    std::string m_engine_destination;
    /// Grows when what was asked for the flight so far is of no use any longer.
    int m_request_round = 0;
    int m_polled_in_round = 0;
    Poll_Pauses m_network_pauses;
    clsWinInet m_network;
    std::array<End, 2> m_ends;
    std::deque<PIREP_Post> m_posts;
    bool m_posting = false;
    Due_PIREPs m_due_pireps;
    /// A post takes up to a minute: it has a timer of its own, beside which all others go on.
    Timer m_post_timer;
    /// Minutes counted by `tmrPos` since the last position report was asked for.
    int m_position_minutes = 0;
    int m_page = 0;
    /// Commands that came while `Start` or a step ran.
    std::deque<std::function<void()>> m_after_step;
    /// What the fields showed when the finished flight was last complete.
    std::map<const Control*, std::string> m_old_values;
    std::pair<bool, bool> m_old_rules;
    Connections m_engine_connections;
    Connections m_entry_connections;
};

}  // namespace norvane
