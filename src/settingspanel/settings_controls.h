#pragma once
// Which control of the settings panel edits which setting, one row a control. Loading, saving,
// locking and the window walk these tables.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "settingspanel/uc_settings.h"

namespace norvane {

/// Positions in the list of a field's types.
inline constexpr int free_text = 0;
inline constexpr int drop_list = 1;

/// A list of the ACARS page.
struct Setting_List {
    Combo_Box ucSettings::*list;
    std::string_view caption;
    std::string_view tooltip;
    /// Empty where they come from a file.
    std::vector<std::string_view> entries;
    /// None where the list's position is not the setting.
    std::int32_t (clsAppSettings::*read)() const = nullptr;
    void (clsAppSettings::*assign)(std::int32_t) = nullptr;
};

struct Setting_Flag {
    ucSettings::Option option;
    bool (clsAppSettings::*read)() const;
    void (clsAppSettings::*assign)(bool);
};

struct Setting_Color_Row {
    std::int32_t (clsAppSettings::*read)() const;
    void (clsAppSettings::*assign)(std::int32_t);
    /// 0xBBGGRR.
    std::int32_t otherwise;
};

struct Pilot_Text {
    std::string App_Setting_Values::*value;
    void (clsAppSettings::*assign)(std::string_view);
};

/// An entry of the list of how many recordings are kept.
struct Recording_Choice {
    /// As `OPT_Recordings`.
    std::int32_t flights;
    std::string words;
};
/// The most first; `now` is among them.
[[nodiscard]] std::vector<Recording_Choice> Recording_Choices(std::int32_t now);

/// In the order of the page.
[[nodiscard]] const std::vector<Setting_List>& Setting_Lists();
[[nodiscard]] std::span<const Setting_Flag> Setting_Flags();
/// By `ucSettings::Color`.
[[nodiscard]] std::span<const Setting_Color_Row> Setting_Colors();
/// By `ucSettings::Pilot_Field`.
[[nodiscard]] std::span<const Pilot_Text> Pilot_Texts();

}  // namespace norvane
