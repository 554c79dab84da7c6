#include "app/frm_main.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <climits>
#include <cmath>
#include <exception>
#include <utility>

#include "acarspanel/panel_fields.h"
#include "common/boxes.h"
#include "common/code_page.h"
#include "common/log_error.h"

namespace norvane {

namespace {

constexpr std::string_view initialise = "frmMain.Form_Initialize()";

constexpr std::string_view place_section = "AppPos";
/// A measure of the window's place in the store, and the least that is one.
struct Place_Row {
    std::string_view key;
    int Window_Place::*measure;
    int least;
};
constexpr std::array place_rows = {
    Place_Row{"MainLeft", &Window_Place::left, INT_MIN},
    Place_Row{"MainTop", &Window_Place::top, INT_MIN},
    Place_Row{"MainWidth", &Window_Place::width, 1},
    Place_Row{"MainHeight", &Window_Place::height, 1},
};
constexpr std::string_view state_key = "MainState";
constexpr std::string_view maximised_state = "Maximized";

/// One line of the navigation bar: title and description are the same text; `help` is the panel's
/// place in the help page.
struct Panel_Row {
    std::string_view key;
    std::string_view title;
    int icon;
    std::string_view control;
    std::string_view help;
};
constexpr std::array panel_rows = {
    Panel_Row{"ACARS", "ACARS", 1, "ucACARS", "acars"},
    Panel_Row{"ACARS Messages", "ACARS Messages", 4, "ucMSG", "acars-messages"},
    Panel_Row{"FlightLog", "Flight Log", 2, "ucFlightLog", "flight-log"},
    Panel_Row{"TimebyACType", "Time by AC Type", 3, "ucStats", "time-by-ac-type"},
    Panel_Row{"Settings", "Settings", 5, "ucSettings", "settings"},
};

/// The help page in the program directory.
constexpr std::string_view help_file = "nv.html";

constexpr std::string_view acars_off = "ACARS: OFF";
constexpr std::string_view no_simulator = "FS:";
constexpr std::string_view paused_notice =
    "FLIGHT PAUSED: nothing is recorded until you click \"Resume\" on the ACARS panel";

/// A stored measure, kept as a single-precision number; `otherwise` for a text that is none.
int Place_Twips(Settings_Store& store, const Place_Row& row, int otherwise) {
    const auto value = Parse_Number(store.Get(place_section, row.key));
    if (!value || std::fabs(*value) > FLT_MAX || Whole(*value) < row.least)
        return otherwise;
    return Whole(*value);
}

}  // namespace

frmMain::frmMain(Program& program)
    : ZTimer(program.services.desktop.Timers(), std::chrono::seconds(10)),
      m_program(program),
      m_clock_timer(program.services.desktop.Timers(), std::chrono::seconds(1)) {
    Add_Menus();
    Connect();
    Connect_Flight_Log();
    Connect_Dialogs();
    Connect_Engine();
    Guarded(m_program.services, initialise, Show::box, [this] { Form_Initialize(); });
}

void frmMain::Form_Initialize() {
    for (Frame_Panel* panel : {&pnlACARS, &pnlMSG, &pnlFlightLog, &pnlStats, &pnlSettings})
        frame.Contain(*panel);
    for (const Panel_Row& row : panel_rows)
        frame.AddItem({row.key, row.title, row.title}, row.icon, row.control);
    // A store that fails must not keep the window from standing somewhere.
    Guarded(m_program.services, initialise, Show::box, [this] { Read_Place(); });
    Show_UTC();
    Set_Status(Status_Panel::acars, acars_off);
    Hide_Display_VA_Options();
    Apply_Colors();
    Lock_Settings();
    Set_Status(Status_Panel::simulator, no_simulator);
    Show_Log_Name();
    Show_Time_And_Date();
    ZTimer.Set_Enabled(true);
    m_clock_timer.Set_Enabled(true);
}

void frmMain::Add_Menus() {
    m_menus = {
        {"&File",
         {&mnuFileFSWorld, &mnuFileLoadAC, nullptr, &mnuFileSendPIREP, nullptr, &mnuFileExit}},
        {"Flight &Logs",
         {&mnuFlightLogsManage, &mnuFlightLogsRestoreLog, &mnuFlightLogConvert,
          &mnuFlightLogsRecover}},
        {"&Help", {&mnuHelpContents, &mnuHelpICAO, nullptr, &mnuHelpAbout}},
    };
}

void frmMain::Connect() {
    frame.ItemSelected.Connect([this](const std::string&) {
        if (frame.GetActivePanel() != &pnlSettings)
            m_program.settings_panel.Leave();
    });
    mnuFileExit.chosen.Connect([this] { Form_Unload(ucACARS::Closing::by_pilot); });
    ZTimer.tick.Connect([this] { Show_UTC(); });
    m_clock_timer.tick.Connect([this] { Show_Time_And_Date(); });
    barStatus[static_cast<std::size_t>(Status_Panel::acars)].changed.Connect([this] {
        if (m_minimised)
            changed.Emit();
    });
    m_connections.Keep({
        m_program.settings.ActiveLogChange.Connect([this] { Show_Log_Name(); }),
        m_program.settings.SettingsChanged.Connect([this] { Apply_Colors(); }),
        m_program.airline.Change.Connect([this] { Hide_Display_VA_Options(); }),
        m_program.Closing.Connect([this] { Keep_Place(); }),
        m_program.Closed.Connect([this] { Unloaded(); }),
    });
}

void frmMain::Connect_Flight_Log() {
    ucFlightLog& log = m_program.flight_log;
    mnuFileLoadAC.chosen.Connect([this, &log] {
        const std::string fault = log.Load_FS_AC();
        if (fault.empty()) {
            log.Load_FS_AC_Titles();
            Say("Aircraft Types Loaded", Icon::information);
        } else {
            Say(fault, Icon::exclamation);
        }
    });
    mnuFlightLogsManage.chosen.Connect([this] {
        m_program.manage_logs.Show_Form();
        m_program.settings_panel.Refresh_VA_Information();
    });
    mnuFlightLogsRestoreLog.chosen.Connect([this, &log] {
        {
            const Busy_Cursor busy(m_program.services.desktop);
            log.Restore_Grid_Sizing();
        }
        Say("Flight Log Default Sizing Restored", Icon::information);
    });
    mnuFlightLogConvert.chosen.Connect([this] { m_program.convert_log.Show_Form(); });
    mnuFlightLogsRecover.chosen.Connect([this] { m_program.recover.Show_Form(); });
}

void frmMain::Connect_Dialogs() {
    mnuFileFSWorld.chosen.Connect([this] {
        if (!m_program.world_locations.Show_Form())
            Say("Unable to connect to Flight Simulator.  Please make sure that Flight Simulator is "
                "running.",
                Icon::exclamation);
    });
    mnuFileSendPIREP.chosen.Connect([this] { m_program.pirep_editor.Show_Form(); });
    mnuHelpICAO.chosen.Connect([this] {
        Guarded(m_program.services, "frmMain.mnuHelpICAO_Click()", Show::box,
                [this] { m_program.airport_lookup.Show_Form(); });
    });
    mnuHelpContents.chosen.Connect([this] { Show_Help(); });
    mnuHelpAbout.chosen.Connect([this] { m_program.about.Show_Form(); });
}

/// The help page, at the panel that is shown.
void frmMain::Show_Help() {
    Guarded(m_program.services, "frmMain.mnuHelpContents_Click()", Show::box, [this] {
        const auto file = m_program.services.program_directory / help_file;
        if (!std::filesystem::exists(file))
            throw Run_Error(error_number::file_not_found, "File not found: " + From_Path(file));
        const auto* row =
            std::find_if(panel_rows.begin(), panel_rows.end(),
                         [this](const Panel_Row& panel) { return panel.key == frame.ActiveKey(); });
        m_program.services.desktop.Open_File(
            file, row == panel_rows.end() ? std::string_view() : row->help);
    });
}

/// A flight in progress, or one that waits to be resumed or logged, keeps the settings that it
/// began with.
void frmMain::Lock_Settings() {
    m_program.settings_panel.ACARS_STATE(!m_program.panel.Is_Tracked_Or_Stored());
}

void frmMain::Say(std::string_view text, Icon icon) {
    Tell(m_program.services.desktop, text, icon);
}

void frmMain::Connect_Engine() {
    ACARS_Events& events = m_program.engine.events;
    const auto connect = [this](auto& event, auto&& run) {
        m_connections.Keep(event.Connect(run));
    };
    const auto show_off = [this] {
        Set_Status(Status_Panel::simulator, no_simulator);
        Set_Status(Status_Panel::acars, acars_off);
    };
    connect(events.FSTime, [this](const std::string& hhmm) {
        const bool utc = m_program.settings.ACARS_Time() == time_kind::utc;
        Set_Status(Status_Panel::simulator,
                   "FS: " + Shown_Time(hhmm, utc ? time_kind::utc : time_kind::local));
    });
    connect(events.Start, [this] {
        Set_Status(Status_Panel::acars, "ACARS: ON");
        Show_Pause();
    });
    connect(events.Paused, [this] {
        Set_Status(Status_Panel::acars, "ACARS: PAUSED");
        Show_Pause();
    });
    connect(events.Reset, show_off);
    connect(events.FlightAtGate, show_off);
    // The time of the gate's step comes behind it; and a flight may also end by "Reset".
    m_connections.Keep(m_program.panel.Active_State.Connect([this, show_off](bool active) {
        if (!active)
            show_off();
        Lock_Settings();
        Show_Pause();
    }));
    m_connections.Keep(m_program.panel.Stored_State.Connect([this] { Lock_Settings(); }));
}

/// A paused flight is told on every panel and in the title: minutes that are not recorded are lost.
void frmMain::Show_Pause() {
    const ucACARS& panel = m_program.panel;
    const bool paused = panel.Is_Active() && panel.Is_Paused();
    frame.Set_Notice(paused ? paused_notice : std::string_view());
    if (std::exchange(m_paused, paused) != paused)
        changed.Emit();
}

void frmMain::Read_Place() {
    Settings_Store& store = m_program.services.settings;
    for (const Place_Row& row : place_rows)
        m_place.*row.measure = Place_Twips(store, row, Window_Place().*row.measure);
    m_place.maximised = store.Get(place_section, state_key) == maximised_state;
}

void frmMain::Save_Place() {
    try {
        Settings_Store& store = m_program.services.settings;
        Settings_Batch batch(store);
        for (const Place_Row& row : place_rows)
            store.Set(place_section, row.key, Format_Whole(m_place.*row.measure));
        store.Set(place_section, state_key, m_place.maximised ? maximised_state : "");
    } catch (const std::exception&) {
        // The window's place is not worth a message to a pilot who leaves.
        return;
    }
}

void frmMain::Set_Place(const Window_Place& place) {
    if (!m_minimised)
        m_place = place;
}

void frmMain::Set_Minimised(bool minimised) {
    if (std::exchange(m_minimised, minimised) != minimised)
        changed.Emit();
}

std::string frmMain::Caption() const {
    const std::string& state = Status(Status_Panel::acars).Text();
    if (m_minimised)
        return "NV " + state;
    return std::string(product_name) + (m_paused ? " - " + state : std::string());
}

void frmMain::Apply_Colors() {
    const clsAppSettings& settings = m_program.settings;
    frame.Set_Colors(settings.Color_MenuBar_Back(), settings.Color_MenuBar_Fore());
    const int before = std::exchange(m_title_back_color, settings.Color_Link_Bar());
    if (before != m_title_back_color)
        changed.Emit();
}

void frmMain::Hide_Display_VA_Options() {
    Guarded(m_program.services, "frmMain.Hide_Display_VA_Options()", Show::box,
            [this] { mnuFileSendPIREP.Set_Visible(!m_program.airline.Script_PIREP().empty()); });
}

std::vector<Menu_Command*> frmMain::Shown(const Menu& menu) {
    std::vector<Menu_Command*> shown;
    bool separated = false;
    for (Menu_Command* command : menu.commands) {
        if (command == nullptr) {
            separated = !shown.empty();
        } else if (command->Visible()) {
            if (std::exchange(separated, false))
                shown.push_back(nullptr);
            shown.push_back(command);
        }
    }
    return shown;
}

bool frmMain::Key(Window_Key key) {
    switch (key) {
        case Window_Key::f1:
            return Run(mnuHelpContents);
        case Window_Key::f2:
            return Run(mnuHelpICAO);
        case Window_Key::f3:
            return Run(mnuFlightLogsManage);
        case Window_Key::f4:
            return Run(mnuFileFSWorld);
        case Window_Key::other:
            break;
    }
    return false;
}

/// Chooses the command for the pilot; false when it cannot be chosen now.
bool frmMain::Run(Menu_Command& command) {
    if (!command.Visible() || !command.Enabled())
        return false;
    command.Choose();
    return true;
}

void frmMain::Show_Log_Name() {
    Set_Status(Status_Panel::flight_log, "FLIGHT LOG: " + m_program.settings.FlightLog());
}

void frmMain::Show_UTC() {
    Set_Status(Status_Panel::local, "LOCAL: " + m_program.utc.GetUTCZ());
}

void frmMain::Show_Time_And_Date() {
    const Date_Time now = m_program.services.clock.Local_Now();
    Set_Status(Status_Panel::time, Shown_Time(Format_Hhmm(now.time), time_kind::local));
    Set_Status(Status_Panel::date, Format_Date(now.date, m_program.services.regional.short_date));
}

void frmMain::Form_Unload(ucACARS::Closing how) {
    m_program.Close(how);
}

void frmMain::Keep_Place() {
    if (!m_minimised)
        Save_Place();
}

void frmMain::Unloaded() {
    ZTimer.Set_Enabled(false);
    m_clock_timer.Set_Enabled(false);
    Closed.Emit();
}

}  // namespace norvane
