#pragma once
// The log chooser: asks the pilot for one of the flight logs but the active one. Owned by the
// flight log panel.

#include <optional>
#include <string>
#include <string_view>

#include "common/controls.h"
#include "common/modal_form.h"

namespace norvane {

struct Services;

/// Puts the names of all flight logs, in name order, into the list; its text is empty then.
void Fill_Logs(const Services& services, Text_Combo& list);

class frmLog : public Modal_Form {
  public:
    static constexpr std::string_view title = "Select Flight Log";
    static constexpr std::string_view label = "Flight Log:";

    frmLog();

    /// The name that the pilot chose or typed, which need be no log's; none when nothing was
    /// chosen. `active` is not offered.
    [[nodiscard]] std::optional<std::string> Select_FlightLog(const Services& services,
                                                              std::string_view active);

    Text_Combo cboLogs;
    Link hypOK{"OK"};
    Link hypCancel{"Cancel"};

  private:
    bool m_accepted = false;
};

}  // namespace norvane
