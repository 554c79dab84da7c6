#include "ui/controls/link_button.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <algorithm>

#include "ui/window/look.h"

namespace norvane {

namespace {

constexpr int margin = 3;
/// Small, so that a link stands in line with the captions above and below it.
constexpr int side_margin = 1;
constexpr QColor navy(0x00, 0x00, 0x80);
constexpr QColor grey(0x80, 0x80, 0x80);
constexpr QColor light_link(0x8A, 0xB4, 0xF8);
/// Greys of a link that cannot be used, for grounds that are near the first one themselves.
constexpr QColor dark_grey(0x40, 0x40, 0x40);
constexpr QColor light_grey(0xC0, 0xC0, 0xC0);
/// A link that cannot be used steps back, but is still read.
constexpr double grey_contrast = 2.5;

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
    const QColor ground = palette().color(backgroundRole());
    if (!isEnabled())
        return Ink_On(ground, {grey, dark_grey, light_grey}, grey_contrast);
    return Ink_On(ground, {navy, light_link}, easy_contrast);
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
