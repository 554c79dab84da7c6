// The part of the flight log panel that reports and prints.

#include <fmt/format.h>

#include "common/date_time.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "flightlog/uc_flight_log.h"

namespace norvane {

void ucFlightLog::Connect_Reports() {
    hypACARS[page_setup].clicked.connect([this] { Grid_Page_Setup(); });
    hypACARS[print_preview].clicked.connect([this] { Grid_Print_Preview(); });
    hypACARS[print].clicked.connect([this] { Grid_Print(); });
}

void ucFlightLog::Make_Report_Field_List() {
    Guarded(m_services, "ucFlightLog.Make_Report_Field_List()", Show::box, [&] {
        lvwLog.clear();
        for (std::size_t column = 0; column < m_layout.columns.size(); ++column) {
            const std::string& caption = m_layout.columns.at(column).caption;
            if (!caption.empty())
                lvwLog.push_back({caption, column, true});
        }
    });
}

/// False, with a message, for a log without rows.
bool ucFlightLog::Has_Entries() {
    if (m_table.Row_Count() > 0)
        return true;
    m_services.desktop.Show_Message({"There are no log entries to include in the report",
                                     std::string(product_name), Icon::information, Buttons::ok});
    return false;
}

void ucFlightLog::Fields_To_Print(bool visible) {
    for (const Report_Field& field : lvwLog) {
        if (!field.included)
            m_layout.columns.at(field.column).visible = visible;
    }
    layout_changed.emit();
}

Print_Job ucFlightLog::Print_Setup() const {
    const Date_Time now = m_services.clock.Local_Now();
    return {fmt::format("Flight Log: [{}]{} {:02}:{:02}:{:02}", m_settings.FlightLog(),
                        Format_Date(now.date, m_services.regional.short_date), now.time.hour,
                        now.time.minute, now.time.second),
            !m_page_set_up};
}

void ucFlightLog::Grid_Page_Setup() {
    Guarded(m_services, "ucFlightLog.Grid_Page_Setup()", Show::box, [&] {
        page_setup_wanted.emit(Print_Setup());
        m_page_set_up = true;
    });
}

void ucFlightLog::Grid_Print_Preview() {
    Guarded(m_services, "ucFlightLog.Grid_Print_Preview()", Show::box,
            [&] { Print_Grid(preview_wanted); });
}

void ucFlightLog::Grid_Print() {
    Guarded(m_services, "ucFlightLog.Grid_Print()", Show::box, [&] { Print_Grid(print_wanted); });
}

void ucFlightLog::Print_Grid(const sigc::signal<void(const Print_Job&)>& wanted) {
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
    commit_edit_wanted.emit();
    if (!Has_Entries() || !field_chooser.Get_Selections(lvwLog))
        return;
    Fields_To_Print(false);
    wanted.emit(Print_Setup());
}

}  // namespace norvane
