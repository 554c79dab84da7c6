#pragma once
// The file of the active flight log: what was loaded from it, and whether it may be written. Owned
// by the flight log panel, one object for each log it turns to.

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/run_error.h"
#include "flightlog/log_table.h"

namespace norvane {

struct Services;

class Log_File {
  public:
    Log_File(Services& services, std::filesystem::path path);

    [[nodiscard]] const std::filesystem::path& Path() const { return m_path; }
    /// False after a load that failed: such a table is never written over the file.
    [[nodiscard]] bool Loaded_To_Its_End() const { return m_loaded; }

    /// A failure, and the procedure it is to be reported under.
    struct Trouble {
        std::string_view procedure;
        Run_Error error;
    };
    /// Backs the log up and loads it, sorted by date. A log without a file leaves the table as it
    /// is, and so does a file that cannot be read. Opens no box: what went wrong, with the log or
    /// with its backup, is for the caller to show once it has taken over what was loaded.
    [[nodiscard]] std::vector<Trouble> Load_XArray(Log_Table& table);
    /// Writes the table over the log, by way of "templog.txt" in the program directory. A file that
    /// was changed meanwhile is kept beside it; the result is what to tell the pilot of that, empty
    /// when there is nothing to tell. Raises when it fails, the log being as it was; 75 when the
    /// log was not loaded to its end.
    std::string Save_XArray(const Log_Table& table);
    /// Keeps lines that the table will no longer hold, in ".skipped"; when that
    /// fails, the next save tries again and stands or falls with it.
    void Set_Aside(std::string_view lines);

  private:
    /// What tells one state of a file from another.
    struct Stamp {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        std::int64_t changed_s = 0;
        std::int64_t changed_ns = 0;
        bool operator==(const Stamp&) const = default;
    };

    [[nodiscard]] std::optional<Stamp> Stamp_Now() const;
    void Load(Log_Table& table, std::vector<Trouble>& troubles);
    void Write(const Log_Table& table);
    void Keep_Set_Aside();
    [[nodiscard]] std::string Keep_Changed_File();

    Services& m_services;
    std::filesystem::path m_path;
    bool m_loaded = false;
    /// Of the file as it was loaded or saved last; empty when there was none.
    std::optional<Stamp> m_stamp;
    /// Lines that could not be kept yet.
    std::string m_set_aside;
};

}  // namespace norvane
