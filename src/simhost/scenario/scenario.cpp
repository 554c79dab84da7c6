#include "simhost/scenario/scenario.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "common/code_page.h"
#include "common/number.h"
#include "common/run_error.h"
#include "common/text.h"
#include "simhost/flight/aircraft_file.h"
#include "simhost/flight/flight_world.h"
#include "simhost/scenario/json_reader.h"
#include "simlink/catalogue.h"

namespace norvane {

namespace {

constexpr Range altitude_ft{0, 60000};
constexpr Range seconds_range{0, 3600};

Position Position_Of(const Json_Reader& reader, const std::string& key,
                     const std::vector<double>& row) {
    if (row[0] < -89 || row[0] > 89 || row[1] < -180 || row[1] > 180)
        reader.Fault(key, "a latitude (-89 to 89) and a longitude (-180 to 180) are expected");
    return {row[0], row[1]};
}

Position Read_Position(Json_Reader& reader, const std::string& key) {
    const std::vector<double> row = reader.Row(key, 2);
    return Position_Of(reader, key, row);
}

std::vector<Position> Read_Positions(Json_Reader& reader, const std::string& key) {
    std::vector<Position> positions;
    for (const auto& row : reader.Rows(key, 2))
        positions.push_back(Position_Of(reader, key, row));
    return positions;
}

Wind Read_Wind(Json_Reader& reader) {
    return {reader.Number("wind_direction_deg", {0, 360}), reader.Number("wind_kt", {0, 99})};
}

Weather_Data Read_Weather(Json_Reader reader) {
    Weather_Data weather;
    weather.wind = Read_Wind(reader);
    weather.visibility_sm = reader.Number("visibility_sm", {0, 99});
    std::vector<Json_Reader> clouds = reader.List("clouds");
    if (clouds.size() > weather.clouds.size())
        reader.Fault("clouds", "at most two layers are expected");
    for (std::size_t i = 0; i < clouds.size(); ++i) {
        weather.clouds.at(i) = {clouds[i].Number("base_ft", altitude_ft),
                                clouds[i].Integer("eighths", {0, 8})};
        clouds[i].Finish();
    }
    if (reader.Has("precipitation")) {
        const std::string kind = reader.Text("precipitation", 10);
        if (kind != "rain" && kind != "snow")
            reader.Fault("precipitation", "\"rain\" or \"snow\" is expected");
        weather.precipitation_type = kind == "rain" ? 1 : 2;
        weather.precipitation_rate = reader.Integer("precipitation_rate", {0, 5});
    }
    weather.temperature_c = reader.Number("temperature_c", {-60, 60});
    weather.dew_point_c = reader.Number("dew_point_c", {-60, 60});
    weather.pressure_inhg = reader.Number("pressure_inhg", {26, 32});
    reader.Finish();
    return weather;
}

std::vector<Taxi_Point> Read_Taxi(Json_Reader& reader) {
    std::vector<Taxi_Point> points;
    for (Json_Reader& item : reader.List("taxi")) {
        Taxi_Point point{Read_Position(item, "at"), item.Number("hold_s", seconds_range, 0)};
        item.Finish();
        points.push_back(point);
    }
    return points;
}

Runway_Data Read_Runway(Json_Reader reader) {
    Runway_Data runway{Read_Position(reader, "threshold"), reader.Number("heading_deg", {0, 360}),
                       reader.Number("length_m", {300, 6000})};
    reader.Finish();
    return runway;
}

std::vector<Circuit> Read_Circuits(Json_Reader& reader, double elevation_ft) {
    std::vector<Circuit> circuits;
    for (Json_Reader& item : reader.List("circuits")) {
        Circuit circuit;
        const std::string after = item.Text("after", 20);
        circuit.touches = after == "touch-and-go";
        if (!circuit.touches && after != "go-around")
            item.Fault("after", "\"touch-and-go\" or \"go-around\" is expected");
        if (!circuit.touches)
            circuit.from_ft = item.Number("from_ft", {100, 2000});
        circuit.altitude_ft = item.Number("altitude_ft", {elevation_ft + 300, 20000});
        circuit.route = Read_Positions(item, "route");
        item.Finish();
        circuits.push_back(std::move(circuit));
    }
    return circuits;
}

enum class Flight_End { departure, arrival };

Airport_Data Read_Airport(Json_Reader reader, Flight_End end, bool helicopter) {
    Airport_Data airport;
    airport.icao = reader.Text("icao", 4);
    airport.elevation_ft = reader.Number("elevation_ft", {-1500, 20000});
    airport.utc_offset_minutes = reader.Integer("utc_offset_minutes", {-720, 840});
    airport.magnetic_variation_deg = reader.Number("magnetic_variation_deg", {-180, 180}, 0);
    airport.stand = Read_Position(reader, "stand");
    airport.weather = Read_Weather(reader.Object("weather"));
    if (!helicopter) {
        airport.taxi = Read_Taxi(reader);
        airport.runway = Read_Runway(reader.Object("runway"));
        if (end == Flight_End::departure) {
            airport.pushback = Read_Positions(reader, "pushback");
        } else {
            airport.final_nm = reader.Number("final_nm", {0.3, 40});
            airport.circuits = Read_Circuits(reader, airport.elevation_ft);
            airport.exit_m = reader.Number("exit_m", {200, airport.runway->length_m});
        }
    }
    reader.Finish();
    return airport;
}

std::vector<Level_Off> Read_Level_Offs(Json_Reader& reader, const std::string& key) {
    std::vector<Level_Off> levels;
    for (Json_Reader& item : reader.List(key)) {
        levels.push_back(
            {item.Number("altitude_ft", altitude_ft), item.Number("for_nm", {0.1, 500})});
        item.Finish();
    }
    const auto by_altitude = [](const Level_Off& a, const Level_Off& b) {
        return a.altitude_ft < b.altitude_ft;
    };
    std::sort(levels.begin(), levels.end(), by_altitude);
    return levels;
}

void Read_Cruise(Json_Reader reader, Scenario_Data& scenario) {
    scenario.cruise_ft = reader.Number("altitude_ft", altitude_ft);
    double highest = scenario.cruise_ft;
    for (Json_Reader& item : reader.List("steps")) {
        const Step_Climb step{item.Number("at_nm", {0, 10000}),
                              item.Number("altitude_ft", altitude_ft)};
        if (step.altitude_ft <= highest)
            item.Fault("altitude_ft", "must be higher than before");
        highest = step.altitude_ft;
        item.Finish();
        scenario.steps.push_back(step);
    }
    scenario.climb_level_offs = Read_Level_Offs(reader, "climb_level_offs");
    scenario.descent_level_offs = Read_Level_Offs(reader, "descent_level_offs");
    const auto check = [&](const std::vector<Level_Off>& levels, const Airport_Data& airport,
                           double below_ft, const std::string& key) {
        for (const Level_Off& level : levels)
            if (level.altitude_ft <= airport.elevation_ft + 100 || level.altitude_ft >= below_ft)
                reader.Fault(key, fmt::format("{:g} ft do not lie between the ground and {:g} ft",
                                              level.altitude_ft, below_ft));
    };
    check(scenario.climb_level_offs, scenario.departure, scenario.cruise_ft, "climb_level_offs");
    check(scenario.descent_level_offs, scenario.arrival, highest, "descent_level_offs");
    if (scenario.cruise_ft <
        std::max(scenario.departure.elevation_ft, scenario.arrival.elevation_ft) + 300)
        reader.Fault("altitude_ft", "is less than 300 ft above the ground");
    reader.Finish();
}

/// "2026-03-14 23:20" or the same with seconds.
Date_Time Read_Moment(Json_Reader& reader, const std::string& key) {
    const std::string text = reader.Text(key, 30);
    const std::optional<Date_Time> moment = Parse_Date_Time(text, "yyyy-MM-dd");
    if (!moment)
        reader.Fault(key, "a moment like \"2026-03-14 23:20\" is expected");
    return *moment;
}

void Read_Loading(Json_Reader& reader, Scenario_Data& scenario) {
    const Aircraft_Data& aircraft = scenario.aircraft;
    const double largest = aircraft.largest_weight_lbs;
    scenario.zero_fuel_weight_lbs = reader.Number("zero_fuel_weight_lbs", {300, largest});
    double capacity_gal = 0;
    for (const std::vector<Tank_Data>& group : aircraft.tanks)
        for (const Tank_Data& tank : group)
            capacity_gal += tank.capacity_gal;
    scenario.fuel_lbs = reader.Number("fuel_lbs", {1, capacity_gal * aircraft.fuel_lb_per_gal});
    if (scenario.zero_fuel_weight_lbs + scenario.fuel_lbs > largest)
        reader.Fault("fuel_lbs", fmt::format("makes the aircraft heavier than {:g} lb", largest));
}

void Read_Teleports(Json_Reader& reader, Scenario_Data& scenario) {
    for (Json_Reader& item : reader.List("teleports")) {
        scenario.teleports.push_back(
            {item.Number("at_nm", {0, 10000}), item.Number("by_nm", {-1000, 1000})});
        item.Finish();
    }
}

void Read_Simulator_Time(Json_Reader& reader, Scenario_Data& scenario) {
    constexpr Range longest{0, 8 * 3600};
    for (Json_Reader& item : reader.List("pauses")) {
        scenario.pauses.push_back({item.Number("at_s", longest), item.Number("for_s", {1, 3600})});
        item.Finish();
    }
    double before = 0;
    for (Json_Reader& item : reader.List("rates")) {
        const double from = item.Number("from_s", {before, longest.most});
        before = item.Number("until_s", {from, longest.most});
        scenario.rated_parts.push_back({from, before, item.Number("rate", {0.25, 16})});
        item.Finish();
    }
}

void Read_Flight(Json_Reader& reader, Scenario_Data& scenario) {
    const bool helicopter = scenario.aircraft.engine.kind == engine_kind::helicopter;
    scenario.tail = reader.Text("tail", 12);
    scenario.airline = reader.Has("airline") ? reader.Text("airline", 24) : "";
    scenario.flight_number = reader.Has("flight_number") ? reader.Text("flight_number", 12) : "";
    Read_Loading(reader, scenario);
    scenario.start_utc = Read_Moment(reader, "start_utc");
    scenario.parked_s = reader.Number("parked_s", {1, 3600}, 30);
    scenario.line_up_s = reader.Number("line_up_s", seconds_range, 15);
    scenario.engine_off_after_s = reader.Number("engine_off_after_s", seconds_range, 10);
    scenario.touchdown_fpm = reader.Number("touchdown_fpm", {40, 1200}, 200);
    scenario.bounce_s = reader.Number("bounce_s", {0.25, 3}, 0);
    scenario.crab_kept = reader.Number("crab_kept", {0, 1}, 0);
    Read_Teleports(reader, scenario);
    Read_Simulator_Time(reader, scenario);
    scenario.departure =
        Read_Airport(reader.Object("departure"), Flight_End::departure, helicopter);
    scenario.arrival = Read_Airport(reader.Object("arrival"), Flight_End::arrival, helicopter);
    scenario.route = Read_Positions(reader, "route");
    Read_Cruise(reader.Object("cruise"), scenario);
    Json_Reader aloft = reader.Object("wind_aloft");
    scenario.aloft_ft = aloft.Number("altitude_ft", altitude_ft);
    scenario.aloft = Read_Wind(aloft);
    aloft.Finish();
}

/// The aircraft's folder stands beside others: a name, not a way to somewhere else.
std::string Read_Folder(Json_Reader& reader) {
    std::string folder = reader.Text("aircraft", 60);
    if (folder.find_first_of("/\\:") != std::string::npos || folder.front() == '.')
        reader.Fault("aircraft", "the name of a folder is expected");
    return folder;
}

}  // namespace

Scenario_Data Read_Scenario(const std::filesystem::path& file,
                            const std::filesystem::path& simulator_directory) {
    Scenario_Data scenario;
    Read_Json_File(file, [&](Json_Reader& reader) {
        scenario.aircraft = Read_Aircraft(simulator_directory, Read_Folder(reader));
        Read_Flight(reader, scenario);
    });
    return scenario;
}

std::unique_ptr<World_Source> Load_Scenario(const std::filesystem::path& file,
                                            const std::filesystem::path& simulator_directory) {
    Scenario_Data scenario = Read_Scenario(file, simulator_directory);
    try {
        return std::make_unique<Flight_World>(std::move(scenario), simulator_directory);
    } catch (const Run_Error& error) {
        throw Run_Error(error.Number(),
                        fmt::format("{}: {}", From_Path(file), error.Description()));
    }
}

}  // namespace norvane
