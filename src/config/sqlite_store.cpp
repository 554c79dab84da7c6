#include "config/sqlite_store.h"

#include <sqlite3.h>

#include <cstdlib>
#include <system_error>

#include "common/code_page.h"
#include "common/run_error.h"
#include "common/system_places.h"
#include "common/text.h"

namespace norvane {

namespace {

std::filesystem::path With_Suffix(std::filesystem::path file, std::string_view suffix) {
    return file += suffix;
}

/// One run of a prepared statement, which is ready for its next run afterwards.
class Execution {
  public:
    explicit Execution(Sqlite_Statement& statement) : m_statement(statement) { Bind(product_name); }
    ~Execution() { m_statement.Reset(); }
    Execution(const Execution&) = delete;
    Execution& operator=(const Execution&) = delete;

    /// Gives the next parameter its value.
    Execution& Bind(std::string_view text) {
        m_statement.Bind(text);
        return *this;
    }
    /// True when there is a row.
    bool Step() { return m_statement.Step(); }

  private:
    Sqlite_Statement& m_statement;
};

}  // namespace

std::filesystem::path Default_Store_File() {
    return User_Directory("XDG_CONFIG_HOME", ".config") / "settings.sqlite";
}

void Make_Store_Directory(const std::filesystem::path& store) {
    const auto directory = store.parent_path();
    std::filesystem::create_directories(directory);
    std::error_code unknown;
    const bool is_own =
        std::getenv("HOME") != nullptr &&
        std::filesystem::equivalent(directory, Default_Store_File().parent_path(), unknown);
    if (is_own)
        std::filesystem::permissions(directory, std::filesystem::perms::owner_all, unknown);
}

Sqlite_Store::Sqlite_Store(const std::filesystem::path& file)
    : m_file(std::filesystem::absolute(file)) {
    Make_Store_Directory(m_file);
    try {
        Open();
    } catch (const Broken_Content& fault) {
        Close();
        m_trouble = fault.Description() + "\r\nThe file is kept as " +
                    From_Path(Move_Database_Aside(m_file, ".broken")) + ", a new one was begun";
        Open();
    }
}

Sqlite_Store::~Sqlite_Store() {
    Close();
}

void Sqlite_Store::Open() {
    Make_Private(m_file);
    m_database =
        std::make_unique<Sqlite_Database>(m_file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    if (m_database->Is_Read_Only())
        throw Run_Error(error_number::permission_denied,
                        From_Path(m_file) + ": the settings store can only be read");
    m_database->Execute("PRAGMA journal_mode = WAL");
    m_database->Execute("PRAGMA synchronous = NORMAL");
    m_database->Execute(
        "CREATE TABLE IF NOT EXISTS settings(application TEXT, section TEXT, key TEXT, "
        "value TEXT, PRIMARY KEY (application, section, key))");
    m_database->Demand_Whole();
    m_find = m_database->Prepare(
        "SELECT value FROM settings WHERE application = ?1 AND section = ?2 AND key = ?3");
    m_set = m_database->Prepare(
        "INSERT INTO settings(application, section, key, value) VALUES(?1, ?2, ?3, ?4) "
        "ON CONFLICT(application, section, key) DO UPDATE SET value = excluded.value");
    m_delete_section =
        m_database->Prepare("DELETE FROM settings WHERE application = ?1 AND section = ?2");
}

void Sqlite_Store::Close() {
    m_find = {};
    m_set = {};
    m_delete_section = {};
    m_database.reset();
}

std::optional<std::string> Sqlite_Store::Find(std::string_view section, std::string_view key) {
    Execution find(m_find);
    if (!find.Bind(section).Bind(key).Step())
        return std::nullopt;
    return m_find.Text(0);
}

void Sqlite_Store::Set(std::string_view section, std::string_view key, std::string_view value) {
    Execution(m_set).Bind(section).Bind(key).Bind(value).Step();
}

void Sqlite_Store::Delete_Section(std::string_view section) {
    Execution(m_delete_section).Bind(section).Step();
}

void Sqlite_Store::Begin() {
    if (m_depth == 0)
        m_database->Execute("BEGIN IMMEDIATE");
    ++m_depth;
}

void Sqlite_Store::Commit() {
    if (m_depth == 0)
        throw Run_Error(error_number::invalid_call, "No batch of settings is open");
    if (--m_depth > 0)
        return;
    // A full disk in the middle of a batch makes SQLite undo it at once.
    if (!m_database->In_Transaction()) {
        throw Run_Error(error_number::disk_full,
                        From_Path(m_file) + ": the batch was undone when a write failed");
    }
    try {
        m_database->Execute("COMMIT");
    } catch (...) {
        m_database->Roll_Back();
        throw;
    }
}

void Sqlite_Store::Back_Up() {
    const auto copy = With_Suffix(m_file, ".bak");
    const auto fresh = With_Suffix(m_file, ".bak.new");
    std::filesystem::remove(fresh);
    Make_Private(fresh);
    {
        // A reader of its own sees what is committed even while a batch is open here.
        const Sqlite_Database source(m_file, SQLITE_OPEN_READONLY);
        Sqlite_Database target(fresh, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        source.Copy_To(target);
    }
    std::filesystem::rename(fresh, copy);
}

}  // namespace norvane
