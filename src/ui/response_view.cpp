#include "ui/response_view.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "common/code_page.h"
#include "logentry/frm_response.h"
#include "ui/bind.h"
#include "ui/link_button.h"
#include "ui/qt_text.h"

namespace norvane {

namespace {

/// Bytes that are laid out well below the time in which the window must handle events.
constexpr std::size_t most_shown = 32 * 1024;
constexpr QSize first_size(560, 400);

bool Is_Control(QChar character) {
    return character.category() == QChar::Other_Control && character != '\n' && character != '\t';
}

}  // namespace

Shown_Page Page_To_Show(const std::string& answer) {
    const std::string_view shown = std::string_view(answer).substr(0, most_shown);
    Shown_Page page;
    page.left_out = answer.size() - shown.size();
    page.text = Is_Utf8(shown)
                    ? QString::fromUtf8(shown.data(), static_cast<qsizetype>(shown.size()))
                    : To_Q(shown);
    page.text.replace("\r\n", "\n").replace('\r', '\n');
    page.text.removeIf(Is_Control);
    page.is_markup = Qt::mightBeRichText(page.text);
    return page;
}

Closed_Browser::Closed_Browser(QWidget* parent) : QTextBrowser(parent) {
    setOpenLinks(false);
    setOpenExternalLinks(false);
}

Response_View::Response_View(frmResponse& model, QWidget* parent)
    : QDialog(parent),
      m_model(model),
      m_browser(new Closed_Browser(this)),
      m_remark(new QLabel(this)) {
    setWindowTitle(To_Q(frmResponse::title));
    setModal(false);
    m_browser->setAccessibleName("The server's answer");
    m_remark->setWordWrap(true);
    auto* close = new Link_Button({}, this);
    Bind(*close, model.hypClose);
    auto* rows = new QVBoxLayout(this);
    rows->addWidget(m_browser, 1);
    auto* below = new QHBoxLayout;
    below->addWidget(m_remark, 1);
    below->addWidget(close, 0, Qt::AlignRight);
    rows->addLayout(below);
    resize(first_size);
    Keep(*this, model.changed.connect([this] { Show_Model(); }));
    Show_Model();
}

void Response_View::Show_Model() {
    if (!m_model.Is_Open()) {
        hide();
        return;
    }
    const Shown_Page page = Page_To_Show(m_model.Page());
    if (page.is_markup)
        m_browser->setHtml(page.text);
    else
        m_browser->setPlainText(page.text);
    m_remark->setText(page.left_out == 0
                          ? QString()
                          : QString("The answer has %1 bytes more; all of it stands in the file "
                                    "\"sr\" of the program directory.")
                                .arg(page.left_out));
    show();
}

void Response_View::reject() {
    m_model.hypClose.Click();
    QDialog::reject();
}

}  // namespace norvane
