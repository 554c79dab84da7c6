#pragma once
// An SQLite file and its statements: what the settings store and the store of flights are made of.
// Texts are the core's (Windows-1252) here and UTF-8 in the file. Every operation that fails raises
// a Run_Error that names the file.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "common/run_error.h"

struct sqlite3;
struct sqlite3_stmt;

namespace norvane {

class Sqlite_Database;

/// A prepared statement; it ends before its database.
class Sqlite_Statement {
  public:
    Sqlite_Statement() = default;

    /// Ready for a run: no parameter has a value.
    void Reset();
    /// Gives the next parameter its value.
    Sqlite_Statement& Bind(std::string_view text);
    Sqlite_Statement& Bind(double value);
    Sqlite_Statement& Bind(std::int64_t value);
    Sqlite_Statement& Bind_Bytes(std::string_view bytes);
    Sqlite_Statement& Bind_Null();
    /// True when there is a row.
    bool Step();
    /// A column of the row, from 0; of one that is NULL the text is empty, the number 0.
    [[nodiscard]] std::string Text(int column) const;
    [[nodiscard]] double Real(int column) const;
    [[nodiscard]] std::int64_t Whole_Number(int column) const;
    [[nodiscard]] std::string Bytes(int column) const;
    [[nodiscard]] bool Is_Null(int column) const;

  private:
    friend class Sqlite_Database;
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };
    void Check(int result) const;

    const Sqlite_Database* m_database = nullptr;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
    int m_bound = 0;
};

/// Stays where it is: its statements know it by its address.
class Sqlite_Database {
  public:
    /// `flags`: SQLITE_OPEN_...; `patience`: how long another program's transaction is waited for.
    Sqlite_Database(std::filesystem::path file, int flags,
                    std::chrono::milliseconds patience = std::chrono::seconds(5));
    Sqlite_Database(const Sqlite_Database&) = delete;
    Sqlite_Database& operator=(const Sqlite_Database&) = delete;

    void Execute(const char* sql);
    [[nodiscard]] Sqlite_Statement Prepare(const std::string& sql) const;
    /// Raises `Broken_Content` when the file contradicts itself.
    void Demand_Whole() const;
    [[nodiscard]] bool Is_Read_Only() const;
    [[nodiscard]] bool In_Transaction() const;
    /// Undoes the transaction, if one is open; never raises.
    void Roll_Back() noexcept;
    /// Copies what is committed into another database.
    void Copy_To(Sqlite_Database& target) const;

  private:
    friend class Sqlite_Statement;
    struct Close_Connection {
        void operator()(sqlite3* connection) const;
    };
    [[noreturn]] void Raise(int result, const char* description) const;
    [[noreturn]] void Raise_Last(int result) const;

    std::filesystem::path m_file;
    std::unique_ptr<sqlite3, Close_Connection> m_connection;
};

/// Creates the file for its owner alone, or takes it away from all others. A drive that knows no
/// modes is no reason to fail.
void Make_Private(const std::filesystem::path& file);

/// Moves a database, with what SQLite keeps beside it, to a name that is free: the file's own with
/// `ending`, or `ending` and a number from 2 on. Returns that name.
std::filesystem::path Move_Database_Aside(const std::filesystem::path& file,
                                          std::string_view ending);

}  // namespace norvane
