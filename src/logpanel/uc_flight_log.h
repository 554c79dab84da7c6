#pragma once
// The flight log panel: the active log as a table that the pilot edits in a grid, its loading,
// saving and undoing, its totals, its layout and pick lists, and the flights that ACARS adds to it.
// Owned by the program; the window binds a grid to it. Failures are reported under
// "ucFlightLog." and the operation's name.

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "acars/cls_acars.h"
#include "common/services.h"
#include "common/signal.h"
#include "flightlog/grid_layout.h"
#include "flightlog/log_file.h"
#include "flightlog/log_table.h"
#include "flightlog/pick_lists.h"
#include "logpanel/flight_log_form.h"
#include "logpanel/row_edits.h"

namespace norvane {

class clsAppSettings;
class clsLogEntry;
class clsVASettings;

class ucFlightLog : public Flight_Log_Form {
  public:
    ucFlightLog(Services& services, clsAppSettings& settings, clsVASettings& va_settings,
                clsLogEntry& log_entry);
    ucFlightLog(const ucFlightLog&) = delete;
    ucFlightLog& operator=(const ucFlightLog&) = delete;

    /// Starts the panel: layout, subscription to the log entry, active log, pick lists.
    void UCI();
    /// Asks what is to become of changes that were not saved: Yes saves them, No keeps them beside
    /// the log and says where. False when the pilot left the question: the closing is called off,
    /// and nothing has happened. Flights are taken in until `End`.
    [[nodiscard]] bool Closing();
    /// Ends it without a question: what is still not saved, a flight too, stays beside the log; the
    /// layout is stored, the subscription dropped, the table emptied.
    void End();

    /// Turns to the log that is active now. Unsaved edits of the one before are kept beside it.
    void FlightLog_Change();
    /// The airline changed: its columns' captions are read anew.
    void VA_Change() {
        // What the pilot sized since the start stays.
        Save_Grid_Settings();
        Make_Grid(false);
        Make_Report_Field_List();
    }
    void Restore_Grid_Sizing() { Make_Grid(true); }
    void Make_Grid(bool reset);
    void Save_Grid_Settings();
    /// Fills the list of aircraft types from the simulator's models or titles, by the setting.
    void Load_Aircraft();
    /// A missing "bin\ac.cfg" is made first; where that fails the list stays as it is.
    void Load_FS_AC_Titles();
    /// Where the titles of the simulator's aircraft can be had; without it none are.
    void Set_Simulator(const clsACARS::Parts& simulator) { m_simulator.emplace(simulator); }
    /// Writes "bin\ac.cfg" with the titles of all aircraft of the simulator; what to tell the pilot
    /// when it cannot be reached or has none, empty when it is done or was reported.
    std::string Load_FS_AC();

    void Grid_Load();
    /// True when the log stands in its file.
    bool Grid_Save();
    /// Loads the file again, and says so when it could; unsaved edits are kept beside the log.
    void Grid_Undo();
    /// 0 by date and time out, 1 by aircraft type.
    void Grid_Sort(int mode);
    /// Sorts by the two columns that can be sorted by; other columns do nothing.
    void Header_Click(std::size_t column);
    void Total_FlightTime();
    /// Adds the log entry's flight as the last row, saves, and answers the entry. A flight whose
    /// save failed before, or that was logged before it ended, takes its own row again.
    void NewACARS_Entry();
    /// Takes rows of ".unsaved" files, of 53 fields each, into the log and saves it; only then they
    /// leave those files. A row that the log has is not added again, and one of a flight that it
    /// has takes that row's place; the pilot is told how many came to what. False when the log
    /// could not be saved: the rows stay in those files, and are in the table.
    bool Recover_Rows(const std::vector<std::string>& lines);
    /// Deletes the current row, if there is one.
    void Delete_LogEntry();
    /// An empty row at the end; its index.
    std::size_t Add_Row();

    /// The pilot begins to edit a cell: but for the aircraft type, the log counts as changed.
    void Begin_Edit(std::size_t row, std::size_t column);
    /// The pilot's text for a cell; false when it is refused, the cell keeping its old value.
    bool Commit_Edit(std::size_t row, std::size_t column, std::string_view text);
    /// The pilot picked an airport for a cell of the origin or destination column: its code goes
    /// into the cell, its name into the one to the right.
    void Pick_Airport(std::size_t row, std::size_t column, const Airport_Pick& airport);

    /// What was corrected in a cell, for its tool tip; empty when nothing was.
    [[nodiscard]] std::string Cell_Remark(std::size_t row, std::size_t column);
    /// The correction of the current row that `Take_Back_Correction` takes back, by one more edit.
    [[nodiscard]] std::optional<Correction> Correction_To_Take_Back();
    void Take_Back_Correction();
    /// A text for a cell, taken as it stands.
    void Correct_Cell(std::size_t row, std::size_t column, std::string_view text,
                      std::string_view why = {});

    /// The row that the pop-up menu and the deleting key work on; none outside the table.
    void Set_Current_Row(std::optional<std::size_t> row) { m_current_row = row; }
    [[nodiscard]] std::optional<std::size_t> Current_Row() const;
    /// To be called before the pop-up menu opens; false when it must not.
    [[nodiscard]] bool Prepare_Pop_Up();
    /// There is a log to copy a row to.
    [[nodiscard]] bool Enable_Copy();
    /// Asks for a simulator's flight plan; empty when the pilot chose none.
    [[nodiscard]] std::filesystem::path Get_Flight_Plan();
    /// Takes a flight plan into the current row; what is filled is overwritten only when the pilot
    /// says so. A plan that cannot be read leaves the row as it was.
    void Read_Flight_Plan(const std::filesystem::path& file);
    /// Adds the current row to another log's file; false when it is not there.
    bool Copy_To_Log(const std::string& name);

    /// The reports go to "report.html" in the program directory and are shown.
    void Create_Report_File();
    void Create_Statistics_Report();
    /// Of the current row.
    void Create_ACARS_Report();
    void Grid_Page_Setup();
    void Grid_Print_Preview();
    void Grid_Print();
    /// The columns that reports may hold, as the captions are now.
    void Make_Report_Field_List();
    [[nodiscard]] const std::vector<Report_Field>& Report_Fields() const { return lvwLog; }

    [[nodiscard]] const Log_Table& Table() const { return m_table; }
    [[nodiscard]] const Log_File& File() const { return *m_file; }
    /// The pilot's sizes and visibilities are written straight into it.
    [[nodiscard]] Grid_Layout& Layout() { return m_layout; }
    [[nodiscard]] const std::vector<Airport_Pick>& Airports() const { return m_airports; }
    [[nodiscard]] const std::vector<std::string>& Aircraft_Types() const { return m_types; }
    /// What the close question goes by: cleared by a save and at the start only.
    [[nodiscard]] bool Changed() const { return m_changed; }

  private:
    void Connect_Pop_Up();
    void Connect_Reports();
    void Copy_Flight();
    bool Copy_Line(const std::string& flight, const std::string& name);
    void Fields_To_Print(bool visible);
    [[nodiscard]] Print_Job Print_Setup() const;
    void Print_Grid(Signal<const Print_Job&>& wanted);
    void Load_List(std::string_view procedure, std::string_view relative);
    void Load_ICAO_List();
    [[nodiscard]] bool Prompt_Save_Changes();
    void Give_Up_Changes();
    [[nodiscard]] std::string Save_Table();
    bool Save_And_Tell(const std::function<void()>& once_saved);
    void Keep_Corrections();
    std::string Keep_Unsaved_Edits();
    void Keep_Flight_Of_Unloaded_Log(const std::string& line);
    void Forget_Failed_Flight(const std::string& line);
    bool Bring_Row_Up_To_Date(const std::string& line);
    [[nodiscard]] std::size_t Row_For_Flight(const std::string& line);
    [[nodiscard]] std::optional<std::size_t> Row_Of_Failed_Flight(const std::string& line) const;
    void Drop_Undated_End();

    Services& m_services;
    clsAppSettings& m_settings;
    clsVASettings& m_va_settings;
    clsLogEntry& m_log_entry;
    Grid_Layout m_layout;
    Log_Table m_table;
    /// Never empty; replaced when the active log changes.
    std::optional<Log_File> m_file;
    std::vector<Airport_Pick> m_airports;
    std::vector<std::string> m_types;
    std::optional<clsACARS::Parts> m_simulator;
    std::optional<std::size_t> m_current_row;
    /// The row that the pop-up menu was opened on.
    std::string m_pop_up_line;
    std::vector<Report_Field> lvwLog;
    /// Columns are hidden for the time of a printout.
    bool m_printing = false;
    bool m_changed = false;
    /// The table holds something that the file does not.
    bool m_unsaved_edits = false;
    Row_Edits m_row_edits;
    /// The aircraft type before its edit.
    std::string m_type_before;
    /// Lines of the flights in the table whose save failed, so that trying again makes no second
    /// row. The log may have been saved since, without the entry being told.
    std::vector<std::string> m_failed_flights;
    /// The line last kept beside a log that could not be loaded.
    std::string m_kept_line;
    Connections m_entries;
};

}  // namespace norvane
