#include "ui/panels/message_view.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QScrollBar>
#include <QVBoxLayout>

#include "ui/controls/bind.h"
#include "ui/controls/link_button.h"
#include "ui/window/look.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr int margin = 8;
constexpr int link_gap = 14;

/// What messages are written in: columns of a weather report or a position stand below each other.
QFont Message_Font(const QWidget& widget) {
    QFont font("Courier New");
    font.setStyleHint(QFont::Monospace);
    font.setPointSizeF(widget.font().pointSizeF());
    return font;
}

}  // namespace

Message_View::Message_View(ucMSG& messages, frmMain& window, QWidget* parent) : QWidget(parent) {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(new Title_Bar(window, "ACARS Messages", this));
    rows->addWidget(Make_Command_Row(messages));
    Make_Log(messages);
    rows->addWidget(m_log, 1);
}

QWidget* Message_View::Make_Command_Row(ucMSG& messages) {
    auto* row = new QWidget(this);
    auto* cells = new QHBoxLayout(row);
    cells->setContentsMargins(margin, margin, margin, margin);
    cells->setSpacing(link_gap);
    auto* command = new QLineEdit(row);
    command->setFont(Message_Font(*command));
    Bind(*command, messages.txtCommand, "Comment or airport");
    connect(command, &QLineEdit::returnPressed, command,
            [&messages] { messages.hypComment.Click(); });
    cells->addWidget(command, 1);
    for (Link* model : {&messages.hypComment, &messages.hypWX}) {
        auto* link = new Link_Button({}, row);
        Bind(*link, *model);
        cells->addWidget(link);
    }
    return row;
}

void Message_View::Make_Log(ucMSG& messages) {
    m_log = new QPlainTextEdit(this);
    m_log->setReadOnly(true);
    // A message is copied, and the log read, without a mouse too.
    m_log->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_log->setTabChangesFocus(true);
    m_log->setUndoRedoEnabled(false);
    m_log->setFont(Message_Font(*m_log));
    m_log->setAccessibleName("ACARS messages");
    m_log->setPlaceholderText("No messages yet");
    m_log->setFrameShape(QFrame::NoFrame);
    m_log->document()->setDocumentMargin(margin);
    Append(To_Q(messages.Log()));
    Keep(*this,
         messages.Log_Appended.Connect([this](const std::string& text) { Append(To_Q(text)); }));
    Keep(*this, messages.Log_Cleared.Connect([this] { m_log->clear(); }));
}

void Message_View::Append(const QString& text) {
    QScrollBar& bar = *m_log->verticalScrollBar();
    const int place = bar.value();
    const bool follows = place == bar.maximum();
    // The pilot's own cursor stays, and with it what is selected.
    QTextCursor end(m_log->document());
    end.movePosition(QTextCursor::End);
    end.insertText(text);
    bar.setValue(follows ? bar.maximum() : place);
}

}  // namespace norvane
