// The part of the flight log panel that takes back what was kept in ".unsaved" files.

#include <optional>

#include "common/code_page.h"
#include "common/line_reader.h"
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
        // What kept the file from being read may be over.
        if (!m_file->Loaded_To_Its_End() && !m_unsaved_edits)
            Grid_Load();
        if (!m_file->Loaded_To_Its_End()) {
            throw Run_Error(error_number::path_file_access,
                            From_Path(m_file->Path()) + ": is not loaded",
                            "The flight log could not be read, so nothing was added to it.  The "
                            "rows stay in their files; please put right what keeps it from being "
                            "read, then try again.");
        }
        std::string replaced;
        for (const std::string& line : lines) {
            auto row = Row_Of(m_table, line);
            if (!row) {
                row = m_table.Row_Count();
                m_table.Resize(*row + 1);
            }
            const std::string before = m_table.Line(*row);
            if (!m_table.Is_Blank(*row) && before != line)
                replaced.append(before).append(cr_lf);
            m_table.Set_Line(*row, line);
        }
        // The log may have been edited since: what gives way is kept.
        if (!replaced.empty())
            m_file->Set_Aside(replaced);
        m_changed = true;
        m_unsaved_edits = true;
        table_changed.emit();
        // Whatever is killed in between finds the rows in the log, and passes them over.
        saved = Save_And_Tell([&] { Drop_Saved_Rows(m_services); });
    });
    return saved;
}

}  // namespace norvane
