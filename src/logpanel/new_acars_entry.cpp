// The part of the flight log panel that takes a finished flight in.

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "common/boxes.h"
#include "common/code_page.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "flightlog/log_keeping.h"
#include "flightlog/log_line.h"
#include "logentry/cls_log_entry.h"
#include "logpanel/uc_flight_log.h"

namespace norvane {

namespace {

/// The rows begin with the same flight, however it went on: one of them may have been logged before
/// its end.
bool Same_Departure(const std::string& a, const std::string& b) {
    constexpr std::array<std::size_t, 3> columns{log_column::date, log_column::time_out,
                                                 log_column::time_out + 1};
    return std::all_of(columns.begin(), columns.end(), [&](std::size_t column) {
        return !Field_Of(a, column).empty() && Field_Of(a, column) == Field_Of(b, column);
    });
}

}  // namespace

void ucFlightLog::NewACARS_Entry() {
    bool saved = false;
    Guarded(m_services, "ucFlightLog.NewACARS_Entry()", Show::box, [&] {
        const Busy_Cursor busy(m_services.desktop);
        // What the pilot types just now, perhaps the date of a last row, comes first.
        commit_edit_wanted.Emit();
        const std::string line = Log_Line(m_log_entry);
        // What kept the file from being read may be over.
        if (!m_file->Loaded_To_Its_End() && !m_unsaved_edits)
            Grid_Load();
        if (!m_file->Loaded_To_Its_End()) {
            Keep_Flight_Of_Unloaded_Log(line);
            return;
        }
        if (!Bring_Row_Up_To_Date(line)) {
            const std::size_t row = Row_For_Flight(line);
            m_row_edits.Drop(m_table.Line(row));
            m_table.Set_Line(row, line);
        }
        m_changed = true;
        m_unsaved_edits = true;
        table_changed.Emit();
        Forget_Failed_Flight(line);
        m_failed_flights.push_back(line);
        // The result comes before the boxes, behind which the flight goes on.
        saved = Save_And_Tell([&] {
            Forget_Failed_Flight(line);
            m_log_entry.New_Log_Entry_Save_Result(true);
        });
        if (!saved)
            Total_FlightTime();
    });
    if (!saved)
        m_log_entry.New_Log_Entry_Save_Result(false);
}

void ucFlightLog::Keep_Flight_Of_Unloaded_Log(const std::string& line) {
    if (line == m_kept_line)
        return;
    const auto file = Write_Unsaved(m_services, m_file->Path(), line);
    m_kept_line = line;
    Tell(m_services.desktop,
         fmt::format("{} could not be read, so this flight was not added to it.  It is kept in {}",
                     From_Path(m_file->Path()), From_Path(file)),
         Icon::exclamation, std::string(product_name) + " Save Flight Log");
}

void ucFlightLog::Forget_Failed_Flight(const std::string& line) {
    std::erase_if(m_failed_flights,
                  [&](const std::string& other) { return Same_Flight(line, other); });
}

/// A flight that was logged before its end keeps its row. What the pilot wrote into it since stays,
/// all else becomes as the flight ended. False when the log has no such row any more.
bool ucFlightLog::Bring_Row_Up_To_Date(const std::string& line) {
    const std::string& logged = m_log_entry.Row_In_Log();
    if (logged.empty())
        return false;
    const auto last_row_that = [&](auto&& same) -> std::optional<std::size_t> {
        for (std::size_t row = m_table.Row_Count(); row-- > 0;) {
            if (same(m_table.Line(row)))
                return row;
        }
        return std::nullopt;
    };
    auto row = last_row_that([&](const std::string& other) { return other == logged; });
    if (!row)
        row = last_row_that([&](const std::string& other) { return Same_Flight(other, logged); });
    if (!row)
        row =
            last_row_that([&](const std::string& other) { return Same_Departure(other, logged); });
    if (!row)
        return false;
    std::string before = m_table.Line(*row);
    for (std::size_t column = 0; column < log_column_count; ++column) {
        if (m_table.Get(*row, column) == Field_Of(logged, column))
            m_table.Set(*row, column, Field_Of(line, column));
    }
    m_row_edits.Add_Progress(std::move(before), m_table.Line(*row));
    return true;
}

std::size_t ucFlightLog::Row_For_Flight(const std::string& line) {
    if (const auto row = Row_Of_Failed_Flight(line))
        return *row;
    Drop_Undated_End();
    const std::size_t row = m_table.Row_Count();
    m_table.Resize(row + 1);
    return row;
}

std::optional<std::size_t> ucFlightLog::Row_Of_Failed_Flight(const std::string& line) const {
    const auto tried_before = [&](const std::string& other) { return Same_Flight(line, other); };
    if (std::none_of(m_failed_flights.begin(), m_failed_flights.end(), tried_before))
        return std::nullopt;
    const auto time_out = Field_Of(line, log_column::time_out);
    for (std::size_t row = m_table.Row_Count(); row-- > 0;) {
        if (m_table.Get(row, log_column::time_out) == time_out &&
            Same_Flight(line, m_table.Line(row)))
            return row;
    }
    return std::nullopt;
}

/// A new flight stands behind the last row with a date; what the pilot typed into undated rows
/// behind it is kept beside the log.
void ucFlightLog::Drop_Undated_End() {
    std::size_t rows = m_table.Row_Count();
    std::string dropped;
    while (rows > 0 && m_table.Get(rows - 1, log_column::date).empty()) {
        --rows;
        if (!m_table.Is_Blank(rows))
            dropped.insert(0, m_table.Line(rows).append(cr_lf));
    }
    m_table.Resize(rows);
    if (dropped.empty())
        return;
    m_file->Set_Aside(dropped);
    Log_Error(
        m_services, "ucFlightLog.NewACARS_Entry()",
        {error_number::type_mismatch,
         fmt::format("{}: rows without a date at the end are kept in {}", From_Path(m_file->Path()),
                     From_Path(Beside_Log(m_file->Path(), ".skipped")))},
        Show::silent);
}

}  // namespace norvane
