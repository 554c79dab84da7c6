#pragma once
// A command drawn as a link: navy when it can be used, grey when not. On a dark ground, where navy
// cannot be read, the desktop's own link colour replaces navy.

#include <QAbstractButton>

namespace norvane {

class Link_Button : public QAbstractButton {
  public:
    explicit Link_Button(const QString& text = {}, QWidget* parent = nullptr);

    /// Keeps room for this caption too, so that nothing moves when the caption changes to it.
    void Reserve(const QString& text);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    [[nodiscard]] QColor Ink() const;

    QString m_reserved;
};

}  // namespace norvane
