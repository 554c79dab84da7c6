#include "ui/panels/form_page.h"

#include <QHBoxLayout>
#include <QStyle>
#include <QStyleOptionFrame>
#include <algorithm>

#include "ui/controls/bind.h"
#include "ui/controls/value_label.h"

namespace norvane {

namespace {

constexpr int group_gap = 10;
constexpr int row_gap = 3;
constexpr int caption_gap = 6;
/// Between a value and the next caption.
constexpr int pair_gap = 14;
/// A text box's own margins left and right of its text.
constexpr int text_margin = 4;
constexpr int fewest_lines = 2;
/// Wider than this, lines are no longer read at a glance.
constexpr int widest_page_digits = 150;

// Each pair has three columns: caption, value, gap.
constexpr int Caption_Column(int pair) {
    return 3 * pair;
}
constexpr int Value_Column(int pair) {
    return 3 * pair + 1;
}
constexpr int Gap_Column(int pair) {
    return 3 * pair + 2;
}

int Digits_Width(const QWidget& widget, int digits) {
    return digits * widget.fontMetrics().horizontalAdvance('0');
}

QHBoxLayout* Heading_Row(const QString& heading, QWidget* group) {
    auto* row = new QHBoxLayout;
    row->setSpacing(caption_gap);
    auto* words = new QLabel(heading, group);
    QFont bold = words->font();
    bold.setBold(true);
    words->setFont(bold);
    row->addWidget(words);
    auto* line = new QFrame(group);
    line->setFrameStyle(QFrame::HLine | QFrame::Plain);
    line->setForegroundRole(QPalette::Mid);
    row->addWidget(line, 1);
    return row;
}

}  // namespace

Form_Page::Form_Page(QWidget* parent)
    : QScrollArea(parent), m_sheet(new QWidget), m_rows(new QVBoxLayout(m_sheet)) {
    setWidget(m_sheet);
    setWidgetResizable(true);
    setFrameStyle(QFrame::NoFrame);
    // The page scrolls to the control that gets the focus; it needs none itself.
    setFocusPolicy(Qt::NoFocus);
    m_sheet->setMaximumWidth(Digits_Width(*m_sheet, widest_page_digits));
    m_rows->setContentsMargins(form_margin, form_margin, form_margin, form_margin);
    m_rows->setSpacing(group_gap);
    Set_Grey();
}

void Form_Page::changeEvent(QEvent* event) {
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        Set_Grey();
}

/// The figures of a finished flight are grey, and are read all the same: their grey stands half way
/// between ink and ground, darker than that of most styles.
void Form_Page::Set_Grey() {
    const QColor ink = palette().color(QPalette::Active, QPalette::WindowText);
    const QColor ground = palette().color(QPalette::Active, QPalette::Window);
    QPalette shown;
    shown.setColor(QPalette::Disabled, QPalette::WindowText,
                   {(ink.red() + ground.red()) / 2, (ink.green() + ground.green()) / 2,
                    (ink.blue() + ground.blue()) / 2});
    m_sheet->setPalette(shown);
}

QWidget* Form_Page::Input_Of(const Control& model) const {
    const auto found = m_inputs.find(&model);
    return found == m_inputs.end() ? nullptr : found->second;
}

Form_Group::Form_Group(const QString& heading, Form_Page& page)
    : QWidget(&page.Sheet()), m_page(page), m_grid(new QGridLayout) {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(row_gap);
    rows->addLayout(Heading_Row(heading, this));
    rows->addLayout(m_grid, 1);
    m_grid->setHorizontalSpacing(caption_gap);
    m_grid->setVerticalSpacing(row_gap);
}

QLabel& Form_Group::Add_Caption(Cell cell, const QString& text) {
    auto* caption = new QLabel(text, this);
    caption->setTextFormat(Qt::PlainText);
    m_grid->addWidget(caption, cell.row, Caption_Column(cell.pair));
    return *caption;
}

void Form_Group::Add_Value(Cell cell, QWidget& value, Qt::Alignment alignment) {
    const int last = Value_Column(std::max(cell.pair, cell.last_pair));
    const int first = Value_Column(cell.pair);
    m_grid->addWidget(&value, cell.row, first, 1, last - first + 1, alignment);
    if (cell.pair > 0)
        m_grid->setColumnMinimumWidth(Gap_Column(cell.pair - 1), pair_gap);
}

void Form_Group::Add_Wide_Value(Cell cell, QWidget& value) {
    const int last = Value_Column(std::max(cell.pair, cell.last_pair));
    const int first = Caption_Column(cell.pair);
    m_grid->addWidget(&value, cell.row, first, 1, last - first + 1);
}

Value_Label& Form_Group::Add_Figure(Cell cell, const QString& caption, Label& model, int digits) {
    Bind_Caption(Add_Caption(cell, caption), model);
    auto* figure = new Value_Label(digits, this);
    Bind(*figure, model, caption);
    Add_Value(cell, *figure);
    return *figure;
}

QLineEdit& Form_Group::Add_Box(Cell cell, const QString& caption, Text_Box& model, int characters) {
    QLabel& words = Add_Caption(cell, caption);
    auto* edit = new QLineEdit(this);
    words.setBuddy(edit);
    if (characters > 0)
        Set_Characters(*edit, characters);
    Bind(*edit, model, caption);
    Add_Value(cell, *edit, characters > 0 ? Qt::AlignLeft : Qt::Alignment());
    m_page.Note_Input(model, *edit);
    return *edit;
}

QPlainTextEdit& Form_Group::Add_Text(Cell cell, QWidget& caption, const QString& name,
                                     Text_Box& model) {
    m_grid->addWidget(&caption, cell.row, Caption_Column(cell.pair), Qt::AlignLeft | Qt::AlignTop);
    caption.setContentsMargins(0, row_gap, 0, 0);
    auto* edit = new QPlainTextEdit(this);
    const int around = 2 * edit->frameWidth() + qRound(2 * edit->document()->documentMargin());
    edit->setMinimumHeight(fewest_lines * edit->fontMetrics().lineSpacing() + around);
    Bind(*edit, model, name);
    Add_Value(cell, *edit);
    m_grid->setRowStretch(cell.row, 1);
    m_page.Note_Input(model, *edit);
    return *edit;
}

void Form_Group::Stretch_Values(int pair) {
    m_grid->setColumnStretch(Value_Column(pair), 1);
}

void Form_Group::Stretch_After(int pair) {
    m_grid->setColumnStretch(Gap_Column(pair), 1);
}

void Align_First_Captions(std::initializer_list<Form_Group*> groups) {
    int widest = 0;
    for (const Form_Group* group : groups) {
        for (int row = 0; row < group->m_grid->rowCount(); ++row) {
            if (const QLayoutItem* item = group->m_grid->itemAtPosition(row, Caption_Column(0)))
                widest = std::max(widest, item->sizeHint().width());
        }
    }
    for (const Form_Group* group : groups)
        group->m_grid->setColumnMinimumWidth(Caption_Column(0), widest);
}

void Set_Characters(QLineEdit& edit, int characters) {
    edit.ensurePolished();
    QStyleOptionFrame option;
    option.initFrom(&edit);
    option.lineWidth = edit.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &edit);
    const QSize text(Digits_Width(edit, characters) + 2 * text_margin, edit.sizeHint().height());
    edit.setFixedWidth(
        edit.style()->sizeFromContents(QStyle::CT_LineEdit, &option, text, &edit).width());
}

}  // namespace norvane
