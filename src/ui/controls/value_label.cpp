#include "ui/controls/value_label.h"

#include <QPainter>
#include <QStyle>

#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr int margin = 4;

}  // namespace

Value_Label::Value_Label(int characters, QWidget* parent)
    : QFrame(parent), m_characters(characters) {
    setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void Value_Label::Set_Text(const QString& text) {
    if (text == m_text)
        return;
    m_text = text;
    update();
}

QSize Value_Label::sizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    const int around = 2 * (frameWidth() + margin);
    return {m_characters * metrics.horizontalAdvance('0') + around, metrics.height() + 2 * margin};
}

void Value_Label::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event);
    QPainter painter(this);
    const QRect inner = contentsRect().adjusted(margin, 0, -margin, 0);
    const QString shown = fontMetrics().elidedText(m_text, Qt::ElideRight, inner.width());
    setToolTip(shown == m_text ? QString() : Tip_Of(m_text));
    style()->drawItemText(&painter, inner, Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                          shown, foregroundRole());
}

}  // namespace norvane
