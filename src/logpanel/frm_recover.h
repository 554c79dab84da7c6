#pragma once
// The dialog "Recover Unsaved Flights": what stands in ".unsaved" files, and which of it goes into
// the active log. Owned by the program, opened by the main window. Failures are reported under
// "frmRecover." and the operation's name.

#include <deque>
#include <string_view>
#include <vector>

#include "common/controls.h"
#include "common/modal_form.h"
#include "flightlog/unsaved_rows.h"
#include "logpanel/frm_report.h"

namespace norvane {

class clsAppSettings;
class ucFlightLog;

class frmRecover : public Modal_Form {
  public:
    static constexpr std::string_view title = "Recover Unsaved Flights";
    static constexpr std::string_view heading = "Flights and edits that are in no flight log";

    frmRecover(Services& services, const clsAppSettings& settings, ucFlightLog& log);

    /// Opens the dialog and returns when it is closed; a message where nothing is unsaved.
    void Show_Form();

    /// One line for each row, unmarked; made anew each time the form opens.
    std::deque<frmReport::Entry> lvwRows;
    /// The log that they go into.
    Label lblActiveLog;
    Link hypRecover{"Add the Marked Ones to the Active Flight Log"};
    Link hypClose{"Close"};
    /// The list's pop-up menu.
    Menu_Command mnuSelectAll{"&Select All"};
    Menu_Command mnuUnselectAll{"&Unselect All"};
    Menu_Command mnuExit{"E&xit"};

  private:
    void Recover();
    void Check_All(bool checked);
    void Show_Link_State();

    Services& m_services;
    const clsAppSettings& m_settings;
    ucFlightLog& m_log;
    std::vector<Unsaved_Row> m_rows;
};

}  // namespace norvane
