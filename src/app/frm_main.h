#pragma once
// The main window as a plain model: caption, place, status bar, menu commands, keys, the navigation
// frame with its panels, and the order in which all of it ends. Owned by the program's `main`; the
// window binds to it.

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "app/program.h"
#include "app/uc_app_frame.h"
#include "common/controls.h"
#include "common/signal.h"
#include "common/text.h"
#include "common/timer_queue.h"

namespace norvane {

/// The window's panels, in the order of the status bar.
enum class Status_Panel { flight_log, acars, simulator, local, time, date };
inline constexpr std::size_t status_panel_count = 6;

/// A menu of the menu bar; null is a separator.
struct Menu {
    std::string_view caption;
    std::vector<Menu_Command*> commands;
};

/// Keys that the window sees before its controls.
enum class Window_Key { f1, f2, f3, f4, other };

/// Where the window stands on the screen, in twips, and how large it is. While it is maximised the
/// rest tells what it goes back to.
struct Window_Place {
    int left = 1000;
    int top = 1000;
    int width = 15000;
    int height = 7515;
    bool maximised = false;

    bool operator==(const Window_Place&) const = default;
};

class frmMain {
  public:
    explicit frmMain(Program& program);
    frmMain(const frmMain&) = delete;
    frmMain& operator=(const frmMain&) = delete;

    /// Where the window was left.
    [[nodiscard]] const Window_Place& Place() const { return m_place; }
    /// The pilot moved the window, gave it another size, or maximised it. Where a minimised window
    /// says it stands is no place to come back to and is passed over.
    void Set_Place(const Window_Place& place);
    void Set_Minimised(bool minimised);
    /// The product's name, with the ACARS state behind it while a flight is paused; "NV " and the
    /// state while minimised.
    [[nodiscard]] std::string Caption() const;

    /// True when the key ran a command.
    bool Key(Window_Key key);
    [[nodiscard]] const std::vector<Menu>& Menus() const { return m_menus; }
    /// The menu's visible commands, separators only between two of them.
    [[nodiscard]] static std::vector<Menu_Command*> Shown(const Menu& menu);

    /// Asks about what is not saved; unless the pilot leaves a question, which calls the closing
    /// off, ends tracking, keeps the window's place and closes link and flight log, then raises
    /// `Closed`: at once, or at the end of the step that is running. A second call does nothing,
    /// also while the pilot is asked. `Closed` may come from deep within a
    /// procedure of the panel: a listener ends the event loop and destroys nothing yet.
    void Form_Unload(ucACARS::Closing how);
    Signal<> Closed;

    [[nodiscard]] const Label& Status(Status_Panel panel) const {
        return barStatus[static_cast<std::size_t>(panel)];
    }
    /// Background of each panel's title, 0xBBGGRR.
    [[nodiscard]] int Title_BackColor() const { return m_title_back_color; }
    /// Caption, or the title's colour, is another one.
    Signal<> changed;

    std::array<Label, status_panel_count> barStatus;
    Frame_Panel pnlACARS{"ucACARS"};
    Frame_Panel pnlMSG{"ucMSG"};
    Frame_Panel pnlFlightLog{"ucFlightLog"};
    Frame_Panel pnlStats{"ucStats"};
    Frame_Panel pnlSettings{"ucSettings"};
    ucAppFrame frame;
    /// The status bar's UTC clock.
    Timer ZTimer;

    Menu_Command mnuFileFSWorld{"&FS World Locations ..."};
    Menu_Command mnuFileLoadAC{"&Load Aircraft Types from Flight Simulator"};
    Menu_Command mnuFileSendPIREP{"&Send PIREP ..."};
    Menu_Command mnuFileExit{"E&xit"};
    Menu_Command mnuFlightLogsManage{"&Manage Flight Logs ..."};
    Menu_Command mnuFlightLogsRestoreLog{"&Restore Default Flight Log Sizing "};
    Menu_Command mnuFlightLogConvert{"&Convert MS Flight Simulator Flight Log ..."};
    Menu_Command mnuFlightLogsRecover{"Recover &Unsaved Flights ..."};
    Menu_Command mnuHelpICAO{"Airport Name/ICAO &Lookup ..."};
    Menu_Command mnuHelpContents{"&Contents ..."};
    Menu_Command mnuHelpAbout{"&About " + std::string(product_name) + " ..."};

  private:
    void Form_Initialize();
    void Add_Menus();
    void Connect();
    void Connect_Flight_Log();
    void Connect_Dialogs();
    void Connect_Engine();
    void Show_Help();
    void Lock_Settings();
    void Show_Pause();
    void Say(std::string_view text, Icon icon);
    void Read_Place();
    void Save_Place();
    void Apply_Colors();
    void Hide_Display_VA_Options();
    bool Run(Menu_Command& command);
    void Show_Log_Name();
    void Show_UTC();
    void Show_Time_And_Date();
    void Keep_Place();
    void Unloaded();
    void Set_Status(Status_Panel panel, std::string_view text) {
        barStatus[static_cast<std::size_t>(panel)].Set_Text(text);
    }

    Program& m_program;
    /// Time of day and date of the status bar.
    Timer m_clock_timer;
    std::vector<Menu> m_menus;
    Window_Place m_place;
    int m_title_back_color = 0;
    bool m_minimised = false;
    bool m_paused = false;
    Connections m_connections;
};

}  // namespace norvane
