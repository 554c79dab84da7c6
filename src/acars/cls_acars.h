#pragma once
// The ACARS engine: one object, driven by the ACARS panel. `Start` opens the link and identifies
// aircraft and airport; `Refresh`, every 500 ms, is one sampling step: it samples the simulator,
// advances the flight phases (before OUT, OUT, OFF, ON, IN), captures each event's figures once and
// reports everything as events. A step is whole or undone: it reads the simulator, works on the
// state and holds back what it has to say; when every read succeeded, its events are raised and the
// flight is stored in one transaction, otherwise the state from before is put back. Commands that
// come while a step runs wait for its end.

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "acars/acars_events.h"
#include "acars/airports.h"
#include "acars/engine_context.h"
#include "acars/frm_fs_msg.h"
#include "common/great_circle.h"

namespace norvane {

struct Services;
class clsAppSettings;
class clsUTC;
class clsVASettings;
class modFSUIPC;

/// A whole sampling step, or a start that went through, as who records the flight sees it.
struct Engine_Step {
    enum class Kind { started, taken_up, step };
    Kind kind = Kind::step;
    const Flight_State& before;
    const Flight_State& now;
    /// In their order.
    const std::vector<Recorded_Change>& reads;
    /// The step raises events besides that of its end.
    bool has_events = false;
};

class clsACARS {
  public:
    /// What the engine works with, all of it longer lived than the engine.
    struct Parts {
        Services& services;
        modFSUIPC& link;
        const clsAppSettings& settings;
        const clsVASettings& airline;
        const clsUTC& utc;
    };

    explicit clsACARS(const Parts& parts);
    ~clsACARS();
    clsACARS(const clsACARS&) = delete;
    clsACARS& operator=(const clsACARS&) = delete;

    ACARS_Events events;
    /// Raised for a whole step, before its events and within their transaction.
    Signal<const Engine_Step&> Stepped;

    struct Start_Request {
        /// False: the link is opened and nothing else.
        bool initialise = true;
        /// True: the stored flight is taken up again.
        bool resume = false;
        std::string flight_number;
        std::string aircraft_type;
    };
    /// False when the link did not open, or failed while the figures were gathered; `error_text`
    /// then holds the link's text and the engine is as it was.
    bool Start(std::string& error_text, const Start_Request& request);
    /// What the pilot reads of a `Start` that failed: its text, and beneath it what to check here.
    [[nodiscard]] std::string For_Pilot(const std::string& error_text) const;
    /// One sampling step; does nothing while another step or `Start` runs.
    void Refresh();
    void Stop_();
    void ReStart(bool& success);
    void Paused();
    void Resume_();
    /// Writes the flight to the store, between steps.
    void Store();
    void Reset();
    void Send_Disconnect_Message();
    void Report_Position();
    void Get_Location(Position& position, double& ground_elevation_ft);
    void Send_Message(Message_Type type, std::string_view text);
    /// Shows a text in the simulator, line by line, with pauses during which events flow.
    void Write_Message_To_FS(std::string_view text);

    /// Shows a text in the simulator. False when it was stopped: the engine was reset, stopped or
    /// is gone, and nothing of it may be touched any more. For its carriers.
    bool Show_Message(std::string_view text);
    /// Messages are on their way into the simulator, or stand there for their time.
    [[nodiscard]] bool Is_Showing_Messages() const;
    /// True while `Start` or a step runs.
    [[nodiscard]] bool Is_Stepping() const { return m_stepping; }
    /// False when what the step before stored, listeners' writes included, was lost with its
    /// transaction.
    [[nodiscard]] bool Was_Stored() const { return m_stored; }
    /// The flight as it stands between steps, and within the signals of one.
    [[nodiscard]] const Flight_State& State() const { return m_context.state; }
    /// Why an event was recorded when it was; empty before.
    [[nodiscard]] const Block_Evidence& Evidence(Block_Event event) const {
        return m_context.state.evidence.at(static_cast<std::size_t>(event));
    }
    [[nodiscard]] const std::string& TIME_OUT() const {
        return m_context.state.At(Block_Event::out).time_utc;
    }
    [[nodiscard]] const std::string& TIME_OFF() const {
        return m_context.state.At(Block_Event::off).time_utc;
    }
    [[nodiscard]] const std::string& TIME_ON() const {
        return m_context.state.At(Block_Event::on).time_utc;
    }
    [[nodiscard]] const std::string& TIME_IN() const {
        return m_context.state.At(Block_Event::in).time_utc;
    }
    [[nodiscard]] const std::string& LOCAL_TIME_OUT() const {
        return m_context.state.At(Block_Event::out).time_local;
    }
    [[nodiscard]] const std::string& LOCAL_TIME_OFF() const {
        return m_context.state.At(Block_Event::off).time_local;
    }
    [[nodiscard]] const std::string& LOCAL_TIME_ON() const {
        return m_context.state.At(Block_Event::on).time_local;
    }
    [[nodiscard]] const std::string& LOCAL_TIME_IN() const {
        return m_context.state.At(Block_Event::in).time_local;
    }
    /// The flight's date in the short date pattern, empty before `Start`.
    [[nodiscard]] const std::string& Flight_Date() const { return m_context.state.flight_date; }
    [[nodiscard]] const std::string& FSUIPC_Version() const {
        return m_context.state.fsuipc_version;
    }
    [[nodiscard]] const std::string& FS_VERSION() const { return m_context.state.simulator_name; }
    [[nodiscard]] const std::string& FS_Path() const { return m_context.state.simulator_directory; }
    /// World file names of the connected simulator: "fs9.wld", or "fs2002.wld" for the older ones.
    [[nodiscard]] std::string World() const { return World_Name(FS_VERSION()); }
    [[nodiscard]] std::string WorldUD() const { return World_UD_Name(FS_VERSION()); }
    /// The nearest airports as the engine found them, whatever the panel shows; empty before.
    [[nodiscard]] const std::string& Departure_ICAO() const {
        return m_context.state.departure.icao;
    }
    [[nodiscard]] const std::string& Departure_Name() const {
        return m_context.state.departure.name;
    }
    [[nodiscard]] const std::string& Arrival_ICAO() const { return m_context.state.arrival.icao; }
    [[nodiscard]] const std::string& Arrival_Name() const { return m_context.state.arrival.name; }

    /// The flight number that messages carry from now on.
    void Set_Airline_Flight_Number(std::string_view number);
    void Set_Form_ICAO_Depart(std::string_view code) { m_form_icao_depart = code; }
    [[nodiscard]] const std::string& Form_ICAO_Depart() const { return m_form_icao_depart; }
    void Set_Form_ICAO_Arrive(std::string_view code) { m_form_icao_arrive = code; }
    [[nodiscard]] const std::string& Form_ICAO_Arrive() const { return m_form_icao_arrive; }

  private:
    bool Gather(std::string_view procedure, const std::function<void()>& work);
    void Raise_Held_Events(std::string_view procedure, Engine_Step::Kind kind);
    void Finish_Step();
    void Raise_Failure(const Sim_Reader::Failure& failure);
    void Run_When_Free(std::function<void()> command);
    void Open_And_Initialise(bool resume);
    void Send_Now(Message_Type type, std::string_view text);
    void Stop_Displays();
    void Hand_To_Carriers();
    void Queue_Message(const std::string& text);

    Engine_Context m_context;
    /// The state before the step that runs.
    Flight_State m_before;
    std::string m_form_icao_depart;
    std::string m_form_icao_arrive;
    bool m_stepping = false;
    /// The last transaction of a step went through.
    bool m_stored = true;
    /// The engine opened the link, and so closes it.
    bool m_opened_link = false;
    /// Why the last `Gather` failed, when it was no read.
    std::string m_fault;
    std::vector<std::function<void()>> m_waiting_commands;
    std::list<std::unique_ptr<frmFSMsg>> m_carriers;
    /// Shared with the displays that are under way; true tells them to end.
    std::shared_ptr<bool> m_displays_stopped = std::make_shared<bool>(false);
};

/// The airport name for an ICAO code: of the first line of "bin\fs9.wld" that holds the code, case
/// ignored; empty when there is none or the file cannot be read (reported silently).
[[nodiscard]] std::string Get_Airport_Name(Services& services, std::string_view icao);

}  // namespace norvane
