#include "ui/panels/acars_view.h"

#include <QApplication>
#include <QLabel>
#include <QShortcut>
#include <QVBoxLayout>

#include "ui/controls/bind.h"
#include "ui/controls/link_button.h"
#include "ui/panels/acars_pages.h"
#include "ui/panels/form_page.h"
#include "ui/window/look.h"

namespace norvane {

namespace {

Link_Button* Add_Link(Title_Bar& title, Link& model) {
    auto* link = new Link_Button({}, &title);
    Bind(*link, model);
    title.Add(link);
    return link;
}

void Add_Page_Link(Title_Bar& title, Link& model, const QString& meaning,
                   const QKeySequence& keys) {
    Link_Button* link = Add_Link(title, model);
    link->setAccessibleDescription(meaning);
    link->setToolTip(meaning + " (" + keys.toString(QKeySequence::NativeText) + ")");
    auto* shortcut = new QShortcut(keys, link);
    QObject::connect(shortcut, &QShortcut::activated, link, [&model] { model.Click(); });
}

}  // namespace

Acars_View::Acars_View(ucACARS& panel, frmMain& window, QWidget* parent)
    : QWidget(parent), m_panel(panel), m_menu(Make_Menu()) {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(Make_Title(window));
    auto* stored = new QLabel(this);
    stored->setWordWrap(true);
    // Flush with the page below, which begins with a margin of its own.
    stored->setContentsMargins(form_margin, form_margin, form_margin, 0);
    Bind(*stored, panel.lblStored);
    rows->addWidget(stored);
    m_stack = new QStackedWidget(this);
    m_pages = {Make_Figures_Page(panel, m_stack), Make_Airline_Page(panel, m_stack),
               Make_Fields_Page(panel.optFields, "Optional Fields", "Optional field", m_stack),
               Make_Fields_Page(panel.vaFields, "Airline Fields", "Airline field", m_stack)};
    for (Form_Page* page : m_pages)
        m_stack->addWidget(page);
    rows->addWidget(m_stack, 1);

    const auto show_page = [this] { m_stack->setCurrentIndex(m_panel.Page()); };
    Keep(*this, panel.Page_Changed.Connect(show_page));
    show_page();
    Keep(*this, panel.Focus_Moved.Connect([this](const Control& model) { Focus(model); }));
}

QWidget* Acars_View::Make_Title(frmMain& window) {
    auto* title = new Title_Bar(window, "ACARS", this);
    Add_Link(*title, m_panel.hypOn);
    Add_Link(*title, m_panel.hypPause)->Reserve("Resume");
    Add_Link(*title, m_panel.hypLog);
    Add_Link(*title, m_panel.hypReset);
    Add_Link(*title, m_panel.hypReport);
    title->Add_Stretch();
    Add_Page_Link(*title, m_panel.hypBack, "Previous page", Qt::ALT | Qt::Key_Left);
    Add_Page_Link(*title, m_panel.hypNext, "Next page", Qt::ALT | Qt::Key_Right);

    title->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(title, &QWidget::customContextMenuRequested, this,
            [this, title](const QPoint& place) { Open_Menu(title->mapToGlobal(place)); });
    // The menu key asks for the menu by itself; its old equal does not everywhere.
    auto* keys = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F10), title);
    keys->setContext(Qt::WidgetWithChildrenShortcut);
    connect(keys, &QShortcut::activated, this, [this, title] {
        const QWidget* link = QApplication::focusWidget();
        const QWidget& under = link == nullptr ? *title : *link;
        Open_Menu(under.mapToGlobal(under.rect().bottomLeft()));
    });
    return title;
}

QMenu* Acars_View::Make_Menu() {
    auto* menu = new QMenu(this);
    Bind(*menu->addAction(QString()), m_panel.mnuPosition);
    Bind(*menu->addAction(QString()), m_panel.mnuExit);
    return menu;
}

void Acars_View::Open_Menu(const QPoint& on_screen) {
    if (m_panel.Context_Menu_Opens())
        m_menu->popup(on_screen);
}

void Acars_View::Focus(const Control& model) {
    for (Form_Page* page : m_pages) {
        if (QWidget* input = page->Input_Of(model)) {
            input->setFocus(Qt::OtherFocusReason);
            page->ensureWidgetVisible(input);
        }
    }
}

}  // namespace norvane
