#pragma once
// The pilot's preferences, one object for the whole program: loaded once from the settings store
// and from two small files of the program directory, read by everyone through its properties,
// written by the settings panel. Assigning changes the object only; `Save_Settings` writes.
// Exceptions: the active flight log is stored at once, an airline is loaded at once.

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/signal.h"
#include "common/text.h"

namespace norvane {

struct Services;
struct Setting_Row;
enum class Setting_Step;

inline constexpr std::size_t optional_field_count = 5;

/// The values as they stand in the store; zero, false and empty until loaded.
struct App_Setting_Values {
    std::string FlightLog;
    std::int32_t Color_Link_Bar = 0;
    std::int32_t Color_MenuBar_Back = 0;
    std::int32_t Color_MenuBar_Fore = 0;
    std::int32_t ACARS_Date = 0;
    std::int32_t ACARS_Time = 0;
    std::int32_t ACARS_UseTime = 0;
    std::int32_t ACARS_Fuel = 0;
    std::int32_t ACARS_Weight = 0;
    std::int32_t ACARS_EOF = 0;
    bool ACARS_ATCModel = false;
    bool OPT_MessageLog = false;
    bool OPT_AutoLog = false;
    bool OPT_ACARS_To_FS = false;
    bool OPT_PIREP = false;
    bool OPT_PIREP_SEND = false;
    std::int32_t ACARS_TakeOff_Alt = 0;
    std::int32_t ACARS_RecordArrival = 0;
    std::int32_t ACARS_TouchAndGo = 0;
    std::int32_t OPT_Recordings = 200;
    /// Empty: the link's own.
    std::string Simulator_Address;
    std::string WX_URL;
    std::int32_t VATSIM_FP = 0;
    std::string VATSIM_PID;
    std::string SimBrief_User;
    std::string Virtual_Airline;
    std::string Virtual_Airline_Log;
    std::string PilotName;
    std::string PilotID;
    std::string PilotEmail;
    std::string Airline_IATA;
    std::string Airline_ICAO;
    bool Airline_IATAPrefix = false;
};

class clsAppSettings {
  public:
    /// Loads every value; what fails is in the error log.
    explicit clsAppSettings(Services& services);

    /// Name of the active flight log, without directory and extension.
    [[nodiscard]] const std::string& FlightLog() const { return m_values.FlightLog; }
    /// Stored at once, then `ActiveLogChange`. Raises when the store fails.
    void Set_FlightLog(std::string_view value);
    /// Background of the navigation bar, 0xBBGGRR.
    [[nodiscard]] std::int32_t Color_Link_Bar() const { return m_values.Color_Link_Bar; }
    void Set_Color_Link_Bar(std::int32_t value) { m_values.Color_Link_Bar = value; }
    /// Background of the heading bar.
    [[nodiscard]] std::int32_t Color_MenuBar_Back() const { return m_values.Color_MenuBar_Back; }
    void Set_Color_MenuBar_Back(std::int32_t value) { m_values.Color_MenuBar_Back = value; }
    /// Caption colour of the heading bar.
    [[nodiscard]] std::int32_t Color_MenuBar_Fore() const { return m_values.Color_MenuBar_Fore; }
    void Set_Color_MenuBar_Fore(std::int32_t value) { m_values.Color_MenuBar_Fore = value; }
    /// Default date: 0 the simulator's, 1 the computer's.
    [[nodiscard]] std::int32_t ACARS_Date() const { return m_values.ACARS_Date; }
    void Set_ACARS_Date(std::int32_t value) { m_values.ACARS_Date = value; }
    /// Times shown: 0 local, 1 UTC.
    [[nodiscard]] std::int32_t ACARS_Time() const { return m_values.ACARS_Time; }
    void Set_ACARS_Time(std::int32_t value) { m_values.ACARS_Time = value; }
    /// Clock that times the flight: 0 the simulator's, 1 the computer's.
    [[nodiscard]] std::int32_t ACARS_UseTime() const { return m_values.ACARS_UseTime; }
    void Set_ACARS_UseTime(std::int32_t value) { m_values.ACARS_UseTime = value; }
    /// Fuel unit: 0 pounds, 1 kilograms, 2 US gallons.
    [[nodiscard]] std::int32_t ACARS_Fuel() const { return m_values.ACARS_Fuel; }
    void Set_ACARS_Fuel(std::int32_t value) { m_values.ACARS_Fuel = value; }
    /// Weight unit: 0 pounds, 1 kilograms.
    [[nodiscard]] std::int32_t ACARS_Weight() const { return m_values.ACARS_Weight; }
    void Set_ACARS_Weight(std::int32_t value) { m_values.ACARS_Weight = value; }
    /// End of flight: 0 parking brake, 1 engine shutdown, 2 both.
    [[nodiscard]] std::int32_t ACARS_EOF() const { return m_values.ACARS_EOF; }
    void Set_ACARS_EOF(std::int32_t value) { m_values.ACARS_EOF = value; }
    /// Aircraft type from "atc_model" rather than from the title.
    [[nodiscard]] bool ACARS_ATCModel() const { return m_values.ACARS_ATCModel; }
    void Set_ACARS_ATCModel(bool value);
    /// Save the ACARS message log to a file.
    [[nodiscard]] bool OPT_MessageLog() const { return m_values.OPT_MessageLog; }
    void Set_OPT_MessageLog(bool value) { m_values.OPT_MessageLog = value; }
    /// Log the flight at its end.
    [[nodiscard]] bool OPT_AutoLog() const { return m_values.OPT_AutoLog; }
    void Set_OPT_AutoLog(bool value) { m_values.OPT_AutoLog = value; }
    /// Show messages in the simulator.
    [[nodiscard]] bool OPT_ACARS_To_FS() const { return m_values.OPT_ACARS_To_FS; }
    void Set_OPT_ACARS_To_FS(bool value) { m_values.OPT_ACARS_To_FS = value; }
    /// Save PIREPs to text files.
    [[nodiscard]] bool OPT_PIREP() const { return m_values.OPT_PIREP; }
    void Set_OPT_PIREP(bool value) { m_values.OPT_PIREP = value; }
    /// Send PIREPs at the end of flight.
    [[nodiscard]] bool OPT_PIREP_SEND() const { return m_values.OPT_PIREP_SEND; }
    void Set_OPT_PIREP_SEND(bool value) { m_values.OPT_PIREP_SEND = value; }
    /// Feet above the start altitude at which OFF is recorded; 0 at lift-off.
    [[nodiscard]] std::int32_t ACARS_TakeOff_Alt() const { return m_values.ACARS_TakeOff_Alt; }
    void Set_ACARS_TakeOff_Alt(std::int32_t value) { m_values.ACARS_TakeOff_Alt = value; }
    /// Arrival recorded at: 0 IN, 1 ON.
    [[nodiscard]] std::int32_t ACARS_RecordArrival() const { return m_values.ACARS_RecordArrival; }
    void Set_ACARS_RecordArrival(std::int32_t value) { m_values.ACARS_RecordArrival = value; }
    /// Touching down and going on: 0 one flight that ends with its last landing, 1 the first
    /// landing counts.
    /// Of how many flights the recordings are kept, the latest; 0: nothing is recorded, -1: of all.
    [[nodiscard]] std::int32_t OPT_Recordings() const { return m_values.OPT_Recordings; }
    void Set_OPT_Recordings(std::int32_t value) { m_values.OPT_Recordings = value; }
    [[nodiscard]] std::int32_t ACARS_TouchAndGo() const { return m_values.ACARS_TouchAndGo; }
    void Set_ACARS_TouchAndGo(std::int32_t value) { m_values.ACARS_TouchAndGo = value; }
    /// Where the simulator is looked for unless the command line or the environment says so, as
    /// `Parse_Link_Address` reads it; empty: the link's own address.
    [[nodiscard]] const std::string& Simulator_Address() const {
        return m_values.Simulator_Address;
    }
    void Set_Simulator_Address(std::string_view value) { m_values.Simulator_Address = Trim(value); }
    /// Weather source: "FS" or a section of "bin\url.cfg".
    [[nodiscard]] const std::string& WX_URL() const { return m_values.WX_URL; }
    void Set_WX_URL(std::string_view value) { m_values.WX_URL = Trim(value); }
    /// 1: take the flight's plan from the network.
    [[nodiscard]] std::int32_t VATSIM_FP() const { return m_values.VATSIM_FP; }
    void Set_VATSIM_FP(std::int32_t value) { m_values.VATSIM_FP = value; }
    /// The pilot's network ID.
    [[nodiscard]] const std::string& VATSIM_PID() const { return m_values.VATSIM_PID; }
    void Set_VATSIM_PID(std::string_view value) { m_values.VATSIM_PID = Trim(value); }
    /// Whose plans are asked for: the pilot's name with SimBrief, or the number.
    [[nodiscard]] const std::string& SimBrief_User() const { return m_values.SimBrief_User; }
    void Set_SimBrief_User(std::string_view value) { m_values.SimBrief_User = Trim(value); }
    /// Active airline, "DEFAULT" for the default one.
    [[nodiscard]] std::string Virtual_Airline() const;
    /// Loads the airline's values, or the default airline's when its directory is missing. Raises 5
    /// for a name that no airline can have.
    void Set_Virtual_Airline(std::string_view value);
    /// The airline's flight log.
    [[nodiscard]] const std::string& Virtual_Airline_Log() const {
        return m_values.Virtual_Airline_Log;
    }
    /// Makes another log the active one, as `Set_FlightLog` does.
    void Set_Virtual_Airline_Log(std::string_view value);
    /// As above, but the active log stays.
    void Note_Virtual_Airline_Log(std::string_view value) {
        m_values.Virtual_Airline_Log = Trim(value);
    }
    [[nodiscard]] const std::string& PilotName() const { return m_values.PilotName; }
    void Set_PilotName(std::string_view value) { m_values.PilotName = Trim(value); }
    [[nodiscard]] const std::string& PilotID() const { return m_values.PilotID; }
    void Set_PilotID(std::string_view value) { m_values.PilotID = Trim(value); }
    [[nodiscard]] const std::string& PilotEmail() const { return m_values.PilotEmail; }
    void Set_PilotEmail(std::string_view value) { m_values.PilotEmail = Trim(value); }
    [[nodiscard]] const std::string& Airline_IATA() const { return m_values.Airline_IATA; }
    void Set_Airline_IATA(std::string_view value) { m_values.Airline_IATA = Trim(value); }
    [[nodiscard]] const std::string& Airline_ICAO() const { return m_values.Airline_ICAO; }
    void Set_Airline_ICAO(std::string_view value) { m_values.Airline_ICAO = Trim(value); }
    /// Flight numbers carry the IATA code.
    [[nodiscard]] bool Airline_IATAPrefix() const { return m_values.Airline_IATAPrefix; }
    void Set_Airline_IATAPrefix(bool value) { m_values.Airline_IATAPrefix = value; }
    /// The definition of optional field 0 to 4: name, "^", list entries. Any other index raises 9.
    [[nodiscard]] const std::string& OptFields(std::size_t index) const;
    /// Trimmed; line breaks become blanks.
    void Set_OptFields(std::size_t index, std::string_view definition);
    /// "logs", the active log's name and ".txt" under the program directory.
    [[nodiscard]] std::filesystem::path FlightLog_Path() const;
    /// The file "bin\\optimize" exists: long scans let events through.
    [[nodiscard]] bool Yield_In_Loop() const { return m_yield_in_loop; }

    /// All values as the store keeps them (the airline in its stored form).
    [[nodiscard]] const App_Setting_Values& Values() const { return m_values; }
    /// What `Values` would be with another airline, "DEFAULT" for the default one: for who looks
    /// at it without flying for it. What is stored and cannot be taken over has its default.
    [[nodiscard]] App_Setting_Values Values_With_Airline(std::string_view name) const;
    /// What the settings were made with.
    [[nodiscard]] Services& Outside() const { return m_services; }

    /// Loads every value; one that does not convert has its default. False when anything failed,
    /// which is then in the error log, and told to the pilot by its name.
    bool Get_Settings();
    /// Writes every value in one transaction, then raises the events. False when anything failed,
    /// as above. After a load that failed the store is copied to its ".bak" first.
    bool Save_Settings();

    Signal<> ActiveLogChange;
    Signal<> SettingsChanged;
    Signal<> ACTypeChange;

  private:
    void Get_Active_FlightLog();
    void Get_Opt_Fields();
    void Save_Opt_Fields();
    void Get_VA_Settings();
    void Load(Setting_Step step);
    /// Names and reasons of stored values that do not convert.
    using Faults = std::vector<std::pair<std::string_view, std::string>>;
    void Take_Stored(Setting_Step step, App_Setting_Values& values, Faults& faults) const;
    void Report_Faults(std::string_view procedure);
    void Save(Setting_Step step);
    /// Back to the default airline where the one that is set cannot be flown for; why, where the
    /// pilot is to know, is returned.
    [[nodiscard]] std::string Check_Airline_Directory();
    void Report_Airline(const std::string& fault);
    void Back_Up_After_Failed_Load();
    [[nodiscard]] std::filesystem::path Opt_Fields_File() const;

    Services& m_services;
    App_Setting_Values m_values;
    /// Not reported yet.
    Faults m_faults;
    std::array<std::string, optional_field_count> m_optional_fields;
    bool m_yield_in_loop = false;
    bool m_type_source_changed = false;
    /// Something in the store or in the optional field file could not be taken over.
    bool m_load_failed = false;
    bool m_optional_fields_read = false;
    /// A step that reports for itself failed since the last load or save began.
    bool m_step_failed = false;
};

}  // namespace norvane
