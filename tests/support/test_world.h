#pragma once
// The outside world of a test: a desktop with a script of answers and a virtual clock, a settings
// store in memory, an error log that fails the test when a report comes unexpected, and a program
// directory of its own that is gone afterwards.

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "common/run_error.h"
#include "common/services.h"
#include "common/timer_queue.h"
#include "config/memory_store.h"

namespace norvane::test {

class Virtual_Clock : public Clock {
  public:
    [[nodiscard]] Date_Time Local_Now() override;
    [[nodiscard]] std::optional<Date_Time> Utc_Now() override { return utc; }
    [[nodiscard]] std::chrono::microseconds Monotonic() override { return m_now; }
    void Sleep(std::chrono::microseconds duration) override { m_now += duration; }
    [[nodiscard]] Time_Zone Zone() override { return zone; }

    void Advance_To(std::chrono::microseconds moment) { m_now = std::max(m_now, moment); }
    /// Local time at monotonic time 0.
    Date_Time start{{2026, 3, 14}, {15, 9, 26}};
    Time_Zone zone;
    /// Of a platform that knows it; else `zone` decides.
    std::optional<Date_Time> utc;

  private:
    std::chrono::microseconds m_now{0};
};

/// A desktop nobody sits at: boxes are recorded and answered from a script, waiting runs the timers
/// on the virtual clock.
class Scripted_Desktop : public Desktop {
  public:
    explicit Scripted_Desktop(Virtual_Clock& clock) : m_clock(clock), m_timers(clock) {}

    void Set_Busy(bool value) override { busy = value; }
    Answer Show_Message(const Message_Box& box) override;
    void Withdraw(std::string_view topic) override { withdrawn.emplace_back(topic); }
    std::filesystem::path Choose_File(const File_Choice& choice) override;
    std::optional<std::int32_t> Choose_Color(std::int32_t current) override;
    void Open_File(const std::filesystem::path& file, std::string_view anchor) override {
        opened_files.push_back(file);
        opened_anchors.emplace_back(anchor);
    }
    void Copy_Text(std::string_view text) override { copied_text = text; }
    void Process_Events() override { m_timers.Run_Due(); }
    bool Wait_Until(const std::function<bool()>& condition,
                    std::chrono::milliseconds at_most) override;
    [[nodiscard]] Timer_Queue& Timers() override { return m_timers; }

    [[nodiscard]] std::chrono::microseconds Now() const { return m_timers.Now(); }
    /// Runs the timers for a span of virtual time.
    void Run_For(std::chrono::milliseconds span) {
        Wait_Until([] { return false; }, span);
    }

    bool busy = false;
    std::vector<Message_Box> boxes;
    /// Topics whose boxes were taken away.
    std::vector<std::string> withdrawn;
    /// Answers to yes/no boxes, in order; No when the script is at its end.
    std::deque<Answer> answers;
    /// Files that were asked for, and what is chosen, in order; none when the script is at its end.
    std::vector<File_Choice> file_choices;
    std::deque<std::filesystem::path> chosen_files;
    std::vector<std::filesystem::path> opened_files;
    std::vector<std::string> opened_anchors;
    /// Colours that choosers began with, and what is chosen, as above.
    std::vector<std::int32_t> color_choices;
    std::deque<std::int32_t> chosen_colors;
    std::string copied_text;
    /// Called when a box is shown, before it is answered.
    std::function<void(const Message_Box&)> on_box;

  private:
    Virtual_Clock& m_clock;
    Timer_Queue m_timers;
};

class Recorded_Error_Log : public Error_Log {
  public:
    void Append(const std::string& entry) override { entries.push_back(entry); }
    std::vector<std::string> entries;
};

/// A store that can be full, or find that out when a transaction is to be kept.
class Full_Store : public Memory_Store {
  public:
    void Set(std::string_view section, std::string_view key, std::string_view value) override {
        if (full)
            throw Run_Error(error_number::disk_full, "The store is full");
        Memory_Store::Set(section, key, value);
    }
    void Commit() override {
        Memory_Store::Commit();
        if (fails_to_commit && Depth() == 0)
            throw Run_Error(error_number::disk_full, "The store is full");
    }
    bool full = false;
    bool fails_to_commit = false;
};

/// The fixture. A test that expects reports takes them with `Take_Errors`.
class Test_World : public testing::Test {
  protected:
    Test_World();
    ~Test_World() override;
    void TearDown() override;

    /// The error log's entries so far, which are expected and will not fail the test.
    std::vector<std::string> Take_Errors();
    /// Writes a file below the program directory, creating its directory.
    std::filesystem::path Write(const std::filesystem::path& relative, std::string_view content);
    /// The content of a file below the program directory.
    [[nodiscard]] std::string Read(const std::filesystem::path& relative) const;

    Virtual_Clock clock;
    Scripted_Desktop desktop{clock};
    Full_Store store;
    Recorded_Error_Log error_log;
    std::filesystem::path directory;
    Services services;
};

/// A file of the tests' data directory.
[[nodiscard]] std::filesystem::path Data_File(const std::string& name);
/// Fails when this is not what the file of that directory holds, and says where it was written. Who
/// means other figures to be told looks at the difference and takes over the new file.
void Expect_As_Looked_At(const std::string& name, const std::string& told);

}  // namespace norvane::test
