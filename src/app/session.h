#pragma once
// What one run of a program works with besides its desktop and its clock: the settings store with
// its lock, the error log, the country's signs and the program directory. Owned by the program's
// `main`. Commands that only look take a session that writes nothing to the store, so that they
// work beside a flight.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/error_log_file.h"
#include "app/program_places.h"
#include "common/run_error.h"
#include "common/services.h"
#include "common/signal.h"
#include "config/memory_store.h"
#include "config/sqlite_store.h"

namespace norvane {

/// What every program takes from its command line.
struct Session_Options {
    Place_Choices places;
    /// The simulator's address; empty takes $NORVANE_SIM, then the link's default.
    std::string simulator;
    /// As `Parse_Path_Mapping` reads them.
    std::vector<std::string> path_mappings;
};

/// The address in `options`, else that of the environment, else the one of the settings, else the
/// link's own. A stored text that is no address does not count; loading the settings reports it.
[[nodiscard]] std::string Simulator_Address(const Session_Options& options, Settings_Store& store);

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
    Session(const Session_Options& options, Access access, Desktop& desktop, Clock& clock);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    [[nodiscard]] Services& Outside() { return *m_services; }
    [[nodiscard]] const Program_Places& Places() const { return m_places; }

  private:
    void Open_Store(Access access);
    void Report_Trouble(Access access);
    void Set_Up_Program_Directory(Access access);

    Program_Places m_places;
    Error_Log_File m_error_log;
    std::optional<Store_Lock> m_lock;
    std::unique_ptr<Sqlite_Store> m_database;
    /// For who looks: what the store held at the start; what is set there is forgotten.
    Memory_Store m_copy;
    std::string m_copy_trouble;
    std::optional<Services> m_services;
    Connections m_failing_ticks;
};

}  // namespace norvane
