#pragma once
// The properties of `clsAppSettings`, each stated once: its name, where the store keeps it, what it
// is when the store does not have it, which values it takes. Loading and saving walk this table,
// and so does the command line through the functions below.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "config/cls_app_settings.h"

namespace norvane {

/// Whole numbers from `low` to `high` in steps of `step`, from `low` on.
struct Number_Range {
    std::int32_t low = 0;
    std::int32_t high = 0;
    std::int32_t step = 1;
};

struct Number_Property {
    std::int32_t App_Setting_Values::*value;
    void (clsAppSettings::*assign)(std::int32_t);
    std::int32_t otherwise;
    Number_Range range;
};

struct Flag_Property {
    bool App_Setting_Values::*value;
    void (clsAppSettings::*assign)(bool);
};

enum class Text_Values { any, flight_log, airline, weather_source, link_address };

struct Text_Property {
    std::string App_Setting_Values::*value;
    void (clsAppSettings::*assign)(std::string_view);
    std::string_view otherwise;
    /// The property whose value is the default in place of `otherwise`.
    std::string App_Setting_Values::*otherwise_from = nullptr;
    Text_Values values = Text_Values::any;
};

/// The steps in which properties are loaded and saved; within a step the table's order holds.
enum class Setting_Step { flight_log, options, sources, airline_name, airline };

struct Setting_Row {
    std::string_view name;
    Setting_Step step;
    /// Empty where it is the active airline's own.
    std::string_view section;
    std::string_view key;
    std::variant<Number_Property, Flag_Property, Text_Property> property;
    /// It says what the figures of a flight mean, and stays while one is tracked or stored.
    bool fixed_in_flight = false;
};

[[nodiscard]] std::span<const Setting_Row> Setting_Table();

/// Where `Simulator_Address` is kept: the program connects before its settings are loaded.
inline constexpr std::string_view simulator_address_section = "Options";
inline constexpr std::string_view simulator_address_key = "Simulator Address";

/// True for the name (letter case does not matter) of a property that stays while a flight is
/// tracked or stored.
[[nodiscard]] bool Is_Fixed_In_Flight(std::string_view name);

/// A property's value as the store keeps it.
[[nodiscard]] std::string Stored_Text(const Setting_Row& row, const App_Setting_Values& values);
/// Takes a stored text into `values`; raises 13, with a reason that stays short, when it does not
/// convert.
void Take_Stored_Text(const Setting_Row& row, std::string_view text, App_Setting_Values& values);
/// The text that is used when the store has none.
[[nodiscard]] std::string Default_Text(const Setting_Row& row, const App_Setting_Values& values);
/// Assigns the property itself, with all that its assignment does; raises as above.
void Assign_Text(const Setting_Row& row, std::string_view text, clsAppSettings& settings);

/// Every property and its value, "OptFields(0)" to "OptFields(4)" and the read-only ones last.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> List_Settings(
    const clsAppSettings& settings);
/// The value of the property `name` (letter case does not matter); raises 5 when there is none.
[[nodiscard]] std::string Get_Setting_Text(const clsAppSettings& settings, std::string_view name);
/// Assigns a property from a text, as the settings panel would; `Save_Settings` is the caller's.
/// Raises when there is no such property, when it cannot be assigned, and when the text does not
/// convert or is not among the property's values.
void Set_Setting_Text(clsAppSettings& settings, std::string_view name, std::string_view value);

}  // namespace norvane
