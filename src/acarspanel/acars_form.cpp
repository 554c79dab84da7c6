#include "acarspanel/acars_form.h"

#include <fmt/format.h>

#include "acarspanel/panel_fields.h"

namespace norvane {

ACARS_Form::ACARS_Form() {
    for (const Panel_Field& row : Panel_Fields()) {
        if (Label* label = row.Find_Label(*this))
            m_labels.push_back(label);
        if (Text_Box* box = row.Find_Box(*this))
            m_boxes.push_back(box);
    }
    for (Label& label : lblPlanned)
        m_labels.push_back(&label);
    const auto gather = [this](auto& fields) {
        for (Custom_Field& field : fields) {
            m_boxes.push_back(&field.txt);
            m_lists.push_back(&field.cbo);
        }
    };
    gather(optFields);
    gather(vaFields);
    chkIFR.edited.Connect([this] { chkVFR.Set_Checked(!chkIFR.Checked()); });
    chkVFR.edited.Connect([this] { chkIFR.Set_Checked(!chkVFR.Checked()); });
}

void ACARS_Form::Clear_All_Fields() {
    lblATCFlight.Set_Visible(false);
    for (Label* label : m_labels)
        label->Set_Text({});
    for (Text_Box* box : m_boxes)
        box->Set_Text({});
    for (Combo_Box* list : m_lists)
        list->Select(-1);
    chkIFR.Set_Checked(false);
    chkVFR.Set_Checked(false);
}

void ACARS_Form::Keep_Old_Values() {
    m_old_values.clear();
    for (const Text_Box* box : m_boxes)
        m_old_values[box] = box->Text();
    for (const Combo_Box* list : m_lists)
        m_old_values[list] = list->Text();
    m_old_rules = {chkIFR.Checked(), chkVFR.Checked()};
}

void ACARS_Form::Clear_Old_Values() {
    lblATCFlight.Set_Visible(false);
    for (Text_Box* box : m_boxes) {
        if (box->Text() == m_old_values[box])
            box->Set_Text({});
    }
    for (Combo_Box* list : m_lists) {
        if (list->Text() == m_old_values[list])
            list->Select(-1);
    }
    if (m_old_rules == std::pair(chkIFR.Checked(), chkVFR.Checked())) {
        chkIFR.Set_Checked(false);
        chkVFR.Set_Checked(false);
    }
    for (Label* label : m_labels)
        label->Set_Text({});
}

void ACARS_Form::Note_Changes(const std::function<void()>& changed) {
    for (Label* label : m_labels)
        label->changed.Connect(changed);
    for (Text_Box* box : m_boxes)
        box->changed.Connect(changed);
    for (Combo_Box* list : m_lists)
        list->changed.Connect(changed);
    chkIFR.changed.Connect(changed);
    chkVFR.changed.Connect(changed);
}

std::string ACARS_Form::Flight_Words() const {
    std::string words = Without_Placeholder(txtOrigin.Text());
    const std::string to = Without_Placeholder(txtDestination.Text());
    if (!to.empty())
        words += (words.empty() ? "to " : " to ") + to;
    const auto add = [&](std::string_view event, const Label& time) {
        if (!time.Text().empty())
            words += fmt::format("{}{} {}", words.empty() ? "" : ", ", event, time.Text());
    };
    add("OFF", lblTimeOff);
    add("IN", lblTimeIn);
    return words;
}

void ACARS_Form::Set_Rules(bool instrument) {
    chkIFR.Set_Checked(instrument);
    chkVFR.Set_Checked(!instrument);
}

void ACARS_Form::Show_ATC_Flight(std::string_view flight) {
    lblATCFlight.Set_Text(flight);
    lblATCFlight.Set_Visible(true);
}

Text_Box& ACARS_Form::Code(std::size_t end) {
    return end == flight_end::origin ? txtOrigin : txtDestination;
}

Label& ACARS_Form::Name(std::size_t end) {
    return end == flight_end::origin ? lblOriginName : lblDestinationName;
}

Text_Box& ACARS_Form::Weather(std::size_t end) {
    return end == flight_end::origin ? txtWXOrigin : txtWXDestination;
}

void ACARS_Form::Show_Page(int page) {
    m_page = page;
    Page_Changed.Emit();
}

}  // namespace norvane
