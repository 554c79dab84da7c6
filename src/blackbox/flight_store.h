#pragma once
// What is known of the flights that were recorded, in "flights.sqlite" below the directory of the
// recordings: their summaries, which stay when a recording goes. docs/formats.md has the tables.
// Nothing here is worth stopping for: a file that is damaged is moved aside and told of.

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "blackbox/flight_summary.h"
#include "blackbox/recordings.h"
#include "common/date_time.h"
#include "config/sqlite_database.h"

namespace norvane {

struct Flight_Filter {
    /// Days in UTC, both included; a flight that does not tell its day passes no filter by days.
    std::optional<Date> from;
    std::optional<Date> to;
    /// Code of one of its ends, whatever the case; empty: any.
    std::string airport;

    [[nodiscard]] bool Takes(const Flight_Summary& flight) const;
};

/// `look`: nothing is written or moved; a store that is missing or damaged is an empty one.
enum class Store_Use { look, write };

class Flight_Store {
  public:
    /// The store of a directory of recordings, made when it is not there. Raises when it can be
    /// neither opened nor made, is a newer program's, or another program writes to it for longer
    /// than `patience`; so does whatever writes.
    Flight_Store(const std::filesystem::path& directory, Store_Use use,
                 std::chrono::milliseconds patience = std::chrono::seconds(5));

    /// What was wrong with the file, and where it is kept now; empty when nothing was.
    [[nodiscard]] const std::string& Trouble() const { return m_trouble; }

    /// Adds the flight, or puts it in the place of one of the same ID, in one transaction.
    void Put(const Flight_Summary& flight);
    /// The same for several flights: all or none.
    void Put_All(const std::vector<Flight_Summary>& flights);
    [[nodiscard]] bool Has(const std::string& id) const { return Find(id).has_value(); }
    /// None when there is no such flight, or what is stored of it cannot be read.
    [[nodiscard]] std::optional<Flight_Summary> Find(const std::string& id) const;
    /// The flights but for their tracks, by the time they began and their ID.
    [[nodiscard]] std::vector<Flight_Summary> List(const Flight_Filter& filter = {}) const;

  private:
    void Open(Store_Use use);
    void Write(const Flight_Summary& flight);
    void Delete(const std::string& id);
    void Read_Lists(Flight_Summary& flight) const;

    std::filesystem::path m_file;
    std::chrono::milliseconds m_patience;
    std::string m_trouble;
    /// Who looks at an older program's store finds no table of planned figures.
    bool m_has_planned = true;
    std::unique_ptr<Sqlite_Database> m_database;
};

}  // namespace norvane
