// One exchange over the Unix socket beside a bare socket echo of the same bytes: what the link adds
// to what the sockets cost anyway.

#include <benchmark/benchmark.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "common/system_clock.h"
#include "simlink/link_server.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"
#include "simlink/sim_reader.h"
#include "simlink/socket_transport.h"

namespace norvane {
namespace {

using namespace std::chrono_literals;
using Steady = std::chrono::steady_clock;

/// A read of 4 bytes: header, data, end record, and the frame's head in each direction.
constexpr std::size_t block_size = read_header_size + 4 + end_record_size;
constexpr std::size_t request_size = request_head_size + block_size;
constexpr std::size_t answer_size = answer_head_size + block_size;

/// A link served on a thread, and the client's side of it.
class Served_Link {
  public:
    Served_Link()
        : m_wake(::eventfd(0, EFD_CLOEXEC)),
          m_address{std::filesystem::temp_directory_path() /
                        ("norvane-bench-" + std::to_string(::getpid())),
                    "", 0},
          m_server(m_address, m_area),
          m_thread([this] {
              while (!m_server.Serve(10s, m_wake)) {
              }
          }),
          m_transport(m_address),
          m_link(m_transport, m_clock),
          m_reader(m_link) {
        int result = 0;
        if (!m_link.IPC_Open(0, result))
            throw std::runtime_error(modFSUIPC::IPC_ErrorText(result));
    }
    ~Served_Link() {
        m_link.IPC_Close();
        ::eventfd_write(m_wake, 1);
        m_thread.join();
        ::close(m_wake);
    }
    Served_Link(const Served_Link&) = delete;
    Served_Link& operator=(const Served_Link&) = delete;

    void Exchange() {
        benchmark::DoNotOptimize(m_reader.Read(Variable::altitude_ft));
        if (m_reader.Failed())
            throw std::runtime_error(m_reader.Failed()->text);
    }

  private:
    int m_wake;
    Link_Address m_address;
    Offset_Area m_area;
    Link_Server m_server;
    std::thread m_thread;
    System_Clock m_clock;
    Socket_Transport m_transport;
    modFSUIPC m_link;
    Sim_Reader m_reader;
};

/// Blocking sockets, and nothing looked at: as many bytes there and back as an exchange takes.
class Bare_Echo {
  public:
    Bare_Echo() {
        if (::socketpair(AF_UNIX, SOCK_STREAM, 0, m_ends) != 0)
            throw std::runtime_error("no socket pair");
        m_thread = std::thread([end = m_ends[1]] {
            char bytes[answer_size];
            while (::recv(end, bytes, request_size, MSG_WAITALL) > 0 &&
                   ::send(end, bytes, answer_size, MSG_NOSIGNAL) > 0) {
            }
        });
    }
    ~Bare_Echo() {
        ::shutdown(m_ends[0], SHUT_RDWR);
        m_thread.join();
        ::close(m_ends[0]);
        ::close(m_ends[1]);
    }
    Bare_Echo(const Bare_Echo&) = delete;
    Bare_Echo& operator=(const Bare_Echo&) = delete;

    void Exchange() {
        char bytes[answer_size] = {};
        if (::send(m_ends[0], bytes, request_size, MSG_NOSIGNAL) <= 0 ||
            ::recv(m_ends[0], bytes, answer_size, MSG_WAITALL) <= 0)
            throw std::runtime_error("the echo has ended");
        benchmark::DoNotOptimize(bytes);
    }

  private:
    int m_ends[2] = {-1, -1};
    std::thread m_thread;
};

void Link_Exchange(benchmark::State& state) {
    Served_Link link;
    for (auto _ : state)
        link.Exchange();
}
BENCHMARK(Link_Exchange)->UseRealTime();

void Bare_Socket_Echo(benchmark::State& state) {
    Bare_Echo echo;
    for (auto _ : state)
        echo.Exchange();
}
BENCHMARK(Bare_Socket_Echo)->UseRealTime();

/// Both in turn, so that what else the machine does falls on both; the median of the ratios.
void Link_Exchange_Per_Echo(benchmark::State& state) {
    constexpr int exchanges = 500;
    Served_Link link;
    Bare_Echo echo;
    const auto time_of = [](auto& subject) {
        const auto begin = Steady::now();
        for (int i = 0; i < exchanges; ++i)
            subject.Exchange();
        return std::chrono::duration<double>(Steady::now() - begin).count();
    };
    std::vector<double> ratios;
    for (auto _ : state) {
        const double link_seconds = time_of(link);
        ratios.push_back(link_seconds / time_of(echo));
    }
    const auto middle = ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2);
    std::nth_element(ratios.begin(), middle, ratios.end());
    state.counters["link/echo (at most 1.5)"] = *middle;
}
BENCHMARK(Link_Exchange_Per_Echo)->UseRealTime()->Iterations(50)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace norvane
