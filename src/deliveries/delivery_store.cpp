#include "deliveries/delivery_store.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <system_error>

#include "common/code_page.h"
#include "common/run_error.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr std::int64_t store_version = 1;
/// A pilot who looks at an answer needs no more of it.
constexpr std::size_t longest_kept_answer = std::size_t{64} * 1024;

constexpr const char* create_table =
    "CREATE TABLE IF NOT EXISTS deliveries(id INTEGER PRIMARY KEY AUTOINCREMENT, airline TEXT, "
    "kind TEXT, flight TEXT, method TEXT, address TEXT, headers TEXT, body BLOB, idempotent "
    "INTEGER, file TEXT, created INTEGER, state TEXT, attempts INTEGER, next INTEGER, not_before "
    "INTEGER, changed INTEGER, status INTEGER, failure TEXT, answer BLOB)";
constexpr const char* small_columns =
    "id, airline, kind, flight, method, address, headers, idempotent, file, created, state, "
    "attempts, next, not_before, changed, status, failure";
constexpr int column_after_small = 17;

Airline_Delivery Read_Small(const Sqlite_Statement& row) {
    Airline_Delivery delivery;
    int column = 0;
    delivery.id = row.Whole_Number(column++);
    delivery.airline = row.Text(column++);
    delivery.kind = Kind_Of(row.Text(column++));
    delivery.flight = row.Text(column++);
    delivery.method = row.Text(column++);
    delivery.address = row.Text(column++);
    const std::string headers = row.Text(column++);
    if (!headers.empty())
        delivery.headers = Split(headers, '\n');
    delivery.is_idempotent = row.Whole_Number(column++) != 0;
    delivery.file = row.Text(column++);
    delivery.created_s = row.Whole_Number(column++);
    delivery.state = State_Of(row.Text(column++));
    delivery.attempts = static_cast<int>(row.Whole_Number(column++));
    delivery.next_s = row.Whole_Number(column++);
    delivery.not_before_s = row.Whole_Number(column++);
    delivery.changed_s = row.Whole_Number(column++);
    delivery.status = static_cast<long>(row.Whole_Number(column++));
    delivery.failure = row.Text(column);
    return delivery;
}

}  // namespace

std::filesystem::path Delivery_Store::File_In(const std::filesystem::path& program_directory) {
    return std::filesystem::absolute(program_directory) / "deliveries.sqlite";
}

Delivery_Store::Delivery_Store(const std::filesystem::path& program_directory, Use use)
    : m_file(File_In(program_directory)) {
    if (use == Use::write)
        m_lock.emplace(m_file);
    try {
        Open(use);
    } catch (const Broken_Content& fault) {
        if (use == Use::look)
            throw;
        m_database.reset();
        m_trouble = fault.Description() + "\r\nThe file is kept as " +
                    From_Path(Move_Database_Aside(m_file, ".broken")) + ", a new one was begun";
        Open(use);
    }
}

void Delivery_Store::Open(Use use) {
    std::error_code failure;
    if (use == Use::look) {
        if (!std::filesystem::exists(m_file, failure))
            return;
        m_database = std::make_unique<Sqlite_Database>(m_file, SQLITE_OPEN_READONLY);
    } else {
        Make_Private(m_file);
        m_database =
            std::make_unique<Sqlite_Database>(m_file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    }
    m_database->Demand_Whole();
    auto version = m_database->Prepare("PRAGMA user_version");
    version.Step();
    const std::int64_t found = version.Whole_Number(0);
    version = {};
    if (found > store_version) {
        throw Run_Error(error_number::other,
                        From_Path(m_file) + ": the deliveries were stored by a newer Norvane");
    }
    if (use == Use::look) {
        // What a start left that was broken off before the first table.
        if (found == 0)
            m_database.reset();
        return;
    }
    m_database->Execute("PRAGMA synchronous = FULL");
    m_database->Execute("BEGIN IMMEDIATE");
    m_database->Execute(create_table);
    m_database->Execute(fmt::format("PRAGMA user_version = {}", store_version).c_str());
    m_database->Execute("COMMIT");
}

std::int64_t Delivery_Store::Add(const Airline_Delivery& delivery) {
    auto row = m_database->Prepare(
        "INSERT INTO deliveries(airline, kind, flight, method, address, headers, body, idempotent, "
        "file, created, state, attempts, next, not_before, changed, status, failure) "
        "VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0, 0, 0, ?, 0, '') RETURNING id");
    row.Bind(delivery.airline).Bind(Name_Of(delivery.kind)).Bind(delivery.flight);
    row.Bind(delivery.method).Bind(delivery.address).Bind(Join(delivery.headers, "\n"));
    row.Bind_Bytes(delivery.body).Bind(std::int64_t{delivery.is_idempotent}).Bind(delivery.file);
    row.Bind(delivery.created_s).Bind(Name_Of(delivery.state)).Bind(delivery.changed_s);
    row.Step();
    const std::int64_t id = row.Whole_Number(0);
    // Only a statement that has come to its end is committed.
    row.Step();
    return id;
}

void Delivery_Store::Update(const Airline_Delivery& delivery) {
    auto row = m_database->Prepare(
        "UPDATE deliveries SET state = ?, attempts = ?, next = ?, not_before = ?, changed = ?, "
        "status = ?, failure = ?, answer = ? WHERE id = ?");
    row.Bind(Name_Of(delivery.state)).Bind(std::int64_t{delivery.attempts});
    row.Bind(delivery.next_s).Bind(delivery.not_before_s).Bind(delivery.changed_s);
    row.Bind(std::int64_t{delivery.status}).Bind(delivery.failure);
    row.Bind_Bytes(delivery.answer.substr(0, longest_kept_answer)).Bind(delivery.id);
    row.Step();
}

void Delivery_Store::Prune(std::int64_t before_s) {
    auto row = m_database->Prepare("DELETE FROM deliveries WHERE state = ? AND changed < ?");
    row.Bind(Name_Of(Delivery_State::delivered)).Bind(before_s).Step();
}

std::vector<Airline_Delivery> Delivery_Store::List() const {
    std::vector<Airline_Delivery> all;
    if (!m_database)
        return all;
    auto row = m_database->Prepare(fmt::format(
        "SELECT {}, substr(answer, 1, 1000) FROM deliveries ORDER BY id", small_columns));
    while (row.Step()) {
        all.push_back(Read_Small(row));
        all.back().answer = row.Bytes(column_after_small);
    }
    return all;
}

std::optional<Airline_Delivery> Delivery_Store::Find(std::int64_t id) const {
    if (!m_database)
        return std::nullopt;
    auto row = m_database->Prepare(
        fmt::format("SELECT {}, body, answer FROM deliveries WHERE id = ?", small_columns));
    if (!row.Bind(id).Step())
        return std::nullopt;
    Airline_Delivery delivery = Read_Small(row);
    delivery.body = row.Bytes(column_after_small);
    delivery.answer = row.Bytes(column_after_small + 1);
    return delivery;
}

bool Delivery_Store::Holds(const std::string& file, const std::string& body) const {
    auto row = m_database->Prepare("SELECT id FROM deliveries WHERE file = ? AND body = ?");
    return row.Bind(file).Bind_Bytes(body).Step();
}

}  // namespace norvane
