#pragma once
// The program's own drawings: the items' pictures, in the ink they are asked for, and its icon.

#include <QColor>
#include <QIcon>
#include <QPixmap>

namespace norvane {

/// The picture of an item of the navigation bar by its icon index (1 ACARS, 4 messages), `size`
/// pixels of the screen's own measure wide; null for an index without one.
[[nodiscard]] QPixmap Item_Picture(int icon_index, int size, const QColor& ink,
                                   qreal device_pixel_ratio);
[[nodiscard]] QIcon Program_Icon();
/// What is shown while the program starts, with its name.
[[nodiscard]] QPixmap Standard_Splash(qreal device_pixel_ratio);

}  // namespace norvane
