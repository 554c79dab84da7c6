#include "ui/panels/settings_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QTabBar>
#include <QVBoxLayout>
#include <array>

#include "ui/controls/bind.h"
#include "ui/controls/link_button.h"
#include "ui/panels/settings_pages.h"
#include "ui/window/look.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr int margin = 10;
constexpr int end_row_margin = 5;
constexpr int link_gap = 14;

/// The first control of `page` that takes the keyboard; null when there is none.
QWidget* First_Input(const QWidget& page) {
    for (QWidget* input : page.findChildren<QWidget*>()) {
        if ((input->focusPolicy() & Qt::TabFocus) != 0 && input->isEnabledTo(&page) &&
            input->isVisibleTo(&page))
            return input;
    }
    return nullptr;
}

}  // namespace

Settings_View::Settings_View(ucSettings& settings, frmMain& window, QWidget* parent)
    : QWidget(parent), m_settings(settings), m_tabs(new QTabWidget(this)) {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    auto* title = new Title_Bar(window, "Settings", this);
    title->Add_Stretch();
    rows->addWidget(title);
    Make_Pages();
    rows->addWidget(m_tabs, 1);
    rows->addWidget(Make_End_Row());

    const auto show_page = [this] { m_tabs->setCurrentIndex(m_settings.Shown_Page()); };
    Keep(*this, settings.Page_Changed.Connect(show_page));
    show_page();
    connect(m_tabs, &QTabWidget::currentChanged, this, [this](int index) {
        if (index != m_settings.Shown_Page())
            m_settings.Choose_Tab(static_cast<ucSettings::Page>(index));
    });
    // The keyboard begins where the pilot reads: on the page, not on its tab.
    if (QWidget* first = First_Input(*m_tabs->currentWidget()))
        first->setFocus();
}

void Settings_View::Make_Pages() {
    m_tabs->setDocumentMode(true);
    m_tabs->tabBar()->setAccessibleName("Pages of the settings");
    constexpr std::array makers = {Make_Appearance_Page, Make_ACARS_Settings_Page,
                                   Make_Flight_Log_Settings_Page, Make_Airline_Settings_Page};
    for (std::size_t i = 0; i < makers.size(); ++i)
        m_tabs->addTab(makers[i](m_settings, m_tabs), To_Q(ucSettings::page_captions[i]));
}

QWidget* Settings_View::Make_End_Row() {
    auto* row = new QWidget(this);
    auto* links = new QHBoxLayout(row);
    links->setContentsMargins(margin, end_row_margin, margin, end_row_margin);
    links->setSpacing(link_gap);
    for (Link* model : {&m_settings.hypSave, &m_settings.hypCancel}) {
        auto* link = new Link_Button({}, row);
        Bind(*link, *model);
        links->addWidget(link);
    }
    links->addStretch(1);
    auto* locked = new QLabel(row);
    Bind(*locked, m_settings.lblLocked);
    links->addWidget(locked);
    return row;
}

}  // namespace norvane
