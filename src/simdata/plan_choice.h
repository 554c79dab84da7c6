#pragma once
// Asks the pilot for one of the simulator's flight plans. The ACARS panel and the flight log open
// the same dialog where the last of them was left.

#include <filesystem>

namespace norvane {

struct Services;

/// Empty when the pilot chose none; the dialog's folder is forgotten then. Raises when the settings
/// store fails.
[[nodiscard]] std::filesystem::path Choose_Flight_Plan(Services& services);

}  // namespace norvane
