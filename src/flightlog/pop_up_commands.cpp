// The part of the flight log panel that the grid's pop-up menu runs, each command for the current
// row.

#include "common/log_error.h"
#include "common/services.h"
#include "flightlog/uc_flight_log.h"

namespace norvane {

void ucFlightLog::Connect_Pop_Up() {
    mnuPopDelete.chosen.connect([this] { Delete_LogEntry(); });
}

std::optional<std::size_t> ucFlightLog::Current_Row() const {
    if (m_current_row && *m_current_row >= m_table.Row_Count())
        return std::nullopt;
    return m_current_row;
}

void ucFlightLog::Delete_LogEntry() {
    Guarded(m_services, "ucFlightLog.Delete_LogEntry()", Show::box, [&] {
        const auto row = Current_Row();
        if (!row)
            return;
        drop_edit_wanted.emit();
        m_table.Delete_Row(*row);
        table_changed.emit();
        Total_FlightTime();
    });
}

}  // namespace norvane
