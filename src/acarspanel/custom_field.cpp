#include "acarspanel/custom_field.h"

#include "common/text.h"

namespace norvane {

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

}  // namespace norvane
