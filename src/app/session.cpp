#include "app/session.h"

#include <cstdlib>

#include "app/shipped_files.h"
#include "common/code_page.h"
#include "common/find_file.h"
#include "common/log_error.h"
#include "config/regional_settings.h"
#include "simlink/link_address.h"

namespace norvane {

/// The pilot's store for commands that look: reads go through, writes go nowhere.
class Session::Looking_Store : public Settings_Store {
  public:
    explicit Looking_Store(Settings_Store* store) : m_store(store) {}

    [[nodiscard]] std::optional<std::string> Find(std::string_view section,
                                                  std::string_view key) override {
        return m_store == nullptr ? std::nullopt : m_store->Find(section, key);
    }
    void Set(std::string_view /*section*/, std::string_view /*key*/,
             std::string_view /*value*/) override {}
    void Delete_Section(std::string_view /*section*/) override {}
    void Begin() override {}
    void Commit() override {}
    void Back_Up() override {}

  private:
    Settings_Store* m_store;
};

Store_In_Use::Store_In_Use(const std::filesystem::path& store)
    : Run_Error(error_number::permission_denied,
                "Another program uses the settings in " + From_Path(store)) {}

std::string Simulator_Address(const Session_Options& options) {
    if (!options.simulator.empty())
        return options.simulator;
    const char* environment = std::getenv("NORVANE_SIM");
    return environment != nullptr ? environment : std::string(default_link_address);
}

Session::Session(const Session_Options& options, Access access, Desktop& desktop, Clock& clock)
    : m_places(Find_Places(Executable_Directory(), options.places)),
      m_error_log(m_places.program_directory) {
    Open_Store(access);
    Settings_Store& store = m_looking ? static_cast<Settings_Store&>(*m_looking)
                                      : static_cast<Settings_Store&>(*m_database);
    m_services.emplace(Services{desktop, store, clock, m_error_log, Load_Regional(store),
                                m_places.program_directory});
    for (const auto& mapping : options.path_mappings)
        m_services->path_mappings.push_back(Parse_Path_Mapping(mapping));
    Set_Up_Program_Directory(access);
    if (m_database && !m_database->Trouble().empty()) {
        Log_Error(*m_services, "modMain.Main()",
                  {error_number::path_file_access, m_database->Trouble()}, Show::box);
    }
}

Session::~Session() = default;

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
        if (std::filesystem::exists(m_places.store))
            m_database = std::make_unique<Sqlite_Store>(m_places.store);
        m_looking = std::make_unique<Looking_Store>(m_database.get());
        return;
    }
    std::filesystem::create_directories(m_places.store.parent_path());
    m_lock.emplace(m_places.store);
    if (!m_lock->Held())
        throw Store_In_Use(m_places.store);
    m_database = std::make_unique<Sqlite_Store>(m_places.store);
}

}  // namespace norvane
