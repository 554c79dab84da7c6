#include "simhost/flightgear/flightgear_command.h"

#include <fmt/format.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <span>
#include <utility>

#include "common/code_page.h"
#include "common/run_error.h"

namespace norvane {

namespace {

using namespace std::chrono_literals;

constexpr std::string_view table_file = "flightgear.cfg";
constexpr std::string_view message_property = "/sim/messages/copilot";
/// Texts for the pilot are shorter; what is longer would overrun FlightGear's line.
constexpr std::size_t longest_shown = 255;
constexpr auto longest_wait = 10s;
/// Samples that are not worth taking for so long mean that the simulator is not there.
constexpr auto longest_without_sample = 3s;

void Watch(int watcher, int descriptor, std::uint32_t events) {
    epoll_event event{};
    event.events = events;
    if (::epoll_ctl(watcher, EPOLL_CTL_ADD, descriptor, &event) != 0 && errno != EEXIST)
        throw File_Error(errno, "epoll");
    ::epoll_ctl(watcher, EPOLL_CTL_MOD, descriptor, &event);
}

bool Is_Readable(int descriptor) {
    pollfd entry{descriptor, POLLIN, 0};
    return descriptor >= 0 && ::poll(&entry, 1, 0) > 0;
}

}  // namespace

Flightgear_Service::Flightgear_Service(const Flightgear_Options& options, Clock& clock)
    : m_options(options),
      m_clock(clock),
      m_world(Flightgear_Table(options.simulator_directory / table_file),
              options.simulator_directory, options.simulator_version),
      m_simulator(options.flightgear, options.pace),
      m_wake(::epoll_create1(EPOLL_CLOEXEC)) {
    // Told now, and not in the middle of a flight, when the address cannot be had.
    m_options.listen =
        Link_Server(options.listen, [](std::span<std::byte>) { return Delivery{}; }).Address();
    m_simulator.paths = [this]() -> const std::vector<std::string>& { return m_world.Paths(); };
    m_simulator.sampled.Connect(
        [this](std::vector<std::string> answers) { Take_Sample(std::move(answers)); });
    m_simulator.lost.Connect([this](const std::string& reason) { Take_Loss(reason); });
}

Flightgear_Service::~Flightgear_Service() {
    ::close(m_wake);
}

void Flightgear_Service::Run(int stop) {
    while (!Serve(longest_wait, stop)) {
    }
}

bool Flightgear_Service::Serve(std::chrono::milliseconds at_most, int stop) {
    if (m_told.empty())
        Tell("waiting for FlightGear at " + m_simulator.Address().Text());
    m_simulator.Step();
    const auto wait = std::min(at_most, m_simulator.Until_Next_Step());
    if (stop >= 0)
        Watch(m_wake, stop, EPOLLIN);
    if (const pollfd simulator = m_simulator.Wanted(); simulator.fd >= 0)
        Watch(m_wake, simulator.fd, static_cast<std::uint32_t>(simulator.events));
    if (m_host) {
        m_host->Serve(wait, m_wake);
    } else {
        pollfd entry{m_wake, POLLIN, 0};
        ::poll(&entry, 1, static_cast<int>(wait.count()));
    }
    return Is_Readable(stop);
}

void Flightgear_Service::Take_Sample(std::vector<std::string> answers) {
    const auto now = std::chrono::steady_clock::now();
    const Sample_Use use = m_world.Take(std::move(answers));
    m_simulator.Sample_Every(m_world.Is_Hurried() ? m_options.pace.hurried : m_options.pace.sample);
    if (use == Sample_Use::taken) {
        m_last_taken = now;
        if (!m_host)
            Begin_Serving();
        return;
    }
    if (use == Sample_Use::another_aircraft || now - m_last_taken < longest_without_sample)
        return;
    m_host.reset();
    Tell(use == Sample_Use::not_ready
             ? "waiting for FlightGear to finish its start"
             : "waiting for FlightGear to tell latitude, longitude and altitude");
}

void Flightgear_Service::Begin_Serving() {
    Host_Options host;
    host.listen = m_options.listen;
    try {
        m_host = std::make_unique<Host>(m_world, host, m_clock);
    } catch (const Run_Error& error) {
        // Someone else took the address while nobody listened. The next sample tries again.
        Tell(error.Description());
        return;
    }
    m_host->text_shown.Connect([this](const std::string& text) { Show_In_Simulator(text); });
    const std::string title = m_world.Title();
    Tell(fmt::format("FlightGear is there{}{}; listening on {}", title.empty() ? "" : " with ",
                     title, m_host->Address().Text()));
}

void Flightgear_Service::Take_Loss(const std::string& reason) {
    m_host.reset();
    m_world.Ask_All();
    m_last_taken = {};
    Tell(fmt::format("waiting for FlightGear at {}: {}", m_simulator.Address().Text(), reason));
}

void Flightgear_Service::Show_In_Simulator(const std::string& text) {
    m_simulator.Set(message_property, To_Utf8(text.substr(0, longest_shown)));
    text_shown.Emit(text);
}

void Flightgear_Service::Tell(const std::string& state) {
    if (state != std::exchange(m_told, state))
        told.Emit(state);
}

}  // namespace norvane
