#include "logpanel/frm_convert_log.h"

#include <string>
#include <vector>

#include "common/boxes.h"
#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/log_names.h"
#include "flightlog/mod_fs_log.h"

namespace norvane {

namespace {

/// A path of more parts is shown with its first and its last ones only.
constexpr std::size_t parts_shown = 5;
constexpr std::size_t first_parts = 2;
constexpr std::size_t last_parts = 2;

std::string Shortened(const std::filesystem::path& file) {
    std::string path = From_Path(file);
    const std::vector<std::string> parts = Split(path, '/');
    if (parts.size() <= parts_shown)
        return path;
    const std::vector<std::string> first(parts.begin(), parts.begin() + first_parts);
    const std::vector<std::string> last(parts.end() - last_parts, parts.end());
    return Join(first, "/") + "/../" + Join(last, "/");
}

}  // namespace

frmConvertLog::frmConvertLog(Services& services) : m_services(services) {
    hypACARS[0].clicked.Connect([this] { FlightLog_Select(); });
    hypACARS[1].clicked.Connect([this] { FlightLog_Convert(); });
    hypClose.clicked.Connect([this] { Close_Form(); });
    lblSelectedLog.changed.Connect([this] { Show_Link_State(); });
    txtName.changed.Connect([this] { Show_Link_State(); });
    Show_Link_State();
}

void frmConvertLog::Show_Form() {
    Guarded(m_services, "frmConvertLog.Show_Form()", Show::box, [&] {
        m_source.clear();
        lblSelectedLog.Set_Text(empty_field);
        txtName.Set_Text("");
        lblStatus.Set_Text("");
        Show_Modal();
    });
}

void frmConvertLog::Show_Link_State() {
    hypACARS[1].Set_Enabled(!Is_Empty_Field(lblSelectedLog.Text()) && !txtName.Text().empty());
}

void frmConvertLog::FlightLog_Select() {
    Guarded(m_services, "frmConvertLog.FlightLog_Select()", Show::box, [&] {
        const std::filesystem::path chosen = m_services.desktop.Choose_File(
            {"Select an FS Flight Log File", "Log Files (*.log)|*.log", m_source.parent_path()});
        if (chosen.empty())
            return;
        m_source = chosen;
        lblSelectedLog.Set_Text(Shortened(m_source));
    });
}

void frmConvertLog::FlightLog_Convert() {
    Guarded(m_services, "frmConvertLog.FlightLog_Convert()", Show::box, [&] {
        const std::string name = txtName.Text();
        const std::string fault = Check_Log_Name(name, {});
        if (!fault.empty()) {
            Tell(m_services.desktop, fault, Icon::exclamation);
            return;
        }
        std::filesystem::path converted;
        {
            const Busy_Cursor busy(m_services.desktop);
            lblStatus.Set_Text("");
            m_services.desktop.Process_Events();
            converted = modFSLog::Convert(m_services, m_source, name);
            lblStatus.Set_Text("Log-> " + name);
        }
        Tell(m_services.desktop, "FS Flight Log converted");
        Offer_As_Log(converted, name);
    });
}

void frmConvertLog::Offer_As_Log(const std::filesystem::path& converted, const std::string& name) {
    const std::string where = "The converted flights are in " + From_Path(converted) + ".";
    const std::string fault = New_Log_Fault(m_services, name);
    if (!fault.empty()) {
        Tell(m_services.desktop,
             where + "  They were not made a flight log of their own: " + fault);
        return;
    }
    if (Ask(m_services.desktop, where + "  Would you like to have them as the flight log \"" +
                                    name + "\", too?") != Answer::yes) {
        return;
    }
    const auto log = Log_Path(m_services, name);
    std::filesystem::create_directories(log.parent_path());
    Write_File_Atomically(log, Read_File(converted));
    Tell(m_services.desktop,
         "Flight Log: " + name + " added.  \"Manage Flight Logs ...\" makes it the active one.");
}

}  // namespace norvane
