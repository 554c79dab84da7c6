// A flight log of 100,000 flights: loading, saving, sorting, summing and editing it, beside what
// the sqlite3 shell and a plain copy take for the same file.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <string>

#include "big_log.h"
#include "common/file_writer.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "flightlog/log_file.h"
#include "logentry/cls_log_entry.h"
#include "logpanel/uc_flight_log.h"
#include "logpanel/uc_stats.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;
using Seconds = std::chrono::duration<double>;

Big_Log& The_Log() {
    return Big_Log::The_One();
}

template <class Work>
double Timed(const Work& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return Seconds(std::chrono::steady_clock::now() - begin).count();
}

/// The best time of each side counts: what else the machine does slows single runs.
void Load_And_Sort(benchmark::State& state) {
    Big_Log& log = The_Log();
    const double best_sqlite = log.Sqlite_Seconds();
    double best_ours = std::numeric_limits<double>::max();
    for ([[maybe_unused]] auto iteration : state) {
        Log_File file(log.services, log.path);
        Log_Table table;
        best_ours = std::min(best_ours, Timed([&] { static_cast<void>(file.Load_XArray(table)); }));
        if (table.Row_Count() != Big_Log::flights)
            state.SkipWithError("not all flights were loaded");
    }
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
    static_cast<void>(file.Load_XArray(table));
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
        static_cast<void>(file.Load_XArray(table));
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
    static_cast<void>(file.Load_XArray(table));
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(table.Totals(log.services.regional));
    state.counters["sqlite3_ms"] = 1e3 * log.Sqlite_Seconds("SELECT sum(c13), sum(c16) FROM log");
}
BENCHMARK(Sum_Hours)->Unit(benchmark::kMillisecond);

/// By aircraft type and by date in turn, so that nothing is in order before.
void Sort_Rows(benchmark::State& state) {
    Big_Log& log = The_Log();
    Log_File file(log.services, log.path);
    Log_Table table;
    static_cast<void>(file.Load_XArray(table));
    int mode = 1;
    for ([[maybe_unused]] auto iteration : state) {
        Sort_XArray(table, mode, log.services.regional.short_date);
        mode = 1 - mode;
    }
    state.counters["sqlite3_ms"] =
        5e2 * (log.Sqlite_Seconds("SELECT rowid FROM log ORDER BY c0, c5") +
               log.Sqlite_Seconds("SELECT rowid FROM log ORDER BY c1"));
}
BENCHMARK(Sort_Rows)->Unit(benchmark::kMillisecond)->Iterations(10);

/// A figure typed into the grid, with everything that the panel does then.
void Edit_A_Cell(benchmark::State& state) {
    Big_Log& log = The_Log();
    clsAppSettings settings(log.services);
    clsVASettings airline(log.services);
    clsLogEntry entry(log.services);
    ucFlightLog panel(log.services, settings, airline, entry);
    panel.UCI();
    std::size_t row = 0;
    for ([[maybe_unused]] auto iteration : state) {
        panel.Begin_Edit(row, log_column::block_time);
        panel.Commit_Edit(row, log_column::block_time, "1.5");
        row = (row + 7'919) % Big_Log::flights;
    }
}
BENCHMARK(Edit_A_Cell)->Unit(benchmark::kMillisecond);

/// As the statistics panel does it: the log is read from its file each time.
void Time_By_Aircraft_Type(benchmark::State& state) {
    Big_Log& log = The_Log();
    const clsAppSettings settings(log.services);
    ucStats statistics(log.services, settings);
    for ([[maybe_unused]] auto iteration : state)
        statistics.Display_Flight_Stats();
    state.counters["sqlite3_ms"] =
        1e3 * log.Sqlite_Seconds("SELECT c1, sum(c13) FROM log GROUP BY c1 ORDER BY c1");
    state.counters["sqlite3_with_import_ms"] = 1e3 * log.Sqlite_Seconds();
}
BENCHMARK(Time_By_Aircraft_Type)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace norvane
