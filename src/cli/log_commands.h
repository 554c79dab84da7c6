#pragma once
// The commands of `norvane-cli` that keep flight logs: several logs, their rows, reports,
// conversion. Rows are those of the active log. Each returns the exit status; what fails is raised
// or has been said already. Texts of the command line are UTF-8. Commands that change a log take a
// session for writing, as the settings store's lock keeps other writers away from the logs, too.

#include <cstddef>
#include <string>
#include <vector>

#include "app/session.h"
#include "cli/open_log.h"

namespace norvane {

/// The logs, the active one marked with "*".
int Log_List(Session& session);
int Log_New(Session& session, const std::string& name);
/// Asks first; the active log is refused.
int Log_Remove(Session& session, const std::string& name);
int Log_Use(Session& session, const std::string& name);

int Log_Copy(Session& session, const Row_Choice& row, const std::string& name);
/// Asks first.
int Log_Delete(Session& session, const Row_Choice& row);
/// Asks whether filled cells may be overwritten; the empty ones are filled in any case.
int Log_Import_Plan(Session& session, const Row_Choice& row, const std::string& file);

/// The corrections of a row of the log `name` (empty: of the active one), oldest first:
/// "when<TAB>column<TAB>was<TAB>is<TAB>why".
int Log_History(Session& session, const Row_Choice& row, const std::string& name);
/// Prints the ID of the recorded flight that the row is of; failed without one.
int Log_Flight(Session& session, const Row_Choice& row, const std::string& name);
/// Takes the row's last correction back and saves the log. Asks first.
int Log_Undo(Session& session, const Row_Choice& row);

/// Lists what stands in ".unsaved" files and in no log, "number<TAB>file<TAB>row"; takes `all`, or
/// the rows of these numbers, into the active log.
int Log_Recover(Session& session, bool all, const std::vector<std::size_t>& rows);

/// The reports print the page's path. `fields`: captions, whatever their case, or numbers of
/// columns, from 0; none are all.
int Log_Report(Session& session, const std::vector<std::string>& fields);
int Log_Statistics(Session& session);
int Log_ACARS_Report(Session& session, const Row_Choice& row);
/// "type<TAB>hours" for each aircraft type, then the total's line; or the page of them.
int Hours(Session& session, bool report);

/// Prints the path of the converted log.
int Convert_Log(Session& session, const std::string& file, const std::string& name);

}  // namespace norvane
