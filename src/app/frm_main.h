#pragma once
// The main window as a plain model: caption, place, status bar, menu commands, keys, the navigation
// frame with its panels, and the order in which all of it ends. Owned by the program's `main`; the
// window binds to it.

#include <sigc++/sigc++.h>

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "app/program.h"
#include "app/uc_app_frame.h"
#include "common/controls.h"
#include "common/timer_queue.h"

namespace norvane {

/// The window's panels, in the order of the status bar.
enum class Status_Panel { flight_log, acars, simulator, local, time, date };
inline constexpr std::size_t status_panel_count = 6;

/// A menu of the menu bar; null stands for a separator.
struct Menu {
    std::string_view caption;
    std::vector<Menu_Command*> commands;
};

/// Keys that the window sees before its controls.
enum class Window_Key { f1, f2, f3, f4, other };

class frmMain {
  public:
    /// Height of the window at the start.
    static constexpr int height_twips = 7515;

    explicit frmMain(Program& program);
    ~frmMain();
    frmMain(const frmMain&) = delete;
    frmMain& operator=(const frmMain&) = delete;

    /// Where the window was left, in twips from the screen's top left corner.
    [[nodiscard]] int Left_Twips() const { return m_left_twips; }
    [[nodiscard]] int Top_Twips() const { return m_top_twips; }
    /// The window was moved, or minimised, or restored.
    void Set_Place(int left_twips, int top_twips);
    void Set_Minimised(bool minimised);
    /// The product's name, or "NV " and the ACARS state while minimised.
    [[nodiscard]] std::string Caption() const;

    /// True when the key ran a command.
    bool Key(Window_Key key);
    /// The menus with what they offer now; commands that nothing answers yet are hidden.
    [[nodiscard]] const std::vector<Menu>& Menus() const { return m_menus; }

    /// Ends tracking, keeps the window's place and closes link and flight log, then raises
    /// `Closed`: at once, or at the end of the step that is running. A second call does nothing.
    void Form_Unload(ucACARS::Closing how);
    sigc::signal<void()> Closed;

    [[nodiscard]] const Label& Status(Status_Panel panel) const {
        return barStatus[static_cast<std::size_t>(panel)];
    }
    /// Background of each panel's title, 0xBBGGRR.
    [[nodiscard]] int Title_BackColor() const;
    /// Caption, or the title's colour, is another one.
    sigc::signal<void()> changed;

    std::array<Label, status_panel_count> barStatus;
    ucAppFrame frame;
    Timer ZTimer;
    Frame_Panel pnlACARS{"ucACARS"};
    Frame_Panel pnlMSG{"ucMSG"};

    Menu_Command mnuFileFSWorld{"&FS World Locations ..."};
    Menu_Command mnuFileLoadAC{"&Load Aircraft Types from Flight Simulator"};
    Menu_Command mnuFileSendPIREP{"&Send PIREP ..."};
    Menu_Command mnuFileExit{"E&xit"};
    Menu_Command mnuFlightLogsManage{"&Manage Flight Logs ..."};
    Menu_Command mnuFlightLogsRestoreLog{"&Restore Default Flight Log Sizing "};
    Menu_Command mnuFlightLogConvert{"&Convert MS Flight Simulator Flight Log ..."};
    Menu_Command mnuHelpICAO{"Airport Name/ICAO &Lookup ..."};
    Menu_Command mnuHelpContents{"&Contents ..."};
    Menu_Command mnuHelpAbout{"&About Norvane ..."};

  private:
    Program& m_program;
    std::vector<Menu> m_menus;
    int m_left_twips = 0;
    int m_top_twips = 0;
    bool m_minimised = false;
};

}  // namespace norvane
