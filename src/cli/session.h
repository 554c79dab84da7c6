#pragma once
// The outside world of one run of `norvane-cli`: clock, signals, console, settings store with its
// lock, error log, the country's signs and the program directory. Commands that only look take a
// session that writes nothing to the store, so that they work beside a flight.

#include <memory>
#include <optional>
#include <string>

#include "app/error_log_file.h"
#include "app/program_places.h"
#include "cli/console_desktop.h"
#include "cli/signal_watch.h"
#include "common/run_error.h"
#include "common/services.h"
#include "common/system_clock.h"
#include "config/sqlite_store.h"

namespace norvane {

/// What stands before the command on the command line, and what a flight adds to it.
struct Session_Options {
    Place_Choices places;
    /// The simulator's address; empty takes $NORVANE_SIM, then the link's default.
    std::string simulator;
    /// Questions are answered Yes.
    bool yes = false;
    /// Divides every timer.
    double time_scale = 1;
};

/// Another program holds the store.
class Store_In_Use : public Run_Error {
  public:
    explicit Store_In_Use(const std::filesystem::path& store);
};

enum class Access { look, write };

class Session {
  public:
    /// Raises `Store_In_Use` when the store's lock is taken (for writing), and whatever keeps the
    /// program directory or the store from being used.
    Session(Session_Options options, Access access);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    [[nodiscard]] Services& Outside() { return *m_services; }
    [[nodiscard]] Signal_Watch& Signals() { return m_signals; }
    [[nodiscard]] const Program_Places& Places() const { return m_places; }
    [[nodiscard]] const Session_Options& Options() const { return m_options; }

  private:
    class Looking_Store;

    void Open_Store(Access access);

    Session_Options m_options;
    Program_Places m_places;
    System_Clock m_clock;
    Signal_Watch m_signals;
    Console_Desktop m_desktop;
    Error_Log_File m_error_log;
    std::optional<Store_Lock> m_lock;
    std::unique_ptr<Sqlite_Store> m_database;
    std::unique_ptr<Looking_Store> m_looking;
    std::optional<Services> m_services;
};

}  // namespace norvane
