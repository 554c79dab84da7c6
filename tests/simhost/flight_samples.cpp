#include "simhost/flight_samples.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <utility>

#include "simhost/scenario.h"

namespace norvane::test {

namespace {

double Fuel_Gal(const Offset_Area& area) {
    const auto number = [&](std::uint32_t offset) {
        std::int32_t value = 0;
        std::memcpy(&value, area.Bytes(offset, sizeof value).data(), sizeof value);
        return value;
    };
    double sum = 0;
    for (const Tank_Row& tank : All_Tanks())
        sum += Tank_Gallons(number(tank.level_offset), number(tank.capacity_offset));
    return sum;
}

}  // namespace

const std::vector<Scenario_Facts>& All_Scenarios() {
    static const std::vector<Scenario_Facts> scenarios{
        {"data/scenarios/kjfk-kbos.json",
         "KJFK",
         "KBOS",
         false,
         40,
         75,
         440,
         2800,
         {100, 190, 210, 110, 30}},
        {"data/scenarios/egll-lfpg.json",
         "EGLL",
         "LFPG",
         false,
         40,
         75,
         440,
         2800,
         {60, 140, 210, 100, 40}},
        {"data/scenarios/turboprop.json",
         "EGPD",
         "EGPB",
         false,
         40,
         75,
         310,
         1900,
         {70, 170, 190, 90, 21}},
        {"data/scenarios/piston-circuit.json", "KHYA", "KHYA", true, 8, 14, 120, 900, {10}},
        {"data/scenarios/helicopter.json",
         "KBOS",
         "KACK",
         false,
         40,
         75,
         140,
         1000,
         {0, 15, 20, 10, 1}},
        {"tests/data/scenarios/short-jet.json", "KJFK", "KLGA", false, 8, 12, 180, 2800, {15}},
    };
    return scenarios;
}

void PrintTo(const Scenario_Facts& facts, std::ostream* stream) {
    *stream << facts.file;
}

std::filesystem::path Repository_File(const std::string& name) {
    return std::filesystem::path(NORVANE_SOURCE_DIR) / name;
}

std::filesystem::path Simulator_Directory() {
    return Repository_File("data/simulator");
}

Flight_Sample Sample_Of(double seconds, const Offset_Area& area) {
    Flight_Sample sample;
    const auto get = [&](Variable variable) { return area.Get(variable); };
    sample.seconds = seconds;
    sample.position = {get(Variable::latitude_deg), get(Variable::longitude_deg)};
    sample.altitude_ft = get(Variable::altitude_ft);
    sample.ground_ft = get(Variable::ground_elevation_ft);
    sample.vertical_fpm = get(Variable::vertical_speed_fpm);
    sample.ground_kt = get(Variable::ground_speed_kt);
    sample.indicated_kt = get(Variable::indicated_airspeed_kt);
    sample.true_kt = get(Variable::true_airspeed_kt);
    sample.heading_deg = get(Variable::true_heading_deg);
    sample.n1_percent = get(Variable::engine_n1_percent);
    sample.weight_lbs = get(Variable::total_weight_lbs);
    sample.fuel_gal = Fuel_Gal(area);
    sample.on_ground = get(Variable::on_ground) != 0;
    sample.parking_brake = get(Variable::parking_brake) > 0;
    for (int engine = 1; engine <= static_cast<int>(get(Variable::engine_count)); ++engine) {
        sample.engines_running += area.Get(Variable::engine_combustion, engine) != 0 ? 1 : 0;
        sample.fuel_flow_pph += area.Get(Variable::engine_fuel_flow_pph, engine);
    }
    sample.utc_minute_of_day =
        static_cast<int>(get(Variable::utc_hour) * 60 + get(Variable::utc_minute));
    return sample;
}

const std::vector<Flight_Sample>& Samples_Of(const Scenario_Facts& facts, double every_s) {
    static std::map<std::pair<std::string, double>, std::vector<Flight_Sample>> flights;
    std::vector<Flight_Sample>& samples = flights[{facts.file, every_s}];
    if (samples.empty()) {
        const auto world = Load_Scenario(Repository_File(facts.file), Simulator_Directory());
        Offset_Area area;
        for (double seconds = 0; seconds <= world->Length(); seconds += every_s) {
            world->Apply(seconds, area);
            samples.push_back(Sample_Of(seconds, area));
        }
    }
    return samples;
}

Flight_Marks Marks_Of(const std::vector<Flight_Sample>& samples) {
    Flight_Marks marks;
    std::size_t& i = marks.in;
    while (i < samples.size() && samples[i].parking_brake)
        ++i;
    marks.out = i;
    while (i < samples.size() && samples[i].on_ground)
        ++i;
    marks.lift_off = i;
    while (i < samples.size() && !samples[i].on_ground)
        ++i;
    marks.touchdown = i;
    while (i < samples.size() && !samples[i].parking_brake)
        ++i;
    if (i >= samples.size()) {
        ADD_FAILURE() << "the flight does not go from brake to brake";
        return {};
    }
    return marks;
}

}  // namespace norvane::test
