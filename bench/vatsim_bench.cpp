// The online network's data with 2,000 pilots: finding one pilot's plan beside merely parsing the
// same bytes. The ratio and the longest time without events stand in the counters.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "net/vatsim_data.h"

namespace norvane {
namespace {

using Json = nlohmann::json;
using Clock_Now = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr int pilots = 2'000;

/// As the network publishes it, field by field; the pilot looked for comes last.
std::string Network_Data() {
    Json data;
    for (int i = 0; i < pilots; ++i) {
        const std::string number = std::to_string(800'000 + i);
        data["pilots"].push_back({
            {"cid", 800'000 + i},
            {"name", "Pilot " + number},
            {"callsign", "NV" + number},
            {"server", "AMSTERDAM"},
            {"pilot_rating", 1},
            {"latitude", 47.4 + i * 0.001},
            {"longitude", -122.3 - i * 0.001},
            {"altitude", 34'987},
            {"groundspeed", 451},
            {"transponder", "2200"},
            {"heading", i % 360},
            {"flight_plan",
             {{"flight_rules", "I"},
              {"aircraft", "B738/M-SDE2E3FGHIRWXY/LB1"},
              {"aircraft_short", "B738"},
              {"departure", "KSEA"},
              {"arrival", "EDDM"},
              {"alternate", "EDDN"},
              {"cruise_tas", "451"},
              {"altitude", "35000"},
              {"remarks", std::string(200, 'R')},
              {"route", "SUMMA2 SUMMA DCT " + std::string(150, 'W')},
              {"revision_id", 1}}},
            {"logon_time", "2026-03-14T15:09:26.5358979Z"},
        });
    }
    return data.dump();
}

void Find_A_Plan_Of_2000(benchmark::State& state) {
    const std::string data = Network_Data();
    const std::string last = std::to_string(800'000 + pilots - 1);
    Seconds parsing{0};
    Seconds finding{0};
    Seconds longest_gap{0};
    for (auto _ : state) {
        state.PauseTiming();
        const auto begin = Clock_Now::now();
        benchmark::DoNotOptimize(Json::parse(data));
        parsing += Clock_Now::now() - begin;
        state.ResumeTiming();

        const auto start = Clock_Now::now();
        auto last_events = start;
        const auto events = [&] {
            const auto now = Clock_Now::now();
            longest_gap = std::max<Seconds>(longest_gap, now - last_events);
            last_events = now;
        };
        if (Find_VATSIM_Line(data, last, events).empty())
            throw std::runtime_error("the pilot was not found");
        events();
        finding += Clock_Now::now() - start;
    }
    state.counters["times_parsing"] = finding / parsing;
    state.counters["longest_gap_ms"] = longest_gap.count() * 1000;
    state.SetBytesProcessed(static_cast<std::int64_t>(data.size()) *
                            static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(Find_A_Plan_Of_2000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace norvane
