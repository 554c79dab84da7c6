#pragma once
// How numbers and dates are written where the pilot lives, taken from the system's locale. The
// short date pattern is taken once and kept in the settings store: a locale that changes later must
// not make the dates of old flights read differently.

#include <string>
#include <string_view>

#include "common/number.h"

namespace norvane {

class Settings_Store;

/// The signs of the locale the environment names, and the date pattern of the store, which gets the
/// locale's at first. Raises when the store fails.
[[nodiscard]] Regional Load_Regional(Settings_Store& store);

/// The pattern for a locale's date format ("%d.%m.%Y" gives "dd.MM.yyyy"); ISO's where the format
/// has more than day, month and year, or other signs between them than "/", "-" and ".".
[[nodiscard]] std::string Short_Date_Pattern(std::string_view date_format);

}  // namespace norvane
