#include "config/sqlite_store.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <system_error>

#include "common/code_page.h"
#include "common/run_error.h"
#include "common/system_places.h"
#include "common/text.h"

namespace norvane {

namespace {

/// How long another program's transaction is waited for.
constexpr int busy_timeout_ms = 5000;

/// SQLite keeps a database in three files while it is open. The database itself stands last: were
/// it moved away first, SQLite would drop its log.
constexpr std::array<const char*, 3> file_suffixes{"-wal", "-shm", ""};

std::filesystem::path With_Suffix(std::filesystem::path file, std::string_view suffix) {
    return file += suffix;
}

int Number_Of(int result) {
    switch (result & 0xFF) {
        case SQLITE_FULL:
            return error_number::disk_full;
        case SQLITE_READONLY:
        case SQLITE_PERM:
        case SQLITE_AUTH:
            return error_number::permission_denied;
        case SQLITE_CANTOPEN:
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return error_number::path_file_access;
        case SQLITE_IOERR:
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return error_number::device_io_error;
        default:
            return error_number::other;
    }
}

/// Creates the file for its owner alone, or takes it away from all others. A drive that knows no
/// modes is no reason to fail.
void Make_Private(const std::filesystem::path& file) {
    constexpr mode_t owner_only = 0600;
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, owner_only);
    if (descriptor < 0)
        return;  // SQLite's own opening tells why
    ::fchmod(descriptor, owner_only);
    ::close(descriptor);
}

/// A failure that means the file's content, rather than the access to it, is at fault.
class Broken_Content : public Run_Error {
  public:
    using Run_Error::Run_Error;
};

[[noreturn]] void Raise(const std::filesystem::path& file, int result, const char* description) {
    const std::string text = From_Path(file) + ": " + description;
    const int kind = result & 0xFF;
    if (kind == SQLITE_NOTADB || kind == SQLITE_CORRUPT)
        throw Broken_Content(Number_Of(result), text);
    throw Run_Error(Number_Of(result), text);
}

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

void Sqlite_Store::Close_Connection::operator()(sqlite3* connection) const {
    sqlite3_close_v2(connection);
}

void Sqlite_Store::Finalize_Statement::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

/// One run of a prepared statement, which is ready for its next run afterwards.
class Sqlite_Store::Execution {
  public:
    Execution(const Sqlite_Store& store, const Statement& statement)
        : m_store(store), m_statement(statement.get()) {
        Bind(product_name);
    }
    ~Execution() {
        sqlite3_reset(m_statement);
        sqlite3_clear_bindings(m_statement);
    }
    Execution(const Execution&) = delete;
    Execution& operator=(const Execution&) = delete;

    /// Gives the next parameter its value.
    Execution& Bind(std::string_view text) {
        const std::string utf8 = To_Utf8(text);
        Check(sqlite3_bind_text(m_statement, ++m_bound, utf8.data(), static_cast<int>(utf8.size()),
                                SQLITE_TRANSIENT));
        return *this;
    }
    /// True when there is a row.
    bool Step() {
        const int result = sqlite3_step(m_statement);
        if (result != SQLITE_ROW && result != SQLITE_DONE)
            Check(result);
        return result == SQLITE_ROW;
    }
    /// The row's first column.
    [[nodiscard]] std::string Text() const {
        const auto* text = sqlite3_column_text(m_statement, 0);
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement, 0));
        if (text == nullptr)
            return {};
        return From_Utf8({reinterpret_cast<const char*>(text), size});
    }

  private:
    void Check(int result) const {
        if (result != SQLITE_OK)
            Raise(m_store.m_file, result, sqlite3_errmsg(m_store.m_connection.get()));
    }

    const Sqlite_Store& m_store;
    sqlite3_stmt* m_statement;
    int m_bound = 0;
};

Sqlite_Store::Sqlite_Store(const std::filesystem::path& file)
    : m_file(std::filesystem::absolute(file)) {
    Make_Store_Directory(m_file);
    try {
        Open();
    } catch (const Broken_Content& fault) {
        Close();
        Keep_Broken_File(fault.Description());
        Open();
    }
}

Sqlite_Store::~Sqlite_Store() {
    Close();
}

void Sqlite_Store::Open() {
    Make_Private(m_file);
    m_connection = Connect(m_file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    if (sqlite3_db_readonly(m_connection.get(), "main") == 1)
        throw Run_Error(error_number::permission_denied,
                        From_Path(m_file) + ": the settings store can only be read");
    Execute("PRAGMA journal_mode = WAL");
    Execute("PRAGMA synchronous = NORMAL");
    Execute(
        "CREATE TABLE IF NOT EXISTS settings(application TEXT, section TEXT, key TEXT, "
        "value TEXT, PRIMARY KEY (application, section, key))");
    const auto check = Prepare("PRAGMA quick_check(1)");
    if (sqlite3_step(check.get()) != SQLITE_ROW)
        Raise(m_file, sqlite3_errcode(m_connection.get()), sqlite3_errmsg(m_connection.get()));
    const std::string verdict = reinterpret_cast<const char*>(sqlite3_column_text(check.get(), 0));
    if (verdict != "ok")
        Raise(m_file, SQLITE_CORRUPT, verdict.c_str());
    m_find =
        Prepare("SELECT value FROM settings WHERE application = ?1 AND section = ?2 AND key = ?3");
    m_set = Prepare(
        "INSERT INTO settings(application, section, key, value) VALUES(?1, ?2, ?3, ?4) "
        "ON CONFLICT(application, section, key) DO UPDATE SET value = excluded.value");
    m_delete_section = Prepare("DELETE FROM settings WHERE application = ?1 AND section = ?2");
}

void Sqlite_Store::Close() {
    m_find.reset();
    m_set.reset();
    m_delete_section.reset();
    m_connection.reset();
}

void Sqlite_Store::Keep_Broken_File(const std::string& fault) {
    std::filesystem::path kept = With_Suffix(m_file, ".broken");
    for (int number = 2; std::filesystem::exists(kept); ++number)
        kept = With_Suffix(m_file, ".broken" + std::to_string(number));
    for (const auto* suffix : file_suffixes) {
        const auto part = With_Suffix(m_file, suffix);
        if (std::filesystem::exists(part))
            std::filesystem::rename(part, With_Suffix(kept, suffix));
    }
    m_trouble = fault + "\r\nThe file is kept as " + From_Path(kept) + ", a new one was begun";
}

Sqlite_Store::Connection Sqlite_Store::Connect(const std::filesystem::path& file, int flags) {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &opened, flags, nullptr);
    Connection connection(opened);
    if (result != SQLITE_OK)
        Raise(file, result, opened != nullptr ? sqlite3_errmsg(opened) : sqlite3_errstr(result));
    sqlite3_extended_result_codes(opened, 1);
    sqlite3_busy_timeout(opened, busy_timeout_ms);
    return connection;
}

void Sqlite_Store::Execute(const char* sql) {
    const int result = sqlite3_exec(m_connection.get(), sql, nullptr, nullptr, nullptr);
    if (result != SQLITE_OK)
        Raise(m_file, result, sqlite3_errmsg(m_connection.get()));
}

Sqlite_Store::Statement Sqlite_Store::Prepare(const char* sql) {
    sqlite3_stmt* prepared = nullptr;
    const int result = sqlite3_prepare_v3(m_connection.get(), sql, -1, SQLITE_PREPARE_PERSISTENT,
                                          &prepared, nullptr);
    if (result != SQLITE_OK)
        Raise(m_file, result, sqlite3_errmsg(m_connection.get()));
    return Statement(prepared);
}

std::optional<std::string> Sqlite_Store::Find(std::string_view section, std::string_view key) {
    Execution find(*this, m_find);
    if (!find.Bind(section).Bind(key).Step())
        return std::nullopt;
    return find.Text();
}

void Sqlite_Store::Set(std::string_view section, std::string_view key, std::string_view value) {
    Execution(*this, m_set).Bind(section).Bind(key).Bind(value).Step();
}

void Sqlite_Store::Delete_Section(std::string_view section) {
    Execution(*this, m_delete_section).Bind(section).Step();
}

void Sqlite_Store::Begin() {
    if (m_depth == 0)
        Execute("BEGIN IMMEDIATE");
    ++m_depth;
}

void Sqlite_Store::Commit() {
    if (m_depth == 0)
        throw Run_Error(error_number::invalid_call, "No batch of settings is open");
    if (--m_depth > 0)
        return;
    // A full disk in the middle of a batch makes SQLite undo it at once.
    if (sqlite3_get_autocommit(m_connection.get()) != 0) {
        throw Run_Error(error_number::disk_full,
                        From_Path(m_file) + ": the batch was undone when a write failed");
    }
    try {
        Execute("COMMIT");
    } catch (...) {
        sqlite3_exec(m_connection.get(), "ROLLBACK", nullptr, nullptr, nullptr);
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
        const auto source = Connect(m_file, SQLITE_OPEN_READONLY);
        const auto target = Connect(fresh, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        sqlite3_backup* backup = sqlite3_backup_init(target.get(), "main", source.get(), "main");
        if (backup == nullptr)
            Raise(fresh, sqlite3_errcode(target.get()), sqlite3_errmsg(target.get()));
        sqlite3_backup_step(backup, -1);
        const int result = sqlite3_backup_finish(backup);
        if (result != SQLITE_OK)
            Raise(fresh, result, sqlite3_errstr(result));
    }
    std::filesystem::rename(fresh, copy);
}

}  // namespace norvane
