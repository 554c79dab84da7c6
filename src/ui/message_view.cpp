#include "ui/message_view.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QScrollBar>
#include <QVBoxLayout>

#include "net/uc_msg.h"
#include "ui/bind.h"
#include "ui/link_button.h"
#include "ui/look.h"
#include "ui/qt_text.h"

namespace norvane {

namespace {

constexpr int margin = 8;

QFont Teleprinter_Font() {
    QFont font("Courier New");
    font.setStyleHint(QFont::Monospace);
    font.setPointSizeF(QFontDatabase::systemFont(QFontDatabase::FixedFont).pointSizeF());
    return font;
}

/// At the end, without taking the view away from a pilot who reads further up.
void Append(QPlainTextEdit& log, const QString& text) {
    QScrollBar& bar = *log.verticalScrollBar();
    const bool at_end = bar.value() == bar.maximum();
    QTextCursor end(log.document());
    end.movePosition(QTextCursor::End);
    end.insertText(text);
    if (at_end)
        bar.setValue(bar.maximum());
}

}  // namespace

Message_View::Message_View(ucMSG& panel, frmMain& window, QWidget* parent)
    : QWidget(parent), m_panel(panel) {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(new Title_Bar(window, "ACARS Messages", this));
    rows->addWidget(Make_Command_Row());
    auto* around = new QVBoxLayout;
    around->setContentsMargins(margin, 0, margin, margin);
    around->addWidget(Make_Log());
    rows->addLayout(around, 1);
}

QWidget* Message_View::Make_Command_Row() {
    auto* row = new QWidget(this);
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(margin, margin, margin, margin);
    line->setSpacing(margin);
    auto* command = new QLineEdit(row);
    command->setFont(Teleprinter_Font());
    command->setPlaceholderText("Comment, or the code of an airport");
    Bind(*command, m_panel.txtCommand, "Comment or airport code");
    connect(command, &QLineEdit::returnPressed, command, [this] { m_panel.hypComment.Click(); });
    line->addWidget(command, 1);
    for (Link* link : {&m_panel.hypComment, &m_panel.hypWX}) {
        auto* button = new Link_Button({}, row);
        Bind(*button, *link);
        line->addWidget(button);
    }
    return row;
}

QPlainTextEdit* Message_View::Make_Log() {
    auto* log = new QPlainTextEdit(this);
    log->setReadOnly(true);
    log->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    log->setFont(Teleprinter_Font());
    log->setAccessibleName("ACARS messages");
    log->setPlaceholderText("No messages yet. They appear when ACARS is on.");
    Append(*log, To_Q(m_panel.Log()));
    Keep(*log, m_panel.Log_Appended.connect(
                   [log](const std::string& text) { Append(*log, To_Q(text)); }));
    Keep(*log, m_panel.Log_Cleared.connect([log] { log->clear(); }));
    return log;
}

}  // namespace norvane
