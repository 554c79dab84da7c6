#pragma once
// The dialog "Convert MS Flight Simulator Flight Log": which file, under which name. Owned by the
// program, opened by the main window. Failures are reported under "frmConvertLog." and the
// operation's name.

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "common/controls.h"
#include "common/modal_form.h"

namespace norvane {

struct Services;

class frmConvertLog : public Modal_Form {
  public:
    static constexpr std::string_view title = "Convert MS Flight Simulator Flight Log";
    static constexpr std::string_view file_label = "MS Flight Log:";
    static constexpr std::string_view name_label = "Flight Log Name:";

    explicit frmConvertLog(Services& services);

    /// Opens the dialog, empty, and returns when it is closed.
    void Show_Form();

    void FlightLog_Select();
    void FlightLog_Convert();

    /// The chosen file, shortened; the placeholder when there is none.
    Label lblSelectedLog;
    Text_Box txtName;
    Label lblStatus;
    std::array<Link, 2> hypACARS{Link("Select an FS Flight Log"),
                                 Link("Convert This FS Flight Log")};
    Link hypClose{"Close"};

  private:
    void Show_Link_State();
    void Offer_As_Log(const std::filesystem::path& converted, const std::string& name);

    Services& m_services;
    std::filesystem::path m_source;
};

}  // namespace norvane
