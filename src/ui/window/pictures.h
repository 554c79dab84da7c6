#pragma once
// The program's own pictures. They are drawings without measures, rendered for the size and the
// pixel ratio at which they are shown.

#include <QColor>
#include <QIcon>
#include <QPixmap>

namespace norvane {

/// The picture of a navigation item, all of it in `ink`. Empty when no item has this index.
/// `size` is in pixels of the desktop; the picture has `pixel_ratio` times as many.
[[nodiscard]] QPixmap Item_Picture(int icon_index, int size, const QColor& ink, qreal pixel_ratio);
[[nodiscard]] QIcon Program_Icon();
/// The mark of a box whose text is odd.
[[nodiscard]] QIcon Remark_Icon(const QColor& ink);
/// What the standard splash shows behind the program's name.
[[nodiscard]] QPixmap Splash_Picture(const QSize& size, qreal pixel_ratio);

}  // namespace norvane
