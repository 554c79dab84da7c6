#pragma once
// The dialog "Manage Flight Logs": adds, deletes and activates flight logs. Owned by the program,
// opened by the main window. Failures are reported under "frmFlightLog." and the operation's name.

#include <array>
#include <string>
#include <string_view>

#include "common/controls.h"
#include "common/modal_form.h"
#include "common/services.h"

namespace norvane {

class clsAppSettings;

class frmFlightLog : public Modal_Form {
  public:
    static constexpr std::string_view title = "Manage Flight Logs";
    static constexpr std::string_view label = "Flight Log:";

    /// Places in `hypACARS`.
    enum Command { add, remove, activate };

    frmFlightLog(Services& services, clsAppSettings& settings);

    /// Opens the dialog and returns when it is closed.
    void Show_Form();

    /// The three commands, each for the log named in `cboLogs`; true when it was done. A name that
    /// cannot be a log's is refused with a message that says why.
    bool FlightLog_Add();
    bool FlightLog_Delete();
    bool FlightLog_Active();

    Text_Combo cboLogs;
    /// The active log's name.
    Label lblActiveLog;
    std::array<Link, 3> hypACARS{Link("Add This Flight Log"), Link("Delete This Flight Log"),
                                 Link("Make This the Active Flight Log")};
    Link hypClose{"Close"};

  private:
    void Show_Link_States();
    void Say(const std::string& text, Icon icon);
    [[nodiscard]] bool Refuse_No_Log(const std::string& name);
    [[nodiscard]] bool Refuse_Active(const std::string& name);

    Services& m_services;
    clsAppSettings& m_settings;
};

}  // namespace norvane
