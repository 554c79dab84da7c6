// The part of the flight log panel that takes back what was kept in ".unsaved" files.

#include <fmt/format.h>

#include <optional>

#include "common/boxes.h"
#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "flightlog/log_keeping.h"
#include "flightlog/log_line.h"
#include "flightlog/unsaved_rows.h"
#include "logpanel/uc_flight_log.h"

namespace norvane {

namespace {

/// The row that is the line, else the one that the line is an edited one of.
std::optional<std::size_t> Row_Of(const Log_Table& table, const std::string& line) {
    std::optional<std::size_t> edited;
    for (std::size_t row = table.Row_Count(); row-- > 0;) {
        if (table.Get(row, log_column::date) != Field_Of(line, log_column::date))
            continue;
        const std::string other = table.Line(row);
        if (other == line)
            return row;
        if (!edited && Same_Flight(line, other))
            edited = row;
    }
    return edited;
}

/// What became of the rows that were to be recovered.
struct Outcome {
    std::size_t added = 0;
    std::size_t replaced = 0;
    std::size_t already_there = 0;
    /// The lines that gave way, each with CR LF.
    std::string gave_way;
};

void Take_Row(Log_Table& table, const std::string& line, Row_Edits& edits, Outcome& outcome) {
    auto row = Row_Of(table, line);
    if (!row) {
        row = table.Row_Count();
        table.Resize(*row + 1);
        ++outcome.added;
    } else if (table.Line(*row) == line) {
        ++outcome.already_there;
        return;
    } else {
        ++outcome.replaced;
        outcome.gave_way.append(table.Line(*row)).append(cr_lf);
        edits.Add(table.Line(*row), line);
    }
    table.Set_Line(*row, line);
}

std::string Text_Of(const Outcome& outcome, const std::filesystem::path& log) {
    std::string text = fmt::format(
        "Rows added to the flight log: {}.  Rows replaced: {}.  Rows already there: {}.",
        outcome.added, outcome.replaced, outcome.already_there);
    if (outcome.replaced > 0) {
        text += fmt::format("  What was replaced is kept in {}.",
                            From_Path(Beside_Log(log, ".skipped")));
    }
    return text;
}

}  // namespace

bool ucFlightLog::Recover_Rows(const std::vector<std::string>& lines) {
    bool saved = false;
    Guarded(m_services, "ucFlightLog.Recover_Rows()", Show::box, [&] {
        commit_edit_wanted.Emit();
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
        Outcome outcome;
        for (const std::string& line : lines)
            Take_Row(m_table, line, m_row_edits, outcome);
        // The log may have been edited since: what gives way is kept.
        if (!outcome.gave_way.empty())
            m_file->Set_Aside(outcome.gave_way);
        m_changed = true;
        m_unsaved_edits = true;
        table_changed.Emit();
        // Whatever is killed in between finds the rows in the log, and passes them over.
        saved = Save_And_Tell([&] { Drop_Saved_Rows(m_services); });
        if (saved)
            Tell(m_services.desktop, Text_Of(outcome, m_file->Path()));
    });
    return saved;
}

}  // namespace norvane
