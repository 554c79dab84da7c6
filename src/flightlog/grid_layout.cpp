#include "flightlog/grid_layout.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/find_file.h"
#include "common/log_error.h"
#include "common/number.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/field_definitions.h"

namespace norvane {

namespace {

constexpr std::string_view row_key = "Row";
// More than any screen shows; a stored size beyond it is damage.
constexpr double largest_size_twips = 100'000;

std::string Width_Key(std::size_t column) {
    return fmt::format("Col{}", column);
}

std::string Visible_Key(std::size_t column) {
    return Width_Key(column) + "_Visible";
}

int Stored_Size(Settings_Store& settings, std::string_view key, int otherwise) {
    const auto size = Parse_Number(settings.Get(grid_section, key));
    if (!size || *size < 1 || *size > largest_size_twips)
        return otherwise;
    return Whole(*size);
}

}  // namespace

void Grid_Layout::Load(bool reset, std::string_view va_directory) {
    Settings_Store& settings = m_services.settings;
    row_height_twips =
        reset ? default_row_height_twips : Stored_Size(settings, row_key, default_row_height_twips);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Log_Column& standard = All_Log_Columns()[i];
        columns.at(i) = {std::string(standard.caption), standard.width_twips, true, {}};
        if (reset)
            continue;
        columns.at(i).width_twips = Stored_Size(settings, Width_Key(i), standard.width_twips);
        if (i < log_column::first_optional) {
            Guarded(m_services, "ucFlightLog.Get_Setting()", Show::silent,
                    [&] { columns.at(i).visible = Get_Setting(i); });
        }
    }
    columns.at(log_column::ifr_vfr).entries = {"IFR", "VFR"};
    Get_Custom_Captions(Find_Path(m_services, m_services.program_directory, "bin\\optfields.cfg"),
                        log_column::first_optional, optional_field_count);
    if (!va_directory.empty()) {
        Get_Custom_Captions(Find_Path(m_services, m_services.program_directory,
                                      std::string(va_directory) + "\\vafields.cfg"),
                            log_column::first_airline, airline_field_count);
    }
    for (std::size_t i = log_column::first_optional; i < columns.size(); ++i)
        columns.at(i).visible = !columns.at(i).caption.empty();
}

void Grid_Layout::Save() const {
    Settings_Store& settings = m_services.settings;
    Settings_Batch batch(settings);
    settings.Set(grid_section, row_key, fmt::format("{}", row_height_twips));
    for (std::size_t i = 0; i < columns.size(); ++i) {
        settings.Set(grid_section, Width_Key(i), fmt::format("{}", columns.at(i).width_twips));
        settings.Set(grid_section, Visible_Key(i), columns.at(i).visible ? "True" : "False");
    }
    batch.Commit();
}

std::string Grid_Layout::Distinct_Caption(std::size_t column) const {
    const std::string& caption = columns.at(column).caption;
    const auto alike = std::count_if(columns.begin(), columns.end(), [&](const Grid_Column& other) {
        return Equal_No_Case(other.caption, caption);
    });
    if (alike < 2)
        return caption;
    // An airport's name stands behind its code.
    if (column == log_column::origin + 1 || column == log_column::destination + 1)
        return columns.at(column - 1).caption + " " + caption;
    return fmt::format("{} ({})", caption, column);
}

bool Grid_Layout::Get_Setting(std::size_t column) const {
    const std::string text = m_services.settings.Get(grid_section, Visible_Key(column));
    if (text.empty() || Equal_No_Case(text, "True"))
        return true;
    if (Equal_No_Case(text, "False"))
        return false;
    const auto number = Parse_Number(text);
    if (!number) {
        throw Run_Error(
            error_number::type_mismatch,
            fmt::format("{}: \"{}\" is neither True nor False", Visible_Key(column), text));
    }
    return *number != 0;
}

void Grid_Layout::Get_Custom_Captions(const std::filesystem::path& definitions,
                                      std::size_t first_column, std::size_t most) {
    Guarded(m_services, "ucACARS.Get_Custom_Captions()", Show::box, [&] {
        if (!std::filesystem::exists(definitions))
            return;
        const Field_Definitions read = Read_Field_Definitions(definitions, most);
        for (std::size_t i = 0; i < read.fields.size(); ++i) {
            columns.at(first_column + i).caption = read.fields[i].caption;
            // A single entry is no choice: the cell is typed into.
            if (read.fields[i].entries.size() > 1)
                columns.at(first_column + i).entries = read.fields[i].entries;
        }
        if (!read.failure.empty())
            throw Run_Error(error_number::type_mismatch, read.failure);
    });
}

}  // namespace norvane
