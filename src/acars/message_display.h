#pragma once
// How a message is cut into the lines that the simulator can show, and how long each stands there.

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

/// One line of a message; an empty one is not shown, but its pause is taken.
struct Display_Line {
    std::string text;
    bool pause_after = false;
    bool operator==(const Display_Line&) const = default;
};

/// The lines of a message: segments between "|", each broken at blanks below 100 characters.
[[nodiscard]] std::vector<Display_Line> Lines_To_Show(std::string_view message);

/// How the simulator times a text, by its display mode (0 or not).
struct Display_Timing {
    std::int16_t control = 0;
    std::chrono::seconds pause{0};
};
[[nodiscard]] Display_Timing Display_Timing_Of(std::int32_t display_mode);

}  // namespace norvane
