#include "logpanel/frm_recover.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>

#include "common/boxes.h"
#include "common/code_page.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/cls_app_settings.h"
#include "flightlog/log_columns.h"
#include "flightlog/log_line.h"
#include "logpanel/uc_flight_log.h"

namespace norvane {

namespace {

/// "1/2/2008  BA 1  KJFK - KBOS  0900  B738   (My Flight Log.unsaved)".
std::string Caption_Of(const Unsaved_Row& row) {
    const auto field = [&](std::size_t column) { return Field_Of(row.line, column); };
    std::string caption(field(log_column::date));
    if (caption.empty())
        caption = "No date";
    if (!field(log_column::origin).empty() || !field(log_column::destination).empty()) {
        caption +=
            fmt::format("  {} - {}", field(log_column::origin), field(log_column::destination));
    }
    constexpr std::array described{log_column::time_out, log_column::aircraft_type,
                                   log_column::comments};
    for (const std::size_t column : described) {
        if (!field(column).empty())
            caption += fmt::format("  {}", field(column));
    }
    return fmt::format("{}   ({})", caption, From_Path(row.file.filename()));
}

}  // namespace

frmRecover::frmRecover(Services& services, const clsAppSettings& settings, ucFlightLog& log)
    : m_services(services), m_settings(settings), m_log(log) {
    hypRecover.clicked.Connect([this] { Recover(); });
    hypClose.clicked.Connect([this] { Close_Form(); });
    mnuSelectAll.chosen.Connect([this] { Check_All(true); });
    mnuUnselectAll.chosen.Connect([this] { Check_All(false); });
}

void frmRecover::Show_Form() {
    if (Is_Open())
        return;
    Guarded(m_services, "frmRecover.Show_Form()", Show::box, [&] {
        {
            const Busy_Cursor busy(m_services.desktop);
            m_rows = Find_Unsaved_Rows(m_services);
        }
        if (m_rows.empty()) {
            Tell(m_services.desktop,
                 "There are no unsaved flights: all that was kept is in a flight log.");
            return;
        }
        lblActiveLog.Set_Text(m_settings.FlightLog());
        lvwRows.clear();
        for (const Unsaved_Row& row : m_rows) {
            frmReport::Entry& entry = lvwRows.emplace_back();
            entry.caption = Caption_Of(row);
            entry.box.changed.Connect([this] { Show_Link_State(); });
        }
        Show_Link_State();
        Show_Modal();
    });
}

void frmRecover::Show_Link_State() {
    hypRecover.Set_Enabled(std::any_of(lvwRows.begin(), lvwRows.end(),
                                       [](const auto& entry) { return entry.box.Checked(); }));
}

void frmRecover::Check_All(bool checked) {
    for (frmReport::Entry& entry : lvwRows)
        entry.box.Set_Checked(checked);
}

void frmRecover::Recover() {
    Guarded(m_services, "frmRecover.Recover()", Show::box, [&] {
        std::vector<std::string> chosen;
        for (std::size_t i = 0; i < lvwRows.size(); ++i) {
            if (lvwRows[i].box.Checked())
                chosen.push_back(m_rows[i].line);
        }
        if (!chosen.empty() && m_log.Recover_Rows(chosen))
            Close_Form();
    });
}

}  // namespace norvane
