#pragma once
// The settings store of the pilot: one SQLite file with a write-ahead log, so that what was
// committed outlives a killed program. Owned by the program that starts. A `Store_Lock` beside it
// keeps a second writing program away.

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "common/services.h"
#include "config/sqlite_database.h"

namespace norvane {

/// "settings.sqlite" in the directory "norvane" of the user's configuration directory.
[[nodiscard]] std::filesystem::path Default_Store_File();

/// Makes the directory of a store. The one of the default place is Norvane's own and gets its user
/// as the only one who may look into it; another one is the pilot's, and stays as it is.
void Make_Store_Directory(const std::filesystem::path& store);

class Sqlite_Store : public Settings_Store {
  public:
    /// Opens or creates `file` and its directory, both the user's alone: they hold what airlines
    /// know the pilot by. Only for who holds the store's lock. A file that is no database is kept
    /// under another name and a new store begins; `Trouble` tells. Raises when the file cannot be
    /// opened for writing or is another program's database.
    explicit Sqlite_Store(const std::filesystem::path& file);
    ~Sqlite_Store() override;

    /// What was wrong with the file and where it is kept now; empty when nothing was.
    [[nodiscard]] const std::string& Trouble() const { return m_trouble; }

    [[nodiscard]] std::optional<std::string> Find(std::string_view section,
                                                  std::string_view key) override;
    void Set(std::string_view section, std::string_view key, std::string_view value) override;
    void Delete_Section(std::string_view section) override;
    void Begin() override;
    /// A commit that fails undoes the batch, then raises.
    void Commit() override;
    /// What is committed, without an open batch.
    void Back_Up() override;

  private:
    void Open();
    void Close();

    std::filesystem::path m_file;
    std::string m_trouble;
    std::unique_ptr<Sqlite_Database> m_database;
    Sqlite_Statement m_find;
    Sqlite_Statement m_set;
    Sqlite_Statement m_delete_section;
    int m_depth = 0;
};

/// What a store held at one moment, for who only looks: the file and its directory stay as they
/// are, whatever is wrong with them, and need not be writable.
struct Store_Snapshot {
    struct Value {
        std::string section;
        std::string key;
        std::string text;
    };
    /// All that could be read.
    std::vector<Value> values;
    /// Why it is not all, or none; empty when it is. A store that does not exist holds nothing.
    std::string trouble;
};
[[nodiscard]] Store_Snapshot Read_Store(const std::filesystem::path& file);

/// The right to write to a store, held until the object or its process ends.
class Store_Lock {
  public:
    /// Tries to take the lock of `store` ("settings.sqlite.lock" beside it), without waiting.
    /// Raises when the lock file cannot be made.
    explicit Store_Lock(const std::filesystem::path& store);
    ~Store_Lock();
    Store_Lock(const Store_Lock&) = delete;
    Store_Lock& operator=(const Store_Lock&) = delete;

    /// False while another program holds it.
    [[nodiscard]] bool Held() const { return m_held; }

  private:
    int m_descriptor = -1;
    bool m_held = false;
};

}  // namespace norvane
