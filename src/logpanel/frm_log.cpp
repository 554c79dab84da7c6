#include "logpanel/frm_log.h"

#include <vector>

#include "config/log_names.h"

namespace norvane {

void Fill_Logs(const Services& services, Text_Combo& list) {
    list.Set_Entries(List_Logs(services));
}

frmLog::frmLog() {
    const auto offer = [this] { hypOK.Set_Enabled(!cboLogs.Text().empty()); };
    cboLogs.changed.Connect(offer);
    offer();
    hypOK.clicked.Connect([this] {
        m_accepted = true;
        Close_Form();
    });
    hypCancel.clicked.Connect([this] { Close_Form(); });
}

std::optional<std::string> frmLog::Select_FlightLog(const Services& services,
                                                    std::string_view active) {
    if (Is_Open())
        return std::nullopt;
    std::vector<std::string> names = List_Logs(services);
    std::erase(names, active);
    cboLogs.Set_Entries(std::move(names));
    m_accepted = false;
    Show_Modal();
    if (!m_accepted)
        return std::nullopt;
    return cboLogs.Text();
}

}  // namespace norvane
