// What a notice costs against the call that it stands for: one listener, called through a function
// object of the standard library, and through a signal.

#include <benchmark/benchmark.h>

#include <functional>

#include "common/signal.h"

namespace norvane {
namespace {

void Function_Call(benchmark::State& state) {
    int sum = 0;
    const std::function<void(int)> function = [&sum](int value) { sum += value; };
    for ([[maybe_unused]] auto round : state) {
        function(1);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(Function_Call);

void Signal_Emission(benchmark::State& state) {
    int sum = 0;
    Signal<int> heard;
    heard.Connect([&sum](int value) { sum += value; });
    for ([[maybe_unused]] auto round : state) {
        heard.Emit(1);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(Signal_Emission);

}  // namespace
}  // namespace norvane
