#pragma once
// The ACARS engine: one object, driven by the ACARS panel. `Start` opens the link and identifies
// aircraft and airport; `Refresh`, every 500 ms, is one sampling step: it samples the simulator,
// advances the flight phases (before OUT, OUT, OFF, ON, IN), captures each event's figures once and
// reports everything as events. A step is whole or undone: when a read fails, the flight stands as
// it stood before the step, and the step's events are not raised.

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "acars/acars_events.h"
#include "common/great_circle.h"

namespace norvane {

struct Services;
class clsAppSettings;
class clsUTC;
class clsVASettings;
class modFSUIPC;
class ACARS_Engine;

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

    /// Messages are on their way into the simulator, or stand there for their time.
    [[nodiscard]] bool Is_Showing_Messages() const;
    /// True while `Start` or a step runs.
    [[nodiscard]] bool Is_Stepping() const;
    /// False when what the step before stored, listeners' writes included, was lost with its
    /// transaction.
    [[nodiscard]] bool Was_Stored() const;
    [[nodiscard]] const std::string& TIME_OUT() const;
    [[nodiscard]] const std::string& TIME_OFF() const;
    [[nodiscard]] const std::string& TIME_ON() const;
    [[nodiscard]] const std::string& TIME_IN() const;
    [[nodiscard]] const std::string& LOCAL_TIME_OUT() const;
    [[nodiscard]] const std::string& LOCAL_TIME_OFF() const;
    [[nodiscard]] const std::string& LOCAL_TIME_ON() const;
    [[nodiscard]] const std::string& LOCAL_TIME_IN() const;
    /// The flight's date in the short date pattern, empty before `Start`.
    [[nodiscard]] const std::string& Flight_Date() const;
    [[nodiscard]] const std::string& FSUIPC_Version() const;
    [[nodiscard]] const std::string& FS_VERSION() const;
    [[nodiscard]] const std::string& FS_Path() const;
    /// World file names of the connected simulator: "fs9.wld", or "fs2002.wld" for the older ones.
    [[nodiscard]] std::string World() const;
    [[nodiscard]] std::string WorldUD() const;
    /// The nearest airports as the engine found them, whatever the panel shows; empty before.
    [[nodiscard]] const std::string& Departure_ICAO() const;
    [[nodiscard]] const std::string& Departure_Name() const;
    [[nodiscard]] const std::string& Arrival_ICAO() const;
    [[nodiscard]] const std::string& Arrival_Name() const;

    /// The flight number that messages carry from now on.
    void Set_Airline_Flight_Number(std::string_view number);
    void Set_Form_ICAO_Depart(std::string_view code);
    [[nodiscard]] const std::string& Form_ICAO_Depart() const;
    void Set_Form_ICAO_Arrive(std::string_view code);
    [[nodiscard]] const std::string& Form_ICAO_Arrive() const;

  private:
    std::unique_ptr<ACARS_Engine> m_engine;
};

/// The airport name for an ICAO code: of the first line of "bin\fs9.wld" that holds the code, case
/// ignored; empty when there is none or the file cannot be read (reported silently).
[[nodiscard]] std::string Get_Airport_Name(Services& services, std::string_view icao);

}  // namespace norvane
