#pragma once
// The pages of the ACARS panel, and the pilot's and the airline's own fields on the last two of
// them. Owned by the panel.

#include <filesystem>
#include <string>

#include "acarspanel/acars_form.h"
#include "acarspanel/panel_parts.h"

namespace norvane {

class Panel_Pages {
  public:
    Panel_Pages(const Panel_Parts& parts, ACARS_Form& form);

    /// Loads the files of both kinds of fields, and shows the first page.
    void Load();
    /// The active airline changed: its fields are loaded anew; the same airline's fields keep what
    /// was typed into them.
    void VA_Settings();
    /// The focus goes to where the pilot begins to type on the page shown.
    void Focus_First_Field();
    [[nodiscard]] bool Has_Optional_Fields() const { return m_has_optional_fields; }
    [[nodiscard]] bool Has_Airline_Fields() const { return m_has_airline_fields; }

  private:
    [[nodiscard]] std::filesystem::path Optional_Fields_File() const;
    void Load_Optional_Fields();
    void Load_VA_Fields();
    void Show_Page(int page);
    void Move_To_Page(int page);
    [[nodiscard]] int Last_Page() const;
    [[nodiscard]] int Page_Beside(int step) const;
    [[nodiscard]] const Control* First_Field() const;

    Services& m_services;
    const clsVASettings& m_airline;
    ACARS_Form& m_form;
    bool m_has_optional_fields = false;
    bool m_has_airline_fields = false;
    /// The airline whose fields stand on the panel.
    std::string m_fields_of;
};

}  // namespace norvane
