#include "acars/message_display.h"

#include "common/text.h"

namespace norvane {

namespace {

constexpr std::size_t line_limit = 100;

void Add_Segment(std::string_view segment, std::vector<Display_Line>& lines) {
    std::string line;
    for (const std::string& word : Split(segment, ' ')) {
        if (word.size() + line.size() + 1 < line_limit) {
            line += " " + word;
        } else {
            lines.push_back({Trim(line), true});
            line = word;
        }
    }
    lines.push_back({Trim(line), false});
}

}  // namespace

std::vector<Display_Line> Lines_To_Show(std::string_view message) {
    const std::string on_one_line = Replace_All(Replace_All(message, "\n", ""), "\r", " ");
    const auto segments = Split("ACARS/ " + Trim(on_one_line), field_separator);
    std::vector<Display_Line> lines;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        if (segments[i].empty()) {
            lines.emplace_back();
        } else {
            Add_Segment(segments[i], lines);
        }
        if (i + 1 < segments.size())
            lines.back().pause_after = true;
    }
    return lines;
}

Display_Timing Display_Timing_Of(std::int32_t display_mode) {
    constexpr Display_Timing standing{8, std::chrono::seconds(8)};
    // Negative: the simulator scrolls the text.
    constexpr Display_Timing scrolling{-17, std::chrono::seconds(17)};
    return display_mode == 0 ? standing : scrolling;
}

}  // namespace norvane
