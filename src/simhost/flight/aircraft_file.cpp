#include "simhost/flight/aircraft_file.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "common/code_page.h"
#include "simhost/scenario/json_reader.h"
#include "simlink/catalogue.h"

namespace norvane {

namespace {

constexpr Range speed_kt{1, 700};
constexpr Range percent{0, 120};

constexpr auto kinds = std::to_array<std::pair<std::string_view, int>>({
    {"piston", engine_kind::piston},
    {"jet", engine_kind::jet},
    {"helicopter", engine_kind::helicopter},
    {"turboprop", engine_kind::turboprop},
});

int Read_Kind(Json_Reader& reader) {
    const std::string name = reader.Text("kind", 20);
    for (const auto& [word, kind] : kinds)
        if (word == name)
            return kind;
    reader.Fault("kind", "\"" + name + "\" is none of piston, jet, turboprop, helicopter");
}

Power_Range Read_Range(Json_Reader& reader, const std::string& key, Range range) {
    if (!reader.Has(key))
        return {};
    const std::vector<double> row = reader.Row(key, 2);
    if (row[0] < range.least || row[1] > range.most || row[0] > row[1])
        reader.Fault(key, "two rising numbers are expected, idle and full power");
    return {row[0], row[1]};
}

Engine_Data Read_Engine(Json_Reader reader) {
    Engine_Data engine;
    engine.kind = Read_Kind(reader);
    engine.count = reader.Integer("count", {1, most_engines});
    if (engine.kind == engine_kind::jet)
        engine.thrust_lbf = reader.Number("thrust_lbf", {100, 200000});
    else
        engine.power_hp = reader.Number("power_hp", {20, 20000});
    engine.fuel_flow_pph = Read_Range(reader, "fuel_flow_pph", {0, 50000});
    if (engine.fuel_flow_pph.full <= 0)
        reader.Fault("fuel_flow_pph", "is missing");
    engine.n1_percent = Read_Range(reader, "n1_percent", percent);
    engine.n2_percent = Read_Range(reader, "n2_percent", percent);
    engine.manifold_inhg = Read_Range(reader, "manifold_inhg", {0, 60});
    engine.propeller = Read_Range(reader, "propeller", {0, 1.2});
    reader.Finish();
    return engine;
}

std::size_t Read_Tank_Name(Json_Reader& reader) {
    const std::string name = reader.Text("tank", 20);
    const auto& tanks = All_Tanks();
    const auto found = std::find_if(tanks.begin(), tanks.end(),
                                    [&](const Tank_Row& row) { return row.name == name; });
    if (found == tanks.end())
        reader.Fault("tank", "there is no tank \"" + name + "\"");
    return static_cast<std::size_t>(found - tanks.begin());
}

std::vector<std::vector<Tank_Data>> Read_Tanks(Json_Reader& reader) {
    std::vector<std::vector<Tank_Data>> groups;
    std::array<bool, tank_count> used{};
    for (Json_Reader& item : reader.List("tanks")) {
        const int last = static_cast<int>(groups.size());
        const int group = item.Integer("group", {1, static_cast<double>(tank_count)});
        if (group < last || group > last + 1)
            item.Fault("group", "groups are numbered from 1, in order");
        if (group > last)
            groups.emplace_back();
        const std::size_t tank = Read_Tank_Name(item);
        if (std::exchange(used.at(tank), true))
            item.Fault("tank", "stands twice in the list");
        groups.back().push_back({tank, item.Integer("capacity_gal", {1, 50000})});
        item.Finish();
    }
    if (groups.empty())
        reader.Fault("tanks", "at least one is expected");
    return groups;
}

/// Rows of two numbers, the first rising.
std::vector<std::vector<double>> Read_Table(Json_Reader& reader, const std::string& key,
                                            Range first, Range second) {
    std::vector<std::vector<double>> rows = reader.Rows(key, 2);
    if (rows.empty())
        reader.Fault(key, "is missing");
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const bool inside = rows[i][0] >= first.least && rows[i][0] <= first.most &&
                            rows[i][1] >= second.least && rows[i][1] <= second.most;
        if (!inside || (i > 0 && rows[i][0] <= rows[i - 1][0]))
            reader.Fault(key, "the rows' first numbers must rise, and all lie in their range");
    }
    return rows;
}

void Read_Aeroplane(Json_Reader& reader, Performance_Data& performance) {
    performance.rotate_kt = reader.Number("rotate_kt", speed_kt);
    performance.take_off_kt_per_s = reader.Number("take_off_kt_per_s", {0.5, 20});
    performance.brake_kt_per_s = reader.Number("brake_kt_per_s", {0.5, 10});
    performance.climb_out_kt = reader.Number("climb_out_kt", speed_kt);
    for (const auto& row : Read_Table(reader, "approach", {0, 60}, speed_kt))
        performance.approach.push_back({row[0], row[1]});
    performance.flare_ft = reader.Number("flare_ft", {5, 100});
    performance.lift_to_drag = reader.Number("lift_to_drag", {3, 40});
}

Performance_Data Read_Performance(Json_Reader reader, bool helicopter) {
    Performance_Data performance;
    if (!helicopter) {
        performance.taxi_kt = reader.Number("taxi_kt", {3, 35});
        performance.taxi_turn_kt = reader.Number("taxi_turn_kt", {2, 15});
        performance.taxi_turn_radius_m = reader.Number("taxi_turn_radius_m", {5, 80});
        Read_Aeroplane(reader, performance);
    }
    performance.turn_radius_m = reader.Number("turn_radius_m", {100, 20000});
    performance.low_kt = reader.Number("low_kt", speed_kt, 250);
    performance.climb_kt = reader.Number("climb_kt", speed_kt);
    performance.cruise_kt = reader.Number("cruise_kt", speed_kt);
    performance.descent_kt = reader.Number("descent_kt", speed_kt);
    performance.highest_mach = reader.Number("highest_mach", {0.1, 1}, 1);
    performance.kt_per_s = reader.Number("kt_per_s", {0.1, 5});
    performance.fpm_per_s = reader.Number("fpm_per_s", {10, 300});
    for (const auto& row : Read_Table(reader, "climb", {0, 60000}, {100, 8000}))
        performance.climb.push_back({row[0], row[1]});
    performance.descent_ft_per_nm = reader.Number("descent_ft_per_nm", {50, 1000});
    performance.rounding_nm = reader.Number("rounding_nm", {0.02, 3});
    reader.Finish();
    return performance;
}

}  // namespace

Aircraft_Data Read_Aircraft(const std::filesystem::path& simulator_directory,
                            const std::string& folder) {
    Aircraft_Data aircraft;
    aircraft.folder = folder;
    const auto file = simulator_directory / "Aircraft" / To_Path(folder) / "aircraft.json";
    Read_Json_File(file, [&](Json_Reader& reader) {
        aircraft.title = reader.Text("title", 200);
        aircraft.engine = Read_Engine(reader.Object("engine"));
        aircraft.tanks = Read_Tanks(reader);
        aircraft.fuel_lb_per_gal = reader.Number("fuel_lb_per_gal", {5, 8});
        aircraft.largest_weight_lbs = reader.Number("largest_weight_lbs", {500, 1500000});
        aircraft.gear_height_ft = reader.Number("gear_height_ft", {0, 30});
        aircraft.performance = Read_Performance(reader.Object("performance"),
                                                aircraft.engine.kind == engine_kind::helicopter);
    });
    return aircraft;
}

}  // namespace norvane
