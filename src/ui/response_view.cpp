#include "ui/response_view.h"

#include <QHBoxLayout>
#include <QImage>
#include <QLocale>
#include <QRegularExpression>
#include <QVBoxLayout>
#include <algorithm>

#include "common/code_page.h"
#include "ui/bind.h"
#include "ui/link_button.h"
#include "ui/qt_text.h"

namespace norvane {

namespace {

constexpr QSize opening_size(640, 440);
/// As much as is laid out at once; an answer that a pilot reads is far shorter.
constexpr std::size_t shown_bytes = 32 * 1024;
/// Pages nest no deeper than this; laying out a table takes twice as long for each one around it.
constexpr int deepest_table = 8;
constexpr int deepest_element = 60;

/// A page that asks for nothing: pictures, style sheets and other pages stay where they are.
class Quiet_Page : public QTextBrowser {
  public:
    using QTextBrowser::QTextBrowser;

    QVariant loadResource(int type, const QUrl& /*name*/) override {
        if (type != QTextDocument::ImageResource)
            return {};
        // For want of a picture Qt would look for a file of that name.
        QImage nothing(1, 1, QImage::Format_ARGB32);
        nothing.fill(Qt::transparent);
        return nothing;
    }
};

bool Has_Markup(const QString& text) {
    static const QRegularExpression tag(
        "<!doctype\\b|</?(html|head|title|body|p|br|b|i|u|a|div|span|table|tr|td|ul|ol|li|font|"
        "center|pre|hr|img|strong|em|h[1-6])\\b[^<>]*>",
        QRegularExpression::CaseInsensitiveOption);
    return text.contains(tag);
}

/// False for a page that was made, or cut off, so that drawing it would not end.
bool Can_Be_Drawn(const QString& page) {
    // Elements that need no end are not counted.
    static const QRegularExpression element(
        "<(/?)(?!(?:p|br|hr|img|li|dt|dd|tr|td|th|input|meta|link|option)\\b)(\\w+)",
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression huge(
        "rowspan\\s*=\\W*\\d{2}|colspan\\s*=\\W*\\d{3}|"
        "(width|height|size|padding|spacing)\\s*[=:]\\W*\\d{5}",
        QRegularExpression::CaseInsensitiveOption);
    if (page.contains(huge))
        return false;
    int depth = 0;
    int tables = 0;
    for (auto found = element.globalMatch(page); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const int step = match.capturedLength(1) == 0 ? +1 : -1;
        depth = std::max(0, depth + step);
        if (match.capturedView(2).compare(QLatin1String("table"), Qt::CaseInsensitive) == 0)
            tables = std::max(0, tables + step);
        if (depth > deepest_element || tables > deepest_table)
            return false;
    }
    return true;
}

/// Pictures are not fetched, and need no room.
QString Without_Pictures(QString page) {
    static const QRegularExpression picture("<img\\b[^<>]*>",
                                            QRegularExpression::CaseInsensitiveOption);
    return page.remove(picture);
}

/// What a page says, when it cannot be drawn.
QString Without_Markup(QString page) {
    static const QRegularExpression tag("<[^<>]*>");
    return page.remove(tag).trimmed();
}

}  // namespace

QString Readable_Page(const std::string& bytes) {
    const std::string_view begin = std::string_view(bytes).substr(0, shown_bytes);
    const std::string utf8 = Is_Utf8(begin) ? std::string(begin) : To_Utf8(begin);
    QString text = QString::fromStdString(utf8);
    text.replace("\r\n", "\n").replace('\r', '\n');
    text.removeIf([](QChar letter) {
        const bool blank = letter == '\n' || letter == '\t';
        return (letter.category() == QChar::Other_Control && !blank) ||
               letter == QChar::ByteOrderMark || letter == QChar::ReplacementCharacter;
    });
    return text;
}

Response_View::Response_View(frmResponse& response, QWidget* parent)
    : QDialog(parent),
      m_response(response),
      m_page(new Quiet_Page(this)),
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
    m_page->document()->setDefaultStyleSheet("a { color: #000080 }");
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

    Keep(*this, response.changed.connect([this] { Show_State(); }));
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
    const QString text = Readable_Page(bytes);
    if (!Has_Markup(text))
        m_page->setPlainText(text);
    else if (Can_Be_Drawn(text))
        m_page->setHtml(Without_Pictures(text));
    else
        m_page->setPlainText(Without_Markup(text));
    const bool cut = bytes.size() > shown_bytes;
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
