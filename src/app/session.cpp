#include "app/session.h"

#include <cstdlib>
#include <utility>

#include "app/shipped_files.h"
#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/find_file.h"
#include "common/log_error.h"
#include "config/regional_settings.h"
#include "config/setting_table.h"
#include "simlink/link_address.h"

namespace norvane {

Store_In_Use::Store_In_Use(const std::filesystem::path& store)
    : Run_Error(error_number::permission_denied,
                "Another program uses the settings in " + From_Path(store)) {}

std::string Simulator_Address(const Session_Options& options, Settings_Store& store) {
    if (!options.simulator.empty())
        return options.simulator;
    const char* environment = std::getenv("NORVANE_SIM");
    if (environment != nullptr && *environment != '\0')
        return environment;
    std::string stored = store.Get(simulator_address_section, simulator_address_key);
    const bool usable = !stored.empty() && Link_Address_Fault(stored).empty();
    return usable ? stored : std::string(default_link_address);
}

Session::Session(const Session_Options& options, Access access, Desktop& desktop, Clock& clock)
    : m_places(Find_Places(Executable_Directory(), options.places)),
      m_error_log(m_places.program_directory) {
    Open_Store(access);
    Settings_Store& store = access == Access::look ? static_cast<Settings_Store&>(m_copy)
                                                   : static_cast<Settings_Store&>(*m_database);
    m_services.emplace(Services{desktop, store, clock, m_error_log, Load_Regional(store),
                                m_places.program_directory});
    m_failing_ticks.Keep(Log_Failing_Ticks(*m_services));
    for (const auto& mapping : options.path_mappings)
        m_services->path_mappings.push_back(Parse_Path_Mapping(mapping));
    Set_Up_Program_Directory(access);
    if (access == Access::write) {
        for (const auto* name : {"", "bin", "logs", "reports", "messagelogs", "convertedlogs"})
            Sweep_Temporaries(m_places.program_directory / name);
    }
    Report_Trouble(access);
}

Session::~Session() {
    m_failing_ticks.Disconnect();
}

void Session::Report_Trouble(Access access) {
    const std::string trouble = access == Access::look ? m_copy_trouble : m_database->Trouble();
    if (trouble.empty())
        return;
    Log_Error(*m_services, "modMain.Main()",
              {error_number::path_file_access, trouble,
               access == Access::look
                   ? "Not all settings can be read; what could not be read has its default here.  "
                     "The file is left as it is.  Please look whether the disk or the file's "
                     "protection is at fault before you fly or change a setting."
                   : "The settings could not be read, and begin anew with their defaults; a "
                     "flight that was stored among them waits in the file that was kept.  Please "
                     "look at \"Settings\" before the next flight."},
              Show::box);
}

void Session::Set_Up_Program_Directory(Access access) {
    std::error_code failure;
    if (std::filesystem::equivalent(m_places.shipped, m_places.program_directory, failure))
        return;
    try {
        Take_Shipped_Files(*m_services, m_places.shipped);
    } catch (...) {
        // Files that are not the newest serve too; none at all do not.
        if (!std::filesystem::exists(m_places.program_directory / "bin"))
            throw;
        Log_Error(*m_services, "modMain.Main()", Caught_Error(),
                  access == Access::write ? Show::box : Show::silent);
    }
}

void Session::Open_Store(Access access) {
    if (access == Access::look) {
        Store_Snapshot snapshot = Read_Store(m_places.store);
        for (const auto& value : snapshot.values)
            m_copy.Set(value.section, value.key, value.text);
        m_copy_trouble = std::move(snapshot.trouble);
        return;
    }
    m_lock.emplace(m_places.store);
    if (!m_lock->Held())
        throw Store_In_Use(m_places.store);
    m_database = std::make_unique<Sqlite_Store>(m_places.store);
}

}  // namespace norvane
