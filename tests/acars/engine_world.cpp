#include "engine_world.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "common/text.h"

namespace norvane::test {

namespace {

using enum Variable;
using Change = std::function<void(Offset_Area&)>;

/// Sets a variable, and others with their values behind it.
template <class... More>
Change Set(Variable variable, double value, More... more) {
    return [=](Offset_Area& area) {
        area.Set(variable, value);
        if constexpr (sizeof...(more) > 0)
            Set(more...)(area);
    };
}

Change Time(int hour, int minute) {
    constexpr int hours_west = 5;
    return Set(utc_hour, hour, utc_minute, minute, local_hour, (hour + 24 - hours_west) % 24,
               local_minute, minute);
}

Change Place(double latitude, double longitude, double elevation_ft) {
    return Set(latitude_deg, latitude, longitude_deg, longitude, ground_elevation_ft, elevation_ft);
}

Change Vertical(double feet, double speed_fpm) {
    return Set(altitude_ft, feet, vertical_speed_fpm, speed_fpm);
}

Change Fuel(double gallons) {
    return [=](Offset_Area& area) {
        area.Set_Tank(3, gallons / 2, 2000);
        area.Set_Tank(6, gallons / 2, 2000);
        area.Set(total_weight_lbs, 100000.7 + gallons * 6.75);
    };
}

Change Both_Engines(Variable variable, double first, double second) {
    return [=](Offset_Area& area) {
        area.Set(variable, first, 1);
        area.Set(variable, second, 2);
    };
}

Change N1(double percent) {
    return [=](Offset_Area& area) {
        Both_Engines(engine_n1_percent, percent, percent)(area);
        Both_Engines(engine_n2_percent, percent + 2, percent + 2)(area);
    };
}

Change Text(Variable variable, const std::string& text) {
    return [=](Offset_Area& area) { area.Set_Text(variable, text); };
}

/// Connects signals, whose names stand in `names`, to what makes a text of their arguments.
template <class Text_Of, class... Signals>
void Record(std::vector<std::string>& lines, std::string_view names, const Text_Of& text_of,
            Signals&... signals) {
    const auto each = Split(names, ' ');
    std::size_t next = 0;
    const auto connect = [&](auto& signal) {
        signal.Connect([&lines, text_of, name = each.at(next++)](const auto&... arguments) {
            lines.push_back(name + text_of(arguments...));
        });
    };
    (connect(signals), ...);
}

}  // namespace

void Record_Events(ACARS_Events& e, std::vector<std::string>& lines) {
    Record(
        lines, "Start Paused Reset FlightAtGate TouchAndGo", [] { return ""; }, e.Start, e.Paused,
        e.Reset, e.FlightAtGate, e.TouchAndGo);
    const auto text = [](const std::string& value) { return " " + value; };
    Record(lines,
           "FlightDate ATCTail ATCType ATCFlight AirlineFlight BlockTime BlockTimeHHMM FlightTime "
           "FlightTimeHHMM Distance MaxTaxiOrigin MaxTaxiDestination NSettings EngSettings",
           text, e.FlightDate, e.ATCTail, e.ATCType, e.ATCFlight, e.AirlineFlight, e.BlockTime,
           e.BlockTimeHHMM, e.FlightTime, e.FlightTimeHHMM, e.Distance, e.MaxTaxiOrigin,
           e.MaxTaxiDestination, e.NSettings, e.EngSettings);
    Record(lines,
           "IASTakeOff IASLanding VS FlightLevel PAX BaggageCargo WXDep WXArr FSTime FSVersion "
           "FSClosed Error No_Airport Elsewhere",
           text, e.IASTakeOff, e.IASLanding, e.VS, e.FlightLevel, e.PAX, e.BaggageCargo, e.WXDep,
           e.WXArr, e.FSTime, e.FSVersion, e.FSClosed, e.Error, e.No_Airport, e.Elsewhere);
    const auto figure = [](const std::string& value, int unit) {
        return fmt::format(" {} {}", value, unit);
    };
    Record(lines,
           "FlightOUT FlightOFF FlightON FlightIN FuelOUT FuelOFF FuelON FuelIN FuelUsedBlock "
           "FuelUsedFlight WeightZFW WeightOUT WeightOFF WeightON WeightIN",
           figure, e.FlightOUT, e.FlightOFF, e.FlightON, e.FlightIN, e.FuelOUT, e.FuelOFF, e.FuelON,
           e.FuelIN, e.FuelUsedBlock, e.FuelUsedFlight, e.WeightZFW, e.WeightOUT, e.WeightOFF,
           e.WeightON, e.WeightIN);
    const auto airport = [](const std::string& icao, const std::string& name) {
        return " " + icao + " " + name;
    };
    Record(lines, "ICAODep ICAOArr", airport, e.ICAODep, e.ICAOArr);
    const auto message = [](Message_Type type, const std::string& body) {
        return fmt::format(" {} {}", static_cast<int>(type), body);
    };
    Record(lines, "ACARSMessage", message, e.ACARSMessage);
}

const std::vector<Moment>& Jet_Flight() {
    static const std::vector<Moment> flight{
        {{Set(parking_brake, 32767, on_ground, 1, engine_type, engine_kind::jet, engine_count, 2,
              fuel_weight_lb_per_gal, 6.75, zero_fuel_weight_lbs, 100000, day_of_year, 73, year,
              2026),
          Both_Engines(engine_combustion, 1, 1), Both_Engines(engine_fuel_flow_pph, 2401.4, 2402.4),
          Text(atc_identifier, "N738NV"), Text(atc_airline, "Norvane"),
          Text(atc_flight_number, "101"), Text(aircraft_title, "Jet 738"), Time(12, 0),
          Place(40.63975, -73.77893, 13), Fuel(3000), N1(20), Vertical(13, 0)}},
        {{Time(12, 5), Set(parking_brake, 0)}},
        {{Set(ground_speed_kt, 18)}},
        {{N1(95), Set(ground_speed_kt, 140)}},
        {{Time(12, 17), Fuel(2900), Vertical(33, 1500),
          Set(on_ground, 0, indicated_airspeed_kt, 151)}},
        {{Vertical(9000, 2400)}},
        {{Place(41.5, -72.5, 400), Vertical(35000, 12)}},
        {{Vertical(35600, 1500)}},
        {{Vertical(37010, -30)}},
        {{Vertical(33000, -2200)}},
        {{Vertical(60, -1210), Set(indicated_airspeed_kt, 139)}},
        {{Time(13, 40), Place(42.36, -71.01, 20), Fuel(1400), N1(40), Vertical(20, 0),
          Set(on_ground, 1, ground_speed_kt, 130)}},
        {{Set(ground_speed_kt, 8)}},
        {{Set(ground_speed_kt, 22)}},
        {{Fuel(1380), Set(ground_speed_kt, 0)}},
        {{Time(13, 52), Place(42.36435, -71.00518, 20), Set(parking_brake, 32767)}},
    };
    return flight;
}

void Moment::operator()(Offset_Area& area) const {
    for (const Change& change : changes)
        change(area);
}

Engine_World::Engine_World() {
    Write("bin/fs9.wld",
          "// the world of the tests\r\n\r\n"
          "40.63975|-73.77893|13|KJFK|John F Kennedy International\r\n"
          "42.36435|-71.00518|20|KBOS|Boston Logan\r\n");
    settings.Set_ACARS_Date(0);
    settings.Set_ACARS_Time(time_kind::utc);
    settings.Set_WX_URL("NOAA");
    Replace_Engine();
    Jet_Flight()[moment::parked](area);
}

void Engine_World::Replace_Engine() {
    link.IPC_Close();
    engine = std::make_unique<clsACARS>(clsACARS::Parts{services, link, settings, airline, *utc});
    Record_Events(engine->events, raised);
}

bool Engine_World::Start(bool resume) {
    return engine->Start(error_text, {true, resume, "NV101", "B738"});
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
