#pragma once
// A window as a text: what stands in it, where, and in which dress. And a drawing as one.

#include <QFont>
#include <QImage>
#include <QWidget>
#include <string>

namespace norvane::test {

/// While it lives, windows are of the same letters and style on every machine.
class Known_Look {
  public:
    Known_Look();
    ~Known_Look();

  private:
    QFont m_font;
};

/// One line for each widget, further right than the one that it stands in. Hidden ones are left
/// out.
[[nodiscard]] std::string Window_Text(const QWidget& window);
/// The lightness of each square of so many pixels, '0' to 'f'; blank where nothing is drawn.
[[nodiscard]] std::string Drawing_Text(const QImage& image, int square);

/// Compares with tests/data/windows/NAME.txt. Who means a window to look otherwise looks at the
/// difference and takes over the new file.
void Expect_Look(const std::string& name, const std::string& seen);
/// The same with drawings, in which a square may be one step lighter or darker.
void Expect_Drawing(const std::string& name, const std::string& seen);

}  // namespace norvane::test
