#pragma once
// What is shown while the program starts: the airline's picture, or our own.

#include <QSplashScreen>
#include <memory>
#include <string_view>

namespace norvane {

struct Services;

/// Shows the file "splash" of the airline's directory, in any format the toolkit reads; our own
/// drawing when there is none, or none that can be read. Returns at once.
[[nodiscard]] std::unique_ptr<QSplashScreen> Show_Splash(Services& services,
                                                         std::string_view airline_directory);

}  // namespace norvane
