#include "logpanel/frm_flight_log.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

#include "common/boxes.h"
#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/log_names.h"
#include "logpanel/frm_log.h"

namespace norvane {

namespace {

/// Makes a log that is empty but for one line end. A file that is there already is left alone.
void Create_Log(const std::filesystem::path& log) {
    std::filesystem::create_directories(log.parent_path());
    const int descriptor = ::open(log.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0)
        throw File_Error(errno, From_Path(log));
    ::close(descriptor);
    Append_To_File(log, cr_lf);
}

}  // namespace

frmFlightLog::frmFlightLog(Services& services, clsAppSettings& settings)
    : m_services(services), m_settings(settings) {
    hypACARS[add].clicked.Connect([this] { FlightLog_Add(); });
    hypACARS[remove].clicked.Connect([this] { FlightLog_Delete(); });
    hypACARS[activate].clicked.Connect([this] { FlightLog_Active(); });
    hypClose.clicked.Connect([this] { Close_Form(); });
    cboLogs.changed.Connect([this] { Show_Link_States(); });
    Show_Link_States();
}

void frmFlightLog::Show_Form() {
    Guarded(m_services, "frmFlightLog.Show_Form()", Show::box, [&] {
        lblActiveLog.Set_Text(m_settings.FlightLog());
        Fill_Logs(m_services, cboLogs);
        Show_Modal();
    });
}

void frmFlightLog::Show_Link_States() {
    const bool listed = cboLogs.Selected() >= 0;
    const bool other = listed && cboLogs.Text() != m_settings.FlightLog();
    hypACARS[add].Set_Enabled(!listed && !cboLogs.Text().empty());
    hypACARS[remove].Set_Enabled(other);
    hypACARS[activate].Set_Enabled(other);
}

void frmFlightLog::Say(const std::string& text, Icon icon) {
    Tell(m_services.desktop, text, icon);
}

bool frmFlightLog::FlightLog_Add() {
    bool added = false;
    Guarded(m_services, "frmFlightLog.FlightLog_Add()", Show::box, [&] {
        const std::string name = cboLogs.Text();
        const std::string fault = New_Log_Fault(m_services, name);
        if (!fault.empty()) {
            Say(fault, Icon::exclamation);
            return;
        }
        {
            const Busy_Cursor busy(m_services.desktop);
            Create_Log(Log_Path(m_services, name));
            cboLogs.Add_Entry(name);
            added = true;
        }
        Say("Flight Log: " + name + " added", Icon::information);
    });
    return added;
}

bool frmFlightLog::FlightLog_Delete() {
    bool deleted = false;
    Guarded(m_services, "frmFlightLog.FlightLog_Delete()", Show::box, [&] {
        const std::string name = cboLogs.Text();
        if (Refuse_No_Log(name) || Refuse_Active(name))
            return;
        if (Ask(m_services.desktop,
                "Are you sure you want to delete the " + name + " flight log?") != Answer::yes)
            return;
        {
            const Busy_Cursor busy(m_services.desktop);
            deleted = std::filesystem::remove(Log_Path(m_services, name));
            if (!deleted)
                return;
            Fill_Logs(m_services, cboLogs);
        }
        Say("Flight Log: " + name + " deleted", Icon::information);
    });
    return deleted;
}

bool frmFlightLog::FlightLog_Active() {
    bool activated = false;
    Guarded(m_services, "frmFlightLog.FlightLog_Active()", Show::box, [&] {
        if (Refuse_No_Log(cboLogs.Text()))
            return;
        {
            const Busy_Cursor busy(m_services.desktop);
            m_settings.Set_FlightLog(cboLogs.Text());
            activated = true;
            lblActiveLog.Set_Text(m_settings.FlightLog());
            Show_Link_States();
        }
        Say(m_settings.FlightLog() + " is now the active Flight Log", Icon::information);
        Close_Form();
    });
    return activated;
}

/// Only where there is no log of that name can it be one that no log may have.
bool frmFlightLog::Refuse_No_Log(const std::string& name) {
    const std::vector<std::string> logs = List_Logs(m_services);
    if (std::find(logs.begin(), logs.end(), name) != logs.end())
        return false;
    const std::string hidden = Hidden_Log_Fault(m_services, name);
    const std::string fault = hidden.empty() ? Check_Log_Name(name, {}) : hidden;
    if (!fault.empty())
        Say(fault, Icon::exclamation);
    return !fault.empty();
}

/// The pilot's flights go to the active log: it stays, by whatever name its file is found.
bool frmFlightLog::Refuse_Active(const std::string& name) {
    if (name != m_settings.FlightLog() &&
        Log_Path(m_services, name) != m_settings.FlightLog_Path()) {
        return false;
    }
    Say("The active flight log cannot be deleted.", Icon::exclamation);
    return true;
}

}  // namespace norvane
