#include "ui/dialogs/response_view.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QVBoxLayout>

#include "net/plain_page.h"
#include "ui/controls/bind.h"
#include "ui/controls/link_button.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr QSize opening_size(640, 440);
}  // namespace

Response_View::Response_View(frmResponse& response, QWidget* parent)
    : QDialog(parent),
      m_response(response),
      m_page(new QTextBrowser(this)),
      m_length(new QLabel(this)) {
    setWindowTitle(To_Q(frmResponse::title));
    resize(opening_size);
    m_page->setOpenLinks(false);
    m_page->setUndoRedoEnabled(false);
    m_page->setTabChangesFocus(true);
    m_page->setAccessibleName(windowTitle());
    // Servers write their pages for a white ground.
    QPalette paper = m_page->palette();
    paper.setColor(QPalette::Base, Qt::white);
    paper.setColor(QPalette::Text, Qt::black);
    m_page->setPalette(paper);
    m_length->setTextFormat(Qt::PlainText);
    m_length->setWordWrap(true);

    auto* rows = new QVBoxLayout(this);
    rows->addWidget(m_page, 1);
    auto* below = new QHBoxLayout;
    below->addWidget(m_length, 1);
    auto* close = new Link_Button({}, this);
    Bind(*close, response.hypClose);
    below->addWidget(close, 0, Qt::AlignRight);
    rows->addLayout(below);

    Keep(*this, response.changed.Connect([this] { Show_State(); }));
    Show_State();
}

void Response_View::reject() {
    m_response.hypClose.Click();
}

void Response_View::Show_State() {
    if (m_response.Is_Open())
        Show_Page(m_response.Page());
    setVisible(m_response.Is_Open());
}

void Response_View::Show_Page(const std::string& bytes) {
    const Plain_Page page = Clean_Page(bytes);
    // A last character that was cut in two is no character.
    const QString content =
        QString::fromStdString(page.content).remove(QChar::ReplacementCharacter);
    if (page.is_text)
        m_page->setPlainText(content);
    else
        m_page->setHtml(content);
    const bool cut = bytes.size() > longest_page;
    if (cut) {
        const QString length = QLocale(QLocale::English).toString(bytes.size());
        m_length->setText("This is the beginning of an answer of " + length +
                          " bytes. All of it stands in the file \"sr\" of the program's "
                          "directory.");
    } else {
        m_length->clear();
    }
}

}  // namespace norvane
