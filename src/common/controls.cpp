#include "common/controls.h"

#include <algorithm>
#include <utility>

namespace norvane {

void Control::Set_Visible(bool visible) {
    if (m_visible == visible)
        return;
    m_visible = visible;
    changed.Emit();
}

void Control::Set_Enabled(bool enabled) {
    if (m_enabled == enabled)
        return;
    m_enabled = enabled;
    changed.Emit();
}

void Label::Set_Text(std::string_view text) {
    std::string cleaned = Clean_Field(text, Field_Lines::one);
    if (cleaned == m_text)
        return;
    m_text = std::move(cleaned);
    changed.Emit();
}

void Text_Box::Set_Text(std::string_view text) {
    std::string cleaned = Clean_Field(text, m_lines);
    if (cleaned == m_text)
        return;
    m_text = std::move(cleaned);
    m_remark.clear();
    changed.Emit();
}

void Text_Box::Set_Remark(std::string_view remark) {
    if (remark == m_remark)
        return;
    m_remark = remark;
    changed.Emit();
}

void Text_Box::Enter(std::string_view text) {
    if (!Enabled())
        return;
    Set_Text(text);
    edited.Emit();
}

std::string Combo_Box::Text() const {
    return m_selected < 0 ? std::string() : m_entries.at(static_cast<std::size_t>(m_selected));
}

void Combo_Box::Set_Entries(std::vector<std::string> entries) {
    m_entries = std::move(entries);
    m_selected = -1;
    changed.Emit();
}

void Combo_Box::Select(int index) {
    const bool known = index >= 0 && index < static_cast<int>(m_entries.size());
    const int selected = known ? index : -1;
    if (selected == m_selected)
        return;
    m_selected = selected;
    changed.Emit();
}

void Combo_Box::Select_Text(std::string_view text) {
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        if (Equal_No_Case(m_entries[i], text)) {
            Select(static_cast<int>(i));
            return;
        }
    }
    Select(-1);
}

void Combo_Box::Choose(int index) {
    if (!Enabled())
        return;
    Select(index);
    edited.Emit();
}

void Check_Box::Set_Checked(bool checked) {
    if (m_checked == checked)
        return;
    m_checked = checked;
    changed.Emit();
}

void Check_Box::Click() {
    if (!Enabled())
        return;
    Set_Checked(!m_checked);
    edited.Emit();
}

void Option_Button::Set_Chosen(bool chosen) {
    if (std::exchange(m_chosen, chosen) != chosen)
        changed.Emit();
}

void Option_Button::Click() {
    if (!Enabled())
        return;
    Set_Chosen(true);
    edited.Emit();
}

void Swatch::Set_Color(std::int32_t color) {
    if (std::exchange(m_color, color) != color)
        changed.Emit();
}

void Row_List::Set_Rows(std::vector<Row> rows) {
    m_rows = std::move(rows);
    for (Row& row : m_rows)
        row.resize(m_captions.size());
    m_selected = -1;
    rows_changed.Emit();
    changed.Emit();
}

void Row_List::Add_Row(Row row) {
    row.resize(m_captions.size());
    m_rows.push_back(std::move(row));
    rows_changed.Emit();
    changed.Emit();
}

void Row_List::Remove_Row(std::size_t row) {
    if (row >= m_rows.size())
        return;
    m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(row));
    m_selected = std::min(static_cast<int>(row), static_cast<int>(m_rows.size()) - 1);
    rows_changed.Emit();
    changed.Emit();
}

void Row_List::Select(int row) {
    const bool known = row >= 0 && row < static_cast<int>(m_rows.size());
    const int selected = known ? row : -1;
    if (std::exchange(m_selected, selected) != selected)
        changed.Emit();
}

void Row_List::Choose(int row) {
    if (!Enabled())
        return;
    Select(row);
    edited.Emit();
}

void Row_List::Activate() {
    if (Enabled() && m_selected >= 0)
        activated.Emit();
}

void Link::Set_Caption(std::string_view caption) {
    if (m_caption == caption)
        return;
    m_caption = caption;
    changed.Emit();
}

void Link::Click() {
    if (Enabled() && Visible())
        clicked.Emit();
}

int Text_Combo::Selected() const {
    const auto place = std::find(m_entries.begin(), m_entries.end(), m_text);
    return place == m_entries.end() ? -1 : static_cast<int>(place - m_entries.begin());
}

void Text_Combo::Set_Entries(std::vector<std::string> entries) {
    m_entries = std::move(entries);
    m_text.clear();
    changed.Emit();
}

void Text_Combo::Add_Entry(std::string entry) {
    m_entries.push_back(std::move(entry));
    changed.Emit();
}

void Text_Combo::Set_Text(std::string_view text) {
    if (m_text == text)
        return;
    m_text = text;
    changed.Emit();
}

void Text_Combo::Enter(std::string_view text) {
    if (!Enabled())
        return;
    Set_Text(text);
    edited.Emit();
}

void Menu_Command::Choose() {
    if (Enabled() && Visible())
        chosen.Emit();
}

}  // namespace norvane
