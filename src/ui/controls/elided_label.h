#pragma once
// A line of text that makes no window wider: where it does not fit it is shortened with "…", and
// the whole text is its tooltip. Nothing in the text is a markup or an accelerator.

#include <QLabel>

namespace norvane {

class Elided_Label : public QLabel {
  public:
    Elided_Label(Qt::TextElideMode mode, QWidget* parent);

    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Qt::TextElideMode m_mode;
};

}  // namespace norvane
