// The part of the flight log panel that reports and prints.

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "common/boxes.h"
#include "common/date_time.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "flightlog/log_reports.h"
#include "logpanel/uc_flight_log.h"

namespace norvane {

namespace {

/// Writes a report and opens it: nothing is opened that is not whole.
template <class Write>
void Show_Report(Desktop& desktop, const Write& write) {
    const std::filesystem::path report = [&] {
        const Busy_Cursor busy(desktop);
        return write();
    }();
    desktop.Open_File(report);
}

/// False, with a message, for a log without rows.
bool Has_Entries(Desktop& desktop, const Log_Table& table) {
    if (table.Row_Count() > 0)
        return true;
    Tell(desktop, "There are no log entries to include in the report");
    return false;
}

}  // namespace

void ucFlightLog::Connect_Reports() {
    hypACARS[page_setup].clicked.Connect([this] { Grid_Page_Setup(); });
    hypACARS[print_preview].clicked.Connect([this] { Grid_Print_Preview(); });
    hypACARS[print].clicked.Connect([this] { Grid_Print(); });
    hypACARS[create_report].clicked.Connect([this] { Create_Report_File(); });
    hypACARS[statistics].clicked.Connect([this] { Create_Statistics_Report(); });
    mnuPopReport.chosen.Connect([this] { Create_ACARS_Report(); });
}

void ucFlightLog::Make_Report_Field_List() {
    Guarded(m_services, "ucFlightLog.Make_Report_Field_List()", Show::box,
            [&] { lvwLog = All_Report_Fields(m_layout); });
}

void ucFlightLog::Create_Report_File() {
    Guarded(m_services, "ucFlightLog.Create_Report_File()", Show::box, [&] {
        commit_edit_wanted.Emit();
        if (!Has_Entries(m_services.desktop, m_table) || !field_chooser.Get_Selections(lvwLog))
            return;
        Show_Report(m_services.desktop, [&] {
            return Write_Logbook(m_services, m_table, lvwLog, tdbLogCaption.Text());
        });
    });
}

void ucFlightLog::Create_Statistics_Report() {
    Guarded(m_services, "ucFlightLog.Create_Statistics_Report()", Show::box, [&] {
        commit_edit_wanted.Emit();
        Show_Report(m_services.desktop,
                    [&] { return Write_Statistics(m_services, m_settings, m_table); });
    });
}

void ucFlightLog::Create_ACARS_Report() {
    Guarded(m_services, "ucFlightLog.Create_ACARS_Report()", Show::box, [&] {
        commit_edit_wanted.Emit();
        const auto row = Current_Row();
        if (!row)
            return;
        Show_Report(m_services.desktop,
                    [&] { return Write_ACARS_Report(m_services, m_table, *row, m_layout); });
    });
}

void ucFlightLog::Fields_To_Print(bool visible) {
    for (const Report_Field& field : lvwLog) {
        if (!field.included)
            m_layout.columns.at(field.column).visible = visible;
    }
    layout_changed.Emit();
}

Print_Job ucFlightLog::Print_Setup() const {
    const Date_Time now = m_services.clock.Local_Now();
    const std::string& log = m_settings.FlightLog();
    const auto& [hour, minute, second] = now.time;
    std::string file_name = fmt::format("Flight Log - {} - {} {:02}-{:02}-{:02}", log,
                                        Format_Date(now.date, "yyyy-MM-dd"), hour, minute, second);
    std::replace_if(
        file_name.begin(), file_name.end(),
        [](char c) {
            return static_cast<unsigned char>(c) < ' ' || Contains("/\\:*?\"<>|", {&c, 1});
        },
        '-');
    return {
        fmt::format("Flight Log: [{}]{} {:02}:{:02}:{:02}", log,
                    Format_Date(now.date, m_services.regional.short_date), hour, minute, second),
        std::move(file_name)};
}

void ucFlightLog::Grid_Page_Setup() {
    Guarded(m_services, "ucFlightLog.Grid_Page_Setup()", Show::box,
            [&] { page_setup_wanted.Emit(Print_Setup()); });
}

void ucFlightLog::Grid_Print_Preview() {
    Guarded(m_services, "ucFlightLog.Grid_Print_Preview()", Show::box,
            [&] { Print_Grid(preview_wanted); });
}

void ucFlightLog::Grid_Print() {
    Guarded(m_services, "ucFlightLog.Grid_Print()", Show::box, [&] { Print_Grid(print_wanted); });
}

void ucFlightLog::Print_Grid(Signal<const Print_Job&>& wanted) {
    if (m_printing)
        return;
    struct Shown_Again {
        ucFlightLog& log;
        ~Shown_Again() {
            log.m_printing = false;
            log.Fields_To_Print(true);
        }
    } const shown_again{*this};
    m_printing = true;
    commit_edit_wanted.Emit();
    if (!Has_Entries(m_services.desktop, m_table) || !field_chooser.Get_Selections(lvwLog))
        return;
    Fields_To_Print(false);
    wanted.Emit(Print_Setup());
}

}  // namespace norvane
