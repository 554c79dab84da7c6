#include "ui/window/pictures.h"

#include <QPainter>
#include <QSvgRenderer>
#include <array>

/// A library's resources are not registered by themselves. The macro works outside of all
/// namespaces only.
static void Register_Pictures() {
    Q_INIT_RESOURCE(pictures);
}

namespace norvane {

namespace {

/// What desktops ask of a program's icon.
constexpr std::array icon_sizes = {16, 22, 24, 32, 48, 64, 128, 256};

constexpr int remark_size = 16;

struct Item_Row {
    int icon_index;
    const char* drawing;
};
constexpr std::array item_rows = {
    Item_Row{1, "acars"},    Item_Row{2, "flight_log"}, Item_Row{3, "statistics"},
    Item_Row{4, "messages"}, Item_Row{5, "settings"},
};

QPixmap Drawn(const QString& drawing, const QSize& size, qreal pixel_ratio) {
    Register_Pictures();
    QSvgRenderer renderer(":/icons/" + drawing + ".svg");
    renderer.setAspectRatioMode(Qt::KeepAspectRatioByExpanding);
    QPixmap picture(size * pixel_ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    renderer.render(&painter);
    painter.end();
    picture.setDevicePixelRatio(pixel_ratio);
    return picture;
}

}  // namespace

QPixmap Item_Picture(int icon_index, int size, const QColor& ink, qreal pixel_ratio) {
    for (const Item_Row& row : item_rows) {
        if (row.icon_index != icon_index)
            continue;
        QPixmap picture = Drawn(row.drawing, {size, size}, pixel_ratio);
        QPainter painter(&picture);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(QRect(0, 0, size, size), ink);
        return picture;
    }
    return {};
}

QIcon Program_Icon() {
    QIcon icon;
    for (const int size : icon_sizes)
        icon.addPixmap(Drawn("norvane", {size, size}, 1));
    return icon;
}

QIcon Remark_Icon(const QColor& ink) {
    QIcon icon;
    for (const qreal pixel_ratio : {1.0, 2.0, 3.0}) {
        QPixmap picture(QSize(remark_size, remark_size) * pixel_ratio);
        picture.setDevicePixelRatio(pixel_ratio);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(ink, 1.25));
        const QRectF room(0, 0, remark_size, remark_size);
        painter.drawEllipse(room.adjusted(1.5, 1.5, -1.5, -1.5));
        QFont font;
        font.setPixelSize(remark_size * 2 / 3);
        font.setBold(true);
        painter.setFont(font);
        painter.drawText(room, Qt::AlignCenter, "?");
        painter.end();
        icon.addPixmap(picture);
    }
    return icon;
}

QPixmap Splash_Picture(const QSize& size, qreal pixel_ratio) {
    return Drawn("splash", size, pixel_ratio);
}

}  // namespace norvane
