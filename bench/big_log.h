#pragma once
// A flight log of 100,000 random flights, always the same ones, in a program directory of its own
// that is gone afterwards; and what the sqlite3 shell takes for the same work.

#include <filesystem>
#include <string>

#include "bench_world.h"
#include "common/services.h"
#include "common/system_clock.h"
#include "config/memory_store.h"

namespace norvane {

class Big_Log {
  public:
    static constexpr int flights = 100'000;

    Big_Log();
    ~Big_Log();
    Big_Log(const Big_Log&) = delete;
    Big_Log& operator=(const Big_Log&) = delete;

    /// The one of this process, made when it is first asked for.
    [[nodiscard]] static Big_Log& The_One();
    /// Seconds for the import of the log and its rows in order; with a query, for that one alone.
    /// Its columns are c0 to c52. The best of three; 0 without a sqlite3 shell.
    [[nodiscard]] double Sqlite_Seconds(const std::string& query = {}) const;

  private:
    System_Clock m_clock;
    Idle_Desktop m_desktop{m_clock};
    Memory_Store m_store;
    Fatal_Error_Log m_error_log;

  public:
    Services services{m_desktop, m_store, m_clock, m_error_log, Regional{}, {}};
    std::filesystem::path path;
    double size = 0;
};

}  // namespace norvane
