#include "ui/window/look.h"

#include <QLabel>
#include <algorithm>
#include <cmath>

#include "app/frm_main.h"
#include "ui/controls/bind.h"

namespace norvane {

namespace {

constexpr int twips_per_inch = 1440;

/// Relative luminance of a colour, 0 to 1.
double Luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

}  // namespace

QColor Setting_Color(std::int32_t bgr) {
    return {bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF};
}

std::int32_t Color_Setting(const QColor& color) {
    return color.red() | color.green() << 8 | color.blue() << 16;
}

double Contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor Ink_On(const QColor& ground, std::initializer_list<QColor> wanted, double least) {
    for (const QColor& ink : wanted) {
        if (Contrast(ink, ground) >= least)
            return ink;
    }
    const QColor black(Qt::black);
    const QColor white(Qt::white);
    return Contrast(black, ground) > Contrast(white, ground) ? black : white;
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
        for (const QPalette::ColorRole text : {QPalette::WindowText, QPalette::ButtonText})
            shown.setColor(text, Ink_On(ground));
        setPalette(shown);
    };
    Keep(*this, window.changed.Connect(colour));
    colour();
}

}  // namespace norvane
