#include "ui/splash.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QScreen>

#include "common/find_file.h"
#include "common/services.h"
#include "ui/pictures.h"
#include "ui/qt_text.h"

namespace norvane {

namespace {

/// An airline's picture takes at most this share of the screen.
constexpr double largest_share = 0.6;

QPixmap Airline_Picture(Services& services, std::string_view airline_directory) {
    const auto directory =
        Find_Path(services, services.program_directory, std::string(airline_directory));
    QImageReader reader(Path_To_Q(Find_Path(services, directory, "splash")));
    // The file's name tells nothing of its format.
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize screen = QGuiApplication::primaryScreen()->availableSize() * largest_share;
    const QSize size = reader.size();
    if (size.width() > screen.width() || size.height() > screen.height())
        reader.setScaledSize(size.scaled(screen, Qt::KeepAspectRatio));
    return QPixmap::fromImageReader(&reader);
}

}  // namespace

std::unique_ptr<QSplashScreen> Show_Splash(Services& services, std::string_view airline_directory) {
    QPixmap picture = Airline_Picture(services, airline_directory);
    if (picture.isNull())
        picture = Standard_Splash(QGuiApplication::primaryScreen()->devicePixelRatio());
    auto splash = std::make_unique<QSplashScreen>(picture);
    splash->show();
    splash->repaint();
    return splash;
}

}  // namespace norvane
