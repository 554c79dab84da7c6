#pragma once
// The record of one flight as it is logged: 44 text fields, the pilot's optional fields and the
// airline's fields. One shared object for the whole program: the ACARS panel fills it, the flight
// log takes it in through its events. A copy of it stands in the settings store while a flight is
// in progress. Values are the texts the panel shows, units included.

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "common/run_error.h"
#include "common/signal.h"
#include "logentry/log_fields.h"
#include "net/http_client.h"

namespace norvane {

class clsAppSettings;
class clsVASettings;
class Desktop;
struct Services;

/// Settings section that holds the flight in progress, the engine's part and the entry's.
inline constexpr std::string_view flight_section = "ACARS";

class clsLogEntry {
  public:
    static constexpr std::size_t optional_slots = 6;
    static constexpr std::size_t airline_slots = 11;

    /// Empty, then filled from the stored flight in progress, if there is one.
    explicit clsLogEntry(Services& services);
    clsLogEntry(const clsLogEntry&) = delete;
    clsLogEntry& operator=(const clsLogEntry&) = delete;

    [[nodiscard]] const std::string& Get(Log_Field field) const;
    /// Cleans the text by the field's write rule.
    void Set(Log_Field field, std::string_view text);
    /// Slots 0 to 5 and 0 to 10; any other index raises 9. Stored unchanged.
    [[nodiscard]] const std::string& OPTIONAL_FIELDS(std::size_t slot) const;
    void Set_OPTIONAL_FIELDS(std::size_t slot, std::string_view text);
    [[nodiscard]] const std::string& VA_FIELDS(std::size_t slot) const;
    void Set_VA_FIELDS(std::size_t slot, std::string_view text);

    /// The row by which the flight stands in the log already, having been logged before it ended:
    /// the log brings that row up to date. Empty: the flight gets a row of its own.
    [[nodiscard]] const std::string& Row_In_Log() const { return m_row_in_log; }
    void Set_Row_In_Log(std::string_view row) { m_row_in_log = row; }

    /// Announces the complete entry; the flight log answers with `New_Log_Entry_Save_Result`.
    void New_Log_Entry_Save();
    void New_Log_Entry_Save_Result(bool saved);
    /// Writes the PIREP text file; false when it failed (reported).
    bool Export_ACARS_Report();
    /// Writes that file from a line of `PIREP_Line`, unless it is there; false when it failed
    /// (reported).
    bool Make_Up_PIREP(const std::string& file, std::string_view line);
    /// Posts the first line of the PIREP text file to the airline's PIREP script, the flight date
    /// as "YYYY-MM-DD hh:mm:ss". Empty when the script answered, whatever it said; else why it did
    /// not, or why there was nothing to post, for `Tell_PIREP_Failure`. The error log has it.
    [[nodiscard]] std::optional<Run_Error> Send_PIREP(const clsAppSettings& settings,
                                                      const clsVASettings& airline,
                                                      const Http_Options& options = {});
    /// The form that posts the first line of that file to the airline's script. Raises when there
    /// is nothing to post.
    [[nodiscard]] std::string Form_To_Post(const clsVASettings& airline) const;
    /// The 52 values of the PIREP line joined by "|".
    [[nodiscard]] std::string PIREP_Line() const;
    /// Stores the flight in progress; false when that failed (reported).
    bool Persist();
    void Restore();

    Signal<> NewLogEntrySave;
    Signal<> NewLogEntrySaveOK;
    Signal<> NewLogEntrySaveFail;

  private:
    [[nodiscard]] std::string Values_To_Post() const;
    bool Write_PIREP(const std::filesystem::path& file, std::string_view line);

    Services& m_services;
    std::array<std::string, log_field_count> m_fields;
    std::array<std::string, optional_slots> m_optional;
    std::array<std::string, airline_slots> m_airline;
    std::string m_row_in_log;
};

/// Tells the pilot that a PIREP has not reached its airline, and where it is kept. Waits for no
/// answer where nobody asked for the post.
void Tell_PIREP_Failure(Desktop& desktop, const Run_Error& error);

/// Removes the stored flight, the engine's figures with it. Raises when the store fails.
void Delete_Stored_Flight(Services& services);

}  // namespace norvane
