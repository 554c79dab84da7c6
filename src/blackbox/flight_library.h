#pragma once
// The recordings of a directory and the store of what is known of them, as one: a flight that was
// recorded and not stored is derived when it is asked for.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "blackbox/flight_json.h"
#include "blackbox/flight_store.h"
#include "simlink/recording.h"

namespace norvane {

struct Verified_Flight {
    std::string id;
    std::vector<Flight_Difference> differences;
};

class Flight_Library {
  public:
    /// `Derive_Flight`, or what a test puts in its place.
    using Derive =
        std::function<Flight_Summary(std::string id, const std::vector<Recorded_Moment>& moments)>;
    /// Hears of a recording that cannot be read, which is then passed over.
    using Told = std::function<void(const std::string& fault)>;

    /// Raises as `Flight_Store`.
    Flight_Library(std::filesystem::path directory, Store_Use use, Derive derive, Told told);

    /// Without their tracks where they come from the store.
    [[nodiscard]] std::vector<Flight_Summary> List(const Flight_Filter& filter) const;
    /// Raises when there is no such flight, or nothing but a recording that cannot be read.
    [[nodiscard]] Flight_Summary Find(const std::string& id) const;
    /// Packs a copy of a recording into the directory and stores the flight, whose ID is the file's
    /// name without its endings. Raises when the ID is taken or the file is no recording; then
    /// nothing has changed.
    Flight_Summary Import(const std::filesystem::path& file);
    /// Derives and stores every packed recording anew, all or none; what is stored of others stays.
    /// Returns how many.
    std::size_t Rebuild();
    /// Derives every recording and compares; flights without a difference are left out. A flight
    /// that is not stored differs in "flight", unless it is still being recorded.
    [[nodiscard]] std::vector<Verified_Flight> Verify() const;

  private:
    [[nodiscard]] Flight_Summary Derived(const Recording_File& recording) const;
    /// None after `m_told`.
    [[nodiscard]] std::optional<Flight_Summary> Derived_Or_Told(
        const Recording_File& recording) const;

    std::filesystem::path m_directory;
    Flight_Store m_store;
    Derive m_derive;
    Told m_told;
};

}  // namespace norvane
