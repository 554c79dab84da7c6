// Pages 2 and 3 of the ACARS panel: fields that the pilot or the airline defined.

#include <algorithm>

#include "acarspanel/uc_acars.h"
#include "ui/controls/bind.h"
#include "ui/panels/acars_pages.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

/// Fields stand below each other, then beside.
constexpr int fields_per_column = 5;
constexpr int caption_digits = 16;
constexpr int input_digits = 24;

void Add_Field(Form_Group& group, Custom_Field& field, int position, const QString& name) {
    const Form_Group::Cell cell{position % fields_per_column, position / fields_per_column};
    QLabel& caption = group.Add_Caption(cell, {});
    // The airline's words may be many.
    caption.setWordWrap(true);
    caption.setMinimumWidth(caption_digits * caption.fontMetrics().horizontalAdvance('0'));
    Bind(caption, field.lblCaption);

    auto* edit = new QLineEdit(&group);
    auto* list = new QComboBox(&group);
    Bind(*edit, field.txt, name);
    Bind(*list, field.cbo, name);
    // One height and one width for both, and a long entry does not widen the page.
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(input_digits / 2);
    list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    const int height = std::max(edit->sizeHint().height(), list->sizeHint().height());
    for (QWidget* input : {static_cast<QWidget*>(edit), static_cast<QWidget*>(list)}) {
        input->setMinimumWidth(input_digits * input->fontMetrics().horizontalAdvance('0'));
        input->setFixedHeight(height);
        group.Add_Value(cell, *input);
    }
    group.Page().Note_Input(field.txt, *edit);
    group.Page().Note_Input(field.cbo, *list);

    Follow(caption, field.lblCaption, [&field, &caption, edit, list, name] {
        const QString words = To_Q(field.lblCaption.Text());
        caption.setBuddy(field.cbo.Visible() ? static_cast<QWidget*>(list) : edit);
        edit->setAccessibleName(words.isEmpty() ? name : words);
        list->setAccessibleName(words.isEmpty() ? name : words);
    });
}

}  // namespace

Form_Page* Make_Fields_Page(std::span<Custom_Field> fields, const QString& heading,
                            const QString& kind, QWidget* parent) {
    auto* page = new Form_Page(parent);
    auto* group = new Form_Group(heading, *page);
    int position = 0;
    for (Custom_Field& field : fields) {
        Add_Field(*group, field, position, QString("%1 %2").arg(kind).arg(position + 1));
        ++position;
    }
    for (int pair = 0; pair * fields_per_column < position; ++pair)
        group->Stretch_Values(pair);
    if (position <= fields_per_column)
        group->Stretch_After(0);
    page->Rows().addWidget(group);
    page->Rows().addStretch(1);
    return page;
}

}  // namespace norvane
