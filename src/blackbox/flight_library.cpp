#include "blackbox/flight_library.h"

#include <algorithm>
#include <set>
#include <utility>

#include "common/code_page.h"

namespace norvane {

namespace fs = std::filesystem;

Flight_Library::Flight_Library(fs::path directory, Store_Use use, Derive derive, Told told)
    : m_directory(std::move(directory)),
      m_store(m_directory, use),
      m_derive(std::move(derive)),
      m_told(std::move(told)) {
    if (!m_store.Trouble().empty())
        m_told(m_store.Trouble());
}

Flight_Summary Flight_Library::Derived(const Recording_File& recording) const {
    return m_derive(recording.id, Read_Recording(recording.file));
}

std::optional<Flight_Summary> Flight_Library::Derived_Or_Told(
    const Recording_File& recording) const {
    try {
        return Derived(recording);
    } catch (const Run_Error& fault) {
        m_told(fault.Description());
        return std::nullopt;
    }
}

std::vector<Flight_Summary> Flight_Library::List(const Flight_Filter& filter) const {
    std::vector<Flight_Summary> flights = m_store.List();
    std::set<std::string> stored;
    for (const Flight_Summary& flight : flights)
        stored.insert(flight.id);
    for (const Recording_File& recording : List_Recordings(m_directory)) {
        if (stored.contains(recording.id))
            continue;
        if (auto flight = Derived_Or_Told(recording))
            flights.push_back(std::move(*flight));
    }
    std::erase_if(flights, [&](const Flight_Summary& flight) { return !filter.Takes(flight); });
    std::sort(flights.begin(), flights.end(), [](const auto& one, const auto& other) {
        return std::tie(one.began_utc, one.id) < std::tie(other.began_utc, other.id);
    });
    return flights;
}

Flight_Summary Flight_Library::Find(const std::string& id) const {
    if (auto flight = m_store.Find(id))
        return std::move(*flight);
    for (const Recording_File& recording : List_Recordings(m_directory)) {
        if (recording.id == id)
            return Derived(recording);
    }
    throw Run_Error(error_number::file_not_found, "There is no flight \"" + id + "\"");
}

Flight_Summary Flight_Library::Import(const fs::path& file) {
    const std::string id = Recording_Id(file);
    if (id.empty()) {
        throw Run_Error(error_number::invalid_call,
                        From_Path(file) + " does not end in .rec or .rec.gz");
    }
    const auto recordings = List_Recordings(m_directory);
    const bool is_taken =
        m_store.Find(id).has_value() ||
        std::any_of(recordings.begin(), recordings.end(),
                    [&](const Recording_File& recording) { return recording.id == id; });
    if (is_taken) {
        throw Run_Error(error_number::invalid_call, "There is a flight \"" + id +
                                                        "\" already; a file of another name is "
                                                        "another flight");
    }
    Flight_Summary flight = Derived({id, file});
    const fs::path packed = m_directory / To_Path(id + ".rec.gz");
    Pack_Recording(file, packed);
    try {
        m_store.Put(flight);
    } catch (...) {
        std::error_code unknown;
        fs::remove(packed, unknown);
        throw;
    }
    return flight;
}

std::size_t Flight_Library::Rebuild() {
    std::vector<Flight_Summary> flights;
    for (const Recording_File& recording : List_Recordings(m_directory)) {
        // A plain one gets its name when it is packed, and is stored then.
        if (!recording.is_packed)
            continue;
        if (auto flight = Derived_Or_Told(recording))
            flights.push_back(std::move(*flight));
    }
    m_store.Put_All(flights);
    return flights.size();
}

std::vector<Verified_Flight> Flight_Library::Verify() const {
    std::vector<Verified_Flight> verified;
    for (const Recording_File& recording : List_Recordings(m_directory)) {
        const auto stored = m_store.Find(recording.id);
        // Still being recorded, perhaps: nothing is wrong with it.
        if (!stored && !recording.is_packed)
            continue;
        const auto derived = Derived_Or_Told(recording);
        if (!derived)
            continue;
        Verified_Flight flight{recording.id, {}};
        if (stored)
            flight.differences = Differences(*stored, *derived);
        else
            flight.differences.push_back({"flight", "", derived->id});
        if (!flight.differences.empty())
            verified.push_back(std::move(flight));
    }
    return verified;
}

}  // namespace norvane
