#pragma once
// What all panels of the window share in their look: the settings' colours, measures in twips, the
// title bar over a panel.

#include <QColor>
#include <QHBoxLayout>
#include <QWidget>
#include <cstdint>
#include <initializer_list>

namespace norvane {

class frmMain;

/// A colour as the settings keep it, 0xBBGGRR.
[[nodiscard]] QColor Setting_Color(std::int32_t bgr);
[[nodiscard]] std::int32_t Color_Setting(const QColor& color);
/// How well two colours are told apart, 1 (not at all) to 21 (black on white): the ratio of their
/// luminances, as guidelines for readable pages count it.
[[nodiscard]] double Contrast(const QColor& one, const QColor& other);
/// From here on a text is read without effort.
inline constexpr double easy_contrast = 4.5;
/// Below this it is not read at all in daylight.
inline constexpr double least_contrast = 3.0;
/// The ink for a text on `ground`: the first of `wanted` that has the contrast `least`, else black
/// or white, whichever is read better. Every text on a colour of the pilot's takes its ink here.
[[nodiscard]] QColor Ink_On(const QColor& ground, std::initializer_list<QColor> wanted = {},
                            double least = least_contrast);
/// 1/1440 inch at the resolution of the screen that `widget` is on, and back.
[[nodiscard]] int Twips_To_Pixels(const QWidget& widget, int twips);
[[nodiscard]] int Pixels_To_Twips(const QWidget& widget, int pixels);

/// The bar over a panel, in the colour of the settings: its title, then the panel's links.
class Title_Bar : public QWidget {
  public:
    Title_Bar(frmMain& window, const QString& title, QWidget* parent);

    /// Adds a control behind those that are there.
    void Add(QWidget* control) { m_row->addWidget(control); }
    void Add_Stretch() { m_row->addStretch(1); }

  private:
    QHBoxLayout* m_row;
};

}  // namespace norvane
