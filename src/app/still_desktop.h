#pragma once
// A desktop and a clock for work that nobody watches: boxes are not shown, files not chosen, and
// time passes when it is told to. Errors are listed.

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "common/services.h"
#include "common/timer_queue.h"

namespace norvane {

class Still_Clock : public Clock {
  public:
    /// What the computer's clocks show now.
    void Set(const Date_Time& utc, const Date_Time& local) {
        m_utc = Seconds_Of(utc);
        m_local = Seconds_Of(local);
        m_set_at = m_now;
    }
    /// Seconds since the beginning; time does not go back.
    void Pass_To(double seconds) {
        m_now = std::max(m_now, std::chrono::microseconds(std::llround(seconds * 1e6)));
    }

    [[nodiscard]] Date_Time Local_Now() override {
        return Date_Time_Of_Seconds(m_local + Passed());
    }
    [[nodiscard]] std::optional<Date_Time> Utc_Now() override {
        return Date_Time_Of_Seconds(m_utc + Passed());
    }
    [[nodiscard]] std::chrono::microseconds Monotonic() override { return m_now; }
    void Sleep(std::chrono::microseconds) override {}
    [[nodiscard]] Time_Zone Zone() override { return {}; }

  private:
    [[nodiscard]] std::int64_t Passed() const {
        return std::chrono::duration_cast<std::chrono::seconds>(m_now - m_set_at).count();
    }

    std::int64_t m_utc = 0;
    std::int64_t m_local = 0;
    std::chrono::microseconds m_now{0};
    std::chrono::microseconds m_set_at{0};
};

class Still_Desktop : public Desktop {
  public:
    explicit Still_Desktop(Clock& clock) : m_timers(clock) {}

    void Set_Busy(bool) override {}
    Answer Show_Message(const Message_Box& box) override {
        return box.buttons == Buttons::ok ? Answer::ok : Answer::yes;
    }
    std::filesystem::path Choose_File(const File_Choice&) override { return {}; }
    std::optional<std::int32_t> Choose_Color(std::int32_t) override { return std::nullopt; }
    void Open_File(const std::filesystem::path&, std::string_view) override {}
    void Copy_Text(std::string_view) override {}
    void Process_Events() override {}
    bool Wait_Until(const std::function<bool()>& condition, std::chrono::milliseconds) override {
        return condition();
    }
    [[nodiscard]] Timer_Queue& Timers() override { return m_timers; }

  private:
    Timer_Queue m_timers;
};

class Listed_Errors : public Error_Log {
  public:
    void Append(const std::string& entry) override { m_entries.push_back(entry); }
    [[nodiscard]] const std::vector<std::string>& Entries() const { return m_entries; }

  private:
    std::vector<std::string> m_entries;
};

}  // namespace norvane
