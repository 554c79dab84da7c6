#include "ui/dialogs/dialog_rows.h"

#include <QLabel>

#include "ui/controls/bind.h"
#include "ui/controls/link_button.h"
#include "ui/controls/value_label.h"

namespace norvane {

namespace {

constexpr int row_gap = 6;
constexpr int caption_gap = 8;

}  // namespace

Link_Button* Make_Link(Link& model, QWidget& parent) {
    auto* link = new Link_Button({}, &parent);
    Bind(*link, model);
    return link;
}

QHBoxLayout* Link_Row(std::initializer_list<Link*> links, QWidget& parent) {
    auto* row = new QHBoxLayout;
    row->setSpacing(dialog_link_gap);
    for (Link* model : links)
        row->addWidget(Make_Link(*model, parent));
    return row;
}

QHBoxLayout* End_Row(std::initializer_list<Link*> links, QWidget& parent) {
    QHBoxLayout* row = Link_Row(links, parent);
    row->insertStretch(0, 1);
    return row;
}

QVBoxLayout* Dialog_Rows(QWidget& dialog) {
    auto* rows = new QVBoxLayout(&dialog);
    rows->setContentsMargins(dialog_margin, dialog_margin, dialog_margin, dialog_margin);
    rows->setSpacing(dialog_margin);
    return rows;
}

QSize Text_Size(const QWidget& widget, int characters, int lines) {
    const QFontMetrics metrics = widget.fontMetrics();
    return {characters * metrics.horizontalAdvance('0'), lines * metrics.lineSpacing()};
}

Form_Rows::Form_Rows(QDialog& dialog)
    : m_dialog(dialog), m_rows(Dialog_Rows(dialog)), m_grid(new QGridLayout) {
    m_rows->addLayout(m_grid);
    m_rows->addStretch(1);
    m_grid->setHorizontalSpacing(caption_gap);
    m_grid->setVerticalSpacing(row_gap);
    m_grid->setColumnStretch(1, 1);
}

void Form_Rows::Add(const QString& caption, QWidget& value) {
    auto* words = new QLabel(caption, &m_dialog);
    words->setTextFormat(Qt::PlainText);
    words->setBuddy(&value);
    m_grid->addWidget(words, m_count, 0);
    m_grid->addWidget(&value, m_count++, 1);
}

void Form_Rows::Add_Figure(const QString& caption, Label& model, int characters) {
    auto* figure = new Value_Label(characters, &m_dialog);
    Bind(*figure, model, QString(caption).remove(':'));
    Add(caption, *figure);
}

QComboBox* Form_Rows::Add_List(const QString& caption, Text_Combo& model, int characters) {
    auto* list = new QComboBox(&m_dialog);
    list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(characters);
    Bind(*list, model, QString(caption).remove(':'));
    Add(caption, *list);
    return list;
}

Link_Button* Form_Rows::Add_Link(Link& model) {
    Link_Button* link = Make_Link(model, m_dialog);
    m_grid->addWidget(link, m_count++, 1, Qt::AlignLeft);
    return link;
}

void Form_Rows::Add_End(std::initializer_list<Link*> links) {
    m_rows->addLayout(End_Row(links, m_dialog));
}

}  // namespace norvane
