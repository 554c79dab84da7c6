#include "simhost/host.h"

#include <algorithm>

#include "common/services.h"
#include "common/text.h"

namespace norvane {

namespace {

using namespace std::chrono_literals;

/// Requests of one sampling step come within microseconds; the world need not move between them.
constexpr auto finest_advance = 5ms;
constexpr auto longest_wait = 10s;

}  // namespace

Host::Host(World_Source& world, const Host_Options& options, Clock& clock)
    : m_world(world),
      m_options(options),
      m_clock(clock),
      m_server(options.listen, m_area),
      m_start(clock.Monotonic()),
      m_caught_up(m_start) {
    m_area.on_read = [this](std::uint32_t offset, std::uint32_t) { Take_Read(offset); };
    m_area.on_write = [this](std::uint32_t offset, std::uint32_t size) {
        Take_Write(offset, size);
    };
    m_server.on_connect = [this] { m_first_read = true; };
    m_server.before_requests = [this] { Catch_Up(); };
    m_world.Apply(m_options.at_seconds, m_area);
}

double Host::World_Seconds() const {
    const auto passed = m_options.step ? std::chrono::microseconds(*m_options.step) * m_steps
                                       : m_clock.Monotonic() - m_start;
    const double seconds = std::chrono::duration<double>(passed).count();
    return m_options.at_seconds + (m_options.step ? seconds : seconds * m_options.speed);
}

bool Host::Serve(std::chrono::milliseconds at_most, int stop) {
    return m_server.Serve(at_most, stop);
}

void Host::Run(int stop) {
    while (!Serve(longest_wait, stop)) {
    }
}

void Host::Catch_Up() {
    const auto now = m_clock.Monotonic();
    if (m_options.step || now - m_caught_up < finest_advance)
        return;
    m_caught_up = now;
    m_world.Apply(World_Seconds(), m_area);
}

void Host::Take_Read(std::uint32_t offset) {
    if (!m_options.step || offset != Offset_Of(Variable::parking_brake))
        return;
    if (!m_first_read) {
        ++m_steps;
        m_world.Apply(World_Seconds(), m_area);
    }
    m_first_read = false;
}

void Host::Take_Write(std::uint32_t offset, std::uint32_t size) {
    if (offset != Offset_Of(Variable::display_text))
        return;
    std::string text = Decode_Text(m_area.Bytes(offset, size));
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    if (!Trimmed_View(text).empty())
        text_shown.Emit(text);
}

}  // namespace norvane
