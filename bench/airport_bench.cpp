// The nearest airport in a world file of 60,000 lines, beside counting the lines of the same file
// in memory. The target is 4 times that; the first lookup, which reads the file, is shown besides.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "acars/world_file.h"
#include "airport_world.h"
#include "common/line_reader.h"

namespace norvane {
namespace {

using Steady = std::chrono::steady_clock;
/// A lookup as the engine makes it: is the file as it was, then the search, near the sea.
void Look_Up(World_File& world, const std::filesystem::path& file) {
    world.Load(file);
    Nearest_Search search;
    search.from = {40.63975, -73.77893};
    search.ground_elevation_ft = 13;
    world.Search(search, Equal_Distance::keeps_best, nullptr);
    if (!search.Best().found)
        throw std::runtime_error("no airport found");
    benchmark::DoNotOptimize(search);
}

/// Lines as a text reader finds them: any line end, one after the other.
void Count_Lines(const std::string& content) {
    std::size_t lines = 0;
    for (Line_Reader reader(content); reader.Next();)
        ++lines;
    if (lines != airports_in_world)
        throw std::runtime_error("lines were miscounted");
    benchmark::DoNotOptimize(lines);
}

/// The least there is to counting: the line feeds among the bytes.
void Count_Line_Feeds(const std::string& content) {
    benchmark::DoNotOptimize(std::count(content.begin(), content.end(), '\n'));
}

void Nearest_Airport(benchmark::State& state) {
    const World_On_Disk disk;
    World_File world;
    Look_Up(world, disk.Path());
    for (auto _ : state)
        Look_Up(world, disk.Path());
}
BENCHMARK(Nearest_Airport)->UseRealTime()->Unit(benchmark::kMicrosecond);

void First_Nearest_Airport(benchmark::State& state) {
    const World_On_Disk disk;
    for (auto _ : state) {
        World_File world;
        Look_Up(world, disk.Path());
    }
}
BENCHMARK(First_Nearest_Airport)->UseRealTime()->Unit(benchmark::kMicrosecond);

/// In turn, so that what else the machine does falls on all; medians of the ratios.
void Nearest_Airport_Per_Count(benchmark::State& state) {
    const World_On_Disk disk;
    World_File world;
    Look_Up(world, disk.Path());
    const auto seconds = [](auto&& work) {
        const auto begin = Steady::now();
        work();
        return std::chrono::duration<double>(Steady::now() - begin).count();
    };
    const auto median = [](std::vector<double> values) {
        const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
        std::nth_element(values.begin(), middle, values.end());
        return *middle;
    };
    std::vector<double> per_lines;
    std::vector<double> per_feeds;
    std::vector<double> first_per_lines;
    for (auto _ : state) {
        const double lookup = seconds([&] { Look_Up(world, disk.Path()); });
        const double lines = seconds([&] { Count_Lines(disk.Content()); });
        const double feeds = seconds([&] { Count_Line_Feeds(disk.Content()); });
        World_File fresh;
        const double first = seconds([&] { Look_Up(fresh, disk.Path()); });
        per_lines.push_back(lookup / lines);
        per_feeds.push_back(lookup / feeds);
        first_per_lines.push_back(first / lines);
    }
    state.counters["lookup/lines (at most 4)"] = median(per_lines);
    state.counters["lookup/line feeds"] = median(per_feeds);
    state.counters["first/lines"] = median(first_per_lines);
}
BENCHMARK(Nearest_Airport_Per_Count)->UseRealTime()->Iterations(50)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace norvane
