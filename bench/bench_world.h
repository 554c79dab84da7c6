#pragma once
// What benchmarks need of the outside: a desktop where nothing happens, and an error log that ends
// the run, because a report would mean that something else was measured.

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "common/services.h"
#include "common/timer_queue.h"

namespace norvane {

class Idle_Desktop : public Desktop {
  public:
    explicit Idle_Desktop(Clock& clock) : m_timers(clock) {}
    void Set_Busy(bool) override {}
    Answer Show_Message(const Message_Box& box) override { throw std::runtime_error(box.text); }
    std::filesystem::path Choose_File(const File_Choice& /*choice*/) override { return {}; }
    std::optional<std::int32_t> Choose_Color(std::int32_t /*current*/) override { return {}; }
    void Open_File(const std::filesystem::path& /*file*/, std::string_view /*anchor*/) override {}
    void Copy_Text(std::string_view /*text*/) override {}
    void Process_Events() override {}
    bool Wait_Until(const std::function<bool()>& condition, std::chrono::milliseconds) override {
        return condition();
    }
    [[nodiscard]] Timer_Queue& Timers() override { return m_timers; }

  private:
    Timer_Queue m_timers;
};

class Fatal_Error_Log : public Error_Log {
  public:
    void Append(const std::string& entry) override {
        std::fprintf(stderr, "%s\n", entry.c_str());
        std::abort();
    }
};

}  // namespace norvane
