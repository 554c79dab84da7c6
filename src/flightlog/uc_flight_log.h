#pragma once
// The flight log panel: the active log as a table that the pilot edits in a grid, its loading,
// saving and undoing, its totals, its layout and pick lists, and the flights that ACARS adds to it.
// Owned by the program; the window binds a grid to it. Failures are reported under
// "ucFlightLog." and the operation's name.

#include <sigc++/sigc++.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/controls.h"
#include "flightlog/grid_layout.h"
#include "flightlog/log_file.h"
#include "flightlog/log_table.h"
#include "flightlog/pick_lists.h"

namespace norvane {

struct Services;
class clsAppSettings;
class clsLogEntry;
class clsVASettings;

class ucFlightLog {
  public:
    ucFlightLog(Services& services, clsAppSettings& settings, clsVASettings& va_settings,
                clsLogEntry& log_entry);
    ~ucFlightLog();
    ucFlightLog(const ucFlightLog&) = delete;
    ucFlightLog& operator=(const ucFlightLog&) = delete;

    /// Starts the panel: layout, subscription to the log entry, active log, pick lists.
    void UCI();
    /// Ends it: asks whether changes are to be saved, stores the layout, drops the subscription.
    /// A flight that could not be saved stays beside the log whatever the answer.
    void Closing();

    /// Turns to the log that is active now. Unsaved edits of the one before are kept beside it.
    void FlightLog_Change();
    /// The airline changed: its columns' captions are read anew.
    void VA_Change() { Make_Grid(false); }
    void Restore_Grid_Sizing() { Make_Grid(true); }
    void Make_Grid(bool reset);
    void Save_Grid_Settings();
    /// Fills the list of aircraft types from the simulator's models or titles, by the setting.
    void Load_Aircraft();
    /// A missing "bin\ac.cfg" leaves the list as it is.
    void Load_FS_AC_Titles();

    void Grid_Load();
    /// True when the log stands in its file.
    bool Grid_Save();
    /// Loads the file again. Unsaved edits are kept beside the log first.
    void Grid_Undo();
    /// 0 by date and time out, 1 by aircraft type.
    void Grid_Sort(int mode);
    /// Sorts by the two columns that can be sorted by; other columns do nothing.
    void Header_Click(std::size_t column);
    void Total_FlightTime();
    /// Adds the log entry's flight as the last row, saves, and answers the entry. A flight whose
    /// save failed before takes its own row again.
    void NewACARS_Entry();
    void Delete_LogEntry(std::size_t row);
    /// An empty row at the end; its index.
    std::size_t Add_Row();

    /// The pilot begins to edit a cell: but for the aircraft type, the log counts as changed.
    void Begin_Edit(std::size_t row, std::size_t column);
    /// The pilot's text for a cell; false when it is refused, the cell keeping its old value.
    bool Commit_Edit(std::size_t row, std::size_t column, std::string_view text);
    /// The pilot picked an airport for a cell of the origin or destination column: its code goes
    /// into the cell, its name into the one to the right.
    void Pick_Airport(std::size_t row, std::size_t column, const Airport_Pick& airport);

    [[nodiscard]] const Log_Table& Table() const { return m_table; }
    [[nodiscard]] const Log_File& File() const { return *m_file; }
    /// The pilot's sizes and visibilities are written straight into it.
    [[nodiscard]] Grid_Layout& Layout() { return m_layout; }
    [[nodiscard]] const std::vector<Airport_Pick>& Airports() const { return m_airports; }
    [[nodiscard]] const std::vector<std::string>& Aircraft_Types() const { return m_types; }
    /// What the close question goes by: cleared by a save and at the start only.
    [[nodiscard]] bool Changed() const { return m_changed; }

    /// "Save" and "Undo" of the command bar.
    std::array<Link, 2> hypACARS{Link("Save"), Link("Undo")};
    /// The grid's caption: both totals.
    Label tdbLogCaption;

    /// Rows came, went or changed places.
    sigc::signal<void()> table_changed;
    sigc::signal<void(std::size_t row, std::size_t column)> cell_changed;
    sigc::signal<void()> layout_changed;
    sigc::signal<void()> lists_changed;
    /// The grid must commit, or drop, an edit in progress.
    sigc::signal<void()> commit_edit_wanted;
    sigc::signal<void()> drop_edit_wanted;

  private:
    void Load_ATC_Models();
    void Load_List(std::string_view procedure, std::string_view relative);
    void Load_ICAO_List();
    void Prompt_Save_Changes();
    void Write_Cell(std::size_t row, std::size_t column, std::string_view text);
    void Keep_Unsaved_Edits();
    void Keep_Unsaved_Flights();
    void Keep_Flight_Of_Unloaded_Log(const std::string& line);
    void Forget_Failed_Flight(const std::string& line);
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
    sigc::connection m_subscription;
    bool m_changed = false;
    /// The table holds something that the file does not.
    bool m_unsaved_edits = false;
    /// The aircraft type before its edit.
    std::string m_type_before;
    /// Lines of the flights in the table whose save failed, so that trying again makes no second
    /// row. The log may have been saved since, without the entry being told.
    std::vector<std::string> m_failed_flights;
    /// The line last kept beside a log that could not be loaded.
    std::string m_kept_line;
};

}  // namespace norvane
