// How long the window stays without handling events while a server is asked: the longest time
// between two beats of a timer of one millisecond, in milliseconds. The servers are those that a
// pilot meets on a bad day: slow, silent, resetting, talkative.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

#include "common/run_error.h"
#include "common/system_clock.h"
#include "logentry/frm_response.h"
#include "net/http_client.h"
#include "servers/test_servers.h"
#include "ui/window/qt_desktop.h"

namespace norvane {
namespace {

using Now = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

/// The longest time between two beats so far.
class Heart {
  public:
    Heart() {
        m_beat.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_beat, &QTimer::timeout, &m_beat, [this] { Beat(); });
        m_beat.start(1);
    }
    [[nodiscard]] double Longest_Ms() const { return m_longest.count(); }

  private:
    void Beat() {
        const auto now = Now::now();
        m_longest = std::max(m_longest, Milliseconds(now - m_last));
        m_last = now;
    }

    QTimer m_beat;
    Now::time_point m_last = Now::now();
    Milliseconds m_longest{0};
};

void Ask(benchmark::State& state, const std::string& host, const Http_Options& options) {
    ::setenv("no_proxy", "*", 1);
    static System_Clock clock;
    static Qt_Desktop desktop(clock, 1);
    double longest_ms = 0;
    for (auto _ : state) {
        const Heart heart;
        Http_Client client(desktop, options);
        try {
            benchmark::DoNotOptimize(client.Request({Http_Verb::post, host, "/", "a=1&"}));
        } catch (const Run_Error&) {
            // A server that gives no answer is one of those asked here.
        }
        desktop.Process_Events();
        longest_ms = std::max(longest_ms, heart.Longest_Ms());
    }
    state.counters["longest_gap_ms"] = longest_ms;
}

std::string Head(std::size_t length) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n";
}

void Post_To_A_Server_That_Answers_10_MB(benchmark::State& state) {
    test::Raw_Server server([](int socket) {
        const std::string page(10'000'000, 'x');
        test::Send(socket, Head(page.size()) + page);
    });
    Ask(state, server.Host(), {});
}

void Post_To_A_Silent_Server(benchmark::State& state) {
    test::Raw_Server server([](int socket) { test::Hang(socket); });
    Http_Options options;
    options.all_within = std::chrono::milliseconds(500);
    Ask(state, server.Host(), options);
}

void Post_To_A_Server_That_Resets(benchmark::State& state) {
    test::Raw_Server server([](int socket) { test::Reset(socket); });
    Ask(state, server.Host(), {});
}

void Post_To_A_Slow_Server(benchmark::State& state) {
    test::Raw_Server server([](int socket) {
        test::Send(socket, Head(20));
        for (int i = 0; i < 20; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            test::Send(socket, "x");
        }
    });
    Ask(state, server.Host(), {});
}

void Post_Over_TLS(benchmark::State& state) {
    const auto directory = std::filesystem::temp_directory_path() / "norvane-gaps";
    std::filesystem::create_directories(directory);
    const test::Test_Certificate made(directory);
    test::Web_Server server(
        std::make_unique<httplib::SSLServer>(made.certificate.c_str(), made.key.c_str()));
    server->Post("/", [](const httplib::Request&, httplib::Response& answer) {
        answer.set_content("thanks", "text/plain");
    });
    server.Start();
    Http_Options options;
    options.trusted_certificates = made.certificate;
    Ask(state, "https://" + server.Host("localhost"), options);
    std::filesystem::remove_all(directory);
}

BENCHMARK(Post_To_A_Server_That_Answers_10_MB)->Unit(benchmark::kMillisecond);
BENCHMARK(Post_To_A_Silent_Server)->Unit(benchmark::kMillisecond);
BENCHMARK(Post_To_A_Server_That_Resets)->Unit(benchmark::kMillisecond);
BENCHMARK(Post_To_A_Slow_Server)->Unit(benchmark::kMillisecond);
BENCHMARK(Post_Over_TLS)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace norvane

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
