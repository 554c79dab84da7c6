#include "common/timer_queue.h"

#include <algorithm>

#include "common/services.h"

namespace norvane {

Timer_Queue::Timer_Queue(Clock& clock, double speed) : m_clock(clock), m_speed(speed) {}

std::chrono::microseconds Timer_Queue::Now() const {
    return m_clock.Monotonic();
}

std::chrono::microseconds Timer_Queue::Scaled(std::chrono::milliseconds span) const {
    const std::chrono::duration<double, std::milli> scaled(static_cast<double>(span.count()) /
                                                           m_speed);
    return std::chrono::duration_cast<std::chrono::microseconds>(scaled);
}

double Timer_Queue::Seconds_Since(std::chrono::microseconds moment) const {
    return std::chrono::duration<double>(Now() - moment).count() * m_speed;
}

bool Timer_Queue::Run_Due() {
    const auto now = Now();
    bool any = false;
    // Each turn runs every due timer at most once, however long the ticks take.
    for (std::size_t turns = m_timers.size(); turns > 0; --turns) {
        Timer* timer = Earliest_Due(now);
        if (timer == nullptr)
            break;
        any = true;
        timer->Run();
    }
    return any;
}

std::optional<std::chrono::microseconds> Timer_Queue::Next_Due() const {
    std::optional<std::chrono::microseconds> next;
    for (const Timer* timer : m_timers) {
        if (timer->m_enabled && !timer->m_running && (!next || timer->m_due < *next)) {
            next = timer->m_due;
        }
    }
    return next;
}

Timer* Timer_Queue::Earliest_Due(std::chrono::microseconds now) const {
    Timer* earliest = nullptr;
    for (Timer* timer : m_timers) {
        const bool due = timer->m_enabled && !timer->m_running && timer->m_due <= now;
        if (due && (earliest == nullptr || timer->m_due < earliest->m_due))
            earliest = timer;
    }
    return earliest;
}

bool Timer_Queue::First_Within_A_Minute(const std::string& report) {
    constexpr std::chrono::minutes quiet(1);
    const auto now = Now();
    std::erase_if(m_recent_reports, [&](const auto& seen) { return now - seen.second >= quiet; });
    return m_recent_reports.emplace(report, now).second;
}

void Timer_Queue::Tell_Of_Failure(const Run_Error& error) {
    try {
        tick_failed.Emit(error);
    } catch (...) {
        // Who reports fails too: there is nobody left to tell.
        return;
    }
}

Timer::Timer(Timer_Queue& queue, std::chrono::milliseconds interval)
    : m_queue(queue), m_interval(interval) {
    m_queue.m_timers.push_back(this);
}

Timer::~Timer() {
    std::erase(m_queue.m_timers, this);
    if (m_deleted != nullptr)
        *m_deleted = true;
}

void Timer::Set_Enabled(bool enabled) {
    const bool begins = enabled && !m_enabled;
    m_enabled = enabled;
    if (!begins)
        return;
    m_due = m_queue.Now() + m_queue.Scaled(m_interval);
    m_queue.rescheduled.Emit();
}

void Timer::Run() {
    m_due += m_queue.Scaled(m_interval);
    bool deleted = false;
    m_deleted = &deleted;
    m_running = true;
    Timer_Queue& queue = m_queue;
    ++queue.m_ticks_running;
    try {
        tick.Emit();
    } catch (...) {
        // A tick reports its own failures; one that does not must not stop the event loop.
        queue.Tell_Of_Failure(Caught_Error());
    }
    --queue.m_ticks_running;
    if (deleted)
        return;
    m_running = false;
    m_deleted = nullptr;
    // A timer that fell behind does not catch up: it goes on from now.
    if (m_due <= queue.Now())
        m_due = queue.Now() + queue.Scaled(m_interval);
}

}  // namespace norvane
