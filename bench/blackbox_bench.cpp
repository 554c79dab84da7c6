// The black box: what it costs while a flight is tracked, how large its recordings are, and how
// fast flights are computed and derived again from them.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <chrono>

#include "blackbox/recordings.h"
#include "common/line_reader.h"
#include "simlink/recording.h"
#include "tracked_flight.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;

/// 55 minutes of a jet.
const Tracked_Flight& The_Flight() {
    static const Tracked_Flight flight("egll-lfpg", true);
    return flight;
}

double Length_S() {
    return static_cast<double>(The_Flight().Seconds().size());
}

fs::path Packed_Flight(const Temporary_Directory& directory) {
    fs::path packed = directory.Path() / "flight.rec.gz";
    Pack_Recording(The_Flight().Recording(), packed);
    return packed;
}

double Run_S(const std::string& command) {
    const auto begin = std::chrono::steady_clock::now();
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error(command);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// Of one core, in percent: of all seconds of the flight, or of those that were sampled fast.
double Share(const std::vector<Tracked_Second>& seconds, const std::vector<Tracked_Second>& which,
             int fast_samples) {
    double cpu_s = 0;
    double count = 0;
    for (std::size_t i = 0; i < std::min(seconds.size(), which.size()); ++i) {
        if (which[i].fast_samples < fast_samples)
            continue;
        cpu_s += seconds[i].cpu_s;
        ++count;
    }
    return cpu_s / count * 100;
}

/// Everything that tracking takes, the engine's own steps included.
void Track_A_Flight(benchmark::State& state) {
    constexpr int nearly_all = 45;
    constexpr double most_tracking = 1;
    constexpr double most_flare = 3;
    for ([[maybe_unused]] auto iteration : state) {
        const auto& with = The_Flight().Seconds();
        const Tracked_Flight bare("egll-lfpg", false);
        const double tracking = Share(with, with, 0);
        const double flare = Share(with, with, nearly_all);
        state.counters["%_of_a_core"] = tracking;
        state.counters["%_without_recorder"] = Share(bare.Seconds(), bare.Seconds(), 0);
        state.counters["%_in_the_flare"] = flare;
        state.counters["%_in_the_flare_without_recorder"] = Share(bare.Seconds(), with, nearly_all);
        state.counters["share/1% (at most 1)"] = tracking / most_tracking;
        state.counters["flare/3% (at most 1)"] = flare / most_flare;
    }
}
BENCHMARK(Track_A_Flight)->Iterations(1)->Unit(benchmark::kMillisecond);

void Pack_An_Hour(benchmark::State& state) {
    const Temporary_Directory directory;
    constexpr double hour_s = 3600;
    constexpr double most_kb = 400;
    const double hours = Length_S() / hour_s;
    const double gzip_s =
        Run_S(fmt::format("gzip -c '{}' >/dev/null", The_Flight().Recording().string()));
    double packed_kb = 0;
    double seconds = 0;
    for ([[maybe_unused]] auto iteration : state) {
        const auto begin = std::chrono::steady_clock::now();
        packed_kb = static_cast<double>(fs::file_size(Packed_Flight(directory))) / 1e3;
        seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }
    state.counters["kB_an_hour"] = packed_kb / hours;
    state.counters["plain_kB_an_hour"] =
        static_cast<double>(fs::file_size(The_Flight().Recording())) / 1e3 / hours;
    state.counters["of 400 kB (at most 1)"] = packed_kb / hours / most_kb;
    state.counters["times_gzip"] = seconds / static_cast<double>(state.iterations()) / gzip_s;
}
BENCHMARK(Pack_An_Hour)->Unit(benchmark::kMillisecond);

#ifdef NORVANE_CLI

/// A program directory whose only recording is the flight's, as often as is asked for.
class Home_Of_Recordings : public Temporary_Directory {
  public:
    explicit Home_Of_Recordings(int flights) {
        const fs::path directory = Path() / "flights";
        fs::create_directories(directory);
        fs::copy(fs::path(NORVANE_SOURCE_DIR) / "data" / "bin", Path() / "bin");
        const fs::path packed = Packed_Flight(*this);
        for (int i = 0; i < flights; ++i)
            fs::create_hard_link(packed, directory / fmt::format("flight-{}.rec.gz", i));
    }
    [[nodiscard]] double Cli_S(const std::string& arguments) const {
        return Run_S(fmt::format("{} --home '{}' {} >/dev/null 2>&1", NORVANE_CLI, Path().string(),
                                 arguments));
    }
};

/// The whole command, its start and the reading of the recording included.
void Recompute_A_Flight(benchmark::State& state) {
    const Home_Of_Recordings home(1);
    constexpr double least_times = 2000;
    double seconds = 0;
    for ([[maybe_unused]] auto iteration : state)
        seconds += home.Cli_S("flight recompute flight-0");
    const double times = Length_S() * static_cast<double>(state.iterations()) / seconds;
    state.counters["times_real_time"] = times;
    state.counters["2000/times (at most 1)"] = least_times / times;
}
BENCHMARK(Recompute_A_Flight)->UseRealTime()->Unit(benchmark::kMillisecond)->MinTime(3);

/// All flights' figures made again from their recordings, beside unpacking these alone.
void Rebuild_1000_Flights(benchmark::State& state) {
    const Home_Of_Recordings home(1000);
    const double unpack_s =
        Run_S(fmt::format("gzip -dcf '{}'/flights/*.gz >/dev/null", home.Path().string()));
    double seconds = 0;
    for ([[maybe_unused]] auto iteration : state)
        seconds = home.Cli_S("flight rebuild");
    state.counters["ms_a_flight"] = seconds;
    state.counters["times_real_time"] = 1000 * Length_S() / seconds;
    state.counters["times_gzip_-dc"] = seconds / unpack_s;
    state.counters["store_MB"] =
        static_cast<double>(fs::file_size(home.Path() / "flights" / "flights.sqlite")) / 1e6;
}
BENCHMARK(Rebuild_1000_Flights)->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

#endif

}  // namespace
}  // namespace norvane
