// The panel's pages, and the pilot's and the airline's own fields on the last two of them.

#include "acarspanel/uc_acars.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <utility>

#include "common/code_page.h"
#include "common/find_file.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/cls_va_settings.h"

namespace norvane {

namespace {

constexpr int figures_page = 0;
constexpr int airline_page = 1;
constexpr int optional_fields_page = 2;
constexpr int airline_fields_page = 3;

/// Index of the last of the PIREP form's fixed values. Only a form with fields of the airline's own
/// behind them has a use for airline fields on the panel.
constexpr int fixed_pirep_fields_bound = 41;

template <std::size_t count>
void Define_Fields(const std::filesystem::path& file, std::array<Custom_Field, count>& positions) {
    const Field_Definitions definitions = Read_Field_Definitions(file, count);
    for (std::size_t i = 0; i < definitions.fields.size(); ++i)
        positions[i].Define(definitions.fields[i]);
    if (!definitions.failure.empty())
        throw Run_Error(error_number::subscript_out_of_range, definitions.failure);
}

}  // namespace

Custom_Field::Custom_Field() {
    Remove();
}

void Custom_Field::Remove() {
    lblCaption.Set_Visible(false);
    lblCaption.Set_Text({});
    cbo.Set_Visible(false);
    cbo.Set_Enabled(false);
    cbo.Clear();
    txt.Set_Visible(false);
    txt.Set_Enabled(false);
    txt.Set_Text({});
}

void Custom_Field::Define(const Field_Definition& definition) {
    lblCaption.Set_Text(definition.caption);
    lblCaption.Set_Visible(true);
    const bool is_list = !definition.entries.empty();
    if (is_list)
        cbo.Set_Entries(definition.entries);
    cbo.Set_Visible(is_list);
    cbo.Set_Enabled(is_list);
    txt.Set_Visible(!is_list);
    txt.Set_Enabled(!is_list);
}

std::string Custom_Field::Value() const {
    if (cbo.Enabled())
        return Trim(cbo.Text());
    return txt.Enabled() ? Without_Placeholder(Trimmed_View(txt.Text())) : std::string();
}

void Custom_Field::Restore(std::string_view value) {
    if (txt.Enabled())
        txt.Set_Text(value);
    if (cbo.Enabled())
        cbo.Select_Text(value);
}

const Control* Custom_Field::Shown() const {
    if (txt.Visible())
        return &txt;
    return cbo.Visible() ? &cbo : nullptr;
}

std::filesystem::path ucACARS::Optional_Fields_File() const {
    return Find_Path(m_services, m_services.program_directory, "bin\\optfields.cfg");
}

void ucACARS::Load_Optional_Fields() {
    Guarded(m_services, "ucACARS.Load_Optional_Fields()", Show::box,
            [&] { Define_Fields(Optional_Fields_File(), optFields); });
}

void ucACARS::Load_VA_Fields() {
    Guarded(m_services, "ucACARS.Load_VA_Fields()", Show::box, [&] {
        const auto directory =
            Find_Path(m_services, m_services.program_directory, m_airline.Directory());
        if (!std::filesystem::is_directory(directory))
            return;
        const auto file = Find_Path(m_services, directory, "vafields.cfg");
        if (std::filesystem::exists(file)) {
            Define_Fields(file, vaFields);
            return;
        }
        // An airline without such a file has no fields of its own: nothing to stop the pilot for.
        Log_Error(m_services, "ucACARS.Load_VA_Fields()",
                  {error_number::file_not_found, "File not found: " + From_Path(file)},
                  Show::silent);
    });
}

void ucACARS::VA_Settings() {
    Guarded(m_services, "ucACARS.VA_Settings()", Show::box, [&] {
        m_has_airline_fields = false;
        // The same airline's fields keep what was typed into them.
        const bool is_same = std::exchange(m_fields_of, m_airline.Name()) == m_airline.Name();
        std::array<std::pair<std::string, std::string>, airline_field_count> typed;
        for (std::size_t i = 0; i < vaFields.size(); ++i) {
            if (is_same)
                typed[i] = {vaFields[i].lblCaption.Text(), vaFields[i].Value()};
            vaFields[i].Remove();
        }
        m_has_airline_fields = !m_airline.WebServer().empty() &&
                               m_airline.PIREP_Fields_Ubound() >= fixed_pirep_fields_bound;
        if (m_has_airline_fields)
            Load_VA_Fields();
        for (std::size_t i = 0; i < vaFields.size(); ++i) {
            if (!typed[i].second.empty() && vaFields[i].lblCaption.Text() == typed[i].first)
                vaFields[i].Restore(typed[i].second);
        }
        // The page that was shown may be gone.
        Show_Page(std::min(m_page, Last_Page()));
    });
}

int ucACARS::Last_Page() const {
    if (m_has_airline_fields)
        return airline_fields_page;
    return m_has_optional_fields ? optional_fields_page : airline_page;
}

/// The page one step (+1 or -1) from the one shown, without pages that do not exist.
int ucACARS::Page_Beside(int step) const {
    int page = m_page + step;
    if (page == optional_fields_page && !m_has_optional_fields)
        page += step;
    return std::clamp(page, figures_page, Last_Page());
}

void ucACARS::Show_Page(int page) {
    m_page = page;
    hypNext.Set_Enabled(page < Last_Page());
    hypBack.Set_Enabled(page > figures_page);
    Page_Changed.emit();
}

void ucACARS::Move_To_Page(int page) {
    Show_Page(page);
    if (const Control* field = First_Field())
        Focus_Moved.emit(*field);
}

/// Where the pilot begins to type on the page shown; null on a page without fields.
const Control* ucACARS::First_Field() const {
    if (m_page == figures_page)
        return &txtDate;
    if (m_page == airline_page)
        return &txtFlightNumber;
    const auto first_shown = [](const auto& fields) -> const Control* {
        for (const Custom_Field& field : fields) {
            if (const Control* shown = field.Shown())
                return shown;
        }
        return nullptr;
    };
    return m_page == optional_fields_page ? first_shown(optFields) : first_shown(vaFields);
}

}  // namespace norvane
