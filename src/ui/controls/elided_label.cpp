#include "ui/controls/elided_label.h"

#include <QPainter>
#include <QStyle>

#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr int fewest_characters = 6;

}  // namespace

Elided_Label::Elided_Label(Qt::TextElideMode mode, QWidget* parent) : QLabel(parent), m_mode(mode) {
    setTextFormat(Qt::PlainText);
}

QSize Elided_Label::minimumSizeHint() const {
    return {fewest_characters * fontMetrics().horizontalAdvance('0'),
            QLabel::minimumSizeHint().height()};
}

void Elided_Label::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), m_mode, contentsRect().width());
    setToolTip(shown == text() ? QString() : Tip_Of(text()));
    style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(),
                          isEnabled(), shown, foregroundRole());
}

}  // namespace norvane
