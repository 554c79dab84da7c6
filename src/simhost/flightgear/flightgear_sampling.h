#pragma once
// What to ask FlightGear for one aircraft, and what its answers say: the table's sources
// (flightgear_table.h) as one list of paths, and the figures found in as many answers. Owned by the
// world (flightgear_world.h), which makes a new one for another aircraft.

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simhost/flightgear/flightgear_table.h"

namespace norvane {

class Flightgear_Sampling {
  public:
    Flightgear_Sampling(const Flightgear_Table& table, std::string_view aircraft);

    /// Each path once.
    [[nodiscard]] const std::vector<std::string>& Paths() const { return m_paths; }
    /// The answers to `Paths`, as many and in their order.
    void Take(std::vector<std::string> answers) { m_answers = std::move(answers); }
    /// Which of `Paths` tell of these figures and were answered last time.
    [[nodiscard]] std::vector<std::size_t> Answered(std::span<const Figure> figures) const;
    /// Answers to those of `Paths` at these places; the others' stay.
    void Take_At(std::span<const std::size_t> places, std::vector<std::string> answers);

    /// The figure by the first of its sources that tells a number within the figure's limits; `n`
    /// counts from 0.
    [[nodiscard]] std::optional<double> Find(Figure figure, int n = 0) const;
    [[nodiscard]] double Get(Figure figure, double otherwise = 0, int n = 0) const;
    [[nodiscard]] bool Is(Figure flag, bool otherwise = false, int n = 0) const;
    /// One line in the code page; empty when no source tells one.
    [[nodiscard]] std::string Text(Figure figure) const;

  private:
    struct Place {
        /// Index into the paths; none for a number that always holds.
        std::optional<std::size_t> path;
        double factor = 1;
    };

    [[nodiscard]] Place Place_Of(const Figure_Source& source, int n);

    std::vector<std::string> m_paths;
    std::vector<std::string> m_answers;
    /// By figure and number.
    std::vector<std::vector<std::vector<Place>>> m_places;
};

}  // namespace norvane
