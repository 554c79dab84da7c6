#pragma once
// The controls of the flight log panel, without a rule of the log: its commands, its pop-up menu,
// its dialogs, and the notices by which the grid's view follows it. Owned by the panel; the window
// binds to it.

#include <array>
#include <cstddef>
#include <string>

#include "common/controls.h"
#include "common/signal.h"
#include "logpanel/frm_log.h"
#include "logpanel/frm_report.h"

namespace norvane {

/// How the grid is to be printed: its visible columns, all rows.
struct Print_Job {
    /// Over every page.
    std::string heading;
    /// What a file of it is called, without a directory or an extension; of signs that every system
    /// takes.
    std::string file_name;
};

class Flight_Log_Form {
  public:
    Flight_Log_Form() = default;
    Flight_Log_Form(const Flight_Log_Form&) = delete;
    Flight_Log_Form& operator=(const Flight_Log_Form&) = delete;

    /// Places in `hypACARS`.
    enum Command { save, undo, page_setup, print_preview, print, create_report, statistics };

    std::array<Link, 7> hypACARS{
        Link("Save"),  Link("Undo"),          Link("Page Setup"),       Link("Print Preview"),
        Link("Print"), Link("Create Report"), Link("Flight Statistics")};
    /// The grid's pop-up menu, in its order.
    Menu_Command mnuPopReport{"ACARS &Report"};
    Menu_Command mnuPopPlan{"&Import Flight Plan"};
    Menu_Command mnuPopCopy{"&Copy Flight to Log ..."};
    Menu_Command mnuPopTakeBack{"&Take Back Last Correction"};
    Menu_Command mnuPopDelete{"&Delete Log Entry"};
    Menu_Command mnuPopExit{"E&xit"};
    frmReport field_chooser;
    frmLog log_chooser;
    /// What became of edits that were not saved, for the line under the window; empty when nothing
    /// has to be told.
    Label lblStatus;
    /// The grid's caption: both totals.
    Label tdbLogCaption;

    /// Rows came, went or changed places.
    Signal<> table_changed;
    Signal<std::size_t, std::size_t> cell_changed;
    Signal<> layout_changed;
    Signal<> lists_changed;
    /// The grid must commit, or drop, an edit in progress.
    Signal<> commit_edit_wanted;
    Signal<> drop_edit_wanted;
    /// The listener shows the dialog, or prints, and returns when that is over.
    Signal<const Print_Job&> page_setup_wanted;
    Signal<const Print_Job&> preview_wanted;
    Signal<const Print_Job&> print_wanted;
};

}  // namespace norvane
