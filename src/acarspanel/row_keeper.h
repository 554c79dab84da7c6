#pragma once
// A flight that leaves the ACARS panel without being logged stays as a row beside the log. Owned by
// the panel.

#include <filesystem>
#include <optional>
#include <string_view>

#include "acarspanel/panel_parts.h"

namespace norvane {

class Panel_Store;

class Row_Keeper {
  public:
    Row_Keeper(const Panel_Parts& parts, Panel_Store& store) : m_parts(parts), m_store(store) {}

    /// The file that the row of a flight that is given up now would go to.
    [[nodiscard]] std::filesystem::path Next_File() const;
    /// Writes the flight's row to that file, which is returned; raises when it cannot be written.
    std::filesystem::path Keep();
    /// As `Keep`. Where nothing can be written the pilot is asked: empty to let the flight go,
    /// none to keep it on the panel.
    [[nodiscard]] std::optional<std::filesystem::path> Keep_Or_Ask(std::string_view question);
    /// For a flight that the store does not take and nobody can be asked about: beside the log, or
    /// in the error log at least.
    void Keep_Somewhere();
    /// Says where a row is kept; nothing about an empty name.
    void Tell_Where(const std::filesystem::path& kept) const;
    /// The file that was written last; empty before.
    [[nodiscard]] const std::filesystem::path& Last_File() const { return m_last; }

  private:
    Panel_Parts m_parts;
    Panel_Store& m_store;
    std::filesystem::path m_last;
};

}  // namespace norvane
