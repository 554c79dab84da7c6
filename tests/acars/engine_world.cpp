#include "engine_world.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <type_traits>
#include <utility>

#include "common/text.h"

namespace norvane::test {

namespace {

using enum Variable;

constexpr double as_before = -1e9;

std::string Word(const auto& value) {
    if constexpr (std::is_same_v<std::decay_t<decltype(value)>, Message_Type>)
        return std::to_string(static_cast<int>(value));
    else
        return fmt::format("{}", value);
}

/// Connects signals, whose names stand in `names`, to lines of their name and arguments.
template <class... Signals>
void Record(std::vector<std::string>& lines, std::string_view names, Signals&... signals) {
    const auto each = Split(names, ' ');
    std::size_t next = 0;
    const auto connect = [&](auto& signal) {
        signal.Connect([&lines, name = each.at(next++)](const auto&... values) {
            lines.push_back((name + ... + (" " + Word(values))));
        });
    };
    (connect(signals), ...);
}

void Record_Events(ACARS_Events& e, std::vector<std::string>& lines) {
    Record(lines,
           "Start Paused Reset FlightAtGate TouchAndGo FlightDate ATCTail ATCType ATCFlight "
           "AirlineFlight BlockTime BlockTimeHHMM FlightTime FlightTimeHHMM Distance MaxTaxiOrigin "
           "MaxTaxiDestination NSettings EngSettings IASTakeOff IASLanding VS FlightLevel",
           e.Start, e.Paused, e.Reset, e.FlightAtGate, e.TouchAndGo, e.FlightDate, e.ATCTail,
           e.ATCType, e.ATCFlight, e.AirlineFlight, e.BlockTime, e.BlockTimeHHMM, e.FlightTime,
           e.FlightTimeHHMM, e.Distance, e.MaxTaxiOrigin, e.MaxTaxiDestination, e.NSettings,
           e.EngSettings, e.IASTakeOff, e.IASLanding, e.VS, e.FlightLevel);
    Record(lines,
           "WXDep WXArr FSTime FSVersion FSClosed Error No_Airport Elsewhere FlightOUT FlightOFF "
           "FlightON FlightIN FuelOUT FuelOFF FuelON FuelIN FuelUsedBlock FuelUsedFlight WeightZFW "
           "WeightOUT WeightOFF WeightON WeightIN ICAODep ICAOArr ACARSMessage",
           e.WXDep, e.WXArr, e.FSTime, e.FSVersion, e.FSClosed, e.Error, e.No_Airport, e.Elsewhere,
           e.FlightOUT, e.FlightOFF, e.FlightON, e.FlightIN, e.FuelOUT, e.FuelOFF, e.FuelON,
           e.FuelIN, e.FuelUsedBlock, e.FuelUsedFlight, e.WeightZFW, e.WeightOUT, e.WeightOFF,
           e.WeightON, e.WeightIN, e.ICAODep, e.ICAOArr, e.ACARSMessage);
}

}  // namespace

const std::vector<Moment>& Jet_Flight() {
    constexpr double o = as_before;
    static const std::vector<Moment> flight{
        {{12'00, 3000, 20, 32767, 1, 13, 0, 0, o, 40.63975, -73.77893, 13}},
        {{12'05, o, o, 0, o, o, o, o, o, o, o, o}},
        {{o, o, o, o, o, o, o, 18, o, o, o, o}},
        {{o, o, 95, o, o, o, o, 140, o, o, o, o}},
        {{12'17, 2900, o, o, 0, 33, 1500, o, 151, o, o, o}},
        {{o, o, o, o, o, 9000, 2400, o, o, o, o, o}},
        {{o, o, o, o, o, 35000, 12, o, o, 41.5, -72.5, 400}},
        {{o, o, o, o, o, 35600, 1500, o, o, o, o, o}},
        {{o, o, o, o, o, 37010, -30, o, o, o, o, o}},
        {{o, o, o, o, o, 33000, -2200, o, o, o, o, o}},
        {{o, o, o, o, o, 60, -1210, o, 139, o, o, o}},
        {{13'40, 1400, 40, o, 1, 20, 0, 130, o, 42.36, -71.01, 20}},
        {{o, o, o, o, o, o, o, 8, o, o, o, o}},
        {{o, o, o, o, o, o, o, 22, o, o, o, o}},
        {{o, 1380, o, o, o, o, o, 0, o, o, o, o}},
        {{13'52, o, o, 32767, o, o, o, o, o, 42.36435, -71.00518, o}},
    };
    return flight;
}

void Moment::operator()(Offset_Area& area) const {
    constexpr int hours_west = 5;
    const auto [utc, fuel_gal, n1_percent] = std::tie(values[0], values[1], values[2]);
    if (utc != as_before) {
        area.Set(utc_hour, std::floor(utc / 100));
        area.Set(local_hour, std::floor(utc / 100) - hours_west);
        area.Set(utc_minute, std::fmod(utc, 100));
        area.Set(local_minute, std::fmod(utc, 100));
    }
    if (fuel_gal != as_before) {
        area.Set_Tank(3, fuel_gal / 2, 2000);
        area.Set_Tank(6, fuel_gal / 2, 2000);
        area.Set(total_weight_lbs, 100000.7 + fuel_gal * 6.75);
    }
    for (const int engine : {1, 2}) {
        if (n1_percent != as_before) {
            area.Set(engine_n1_percent, n1_percent, engine);
            area.Set(engine_n2_percent, n1_percent + 2, engine);
        }
    }
    std::size_t next = 3;
    for (const Variable variable :
         {parking_brake, on_ground, altitude_ft, vertical_speed_fpm, ground_speed_kt,
          indicated_airspeed_kt, latitude_deg, longitude_deg, ground_elevation_ft}) {
        if (const double value = values.at(next++); value != as_before)
            area.Set(variable, value);
    }
}

Engine_World::Engine_World() {
    Write("bin/fs9.wld",
          "// the world of the tests\r\n\r\n"
          "40.63975|-73.77893|13|KJFK|John F Kennedy International\r\n"
          "42.36435|-71.00518|20|KBOS|Boston Logan\r\n");
    settings.Set_ACARS_Date(0);
    settings.Set_ACARS_Time(time_kind::utc);
    settings.Set_WX_URL("NOAA");
    area.Set_Text(atc_identifier, "N738NV");
    area.Set_Text(atc_airline, "Norvane");
    area.Set_Text(atc_flight_number, "101");
    area.Set_Text(aircraft_title, "Jet 738");
    Begin_Anew();
}

bool Engine_World::Start(bool resume) {
    return engine->Start(error_text, {true, resume, "NV101", "B738"});
}

void Engine_World::Replace_Engine() {
    link.IPC_Close();
    engine = std::make_unique<clsACARS>(clsACARS::Parts{services, link, settings, airline, *utc});
    Record_Events(engine->events, raised);
}

void Engine_World::Set(Variable variable, double value, int engine_number) {
    area.Set(variable, value, engine_number);
    engine->Refresh();
}

void Engine_World::Fly(std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i) {
        Jet_Flight()[i](area);
        engine->Refresh();
    }
}

void Engine_World::Fly_To(std::size_t to) {
    EXPECT_TRUE(Start());
    Fly(moment::parked, to);
}

void Engine_World::Begin_Anew() {
    store.Delete_Section("ACARS");
    Replace_Engine();
    Jet_Flight()[moment::parked](area);
    Put(engine_type, engine_kind::jet, engine_count, 2, fuel_weight_lb_per_gal, 6.75,
        zero_fuel_weight_lbs, 100000, day_of_year, 73, year, 2026);
    for (const int number : {1, 2}) {
        area.Set(engine_combustion, 1, number);
        area.Set(engine_fuel_flow_pph, 2400.4 + number, number);
    }
    raised.clear();
}

std::string Engine_World::Take_Raised() {
    std::string text;
    for (const std::string& line : std::exchange(raised, {})) {
        if (!line.starts_with("FSTime"))
            text += line + "\n";
    }
    return text;
}

std::vector<std::string> Engine_World::All(const std::string& name) const {
    std::vector<std::string> found;
    for (const std::string& line : raised) {
        if ((line + " ").starts_with(name + " "))
            found.push_back(line.substr(std::min(name.size() + 1, line.size())));
    }
    return found;
}

std::string Engine_World::Once(const std::string& name) const {
    const auto all = All(name);
    EXPECT_EQ(all.size(), 1U) << name;
    return all.empty() ? "not raised" : all[0];
}

}  // namespace norvane::test
