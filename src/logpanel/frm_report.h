#pragma once
// The field chooser: which columns of the log a logbook or a printout holds. Owned by the flight
// log panel, whose report field list it changes.

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "common/controls.h"
#include "common/modal_form.h"
#include "common/signal.h"
#include "flightlog/log_reports.h"

namespace norvane {

class frmReport : public Modal_Form {
  public:
    static constexpr std::string_view title = "Create Report";
    static constexpr std::string_view heading = "Logbook Report Fields";

    /// One line of the check list.
    struct Entry {
        std::string caption;
        Check_Box box;
    };

    frmReport();

    /// Marks every field as included and asks the pilot; true when the pilot accepted, with the
    /// marks as chosen. Otherwise they stay as they are then.
    bool Get_Selections(std::vector<Report_Field>& fields);

    /// The check list, in the order of the fields; made anew each time the form opens.
    std::deque<Entry> lvwFields;
    Link hypOK{"OK"};
    Link hypCancel{"Cancel"};
    /// The list's pop-up menu.
    Menu_Command mnuSelectAll{"&Select All"};
    Menu_Command mnuUnselectAll{"&Unselect All"};
    Menu_Command mnuExit{"E&xit"};

  private:
    void Check_All(bool checked);

    bool m_accepted = false;
};

}  // namespace norvane
