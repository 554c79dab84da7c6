#include "ui/link_button.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <algorithm>

namespace norvane {

namespace {

constexpr int margin = 3;
/// Small, so that a link stands in line with the captions above and below it.
constexpr int side_margin = 1;
constexpr QColor navy(0x00, 0x00, 0x80);
constexpr QColor grey(0x80, 0x80, 0x80);
/// Grounds darker than this take a lighter ink, of 255.
constexpr int dark_ground = 128;
constexpr QColor light_link(0x8A, 0xB4, 0xF8);

}  // namespace

Link_Button::Link_Button(const QString& text, QWidget* parent) : QAbstractButton(parent) {
    setText(text);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Link_Button::Reserve(const QString& text) {
    m_reserved = text;
    updateGeometry();
}

QSize Link_Button::sizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    const int width =
        std::max(metrics.horizontalAdvance(text()), metrics.horizontalAdvance(m_reserved));
    return {width + 2 * side_margin, metrics.height() + 2 * margin};
}

QColor Link_Button::Ink() const {
    if (!isEnabled())
        return grey;
    const bool dark = qGray(palette().color(backgroundRole()).rgb()) < dark_ground;
    return dark ? light_link : navy;
}

void Link_Button::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    QFont drawn = font();
    drawn.setUnderline(isEnabled() && (underMouse() || hasFocus()));
    painter.setFont(drawn);
    painter.setPen(Ink());
    const QRect inner = rect().adjusted(side_margin, margin, -side_margin, -margin);
    painter.drawText(inner, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text());
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

void Link_Button::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    update();
}

void Link_Button::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    update();
}

void Link_Button::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

}  // namespace norvane
