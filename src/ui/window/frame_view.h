#pragma once
// The navigation frame on the screen: the bar with its items, the heading, and the panel that is
// shown. Where everything stands and what the mouse means is the model's business.

#include <QAbstractButton>
#include <QLabel>
#include <QPixmap>
#include <QWidget>
#include <vector>

#include "app/uc_app_frame.h"

namespace norvane {

/// The bar at the left. It takes the mouse for all its items; the items take the keyboard.
class Frame_Bar : public QWidget {
  public:
    Frame_Bar(ucAppFrame& frame, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    void Keep_Mouse(bool kept);

    ucAppFrame& m_frame;
    bool m_mouse_kept = false;
};

/// One item for the keyboard and for those who cannot see the bar.
class Frame_Item : public QAbstractButton {
  public:
    /// `position` from 1.
    Frame_Item(ucAppFrame& frame, int position, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    [[nodiscard]] const clsAppFrameItem& Item() const;
    /// The item's picture. It is kept: rendering a drawing takes longer than the rest of the item.
    [[nodiscard]] const QPixmap& Picture(int size, const QColor& ink);

    ucAppFrame& m_frame;
    std::size_t m_index;
    QPixmap m_picture;
    QColor m_picture_ink;
};

class Frame_View : public QWidget {
  public:
    /// The frame's items are all added.
    Frame_View(ucAppFrame& frame, QWidget* parent);

    /// Shows `view` where and when the frame shows `panel`.
    void Put(Frame_Panel& panel, QWidget* view);
    /// Gives the keyboard to the panel that is shown.
    void Focus_Panel();
    /// Shows the item at `position`, from 1; nothing when there is none.
    void Activate(int position);

    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void Lay_Out();

    ucAppFrame& m_frame;
    Frame_Bar* m_bar;
    QLabel* m_heading;
    QLabel* m_notice;
    std::vector<QWidget*> m_views;
    /// The pilot was in the panel that was left last, not on the bar.
    bool m_keyboard_goes_along = false;
};

}  // namespace norvane
