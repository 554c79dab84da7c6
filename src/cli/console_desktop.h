#pragma once
// The desktop of a program without a window: boxes become lines on standard error ("title: text"),
// questions are answered No unless the pilot said otherwise, waiting runs the timers. A signal ends
// every wait.

#include <string>
#include <string_view>

#include "common/services.h"
#include "common/signal_watch.h"
#include "common/system_clock.h"
#include "common/timer_queue.h"
#include "net/http_client.h"

namespace norvane {

class Console_Desktop : public Desktop {
  public:
    /// `speed` divides every timer; `yes` answers questions.
    Console_Desktop(Clock& clock, Signal_Watch& signals, double speed, bool yes);

    void Set_Busy(bool /*busy*/) override {}
    Answer Show_Message(const Message_Box& box) override;
    std::filesystem::path Choose_File(const File_Choice& /*choice*/) override { return {}; }
    std::optional<std::int32_t> Choose_Color(std::int32_t /*current*/) override { return {}; }
    /// Says which file it is.
    void Open_File(const std::filesystem::path& file, std::string_view anchor) override;
    void Copy_Text(std::string_view /*text*/) override {}
    void Process_Events() override { m_timers.Run_Due(); }
    bool Wait_Until(const std::function<bool()>& condition,
                    std::chrono::milliseconds at_most) override;
    [[nodiscard]] Timer_Queue& Timers() override { return m_timers; }

    /// The text with a dot for each control character but tabulators and line ends: what a server
    /// or a file says must not command the pilot's terminal.
    [[nodiscard]] static std::string Printable(std::string utf8);
    /// A line on standard error, in UTF-8; line breaks become blanks.
    static void Say(std::string_view text);
    /// A result on standard output, in UTF-8 with LF, at once.
    static void Print(std::string_view text);

  private:
    Signal_Watch& m_signals;
    Timer_Queue m_timers;
    bool m_yes;
    /// The last box, which is not said again while it comes back unchanged (a link that stays
    /// down).
    std::string m_last_box;
};

/// What a program without a window runs in.
struct Console {
    /// As `Console_Desktop`.
    Console(double speed, bool yes) : desktop(clock, signals, speed, yes) {}

    /// Requests that a signal ends. The console outlives them.
    [[nodiscard]] Http_Options Until_Signal();

    System_Clock clock;
    Signal_Watch signals;
    Console_Desktop desktop;
};

}  // namespace norvane
