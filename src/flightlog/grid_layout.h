#pragma once
// How the flight log's grid looks: row height, and each column's caption, width, visibility and
// list. Kept per user in the settings store; captions of the pilot's and the airline's own columns
// come from their field definitions. Owned by the flight log panel.

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "flightlog/log_columns.h"

namespace norvane {

struct Services;

inline constexpr std::string_view grid_section = "Grid";
inline constexpr int default_row_height_twips = 300;

struct Grid_Column {
    std::string caption;
    int width_twips = 0;
    bool visible = true;
    /// Entries the cell offers; empty for free text.
    std::vector<std::string> entries;
};

class Grid_Layout {
  public:
    explicit Grid_Layout(Services& services) : m_services(services) {}

    /// Row height, widths and visibility from the store, or the defaults when `reset`; captions
    /// anew from the definitions: the pilot's, and the airline's in its directory `va_directory`
    /// (under the program directory; empty for none). Stored texts that are no size count as the
    /// default.
    void Load(bool reset, std::string_view va_directory);
    /// Writes every size and visibility in one batch. Raises when the store fails.
    void Save() const;

    /// Of the stored visibility of a column: missing or empty is visible; a text that is no boolean
    /// raises 13.
    [[nodiscard]] bool Get_Setting(std::size_t column) const;

    int row_height_twips = default_row_height_twips;
    std::array<Grid_Column, log_column_count> columns;

    /// The column's caption; where another column has the same, with what tells it apart: for lists
    /// and reports, in which a column does not stand beside its neighbours.
    [[nodiscard]] std::string Distinct_Caption(std::size_t column) const;

  private:
    void Get_Custom_Captions(const std::filesystem::path& definitions, std::size_t first_column,
                             std::size_t most);

    Services& m_services;
};

}  // namespace norvane
