#include "config/sqlite_database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <utility>

#include "common/code_page.h"

namespace norvane {

namespace {

/// SQLite keeps a database in several files while it is open. The database itself stands last: were
/// it moved away first, SQLite would drop its log.
constexpr std::array<const char*, 4> file_suffixes{"-wal", "-shm", "-journal", ""};

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

}  // namespace

void Sqlite_Statement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

void Sqlite_Statement::Check(int result) const {
    if (result != SQLITE_OK)
        m_database->Raise_Last(result);
}

void Sqlite_Statement::Reset() {
    sqlite3_reset(m_statement.get());
    sqlite3_clear_bindings(m_statement.get());
    m_bound = 0;
}

Sqlite_Statement& Sqlite_Statement::Bind(std::string_view text) {
    const std::string utf8 = To_Utf8(text);
    Check(sqlite3_bind_text(m_statement.get(), ++m_bound, utf8.data(),
                            static_cast<int>(utf8.size()), SQLITE_TRANSIENT));
    return *this;
}

Sqlite_Statement& Sqlite_Statement::Bind(double value) {
    Check(sqlite3_bind_double(m_statement.get(), ++m_bound, value));
    return *this;
}

Sqlite_Statement& Sqlite_Statement::Bind(std::int64_t value) {
    Check(sqlite3_bind_int64(m_statement.get(), ++m_bound, value));
    return *this;
}

Sqlite_Statement& Sqlite_Statement::Bind_Bytes(std::string_view bytes) {
    Check(sqlite3_bind_blob(m_statement.get(), ++m_bound, bytes.data(),
                            static_cast<int>(bytes.size()), SQLITE_TRANSIENT));
    return *this;
}

Sqlite_Statement& Sqlite_Statement::Bind_Null() {
    Check(sqlite3_bind_null(m_statement.get(), ++m_bound));
    return *this;
}

bool Sqlite_Statement::Step() {
    const int result = sqlite3_step(m_statement.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        Check(result);
    return result == SQLITE_ROW;
}

std::string Sqlite_Statement::Text(int column) const {
    const auto* text = sqlite3_column_text(m_statement.get(), column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement.get(), column));
    if (text == nullptr)
        return {};
    return From_Utf8({reinterpret_cast<const char*>(text), size});
}

double Sqlite_Statement::Real(int column) const {
    return sqlite3_column_double(m_statement.get(), column);
}

std::int64_t Sqlite_Statement::Whole_Number(int column) const {
    return sqlite3_column_int64(m_statement.get(), column);
}

std::string Sqlite_Statement::Bytes(int column) const {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(m_statement.get(), column));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement.get(), column));
    return bytes == nullptr ? std::string() : std::string(bytes, size);
}

bool Sqlite_Statement::Is_Null(int column) const {
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

void Sqlite_Database::Close_Connection::operator()(sqlite3* connection) const {
    sqlite3_close_v2(connection);
}

Sqlite_Database::Sqlite_Database(std::filesystem::path file, int flags,
                                 std::chrono::milliseconds patience)
    : m_file(std::move(file)) {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(m_file.c_str(), &opened, flags, nullptr);
    m_connection.reset(opened);
    if (result != SQLITE_OK)
        Raise(result, opened != nullptr ? sqlite3_errmsg(opened) : sqlite3_errstr(result));
    sqlite3_extended_result_codes(opened, 1);
    sqlite3_busy_timeout(opened, static_cast<int>(patience.count()));
}

void Sqlite_Database::Raise(int result, const char* description) const {
    const std::string text = From_Path(m_file) + ": " + description;
    const int kind = result & 0xFF;
    if (kind == SQLITE_NOTADB || kind == SQLITE_CORRUPT)
        throw Broken_Content(Number_Of(result), text);
    throw Run_Error(Number_Of(result), text);
}

void Sqlite_Database::Raise_Last(int result) const {
    Raise(result, sqlite3_errmsg(m_connection.get()));
}

void Sqlite_Database::Execute(const char* sql) {
    const int result = sqlite3_exec(m_connection.get(), sql, nullptr, nullptr, nullptr);
    if (result != SQLITE_OK)
        Raise_Last(result);
}

Sqlite_Statement Sqlite_Database::Prepare(const std::string& sql) const {
    sqlite3_stmt* prepared = nullptr;
    const int result = sqlite3_prepare_v3(m_connection.get(), sql.c_str(), -1,
                                          SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    if (result != SQLITE_OK)
        Raise_Last(result);
    Sqlite_Statement statement;
    statement.m_database = this;
    statement.m_statement.reset(prepared);
    return statement;
}

void Sqlite_Database::Demand_Whole() const {
    auto check = Prepare("PRAGMA quick_check(1)");
    if (!check.Step())
        Raise_Last(sqlite3_errcode(m_connection.get()));
    const std::string verdict = check.Text(0);
    if (verdict != "ok")
        Raise(SQLITE_CORRUPT, verdict.c_str());
}

bool Sqlite_Database::Is_Read_Only() const {
    return sqlite3_db_readonly(m_connection.get(), "main") == 1;
}

bool Sqlite_Database::In_Transaction() const {
    return sqlite3_get_autocommit(m_connection.get()) == 0;
}

void Sqlite_Database::Roll_Back() noexcept {
    sqlite3_exec(m_connection.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Sqlite_Database::Copy_To(Sqlite_Database& target) const {
    sqlite3_backup* backup =
        sqlite3_backup_init(target.m_connection.get(), "main", m_connection.get(), "main");
    if (backup == nullptr)
        target.Raise_Last(sqlite3_errcode(target.m_connection.get()));
    sqlite3_backup_step(backup, -1);
    const int result = sqlite3_backup_finish(backup);
    if (result != SQLITE_OK)
        target.Raise(result, sqlite3_errstr(result));
}

void Make_Private(const std::filesystem::path& file) {
    constexpr mode_t owner_only = 0600;
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, owner_only);
    if (descriptor < 0)
        return;  // SQLite's own opening tells why
    ::fchmod(descriptor, owner_only);
    ::close(descriptor);
}

std::filesystem::path Move_Database_Aside(const std::filesystem::path& file,
                                          std::string_view ending) {
    std::filesystem::path kept = With_Suffix(file, ending);
    for (int number = 2; std::filesystem::exists(kept); ++number)
        kept = With_Suffix(file, std::string(ending) + std::to_string(number));
    for (const auto* suffix : file_suffixes) {
        const auto part = With_Suffix(file, suffix);
        if (std::filesystem::exists(part))
            std::filesystem::rename(part, With_Suffix(kept, suffix));
    }
    return kept;
}

}  // namespace norvane
