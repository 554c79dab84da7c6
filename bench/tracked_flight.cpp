#include "tracked_flight.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <thread>

#include "acars/cls_acars.h"
#include "acars/cls_utc.h"
#include "blackbox/flight_recorder.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "config/sqlite_store.h"
#include "simhost/scenario/scenario.h"
#include "simlink/link_server.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"
#include "simlink/socket_transport.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

/// The shortest interval of any timer that runs while a flight is tracked.
constexpr double tick_s = 0.02;
constexpr int ticks_a_step = 25;

double Cpu_Seconds() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// An offset area behind a socket, served on a thread.
class Served_Area {
  public:
    explicit Served_Area(const fs::path& socket)
        : m_wake(::eventfd(0, EFD_CLOEXEC)), m_server({socket, "", 0}, area), m_thread([this] {
              while (!m_server.Serve(std::chrono::seconds(10), m_wake)) {
              }
          }) {}
    ~Served_Area() {
        ::eventfd_write(m_wake, 1);
        m_thread.join();
        ::close(m_wake);
    }
    Served_Area(const Served_Area&) = delete;
    Served_Area& operator=(const Served_Area&) = delete;

    /// Nobody reads it while no request is on its way.
    Offset_Area area;

  private:
    int m_wake;
    Link_Server m_server;
    std::thread m_thread;
};

}  // namespace

Tracked_Flight::Tracked_Flight(const std::string& scenario, bool recorded) {
    const fs::path data = fs::path(NORVANE_SOURCE_DIR) / "data";
    fs::copy(data / "bin", m_directory.Path() / "bin");
    Fly(scenario, recorded);
    Count_Fast_Samples();
}

void Tracked_Flight::Fly(const std::string& scenario, bool recorded) {
    const fs::path data = fs::path(NORVANE_SOURCE_DIR) / "data";
    const auto world = Load_Scenario(data / "scenarios" / (scenario + ".json"), data / "simulator");
    Served_Area served(m_directory.Path() / "sim");
    Socket_Transport transport({m_directory.Path() / "sim", "", 0});
    Still_Clock clock;
    clock.Set({{2026, 11, 23}, {14, 5, 12}}, {{2026, 11, 23}, {15, 5, 12}});
    Idle_Desktop desktop(clock);
    Sqlite_Store store(m_directory.Path() / "settings.sqlite");
    Fatal_Error_Log errors;
    Services services{desktop, store, clock, errors, Regional{}, m_directory.Path()};
    clsAppSettings settings(services);
    clsVASettings airline(services);
    clsUTC utc(clock);
    modFSUIPC link(transport, clock);
    clsACARS engine({services, link, settings, airline, utc});
    std::optional<Flight_Recorder> recorder;
    if (recorded)
        recorder.emplace(Flight_Recorder::Parts{services, link, settings, airline, engine});
    const auto fail = [](const std::string& text) { throw std::runtime_error(text); };
    engine.events.FSClosed.Connect(fail);
    engine.events.Error.Connect(fail);
    world->Apply(0, served.area);
    std::string failure;
    if (!engine.Start(failure, {}))
        fail(failure);
    for (int tick = 1; engine.TIME_IN().empty(); ++tick) {
        const double now_s = tick * tick_s;
        if (now_s > world->Length())
            fail("the flight does not come to the gate");
        world->Apply(now_s, served.area);
        clock.Pass_To(now_s);
        const double before = Cpu_Seconds();
        desktop.Timers().Run_Due();
        if (tick % ticks_a_step == 0)
            engine.Refresh();
        m_seconds.resize(static_cast<std::size_t>(now_s) + 1);
        m_seconds.back().cpu_s += Cpu_Seconds() - before;
    }
    if (recorder)
        m_recording = recorder->End("gate");
}

void Tracked_Flight::Count_Fast_Samples() {
    if (m_recording.empty())
        return;
    for (const Recorded_Moment& moment : Read_Recording(m_recording)) {
        const auto second = static_cast<std::size_t>(moment.seconds);
        if (second < m_seconds.size() &&
            std::ranges::find(moment.remarks, "fast") != moment.remarks.end())
            ++m_seconds[second].fast_samples;
    }
}

}  // namespace norvane
