#pragma once
// The settings panel: every setting on four tabs, loaded from the settings object, written back
// with "Save" only. What must not change in flight is locked while a flight is tracked or stored.
// One object, owned by the program; its controls are public models that the window binds to.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/controls.h"
#include "common/signal.h"
#include "config/cls_app_settings.h"
#include "settingspanel/frm_airline.h"

namespace norvane {

struct Services;
class clsVASettings;

class ucSettings {
  public:
    enum Page { appearance, acars, flight_log, virtual_airline };
    static constexpr std::array<std::string_view, 4> page_captions = {
        "Appearance", "ACARS", "Flight Log", "Virtual Airline"};
    /// Places in `swColor` and `cmdColor`.
    enum Color { link_bar, menu_bar_back, menu_bar_fore };
    /// Places in `chkACARS`.
    enum Option { auto_log, message_log, acars_to_fs, save_pirep, send_pirep, vatsim };
    /// Places in `optACARS`.
    enum Take_Off { on_ground_flag, take_off_altitude };
    /// Places in `txtPilot`.
    enum Pilot_Field { pilot_name, pilot_email, pilot_id, iata, icao };

    ucSettings(Services& services, clsAppSettings& settings, clsVASettings& airline);
    ucSettings(const ucSettings&) = delete;
    ucSettings& operator=(const ucSettings&) = delete;

    /// False locks what must not change in flight: while a flight is tracked, or stored.
    void ACARS_STATE(bool enabled);
    /// Lists airlines and flight logs anew. What is chosen and typed beside them stays, unless the
    /// airline is gone: then the page shows what the settings have.
    void Refresh_VA_Information();
    /// The pilot turns to another panel: an airline or log that was looked at is no longer shown as
    /// if it were set.
    void Leave();

    [[nodiscard]] Page Shown_Page() const { return m_page; }
    void Choose_Tab(Page page);
    Signal<> Page_Changed;

    /// A list of the ACARS page with what the window shows beside it.
    struct Captioned_List {
        Combo_Box& list;
        /// Empty where the list stands without one.
        std::string_view caption;
        /// Empty where there is none.
        std::string_view tooltip;
    };
    /// The lists of the ACARS page but that of the take-off altitude, in their order.
    [[nodiscard]] std::vector<Captioned_List> ACARS_Lists();

    static constexpr std::array<std::string_view, 3> color_captions = {
        "Link Bar Background Color:", "Menu Bar Background Color:", "Menu Bar Caption Color:"};
    std::array<Swatch, 3> swColor;
    /// Each opens the colour chooser for its swatch.
    std::array<Link, 3> cmdColor{Link("Choose ..."), Link("Choose ..."), Link("Choose ...")};
    Link cmdReset{"Reset Default Colors:"};

    Combo_Box cboDate;
    Combo_Box cboEOF;
    Combo_Box cboWeight;
    Combo_Box cboFuel;
    Combo_Box cboTime;
    Combo_Box cboATCModel;
    Combo_Box cboRecordArrival;
    Combo_Box cboTouchAndGo;
    /// "FS" and the sections of "bin\url.cfg".
    Combo_Box cboWX;
    Combo_Box cboUseTime;

    static constexpr std::string_view simulator_caption = "Simulator Address:";
    [[nodiscard]] static std::string Simulator_Tooltip();
    Text_Box txtSimulator;

    static constexpr std::string_view take_off_caption = "Record Take Off:";
    static constexpr std::array<std::string_view, 2> take_off_options = {
        "Use FS On Ground Flag", "Specitfy Take Off Altitude"};
    std::array<Option_Button, 2> optACARS;
    static constexpr std::string_view take_off_tooltip =
        "The altitude above the ground that the aircraft must reach for the OFF time to be "
        "recorded";
    Combo_Box cboTakeOffAlt;

    static constexpr std::array<std::string_view, 6> option_captions = {
        "Auto Log Flight", "Save ACARS Message Log",      "Send Time and Position Reports to FS",
        "Save PIREPs",     "Auto Send PIREPs to Airline", "Retrieve VATSIM Flight Information"};
    std::array<Check_Box, 6> chkACARS;
    static constexpr std::string_view vatsim_pid_caption = "VATSIM PID:";
    Text_Box txtVATSIM_PID;
    static constexpr std::string_view simbrief_caption = "SimBrief User:";
    /// Usable at any time: no figure of a flight is made by it.
    Text_Box txtSimBrief_User;

    /// One optional field of the flight log.
    struct Field_Row {
        Text_Box txtName;
        /// 0 "Free Text", 1 "Drop List".
        Combo_Box cboType;
        Text_Box txtList{Field_Lines::list_entries};
    };
    static constexpr std::string_view field_name_caption = "Field Name:";
    static constexpr std::string_view field_type_caption = "Field Type:";
    static constexpr std::string_view field_list_caption =
        "Field List: ( | delimited  value|value|value)";
    std::array<Field_Row, optional_field_count> optFields;
    static constexpr std::string_view recordings_caption = "Keep Recordings Of:";
    static constexpr std::string_view recordings_tooltip =
        "A flight's track, landing and times can be computed again while its recording is kept; "
        "what is known of a flight stays in any case";
    Combo_Box cboRecordings;

    static constexpr std::string_view airline_caption = "Virtual Airline:";
    static constexpr std::string_view airline_tooltip =
        "Select the active Virtual Airline Setup (VA Folder) ";
    Combo_Box cboVA;
    static constexpr std::string_view log_caption = "Default Log:";
    static constexpr std::string_view log_tooltip =
        "Select a default flight log for this virtual airline";
    Combo_Box cboLog;
    /// Around the two lists; usable, and shown, where there are airlines to choose from.
    Label fraVA{"Virtual Airline"};
    static constexpr std::array<std::string_view, 5> pilot_captions = {
        "Pilot Name:", "Pilot Email:", "Pilot ID:", "IATA:", "ICAO:"};
    std::array<Text_Box, 5> txtPilot;
    /// Beside the two code fields.
    std::array<Link, 2> hypAirline{Link("Airline"), Link("Airline")};
    static constexpr std::string_view prefix_caption = "Display Flight Number with IATA Prefix";
    Check_Box chkIATAPrefix;

    /// Why most of the panel is grey; shown while it is.
    Label lblLocked{"Locked while a flight is tracked or stored"};
    Link hypSave{"Save"};
    Link hypCancel{"Cancel"};
    frmAirline airline_lookup;

  private:
    void UCI();
    void Connect();
    void Load_WX_Combo();
    void Load_Flight_Logs();
    void Get_Settings();
    void Get_Opt_Fields();
    void Get_Recordings();
    void Get_VA_Settings();
    void Get_Airline_Info();
    void Save_Settings();
    void Enable_Controls();
    void Show_Sending();
    void Choose_Take_Off(Take_Off choice);
    void Choose_Airline();
    void Show_Airline(const App_Setting_Values& values);
    void Follow_IATA();
    bool Refuse_Address();
    bool May_Move_Values(const std::vector<std::string>& definitions);
    void Assign_Flight_Settings();
    [[nodiscard]] std::string Assign_Airline_Settings();
    [[nodiscard]] bool Assign_And_Save(const std::vector<std::string>& definitions,
                                       std::string& log);
    void Tell_Saved(const std::vector<std::string>& definitions, const std::string& log);

    Services& m_services;
    clsAppSettings& m_settings;
    clsVASettings& m_airline;
    Page m_page = appearance;
    /// Whose fields the page "Virtual Airline" shows; the list may lack the one that is set.
    std::string m_shown_airline;
    bool m_unlocked = true;
    Connections m_connections;
};

}  // namespace norvane
