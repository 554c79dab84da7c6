#include "ui/look.h"

#include <QLabel>

#include "app/frm_main.h"
#include "ui/bind.h"

namespace norvane {

namespace {

constexpr int twips_per_inch = 1440;
/// Grounds lighter than this take black ink, of 255.
constexpr int light_ground = 140;

}  // namespace

QColor Setting_Color(std::int32_t bgr) {
    return {bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF};
}

std::int32_t Color_Setting(const QColor& color) {
    return color.red() | color.green() << 8 | color.blue() << 16;
}

QColor Ink_On(const QColor& ground) {
    return qGray(ground.rgb()) > light_ground ? Qt::black : Qt::white;
}

int Twips_To_Pixels(const QWidget& widget, int twips) {
    return qRound(static_cast<double>(twips) * widget.logicalDpiX() / twips_per_inch);
}

int Pixels_To_Twips(const QWidget& widget, int pixels) {
    return qRound(static_cast<double>(pixels) * twips_per_inch / widget.logicalDpiX());
}

Title_Bar::Title_Bar(frmMain& window, const QString& title, QWidget* parent)
    : QWidget(parent), m_row(new QHBoxLayout(this)) {
    m_row->setContentsMargins(8, 3, 8, 3);
    m_row->setSpacing(14);
    setAutoFillBackground(true);
    auto* caption = new QLabel(title, this);
    QFont bold = caption->font();
    bold.setBold(true);
    caption->setFont(bold);
    m_row->addWidget(caption);
    const auto colour = [this, &window] {
        const QColor ground = Setting_Color(window.Title_BackColor());
        QPalette shown = palette();
        shown.setColor(QPalette::Window, ground);
        shown.setColor(QPalette::Button, ground);
        shown.setColor(QPalette::WindowText, Ink_On(ground));
        setPalette(shown);
    };
    Keep(*this, window.changed.connect(colour));
    colour();
}

}  // namespace norvane
