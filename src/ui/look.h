#pragma once
// What all panels of the window share in their look: the settings' colours, measures in twips, the
// title bar over a panel.

#include <QColor>
#include <QHBoxLayout>
#include <QWidget>
#include <cstdint>

namespace norvane {

class frmMain;

/// A colour as the settings keep it, 0xBBGGRR.
[[nodiscard]] QColor Setting_Color(std::int32_t bgr);
[[nodiscard]] std::int32_t Color_Setting(const QColor& color);
/// Black or white, whichever is read better on `ground`.
[[nodiscard]] QColor Ink_On(const QColor& ground);
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
