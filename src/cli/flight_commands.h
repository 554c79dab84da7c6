#pragma once
// The commands of `norvane-cli` about recorded flights. Each returns the exit status; what fails is
// raised or has been said already. Texts of the command line are UTF-8. A recording that cannot be
// read is named on standard error and passed over.

#include <string>
#include <vector>

#include "app/session.h"

namespace norvane {

/// Which flights are listed, as the pilot says it.
struct Flight_Choice {
    /// Days, by the country's short date or ISO; empty: any.
    std::string from;
    std::string to;
    std::string airport;
};

/// "ID<TAB>began<TAB>origin<TAB>destination<TAB>flight<TAB>aircraft<TAB>length<TAB>worst rate" for
/// each flight.
int Flight_List(Session& session, const Flight_Choice& choice);
int Flight_Show(Session& session, const std::string& id, bool json);
int Flight_Explain(Session& session, const std::string& id);
int Flight_Landing(Session& session, const std::string& id);
/// Prints nothing; an older file is written over.
int Flight_Export(Session& session, const std::string& id, const std::string& format,
                  const std::string& file);

/// "log<TAB>number<TAB>row", the number as `log rows` counts; failed when no log has the flight's
/// row.
int Flight_Row_Of(Session& session, const std::string& id);

/// Computes the flight again with the settings of then but for `changes` ("NAME=VALUE"), and prints
/// "column: logged -> computed" for each difference to its row, or "no difference". Failed when the
/// flight does not come to the gate.
int Flight_Recompute(Session& session, const std::string& id,
                     const std::vector<std::string>& changes);
/// The same, and puts the computed values into the row, which has to stand in the active log. Asks
/// first. Needs a session for writing.
int Flight_Apply(Session& session, const std::string& id, const std::vector<std::string>& changes);

/// Prints the flight's ID. Needs a session for writing, as `Flight_Rebuild`.
int Flight_Import(Session& session, const std::string& file);
int Flight_Rebuild(Session& session);
/// "ID: field: stored -> derived" for each difference; failed when there is one.
int Flight_Verify(Session& session);

}  // namespace norvane
