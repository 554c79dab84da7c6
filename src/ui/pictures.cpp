#include "ui/pictures.h"

#include <QPainter>
#include <QSvgRenderer>
#include <map>

#include "common/text.h"

/// The drawings are linked with a library that nothing refers to but this call.
static void Load_Pictures() {
    Q_INIT_RESOURCE(pictures);
}

namespace norvane {

namespace {

/// By icon index.
const std::map<int, QString> item_files = {
    {1, ":/icons/acars.svg"},
    {4, ":/icons/messages.svg"},
};

constexpr QSize splash_size(480, 270);

QPixmap Blank(const QSize& size, qreal device_pixel_ratio) {
    QPixmap picture(size * device_pixel_ratio);
    picture.fill(Qt::transparent);
    picture.setDevicePixelRatio(device_pixel_ratio);
    return picture;
}

}  // namespace

QPixmap Item_Picture(int icon_index, int size, const QColor& ink, qreal device_pixel_ratio) {
    Load_Pictures();
    const auto found = item_files.find(icon_index);
    if (found == item_files.end())
        return {};
    QPixmap picture = Blank({size, size}, device_pixel_ratio);
    const QRectF all(0, 0, size, size);
    QPainter painter(&picture);
    QSvgRenderer(found->second).render(&painter, all);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(all, ink);
    return picture;
}

QIcon Program_Icon() {
    Load_Pictures();
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128}) {
        QPixmap picture = Blank({size, size}, 1);
        QPainter painter(&picture);
        QSvgRenderer(QString(":/icons/norvane.svg")).render(&painter);
        painter.end();
        icon.addPixmap(picture);
    }
    return icon;
}

QPixmap Standard_Splash(qreal device_pixel_ratio) {
    Load_Pictures();
    QPixmap picture = Blank(splash_size, device_pixel_ratio);
    const QRectF all(QPointF(0, 0), QSizeF(splash_size));
    QPainter painter(&picture);
    QSvgRenderer(QString(":/icons/splash.svg")).render(&painter, all);
    QFont font = painter.font();
    font.setPixelSize(40);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 3);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(all.adjusted(28, 24, 0, 0), Qt::AlignLeft | Qt::AlignTop,
                     QString::fromLatin1(product_name.data(), product_name.size()));
    return picture;
}

}  // namespace norvane
