#include "ui/window/splash.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QPainter>
#include <QScreen>

#include "common/find_file.h"
#include "common/services.h"
#include "common/text.h"
#include "ui/window/pictures.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr QSize standard_size(480, 270);
/// The most of the screen that an airline's picture takes.
constexpr double largest_share = 0.8;

/// The airline's picture, or none.
QImage Airline_Picture(Services& services, std::string_view airline_directory) {
    if (airline_directory.empty())
        return {};
    const auto file =
        Find_Path(services, services.program_directory, std::string(airline_directory) + "/splash");
    QImageReader reader(Path_To_Q(file));
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    return reader.read();
}

QPixmap Standard_Picture(double pixel_ratio) {
    QPixmap picture = Splash_Picture(standard_size, pixel_ratio);
    QPainter painter(&picture);
    QFont font = painter.font();
    font.setPixelSize(46);
    font.setLetterSpacing(QFont::PercentageSpacing, 104);
    painter.setFont(font);
    painter.setPen(Qt::white);
    const QRect place(36, 30, standard_size.width() - 72, 60);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, To_Q(product_name));
    return picture;
}

}  // namespace

std::unique_ptr<QSplashScreen> Show_Splash(Services& services, std::string_view airline_directory) {
    const QScreen& screen = *QGuiApplication::primaryScreen();
    QImage image = Airline_Picture(services, airline_directory);
    QPixmap picture;
    if (image.isNull()) {
        picture = Standard_Picture(screen.devicePixelRatio());
    } else {
        const QSize room = screen.availableSize() * largest_share;
        if (image.width() > room.width() || image.height() > room.height())
            image = image.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        picture = QPixmap::fromImage(image);
    }
    auto splash = std::make_unique<QSplashScreen>(picture);
    splash->show();
    splash->repaint();
    return splash;
}

}  // namespace norvane
