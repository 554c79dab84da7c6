#include "cli/console_desktop.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "common/code_page.h"
#include "common/text.h"

namespace norvane {

Console_Desktop::Console_Desktop(Clock& clock, Signal_Watch& signals, double speed, bool yes)
    : m_signals(signals), m_timers(clock, speed), m_yes(yes) {}

std::string Console_Desktop::Printable(std::string utf8) {
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        const bool is_control = (byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7F;
        // The second row of controls, U+0080 to U+009F, has two bytes each.
        const bool is_late_control =
            byte == 0xC2 && i + 1 < utf8.size() && static_cast<unsigned char>(utf8[i + 1]) < 0xA0;
        if (is_late_control)
            utf8.erase(i + 1, 1);
        if (is_control || is_late_control)
            utf8[i] = '.';
    }
    return utf8;
}

void Console_Desktop::Say(std::string_view text) {
    // One line; unlike a field of the log, a message keeps its "|".
    std::string line = Replace_All(text, cr_lf, " ");
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    fmt::print(stderr, "{}\n", Printable(To_Utf8(line)));
}

void Console_Desktop::Print(std::string_view text) {
    const std::string lines = Replace_All(Replace_All(text, cr_lf, "\n"), "\r", "\n");
    fmt::print("{}\n", Printable(To_Utf8(lines)));
    std::fflush(stdout);
}

void Console_Desktop::Open_File(const std::filesystem::path& file, std::string_view /*anchor*/) {
    Print(From_Path(file));
}

Answer Console_Desktop::Show_Message(const Message_Box& box) {
    const bool question = box.buttons == Buttons::yes_no;
    std::string said = box.title + ": " + box.text;
    if (!box.details.empty())
        said += " Details: " + box.details;
    if (question)
        said += m_yes ? " [Yes]" : " [No]";
    if (question || said != m_last_box)
        Say(said);
    m_last_box = std::move(said);
    if (!question)
        return Answer::ok;
    return m_yes ? Answer::yes : Answer::no;
}

bool Console_Desktop::Wait_Until(const std::function<bool()>& condition,
                                 std::chrono::milliseconds at_most) {
    // Without a timer that is due sooner, signals and the condition are looked at this often.
    constexpr std::chrono::milliseconds longest_sleep(200);
    const auto end = m_timers.Now() + m_timers.Scaled(at_most);
    while (!condition()) {
        const auto now = m_timers.Now();
        if (now >= end || m_signals.Raised())
            return condition();
        if (m_timers.Run_Due())
            continue;
        const auto next = m_timers.Next_Due().value_or(end);
        m_signals.Sleep(std::min<std::chrono::microseconds>(
            {end - now, next - now, std::chrono::microseconds(longest_sleep)}));
    }
    return true;
}

Http_Options Console::Until_Signal() {
    Http_Options options;
    options.given_up = [this] { return signals.Raised(); };
    return options;
}

}  // namespace norvane
