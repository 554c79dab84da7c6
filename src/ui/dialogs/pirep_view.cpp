#include "ui/dialogs/pirep_view.h"

#include <QApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "ui/controls/bind.h"
#include "ui/controls/elided_label.h"
#include "ui/controls/link_button.h"
#include "ui/dialogs/dialog_rows.h"
#include "ui/window/look.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr int opening_characters = 84;
/// Labels longer than this are shortened.
constexpr int label_characters = 30;
constexpr int label_gap = 10;
/// Between the fields of two rows.
constexpr int row_gap = 3;

/// A row's field: the arrow keys lead to its neighbours, and the rows follow the keyboard.
class Row_Field : public QLineEdit {
  public:
    Row_Field(frmPIREP& form, std::size_t row, QWidget* parent)
        : QLineEdit(parent), m_form(form), m_row(row) {}

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Up)
            m_form.Step(m_row, -1);
        else if (event->key() == Qt::Key_Down)
            m_form.Step(m_row, +1);
        else
            QLineEdit::keyPressEvent(event);
    }
    void focusInEvent(QFocusEvent* event) override {
        QLineEdit::focusInEvent(event);
        // The keyboard comes back to a row that the pilot may have scrolled away from.
        const bool comes_back = event->reason() == Qt::ActiveWindowFocusReason ||
                                event->reason() == Qt::PopupFocusReason;
        if (!comes_back)
            m_form.Row_Focused(m_row);
    }

  private:
    frmPIREP& m_form;
    std::size_t m_row;
};

}  // namespace

/// What is seen of the rows. The wheel moves them.
class Pirep_View::Row_Area : public QWidget {
  public:
    using QWidget::QWidget;

    void Set_Bar(QScrollBar& bar) { m_bar = &bar; }
    /// Other rows; the old ones are gone when it returns.
    QWidget& Renew_Sheet() {
        delete std::exchange(m_sheet, nullptr);
        m_sheet = new QWidget(this);
        return *m_sheet;
    }
    void Show_Sheet() {
        Lay_Out();
        m_sheet->show();
    }
    void Move_Up(int pixels) { m_sheet->move(0, -pixels); }

  protected:
    void resizeEvent(QResizeEvent* /*event*/) override { Lay_Out(); }
    void wheelEvent(QWheelEvent* event) override { QApplication::sendEvent(m_bar, event); }

  private:
    void Lay_Out() { m_sheet->resize(width(), m_sheet->minimumHeight()); }

    QScrollBar* m_bar = nullptr;
    QWidget* m_sheet = nullptr;
};

Pirep_View::Pirep_View(frmPIREP& form, QWidget* parent)
    : QDialog(parent),
      m_form(form),
      m_area(new Row_Area(this)),
      m_bar(new QScrollBar(Qt::Vertical, this)),
      m_hint(new QLabel(m_area)),
      m_row_pixels(std::max(Twips_To_Pixels(*this, frmPIREP::row_height),
                            QLineEdit().sizeHint().height() + row_gap)) {
    setWindowTitle(To_Q(frmPIREP::title));
    auto* rows = Dialog_Rows(*this);
    Make_Commands();
    Make_Area();
    rows->addStretch(1);
    resize(Text_Size(*this, opening_characters, 0).width(), 0);

    Keep(*this, form.rows_changed.Connect([this] { Show_Rows(); }));
    Keep(*this, form.scrolled.Connect([this] { Show_Scroll(); }));
    Keep(*this, form.Focus_Moved.Connect([this](std::size_t row) {
        if (row < m_fields.size())
            m_fields[row]->setFocus(Qt::OtherFocusReason);
    }));
    Keep(*this, form.changed.Connect([this] { Show_State(); }));
    Show_Rows();
    Show_State();
}

void Pirep_View::Make_Commands() {
    auto* rows = static_cast<QVBoxLayout*>(layout());
    auto* links = new QHBoxLayout;
    links->setSpacing(dialog_link_gap);
    for (Link& model : m_form.hypPIREP) {
        Link_Button* link = Make_Link(model, *this);
        links->addWidget(link);
        if (m_first_link == nullptr)
            m_first_link = link;
    }
    links->addStretch(1);
    rows->addLayout(links);
    auto* file = new Elided_Label(Qt::ElideMiddle, this);
    Bind(*file, m_form.lblFile);
    rows->addWidget(file);
}

void Pirep_View::Make_Area() {
    auto* row = new QHBoxLayout;
    row->setSpacing(label_gap);
    m_area->Set_Bar(*m_bar);
    m_area->setFixedHeight(frmPIREP::visible_rows * m_row_pixels);
    row->addWidget(m_area, 1);
    m_bar->setAccessibleName("Rows of the PIREP");
    m_bar->setSingleStep(frmPIREP::row_height);
    m_bar->setPageStep(frmPIREP::visible_rows * frmPIREP::row_height);
    connect(m_bar, &QScrollBar::valueChanged, this,
            [this](int value) { m_form.Set_Scroll(value); });
    row->addWidget(m_bar);
    static_cast<QVBoxLayout*>(layout())->addLayout(row);

    m_hint->setTextFormat(Qt::PlainText);
    m_hint->setAlignment(Qt::AlignCenter);
    // Grey on every ground; the colour of placeholders is black on dark desktops.
    m_hint->setEnabled(false);
    auto* over = new QVBoxLayout(m_area);
    over->addWidget(m_hint);
}

void Pirep_View::reject() {
    m_form.hypPIREP[frmPIREP::close].Click();
}

void Pirep_View::Show_State() {
    if (!m_form.Is_Open()) {
        hide();
        return;
    }
    if (!isVisible())
        m_first_link->setFocus();
    show();
    raise();
    activateWindow();
}

void Pirep_View::Show_Rows() {
    m_fields.clear();
    QWidget& sheet = m_area->Renew_Sheet();
    auto* grid = new QGridLayout(&sheet);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(label_gap);
    grid->setVerticalSpacing(0);
    grid->setColumnStretch(1, 1);
    const auto count = m_form.Rows().size();
    for (std::size_t row = 0; row < count; ++row)
        Add_Row(row, sheet);
    sheet.setFixedHeight(static_cast<int>(count) * m_row_pixels);
    m_hint->setText(m_form.lblFile.Text().empty() ? "Select a PIREP to see its values."
                                                  : "This file holds no values.");
    m_hint->setVisible(count == 0);
    m_area->Show_Sheet();
    Show_Scroll();
}

void Pirep_View::Add_Row(std::size_t row, QWidget& sheet) {
    frmPIREP::Row& model = *m_form.Rows()[row];
    auto* grid = static_cast<QGridLayout*>(sheet.layout());
    auto* label = new Elided_Label(Qt::ElideRight, &sheet);
    Bind(*label, model.lblField);
    label->setMaximumWidth(Text_Size(*this, label_characters, 0).width());
    auto* field = new Row_Field(m_form, row, &sheet);
    const QString name = To_Q(model.lblField.Text()).trimmed();
    Bind(*field, model.txtField, name.isEmpty() ? "Value " + QString::number(row + 1) : name);
    const int place = static_cast<int>(row);
    grid->addWidget(label, place, 0);
    grid->addWidget(field, place, 1);
    grid->setRowMinimumHeight(place, m_row_pixels);
    m_fields.push_back(field);
}

void Pirep_View::Show_Scroll() {
    const int range = m_form.Scroll_Range();
    m_bar->setRange(0, range);
    m_bar->setValue(m_form.Scroll());
    m_bar->setVisible(range > 0);
    m_area->Move_Up(m_form.Scroll() * m_row_pixels / frmPIREP::row_height);
}

}  // namespace norvane
