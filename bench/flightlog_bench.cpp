// A flight log of 100,000 flights: loading, saving and summing it, beside what the sqlite3 shell
// and a plain copy take for the same file. Ratios stand in the counters.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>

#include "bench_world.h"
#include "common/date_time.h"
#include "common/file_writer.h"
#include "common/services.h"
#include "common/system_clock.h"
#include "common/timer_queue.h"
#include "config/memory_store.h"
#include "flightlog/log_columns.h"
#include "flightlog/log_file.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;
using Seconds = std::chrono::duration<double>;

constexpr int flights = 100'000;

std::string Random_Flight(std::mt19937& random) {
    const Date date = Date_Of_Day_Number(10'000 + static_cast<std::int64_t>(random() % 8'000));
    std::string line = Format_Iso_Date(date);
    for (std::size_t column = 1; column < log_column_count; ++column) {
        line += '|';
        if (column == log_column::time_out)
            line += fmt::format("{:02}{:02}Z", random() % 24, random() % 60);
        else if (column == log_column::block_time || column == log_column::flight_time)
            line += fmt::format("{}.{}", random() % 12, random() % 10);
        else
            line += std::string(1 + random() % 14, static_cast<char>('A' + random() % 26));
    }
    return line + "\r\n";
}

/// The log and a program directory around it, made once for all benchmarks.
class Big_Log {
  public:
    Big_Log() : m_desktop(m_clock) {
        std::string name = (fs::temp_directory_path() / "norvane-bench-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no temporary directory");
        services.program_directory = name;
        services.regional.short_date = "yyyy-MM-dd";
        fs::create_directories(services.program_directory / "logs");
        path = services.program_directory / "logs" / "Big.txt";
        std::mt19937 random(1);
        std::ofstream out(path, std::ios::binary);
        for (int i = 0; i < flights; ++i)
            out << Random_Flight(random);
        out.close();
        size = static_cast<double>(fs::file_size(path));
    }
    ~Big_Log() {
        std::error_code ignored;
        fs::remove_all(services.program_directory, ignored);
    }
    Big_Log(const Big_Log&) = delete;
    Big_Log& operator=(const Big_Log&) = delete;

  private:
    System_Clock m_clock;
    Idle_Desktop m_desktop;
    Memory_Store m_store;
    Fatal_Error_Log m_error_log;

  public:
    Services services{m_desktop, m_store, m_clock, m_error_log, Regional{}, {}};
    fs::path path;
    double size = 0;
};

Big_Log& The_Log() {
    static Big_Log log;
    return log;
}

template <class Work>
double Timed(const Work& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return Seconds(std::chrono::steady_clock::now() - begin).count();
}

double Sqlite_Seconds(const fs::path& log) {
    const std::string command =
        std::string(NORVANE_SOURCE_DIR) + "/scripts/bench_sqlite_import.sh '" + log.string() + "'";
    double seconds = 0;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr || std::fscanf(pipe, "%lf", &seconds) != 1)
        seconds = 0;
    if (pipe != nullptr)
        ::pclose(pipe);
    return seconds;
}

/// The best time of each side counts: what else the machine does slows single runs.
void Load_And_Sort(benchmark::State& state) {
    Big_Log& log = The_Log();
    double best_sqlite = std::min(Sqlite_Seconds(log.path), Sqlite_Seconds(log.path));
    double best_ours = std::numeric_limits<double>::max();
    for ([[maybe_unused]] auto iteration : state) {
        Log_File file(log.services, log.path);
        Log_Table table;
        best_ours = std::min(best_ours, Timed([&] { file.Load_XArray(table); }));
        if (table.Row_Count() != flights)
            state.SkipWithError("not all flights were loaded");
    }
    best_sqlite = std::min(best_sqlite, Sqlite_Seconds(log.path));
    state.counters["file_MB"] = log.size / 1e6;
    state.counters["sqlite3_s"] = best_sqlite;
    state.counters["best_load_s"] = best_ours;
    state.counters["times_faster_than_sqlite3"] = best_sqlite / best_ours;
}
BENCHMARK(Load_And_Sort)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2);

void Copy_And_Flush(const fs::path& from, const fs::path& to) {
    Copy_File(from, to);
    const int descriptor = ::open(to.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0 || ::fsync(descriptor) != 0 || ::close(descriptor) != 0)
        throw std::runtime_error("the copy cannot be flushed");
}

void Save_Beside_Copy(benchmark::State& state) {
    Big_Log& log = The_Log();
    Log_File file(log.services, log.path);
    Log_Table table;
    file.Load_XArray(table);
    const fs::path copy = log.services.program_directory / "copy";
    double save_s = 0;
    double copy_s = 0;
    // In turn, so that both meet the same disk.
    for ([[maybe_unused]] auto iteration : state) {
        save_s += Timed([&] { file.Save_XArray(table); });
        state.PauseTiming();
        copy_s += Timed([&] { Copy_And_Flush(log.path, copy); });
        fs::remove(copy);
        state.ResumeTiming();
    }
    const auto rounds = static_cast<double>(state.iterations());
    state.counters["copy_and_flush_ms"] = copy_s / rounds * 1e3;
    state.counters["times_copy_and_flush"] = save_s / copy_s;
}
BENCHMARK(Save_Beside_Copy)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(3);

/// Bytes from a line of /proc/self/status.
double Status_Bytes(const std::string& key) {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        double kilobytes = 0;
        if (word == key && status >> kilobytes)
            return kilobytes * 1024;
    }
    return 0;
}

/// The most a load makes resident, in a process of its own.
double Peak_Of_A_Load() {
    Big_Log& log = The_Log();
    int ends[2];
    if (::pipe(ends) != 0)
        return 0;
    const pid_t child = ::fork();
    if (child == 0) {
        const double before = Status_Bytes("VmRSS:");
        Log_File file(log.services, log.path);
        Log_Table table;
        file.Load_XArray(table);
        const double peak = Status_Bytes("VmHWM:") - before;
        const auto written = ::write(ends[1], &peak, sizeof peak);
        ::_exit(written == sizeof peak ? 0 : 1);
    }
    double peak = 0;
    if (::read(ends[0], &peak, sizeof peak) != sizeof peak)
        peak = 0;
    ::close(ends[0]);
    ::close(ends[1]);
    ::waitpid(child, nullptr, 0);
    return peak;
}

void Memory_Of_A_Load(benchmark::State& state) {
    double peak = 0;
    for ([[maybe_unused]] auto iteration : state)
        peak = Peak_Of_A_Load();
    state.counters["peak_MB"] = peak / 1e6;
    state.counters["times_file_size"] = peak / The_Log().size;
}
BENCHMARK(Memory_Of_A_Load)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

void Sum_Hours(benchmark::State& state) {
    Big_Log& log = The_Log();
    Log_File file(log.services, log.path);
    Log_Table table;
    file.Load_XArray(table);
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(table.Totals(log.services.regional));
}
BENCHMARK(Sum_Hours)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace norvane
