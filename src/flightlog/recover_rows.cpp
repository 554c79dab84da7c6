// The part of the flight log panel that takes back what was kept in ".unsaved" files.

#include <optional>

#include "common/log_error.h"
#include "common/services.h"
#include "flightlog/log_line.h"
#include "flightlog/uc_flight_log.h"
#include "flightlog/unsaved_rows.h"

namespace norvane {

namespace {

/// The row that the line is an edited one of, or stands in already.
std::optional<std::size_t> Row_Of(const Log_Table& table, const std::string& line) {
    for (std::size_t row = table.Row_Count(); row-- > 0;) {
        if (table.Get(row, log_column::date) == Field_Of(line, log_column::date) &&
            Same_Flight(line, table.Line(row))) {
            return row;
        }
    }
    return std::nullopt;
}

}  // namespace

bool ucFlightLog::Recover_Rows(const std::vector<std::string>& lines) {
    bool saved = false;
    Guarded(m_services, "ucFlightLog.Recover_Rows()", Show::box, [&] {
        commit_edit_wanted.emit();
        for (const std::string& line : lines) {
            auto row = Row_Of(m_table, line);
            if (!row) {
                row = m_table.Row_Count();
                m_table.Resize(*row + 1);
            }
            m_table.Set_Line(*row, line);
        }
        m_changed = true;
        m_unsaved_edits = true;
        table_changed.emit();
        // Whatever is killed in between finds the rows in the log, and passes them over.
        saved = Save_And_Tell([&] { Drop_Saved_Rows(m_services); });
    });
    return saved;
}

}  // namespace norvane
