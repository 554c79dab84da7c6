#pragma once
// What airlines are to get, in a file of its own: "deliveries.sqlite" in the program directory.
// Whatever is written here stands on the disk when the call returns. Owned by the outbox;
// commands that only look open it for themselves. Every operation raises when the file fails.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "config/sqlite_database.h"
#include "config/sqlite_store.h"
#include "deliveries/delivery.h"

namespace norvane {

class Delivery_Store {
  public:
    enum class Use { look, write };

    /// To look at a file that is not there is to see no deliveries. A file that is broken is kept
    /// under another name by who writes, and a new one begins; `Trouble` tells.
    Delivery_Store(const std::filesystem::path& program_directory, Use use);
    Delivery_Store(const Delivery_Store&) = delete;
    Delivery_Store& operator=(const Delivery_Store&) = delete;

    [[nodiscard]] static std::filesystem::path File_In(
        const std::filesystem::path& program_directory);
    [[nodiscard]] const std::string& Trouble() const { return m_trouble; }
    /// Nobody else sends what stands here.
    [[nodiscard]] bool Holds_Lock() const { return m_lock && m_lock->Held(); }

    /// Returns its number.
    std::int64_t Add(const Airline_Delivery& delivery);
    /// Stores what has become of it.
    void Update(const Airline_Delivery& delivery);
    /// Deletes what was delivered before this moment.
    void Prune(std::int64_t before_s);

    /// All of them, the oldest first, without what was sent and with the beginning of what came.
    [[nodiscard]] std::vector<Airline_Delivery> List() const;
    [[nodiscard]] std::optional<Airline_Delivery> Find(std::int64_t id) const;
    /// The very content that was made of this file was put here, whatever became of it.
    [[nodiscard]] bool Holds(const std::string& file, const std::string& body) const;

  private:
    void Open(Use use);

    std::filesystem::path m_file;
    std::string m_trouble;
    std::optional<Store_Lock> m_lock;
    std::unique_ptr<Sqlite_Database> m_database;
};

}  // namespace norvane
