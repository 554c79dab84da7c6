// One sampling step of the engine in cruise, within the process and over the Unix socket, its
// flight stored in SQLite each time. The target over the socket is 1 ms.

#include <benchmark/benchmark.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>

#include "acars/cls_acars.h"
#include "acars/cls_utc.h"
#include "bench_world.h"
#include "common/file_writer.h"
#include "common/system_clock.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "config/sqlite_store.h"
#include "simlink/in_process_transport.h"
#include "simlink/link_server.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"
#include "simlink/socket_transport.h"

namespace norvane {
namespace {

/// A program directory with a world of one airport.
struct Program_Directory : Temporary_Directory {
    Program_Directory() {
        std::filesystem::create_directory(Path() / "bin");
        Write_File(Path() / "bin" / "fs9.wld", "0|0|0|NULL|Null Island\n");
    }
};

/// An engine that has been brought to cruise through this transport.
class Cruise {
  public:
    Cruise(Transport& transport, Offset_Area& area)
        : m_store(m_directory.Path() / "settings.sqlite"),
          m_services{m_desktop, m_store, m_clock, m_error_log, Regional{}, m_directory.Path()},
          m_link(transport, m_clock),
          m_settings(m_services),
          m_airline(m_services),
          m_utc(m_clock),
          m_engine({m_services, m_link, m_settings, m_airline, m_utc}) {
        area.Set(Variable::parking_brake, 0);
        area.Set(Variable::on_ground, 1);
        area.Set(Variable::engine_type, engine_kind::jet);
        area.Set(Variable::engine_count, 4);
        std::string failure;
        if (!m_engine.Start(failure, {}))
            throw std::runtime_error(failure);
        m_engine.Refresh();
        area.Set(Variable::on_ground, 0);
        area.Set(Variable::altitude_ft, 35000);
        m_engine.Refresh();
        if (m_engine.TIME_OFF().empty())
            throw std::runtime_error("the flight is not in the air");
        const auto fail = [this](const std::string&) { m_failed = true; };
        m_engine.events.FSClosed.Connect(fail);
        m_engine.events.Error.Connect(fail);
    }

    void Measure(benchmark::State& state) {
        std::size_t steps = 0;
        m_engine.events.FSTime.Connect([&](const std::string&) { ++steps; });
        std::size_t wanted = 0;
        const auto begin = std::chrono::steady_clock::now();
        for (auto _ : state) {
            m_engine.Refresh();
            ++wanted;
        }
        if (m_failed || steps != wanted)
            state.SkipWithError("a step failed");
        const std::chrono::duration<double, std::milli> taken =
            std::chrono::steady_clock::now() - begin;
        state.counters["step/1 ms (over the socket at most 1)"] =
            taken.count() / static_cast<double>(wanted);
    }

  private:
    Program_Directory m_directory;
    System_Clock m_clock;
    Idle_Desktop m_desktop{m_clock};
    Sqlite_Store m_store;
    Fatal_Error_Log m_error_log;
    Services m_services;
    modFSUIPC m_link;
    clsAppSettings m_settings;
    clsVASettings m_airline;
    clsUTC m_utc;
    clsACARS m_engine;
    bool m_failed = false;
};

void Refresh_In_Process(benchmark::State& state) {
    Offset_Area area;
    In_Process_Transport transport(area);
    Cruise(transport, area).Measure(state);
}
BENCHMARK(Refresh_In_Process)->UseRealTime()->Unit(benchmark::kMicrosecond);

/// Target: at most 1 ms.
void Refresh_Over_Unix_Socket(benchmark::State& state) {
    using namespace std::chrono_literals;
    const Link_Address address{
        std::filesystem::temp_directory_path() / ("norvane-step-" + std::to_string(::getpid())), "",
        0};
    Offset_Area area;
    Link_Server server(address, area);
    const int wake = ::eventfd(0, EFD_CLOEXEC);
    std::thread simulator([&] {
        while (!server.Serve(10s, wake)) {
        }
    });
    {
        Socket_Transport transport(address);
        Cruise(transport, area).Measure(state);
    }
    ::eventfd_write(wake, 1);
    simulator.join();
    ::close(wake);
}
BENCHMARK(Refresh_Over_Unix_Socket)->UseRealTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace norvane
