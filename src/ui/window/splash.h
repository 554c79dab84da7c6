#pragma once
// The picture while the program starts: the airline's own, or the standard one. Owned by `main`,
// gone when the window is there.

#include <QSplashScreen>
#include <memory>
#include <string_view>

namespace norvane {

struct Services;

/// Shown and painted. The airline's picture is the file "splash" in its directory below the program
/// directory, in any format that Qt reads; one that cannot be read is passed over.
[[nodiscard]] std::unique_ptr<QSplashScreen> Show_Splash(Services& services,
                                                         std::string_view airline_directory);

}  // namespace norvane
