#include "logpanel/uc_flight_log.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>

#include "common/boxes.h"
#include "common/code_page.h"
#include "common/find_file.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "config/log_names.h"
#include "flightlog/log_columns.h"
#include "flightlog/log_keeping.h"
#include "flightlog/log_line.h"
#include "flightlog/log_reading.h"
#include "flightlog/unsaved_rows.h"
#include "logentry/cls_log_entry.h"

namespace norvane {

namespace {

std::string Title(std::string_view what) {
    return std::string(product_name) + std::string(what);
}

void Tell_Of_Hidden_Logs(const Services& services, Label& status) {
    std::vector<std::string> names;
    for (const auto& file : Hidden_Logs(services))
        names.push_back(From_Path(file.filename()));
    if (!names.empty()) {
        status.Set_Text(fmt::format(
            "Not offered, because their names cannot be told apart here: {} in \"logs\".  Please "
            "give these files names in the characters of Western Europe",
            Join(names, ", ")));
    }
}

/// They stand in the file, but no load takes them.
void Tell_Of_Undated_Rows(const Log_Table& table, Label& status) {
    std::vector<std::size_t> rows;
    for (std::size_t row = 0; row < table.Row_Count(); ++row) {
        if (table.Get(row, log_column::date).empty() && !table.Is_Blank(row))
            rows.push_back(row + 1);
    }
    if (!rows.empty()) {
        status.Set_Text(fmt::format(
            "Without a date, and so not shown at the next start: row {}.  Please type the date in "
            "and save again",
            Line_Numbers(rows)));
    }
}

/// What the table has and the file has not. A row that was deleted is no such row: the file has it.
Unsaved_Edits Compare_With_File(const Log_Table& table, const std::filesystem::path& file) {
    std::vector<std::string> in_file;
    try {
        in_file = All_Rows(Read_File(file));
    } catch (const std::exception&) {
        // Without the file nothing stands in it: all of the table is kept.
    }
    const std::unordered_set<std::string> saved(in_file.begin(), in_file.end());
    // No load takes a row without a date: it is missing from the table without a deletion.
    const auto is_dated = [](std::string_view line) {
        return !Field_Of(line, log_column::date).empty();
    };
    Unsaved_Edits edits;
    std::ptrdiff_t dated = 0;
    for (std::size_t row = 0; row < table.Row_Count(); ++row) {
        if (table.Is_Blank(row))
            continue;
        std::string line = table.Line(row);
        dated += is_dated(line) ? 1 : 0;
        if (!saved.contains(line))
            edits.lines.push_back(std::move(line));
    }
    edits.rows_deleted = dated < std::count_if(in_file.begin(), in_file.end(), is_dated);
    return edits;
}

}  // namespace

ucFlightLog::ucFlightLog(Services& services, clsAppSettings& settings, clsVASettings& va_settings,
                         clsLogEntry& log_entry)
    : m_services(services),
      m_settings(settings),
      m_va_settings(va_settings),
      m_log_entry(log_entry),
      m_layout(services),
      m_file(std::in_place, services, settings.FlightLog_Path()),
      m_row_edits(services) {
    hypACARS[save].clicked.Connect([this] { Grid_Save(); });
    hypACARS[undo].clicked.Connect([this] { Grid_Undo(); });
    Connect_Reports();
    Connect_Pop_Up();
}

void ucFlightLog::UCI() {
    Guarded(m_services, "ucFlightLog.UCI()", Show::box, [&] {
        m_changed = false;
        m_unsaved_edits = false;
        Make_Grid(false);
        Make_Report_Field_List();
        m_entries.Disconnect();
        m_entries.Keep(m_log_entry.NewLogEntrySave.Connect([this] { NewACARS_Entry(); }));
        m_table.Clear();
        Grid_Load();
        Load_Aircraft();
        Load_ICAO_List();
        Tell_Of_Hidden_Logs(m_services, lblStatus);
    });
}

bool ucFlightLog::Closing() {
    bool goes_on = true;
    const bool settled = Guarded(m_services, "ucFlightLog.Closing()", Show::box, [&] {
        // What is being typed counts as a change, too.
        commit_edit_wanted.Emit();
        goes_on = !m_changed || Prompt_Save_Changes();
    });
    if (settled)
        return goes_on;
    return Ask(m_services.desktop,
               "The changes of the flight log could neither be saved nor kept beside it.  Would "
               "you like to close Norvane all the same, and lose them?",
               Icon::question, "Flight Log Changed") == Answer::yes;
}

/// False when the question was left.
bool ucFlightLog::Prompt_Save_Changes() {
    const Answer answer =
        Ask(m_services.desktop, "Would you like to save the changes made to the Flight Log?",
            Icon::question, "Flight Log Changed");
    if (answer == Answer::none)
        return false;
    if (answer != Answer::yes || !Grid_Save())
        Give_Up_Changes();
    return true;
}

/// The table is as the file again: a flight that is logged from here on takes nothing along that
/// the pilot did not want saved.
void ucFlightLog::Give_Up_Changes() {
    const std::string notice = Keep_Unsaved_Edits();
    m_changed = false;
    // Where there is no file, loading leaves the table as it is.
    m_table.Clear();
    Grid_Load();
    if (!notice.empty())
        Tell(m_services.desktop, notice, Icon::information, "Flight Log Changed");
}

void ucFlightLog::End() {
    Guarded(m_services, "ucFlightLog.End()", Show::box, [&] {
        commit_edit_wanted.Emit();
        Keep_Unsaved_Edits();
    });
    // What a printout hides is not what the pilot hid.
    if (m_printing)
        Fields_To_Print(true);
    Save_Grid_Settings();
    m_entries.Disconnect();
    m_airports.clear();
    m_types.clear();
    lists_changed.Emit();
    m_changed = false;
    m_unsaved_edits = false;
    m_table.Clear();
    table_changed.Emit();
}

void ucFlightLog::FlightLog_Change() {
    Guarded(m_services, "ucFlightLog.FlightLog_Change()", Show::box, [&] {
        commit_edit_wanted.Emit();
        std::optional<Run_Error> failure;
        try {
            Keep_Unsaved_Edits();
        } catch (...) {
            failure = Caught_Error();
        }
        m_unsaved_edits = false;
        m_failed_flights.clear();
        // First the file: an emptied table must never be written over the log before.
        m_file.emplace(m_services, m_settings.FlightLog_Path());
        m_table.Clear();
        Make_Report_Field_List();
        Grid_Load();
        if (failure)
            Log_Error(m_services, "ucFlightLog.Keep_Unsaved_Edits()", *failure, Show::box);
    });
}

void ucFlightLog::Make_Grid(bool reset) {
    Guarded(m_services, "ucFlightLog.Make_Grid()", Show::silent, [&] {
        m_layout.Load(reset, m_va_settings.Directory());
        layout_changed.Emit();
    });
}

void ucFlightLog::Save_Grid_Settings() {
    Guarded(m_services, "ucFlightLog.Save_Grid_Settings()", Show::silent, [&] { m_layout.Save(); });
}

void ucFlightLog::Load_Aircraft() {
    if (m_settings.ACARS_ATCModel())
        Load_List("ucFlightLog.Load_ATC_Models()", "bin\\atcmod.cfg");
    else
        Load_FS_AC_Titles();
}

void ucFlightLog::Load_FS_AC_Titles() {
    const auto file = Find_Path(m_services, m_services.program_directory, aircraft_list_file);
    std::error_code unknown;
    if (!std::filesystem::exists(file, unknown))
        Load_FS_AC();
    Load_List("ucFlightLog.Load_FS_AC_Titles()", aircraft_list_file);
}

void ucFlightLog::Load_List(std::string_view procedure, std::string_view relative) {
    Guarded(m_services, procedure, Show::box, [&] {
        const auto file = Find_Path(m_services, m_services.program_directory, relative);
        if (!std::filesystem::exists(file))
            return;
        const Busy_Cursor busy(m_services.desktop);
        m_types = Read_List_File(file);
        lists_changed.Emit();
    });
}

void ucFlightLog::Load_ICAO_List() {
    Guarded(m_services, "ucFlightLog.Load_ICAO_List()", Show::box, [&] {
        const auto file = Find_Path(m_services, m_services.program_directory, "bin\\fs9.wld");
        if (!std::filesystem::exists(file))
            return;
        const Busy_Cursor busy(m_services.desktop);
        Airport_Picks picks = Read_Airport_Picks(file);
        m_airports = std::move(picks.airports);
        lists_changed.Emit();
        if (!picks.failure.empty())
            throw Run_Error(error_number::subscript_out_of_range, picks.failure);
    });
}

void ucFlightLog::Grid_Load() {
    Guarded(m_services, "ucFlightLog.Grid_Load()", Show::box, [&] {
        const auto troubles = m_file->Load_XArray(m_table);
        if (m_file->Loaded_To_Its_End()) {
            m_unsaved_edits = false;
            m_row_edits.Clear();
        }
        table_changed.Emit();
        Total_FlightTime();
        // Only now: a flight may be logged while a box is open.
        for (const auto& [procedure, error] : troubles)
            Log_Error(m_services, procedure, error, Show::box);
    });
}

/// The log stands in its file; what to tell the pilot of it. Raises when it does not.
std::string ucFlightLog::Save_Table() {
    const Busy_Cursor busy(m_services.desktop);
    commit_edit_wanted.Emit();
    std::string notice = m_file->Save_XArray(m_table);
    m_changed = false;
    m_unsaved_edits = false;
    lblStatus.Set_Text("");
    Keep_Corrections();
    Tell_Of_Undated_Rows(m_table, lblStatus);
    Total_FlightTime();
    return notice;
}

/// The log is saved whatever becomes of them.
void ucFlightLog::Keep_Corrections() {
    if (!m_row_edits.Keep(From_Path(m_file->Path().stem()))) {
        lblStatus.Set_Text(
            fmt::format("The flight log is saved, but what was corrected in it could not be noted "
                        "in {}.  The next \"Save\" tries again",
                        From_Path(m_row_edits.File())));
    }
}

bool ucFlightLog::Grid_Save() {
    return Save_And_Tell([] {});
}

bool ucFlightLog::Save_And_Tell(const std::function<void()>& once_saved) {
    bool saved = false;
    Guarded(m_services, "ucFlightLog.Grid_Save()", Show::box, [&] {
        const std::string notice = Save_Table();
        saved = true;
        once_saved();
        // Only now: a flight may be logged, and fail to be saved, while the box is open.
        if (!notice.empty())
            Tell(m_services.desktop, notice, Icon::information, Title(" Save Flight Log"));
        Tell(m_services.desktop, "Flight Log Saved", Icon::information, Title(" Save Flight Log"));
    });
    return saved;
}

void ucFlightLog::Grid_Undo() {
    Guarded(m_services, "ucFlightLog.Grid_Undo()", Show::box, [&] {
        {
            const Busy_Cursor busy(m_services.desktop);
            drop_edit_wanted.Emit();
            Keep_Unsaved_Edits();
            m_table.Clear();
            Grid_Load();
            // Also when the load failed; not before it: the grid's place in the log would be lost.
            table_changed.Emit();
        }
        if (!m_file->Loaded_To_Its_End())
            return;
        Tell(m_services.desktop, "Flight Log Changes Undone", Icon::information,
             Title(" Undo Flight Log Changes"));
    });
}

void ucFlightLog::Grid_Sort(int mode) {
    Guarded(m_services, "ucFlightLog.Grid_Sort()", Show::box, [&] {
        Sort_XArray(m_table, mode, m_services.regional.short_date);
        table_changed.Emit();
    });
}

void ucFlightLog::Header_Click(std::size_t column) {
    // Rows are about to change places under an open cell editor.
    commit_edit_wanted.Emit();
    if (column == log_column::date)
        Grid_Sort(0);
    else if (column == log_column::aircraft_type)
        Grid_Sort(1);
}

void ucFlightLog::Total_FlightTime() {
    Guarded(m_services, "ucFlightLog.Total_FlightTime()", Show::silent, [&] {
        const Regional& regional = m_services.regional;
        tdbLogCaption.Set_Text(Totals_Caption(m_table.Totals(regional), regional));
    });
}

std::size_t ucFlightLog::Add_Row() {
    const std::size_t row = m_table.Row_Count();
    m_table.Resize(row + 1);
    table_changed.Emit();
    Total_FlightTime();
    return row;
}

void ucFlightLog::Begin_Edit(std::size_t row, std::size_t column) {
    if (column == log_column::aircraft_type)
        m_type_before = m_table.Get(row, column);
    else
        m_changed = true;
}

bool ucFlightLog::Commit_Edit(std::size_t row, std::size_t column, std::string_view text) {
    bool taken = false;
    Guarded(m_services, "ucFlightLog.Commit_Edit()", Show::box, [&] {
        const Checked_Cell checked = Check_Cell(column, text, m_services.regional);
        if (!checked.message.empty()) {
            Tell(m_services.desktop, checked.message, Icon::information,
                 Title(" Invalid Field Entry"));
            return;
        }
        if (column == log_column::date && checked.text.empty() &&
            !m_table.Get(row, column).empty()) {
            Tell(m_services.desktop,
                 "A flight without a date cannot stay in the log.  Please enter a valid date, or "
                 "delete the flight.",
                 Icon::information, Title(" Invalid Field Entry"));
            return;
        }
        if (column == log_column::aircraft_type && checked.text != m_type_before)
            m_changed = true;
        Correct_Cell(row, column, checked.text);
        taken = true;
        // Only figures are summed: all other cells leave the totals as they are.
        if (All_Log_Columns()[column].check == Cell_Check::number)
            Total_FlightTime();
    });
    return taken;
}

void ucFlightLog::Pick_Airport(std::size_t row, std::size_t column, const Airport_Pick& airport) {
    Guarded(m_services, "ucFlightLog.Pick_Airport()", Show::box, [&] {
        if (column != log_column::origin && column != log_column::destination) {
            throw Run_Error(error_number::invalid_call,
                            fmt::format("Column {} holds no airport code", column));
        }
        m_changed = true;
        Correct_Cell(row, column, airport.icao);
        Correct_Cell(row, column + 1, airport.name);
    });
}

void ucFlightLog::Correct_Cell(std::size_t row, std::size_t column, std::string_view text,
                               std::string_view why) {
    if (m_table.Get(row, column) == text)
        return;
    std::string before = m_table.Line(row);
    m_table.Set(row, column, text);
    m_row_edits.Add(std::move(before), m_table.Line(row), why);
    // Once more: a save may have come between the edit's begin and its end.
    m_changed = true;
    m_unsaved_edits = true;
    cell_changed.Emit(row, column);
}

/// What to tell the pilot of edits that are not saved; empty when there were none.
std::string ucFlightLog::Keep_Unsaved_Edits() {
    if (!m_unsaved_edits)
        return {};
    const Unsaved_Edits edits = Compare_With_File(m_table, m_file->Path());
    std::string notice;
    if (!edits.lines.empty()) {
        const auto file = Write_Unsaved(m_services, m_file->Path(), Join(edits.lines, cr_lf));
        lblStatus.Set_Text("What was not saved is kept in " + From_Path(file));
        notice = fmt::format(
            "The changes were not saved to the flight log.  They are kept in {}; \"Recover "
            "Unsaved Flights ...\" in the menu \"Flight Logs\" brings them back.",
            From_Path(file));
    }
    if (edits.rows_deleted) {
        constexpr std::string_view undeleted = "The deleted rows are in the log again.";
        if (notice.empty())
            lblStatus.Set_Text(undeleted);
        notice.append(notice.empty() ? "" : "  ").append(undeleted);
    }
    m_unsaved_edits = false;
    m_failed_flights.clear();
    return notice;
}

}  // namespace norvane
