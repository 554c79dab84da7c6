// The panel's pages, and the pilot's and the airline's own fields on the last two of them.

#include "acarspanel/panel_pages.h"

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

template <std::size_t count>
void Define_Fields(const std::filesystem::path& file, std::array<Custom_Field, count>& positions) {
    const Field_Definitions definitions = Read_Field_Definitions(file, count);
    for (std::size_t i = 0; i < definitions.fields.size(); ++i)
        positions[i].Define(definitions.fields[i]);
    if (!definitions.failure.empty())
        throw Run_Error(error_number::subscript_out_of_range, definitions.failure);
}

}  // namespace

Panel_Pages::Panel_Pages(const Panel_Parts& parts, ACARS_Form& form)
    : m_services(parts.services), m_airline(parts.airline), m_form(form) {
    m_form.hypNext.clicked.Connect([this] { Move_To_Page(Page_Beside(+1)); });
    m_form.hypBack.clicked.Connect([this] { Move_To_Page(Page_Beside(-1)); });
}

void Panel_Pages::Load() {
    m_has_optional_fields = std::filesystem::exists(Optional_Fields_File());
    Show_Page(figures_page);
    if (m_has_optional_fields)
        Load_Optional_Fields();
    VA_Settings();
}

std::filesystem::path Panel_Pages::Optional_Fields_File() const {
    return Find_Path(m_services, m_services.program_directory, "bin\\optfields.cfg");
}

void Panel_Pages::Load_Optional_Fields() {
    Guarded(m_services, "ucACARS.Load_Optional_Fields()", Show::box,
            [&] { Define_Fields(Optional_Fields_File(), m_form.optFields); });
}

void Panel_Pages::Load_VA_Fields() {
    Guarded(m_services, "ucACARS.Load_VA_Fields()", Show::box, [&] {
        const auto directory =
            Find_Path(m_services, m_services.program_directory, m_airline.Directory());
        if (!std::filesystem::is_directory(directory))
            return;
        const auto file = Find_Path(m_services, directory, "vafields.cfg");
        if (std::filesystem::exists(file)) {
            Define_Fields(file, m_form.vaFields);
            return;
        }
        // An airline without such a file has no fields of its own: nothing to stop the pilot for.
        Log_Error(m_services, "ucACARS.Load_VA_Fields()",
                  {error_number::file_not_found, "File not found: " + From_Path(file)},
                  Show::silent);
    });
}

void Panel_Pages::VA_Settings() {
    Guarded(m_services, "ucACARS.VA_Settings()", Show::box, [&] {
        m_has_airline_fields = false;
        // The same airline's fields keep what was typed into them.
        const bool is_same = std::exchange(m_fields_of, m_airline.Name()) == m_airline.Name();
        std::array<std::pair<std::string, std::string>, airline_field_count> typed;
        for (std::size_t i = 0; i < m_form.vaFields.size(); ++i) {
            if (is_same)
                typed[i] = {m_form.vaFields[i].lblCaption.Text(), m_form.vaFields[i].Value()};
            m_form.vaFields[i].Remove();
        }
        // Only a form with fields of the airline's own behind the fixed ones has a use for them.
        m_has_airline_fields =
            !m_airline.WebServer().empty() &&
            m_airline.PIREP_Fields_Ubound() >= static_cast<int>(fixed_pirep_values);
        if (m_has_airline_fields)
            Load_VA_Fields();
        for (std::size_t i = 0; i < m_form.vaFields.size(); ++i) {
            if (!typed[i].second.empty() && m_form.vaFields[i].lblCaption.Text() == typed[i].first)
                m_form.vaFields[i].Restore(typed[i].second);
        }
        // The page that was shown may be gone.
        Show_Page(std::min(m_form.Page(), Last_Page()));
    });
}

int Panel_Pages::Last_Page() const {
    if (m_has_airline_fields)
        return airline_fields_page;
    return m_has_optional_fields ? optional_fields_page : airline_page;
}

/// The page one step (+1 or -1) from the one shown, without pages that do not exist.
int Panel_Pages::Page_Beside(int step) const {
    int page = m_form.Page() + step;
    if (page == optional_fields_page && !m_has_optional_fields)
        page += step;
    return std::clamp(page, figures_page, Last_Page());
}

void Panel_Pages::Show_Page(int page) {
    m_form.hypNext.Set_Enabled(page < Last_Page());
    m_form.hypBack.Set_Enabled(page > figures_page);
    m_form.Show_Page(page);
}

void Panel_Pages::Move_To_Page(int page) {
    Show_Page(page);
    Focus_First_Field();
}

void Panel_Pages::Focus_First_Field() {
    if (const Control* field = First_Field())
        m_form.Focus_Moved.Emit(*field);
}

/// Where the pilot begins to type on the page shown; null on a page without fields.
const Control* Panel_Pages::First_Field() const {
    if (m_form.Page() == figures_page)
        return &m_form.txtDate;
    if (m_form.Page() == airline_page)
        return &m_form.txtFlightNumber;
    const auto first_shown = [](const auto& fields) -> const Control* {
        for (const Custom_Field& field : fields) {
            if (const Control* shown = field.Shown())
                return shown;
        }
        return nullptr;
    };
    return m_form.Page() == optional_fields_page ? first_shown(m_form.optFields)
                                                 : first_shown(m_form.vaFields);
}

}  // namespace norvane
