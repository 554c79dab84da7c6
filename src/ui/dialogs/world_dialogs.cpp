#include "ui/dialogs/world_dialogs.h"

#include <QKeyEvent>
#include <QLabel>

#include "ui/controls/bind.h"
#include "ui/controls/elided_label.h"
#include "ui/controls/link_button.h"
#include "ui/dialogs/dialog_rows.h"
#include "ui/dialogs/modal_dialog.h"
#include "ui/dialogs/row_list_view.h"
#include "ui/panels/form_page.h"
#include "ui/window/qt_text.h"
#include "worldtools/frm_fs_world.h"

namespace norvane {

namespace {

constexpr int code_characters = 10;
constexpr int world_characters = 96;
constexpr int airport_characters = 84;
/// Of text, in a dialog that has opened.
constexpr int opening_lines = 30;
constexpr Row_List_View::Columns world_columns{1, 3};
constexpr Row_List_View::Columns airport_columns{1, 2};

/// Clicks `link` when the pilot presses Enter in `edit`.
void Enter_Clicks(QLineEdit& edit, Link& link) {
    QObject::connect(&edit, &QLineEdit::returnPressed, &edit, [&link] { link.Click(); });
}

void Fill(QDialog& dialog, frmFSWorld& form) {
    QVBoxLayout* rows = Dialog_Rows(dialog);
    auto* above = new QHBoxLayout;
    above->addWidget(new QLabel(To_Q(frmFSWorld::label), &dialog));
    auto* code = new QLineEdit(&dialog);
    Set_Characters(*code, code_characters);
    Bind(*code, form.txtICAO, To_Q(frmFSWorld::label).remove(':'));
    Enter_Clicks(*code, form.hypWorld[frmFSWorld::add]);
    above->addWidget(code);
    above->addSpacing(dialog_link_gap);
    above->addWidget(Make_Link(form.hypWorld[frmFSWorld::add], dialog));
    above->addStretch(1);
    rows->addLayout(above);

    auto* list = new Row_List_View(form.lvwWorld, "Locations", world_columns, &dialog);
    list->Set_Key(QKeySequence::Delete, form.hypWorld[frmFSWorld::remove]);
    rows->addWidget(list, 1);
    // A new location stands behind the others, and is to be seen.
    Keep(dialog,
         form.hypWorld[frmFSWorld::add].clicked.Connect([list] { list->scrollToBottom(); }));

    QHBoxLayout* below = Link_Row({&form.hypWorld[frmFSWorld::remove]}, dialog);
    below->addLayout(
        End_Row({&form.hypWorld[frmFSWorld::save], &form.hypWorld[frmFSWorld::cancel]}, dialog));
    rows->addLayout(below);
    dialog.resize(Text_Size(dialog, world_characters, opening_lines));
    code->setFocus();
}

}  // namespace

void Draw(frmFSWorld& form, Qt_Desktop& desktop, QObject& owner) {
    Show_With(form, desktop, owner, To_Q(frmFSWorld::title),
              [&form](QDialog& dialog) { Fill(dialog, form); });
}

Airport_View::Airport_View(frmICAO& form, QWidget* parent)
    : QDialog(parent), m_form(form), m_search(new QLineEdit(this)) {
    setWindowTitle(To_Q(frmICAO::title));
    QVBoxLayout* rows = Dialog_Rows(*this);
    auto* above = new QHBoxLayout;
    above->addWidget(new QLabel(To_Q(frmICAO::label), this));
    Bind(*m_search, form.txtSearch, To_Q(frmICAO::label).remove(':'));
    m_search->installEventFilter(this);
    // The first airport that is found is selected.
    Enter_Clicks(*m_search, form.hypCopy);
    above->addWidget(m_search, 1);
    rows->addLayout(above);

    m_airports = new Row_List_View(form.lvwAirports, "Airports", airport_columns, this);
    m_airports->Set_Key(QKeySequence::Copy, form.hypCopy);
    rows->addWidget(m_airports, 1);

    auto* below = new QHBoxLayout;
    auto* count = new Elided_Label(Qt::ElideRight, this);
    Bind(*count, form.lblCount);
    below->addWidget(count, 1);
    below->addLayout(End_Row({&form.hypCopy, &form.hypClose}, *this));
    rows->addLayout(below);
    resize(Text_Size(*this, airport_characters, opening_lines));

    Keep(*this, form.changed.Connect([this] { Show_State(); }));
    Show_State();
}

/// From what was searched, the pilot goes on to what was found.
bool Airport_View::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    if (static_cast<QKeyEvent*>(event)->key() != Qt::Key_Down)
        return false;
    m_airports->Enter_List();
    return true;
}

void Airport_View::reject() {
    m_form.hypClose.Click();
}

void Airport_View::Show_State() {
    if (!m_form.Is_Open()) {
        hide();
        return;
    }
    m_search->setFocus();
    m_search->selectAll();
    show();
    raise();
    activateWindow();
}

}  // namespace norvane
