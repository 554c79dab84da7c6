#pragma once
// What the program is shipped with, brought into a program directory: airports, airlines and
// aircraft types ("bin"), the default airline's directory ("VA") and the help. "shipped.txt" there
// remembers each file as it was shipped last, so that a newer one replaces only what the pilot has
// not changed.

#include <filesystem>

#include "common/services.h"

namespace norvane {

/// Brings the files of `shipped` into the program directory, which is made if it is missing. What
/// the pilot changed or deleted, or had there before, stays as it is. Costs a look at each shipped
/// file when none is newer. Raises the first failure after the files that can be brought were.
void Take_Shipped_Files(Services& services, const std::filesystem::path& shipped);

}  // namespace norvane
