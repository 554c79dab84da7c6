#pragma once
// A figure on the form: one line in a quiet frame, shortened with "…" where it does not fit (the
// whole text is its tooltip). Its size never follows its text, so that no control moves when one
// arrives.

#include <QFrame>
#include <QString>

namespace norvane {

class Value_Label : public QFrame {
  public:
    /// Wide enough for `characters` digits; wider when the layout gives it room.
    explicit Value_Label(int characters, QWidget* parent = nullptr);

    void Set_Text(const QString& text);
    [[nodiscard]] const QString& Text() const { return m_text; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    int m_characters;
    QString m_text;
};

}  // namespace norvane
