#include "support/test_world.h"

#include <unistd.h>

#include <stdexcept>
#include <utility>

#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/log_error.h"

namespace norvane::test {

Date_Time Virtual_Clock::Local_Now() {
    return Date_Time_Of_Seconds(Seconds_Of(start) +
                                std::chrono::duration_cast<std::chrono::seconds>(m_now).count());
}

namespace {

/// Takes the next of a script; `otherwise` at its end.
template <class Value>
Value Next_Of(std::deque<Value>& script, Value otherwise) {
    if (script.empty())
        return otherwise;
    Value next = script.front();
    script.pop_front();
    return next;
}

/// In memory where there is such a place: thousands of flights flush their log to the disk.
std::filesystem::path Scratch_Place() {
    const std::filesystem::path memory("/dev/shm");
    return ::access(memory.c_str(), W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
}

}  // namespace

Answer Scripted_Desktop::Show_Message(const Message_Box& box) {
    boxes.push_back(box);
    if (on_box)
        on_box(box);
    return box.buttons == Buttons::ok ? Answer::ok : Next_Of(answers, Answer::no);
}

std::filesystem::path Scripted_Desktop::Choose_File(const File_Choice& choice) {
    file_choices.push_back(choice);
    return Next_Of(chosen_files, {});
}

std::optional<std::int32_t> Scripted_Desktop::Choose_Color(std::int32_t current) {
    color_choices.push_back(current);
    return chosen_colors.empty() ? std::nullopt : std::optional(Next_Of(chosen_colors, 0));
}

bool Scripted_Desktop::Wait_Until(const std::function<bool()>& condition,
                                  std::chrono::milliseconds at_most) {
    const auto end = m_timers.Now() + m_timers.Scaled(at_most);
    while (!condition()) {
        if (m_timers.Now() <= end && m_timers.Run_Due())
            continue;
        const auto next = m_timers.Next_Due();
        if (!next || *next > end) {
            m_clock.Advance_To(end);
            return condition();
        }
        m_clock.Advance_To(*next);
    }
    return true;
}

Test_World::Test_World() : services{desktop, store, clock, error_log, Regional{}, {}} {
    std::string name = (Scratch_Place() / "norvane-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary directory");
    directory = name;
    services.program_directory = directory;
    static_cast<void>(Log_Failing_Ticks(services));
}

Test_World::~Test_World() {
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
}

void Test_World::TearDown() {
    for (const auto& entry : error_log.entries)
        ADD_FAILURE() << "unexpected report: " << entry;
}

std::vector<std::string> Test_World::Take_Errors() {
    return std::exchange(error_log.entries, {});
}

std::filesystem::path Test_World::Write(const std::filesystem::path& relative,
                                        std::string_view content) {
    auto file = directory / relative;
    std::filesystem::create_directories(file.parent_path());
    Write_File(file, content);
    return file;
}

std::string Test_World::Read(const std::filesystem::path& relative) const {
    return Read_File(directory / relative);
}

std::filesystem::path Data_File(const std::string& name) {
    return std::filesystem::path(NORVANE_SOURCE_DIR) / "tests" / "data" / name;
}

void Expect_As_Looked_At(const std::string& name, const std::string& told) {
    if (told == Read_File(Data_File(name)))
        return;
    const auto file =
        std::filesystem::path(testing::TempDir()) / std::filesystem::path(name).filename();
    Write_File(file, told);
    ADD_FAILURE() << "compare tests/data/" << name << " with " << file;
}

}  // namespace norvane::test
