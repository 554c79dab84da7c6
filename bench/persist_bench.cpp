// Storing a flight in progress: 22 values in one transaction of the settings store. The target is a
// median of 1 ms.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "bench_world.h"
#include "config/sqlite_store.h"

namespace {

constexpr int stored_values = 22;
constexpr double target_ms = 1.0;

void Persist_22_Values(benchmark::State& state) {
    const norvane::Temporary_Directory directory;
    norvane::Sqlite_Store store(directory.Path() / "settings.sqlite");
    std::vector<double> times_ms;
    int round = 0;
    for (auto step : state) {
        static_cast<void>(step);
        const auto begin = std::chrono::steady_clock::now();
        norvane::Settings_Batch batch(store);
        for (int key = 1; key <= stored_values; ++key)
            store.Set("ACARS", std::to_string(key), std::to_string(round * 100 + key));
        batch.Commit();
        const std::chrono::duration<double, std::milli> taken =
            std::chrono::steady_clock::now() - begin;
        times_ms.push_back(taken.count());
        ++round;
    }
    const auto middle = times_ms.begin() + static_cast<std::ptrdiff_t>(times_ms.size() / 2);
    std::nth_element(times_ms.begin(), middle, times_ms.end());
    state.counters["median_ms"] = *middle;
    state.counters["of_target"] = *middle / target_ms;
}

BENCHMARK(Persist_22_Values)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3000);

}  // namespace
