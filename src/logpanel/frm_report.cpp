#include "logpanel/frm_report.h"

namespace norvane {

frmReport::frmReport() {
    hypOK.clicked.Connect([this] {
        m_accepted = true;
        Close_Form();
    });
    hypCancel.clicked.Connect([this] { Close_Form(); });
    mnuSelectAll.chosen.Connect([this] { Check_All(true); });
    mnuUnselectAll.chosen.Connect([this] { Check_All(false); });
}

bool frmReport::Get_Selections(std::vector<Report_Field>& fields) {
    if (Is_Open())
        return false;
    lvwFields.clear();
    for (Report_Field& field : fields) {
        field.included = true;
        Entry& entry = lvwFields.emplace_back();
        entry.caption = field.caption;
        entry.box.Set_Checked(true);
    }
    m_accepted = false;
    Show_Modal();
    // The columns may have changed behind the form: then nothing was chosen of them.
    m_accepted = m_accepted && lvwFields.size() == fields.size();
    for (std::size_t i = 0; m_accepted && i < fields.size(); ++i)
        fields[i].included = lvwFields[i].box.Checked();
    return m_accepted;
}

void frmReport::Check_All(bool checked) {
    for (Entry& entry : lvwFields)
        entry.box.Set_Checked(checked);
}

}  // namespace norvane
