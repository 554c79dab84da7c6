#pragma once
// The pilot's edits of rows between two saves of the flight log, and what is kept of them once they
// are saved. Edits that are given up leave nothing. Rows are told by their lines, so that sorting
// changes nothing. Owned by the flight log panel.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "flightlog/corrections.h"

namespace norvane {

class Row_Edits {
  public:
    explicit Row_Edits(Services& services) : m_corrections(services) {}

    /// A row has another line now, of 53 fields, by the pilot's hand. One that was empty is new:
    /// what is typed into it corrects nothing.
    void Add(std::string before, std::string after, std::string_view why = {});
    /// A row has another line now, by a flight that went on.
    void Add_Progress(std::string before, std::string after);
    /// The row with this line is gone, or is made anew: what was edited in it is not saved.
    void Drop(std::string_view line);
    void Clear() { m_edits.clear(); }
    /// The log stands in its file. False when the corrections could not be written; they are with
    /// the next ones.
    bool Keep(std::string_view log);

    /// Of a row as it stands in the table; edits that are not saved yet are not in it.
    [[nodiscard]] std::vector<Correction> History(std::string_view line);
    /// What "Take Back Last Correction" takes back, one further back each time, saved in between or
    /// not.
    [[nodiscard]] std::optional<Correction> Last(std::string_view line);
    /// The corrections of a cell in words, the last one first, a line each; empty without any.
    [[nodiscard]] std::string Remark(std::string_view line, std::size_t column);
    [[nodiscard]] std::filesystem::path File() const { return m_corrections.File(); }

  private:
    struct Edit {
        std::string before;
        std::string after;
        std::string why;
        bool is_progress = false;
    };

    /// A row as it was saved, and how many corrections were taken back since.
    struct Saved_Row {
        std::string line;
        std::size_t taken_back = 0;
    };
    [[nodiscard]] Saved_Row Saved(std::string_view line) const;

    Corrections m_corrections;
    std::vector<Edit> m_edits;
};

}  // namespace norvane
