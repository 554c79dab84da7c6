#include "engine_world.h"

#include <utility>

namespace norvane::test {

namespace {

std::string Number_Text(Message_Type type) {
    return std::to_string(static_cast<int>(type));
}

void Set_Time(Offset_Area& area, int hour, int minute) {
    constexpr int hours_west = 5;
    area.Set(Variable::utc_hour, hour);
    area.Set(Variable::utc_minute, minute);
    area.Set(Variable::local_hour, (hour + 24 - hours_west) % 24);
    area.Set(Variable::local_minute, minute);
}

void Set_Place(Offset_Area& area, double latitude, double longitude, double elevation_ft) {
    area.Set(Variable::latitude_deg, latitude);
    area.Set(Variable::longitude_deg, longitude);
    area.Set(Variable::ground_elevation_ft, elevation_ft);
}

void Set_Fuel(Offset_Area& area, double gallons) {
    area.Set_Tank(3, gallons / 2, 2000);
    area.Set_Tank(6, gallons / 2, 2000);
    area.Set(Variable::total_weight_lbs, 100000.7 + gallons * 6.75);
}

void Set_N1(Offset_Area& area, double percent) {
    for (int engine = 1; engine <= 2; ++engine) {
        area.Set(Variable::engine_n1_percent, percent, engine);
        area.Set(Variable::engine_n2_percent, percent + 2, engine);
    }
}

void Set_Vertical(Offset_Area& area, double altitude_ft, double speed_fpm) {
    area.Set(Variable::altitude_ft, altitude_ft);
    area.Set(Variable::vertical_speed_fpm, speed_fpm);
}

void Park_Jet(Offset_Area& area) {
    area.Set(Variable::parking_brake, 32767);
    area.Set(Variable::on_ground, 1);
    area.Set(Variable::engine_type, engine_kind::jet);
    area.Set(Variable::engine_count, 2);
    for (int engine = 1; engine <= 2; ++engine) {
        area.Set(Variable::engine_combustion, 1, engine);
        area.Set(Variable::engine_fuel_flow_pph, 2400.4 + engine, engine);
    }
    area.Set(Variable::fuel_weight_lb_per_gal, 6.75);
    area.Set(Variable::zero_fuel_weight_lbs, 100000);
    area.Set(Variable::day_of_year, 73);
    area.Set(Variable::year, 2026);
    area.Set_Text(Variable::atc_identifier, "N738NV");
    area.Set_Text(Variable::atc_airline, "Norvane");
    area.Set_Text(Variable::atc_flight_number, "101");
    area.Set_Text(Variable::aircraft_title, "Jet 738");
    Set_Time(area, 12, 0);
    Set_Place(area, 40.63975, -73.77893, 13);
    Set_Fuel(area, 3000);
    Set_N1(area, 20);
    Set_Vertical(area, 13, 0);
}

}  // namespace

void Record_Events(ACARS_Events& events, std::vector<std::string>& lines) {
    const auto plain = [&lines](ACARS_Events::Plain& signal, const std::string& name) {
        signal.connect([&lines, name] { lines.push_back(name); });
    };
    const auto text = [&lines](ACARS_Events::Text& signal, const std::string& name) {
        signal.connect(
            [&lines, name](const std::string& value) { lines.push_back(name + " " + value); });
    };
    const auto figure = [&lines](ACARS_Events::Figure& signal, const std::string& name) {
        signal.connect([&lines, name](const std::string& value, int unit) {
            lines.push_back(name + " " + value + " " + std::to_string(unit));
        });
    };
    const auto airport = [&lines](ACARS_Events::Airport& signal, const std::string& name) {
        signal.connect([&lines, name](const std::string& icao, const std::string& place) {
            lines.push_back(name + " " + icao + " " + place);
        });
    };
    const std::vector<std::pair<ACARS_Events::Text*, std::string>> texts{
        {&events.FlightDate, "FlightDate"},
        {&events.ATCTail, "ATCTail"},
        {&events.ATCType, "ATCType"},
        {&events.ATCFlight, "ATCFlight"},
        {&events.AirlineFlight, "AirlineFlight"},
        {&events.BlockTime, "BlockTime"},
        {&events.BlockTimeHHMM, "BlockTimeHHMM"},
        {&events.FlightTime, "FlightTime"},
        {&events.FlightTimeHHMM, "FlightTimeHHMM"},
        {&events.Distance, "Distance"},
        {&events.MaxTaxiOrigin, "MaxTaxiOrigin"},
        {&events.MaxTaxiDestination, "MaxTaxiDestination"},
        {&events.NSettings, "NSettings"},
        {&events.EngSettings, "EngSettings"},
        {&events.IASTakeOff, "IASTakeOff"},
        {&events.IASLanding, "IASLanding"},
        {&events.VS, "VS"},
        {&events.FlightLevel, "FlightLevel"},
        {&events.PAX, "PAX"},
        {&events.BaggageCargo, "BaggageCargo"},
        {&events.WXDep, "WXDep"},
        {&events.WXArr, "WXArr"},
        {&events.FSTime, "FSTime"},
        {&events.FSVersion, "FSVersion"},
        {&events.FSClosed, "FSClosed"},
        {&events.Error, "Error"},
        {&events.No_Airport, "No_Airport"},
        {&events.Elsewhere, "Elsewhere"},
    };
    for (const auto& [signal, name] : texts)
        text(*signal, name);
    const std::vector<std::pair<ACARS_Events::Figure*, std::string>> figures{
        {&events.FlightOUT, "FlightOUT"},
        {&events.FlightOFF, "FlightOFF"},
        {&events.FlightON, "FlightON"},
        {&events.FlightIN, "FlightIN"},
        {&events.FuelOUT, "FuelOUT"},
        {&events.FuelOFF, "FuelOFF"},
        {&events.FuelON, "FuelON"},
        {&events.FuelIN, "FuelIN"},
        {&events.FuelUsedBlock, "FuelUsedBlock"},
        {&events.FuelUsedFlight, "FuelUsedFlight"},
        {&events.WeightZFW, "WeightZFW"},
        {&events.WeightOUT, "WeightOUT"},
        {&events.WeightOFF, "WeightOFF"},
        {&events.WeightON, "WeightON"},
        {&events.WeightIN, "WeightIN"},
    };
    for (const auto& [signal, name] : figures)
        figure(*signal, name);
    airport(events.ICAODep, "ICAODep");
    airport(events.ICAOArr, "ICAOArr");
    plain(events.Start, "Start");
    plain(events.Paused, "Paused");
    plain(events.Reset, "Reset");
    plain(events.FlightAtGate, "FlightAtGate");
    plain(events.TouchAndGo, "TouchAndGo");
    events.ACARSMessage.connect([&lines](Message_Type type, const std::string& message) {
        lines.push_back("ACARSMessage " + Number_Text(type) + " " + message);
    });
}

std::vector<Moment> Jet_Flight() {
    return {
        Park_Jet,
        [](Offset_Area& area) {
            Set_Time(area, 12, 5);
            area.Set(Variable::parking_brake, 0);
        },
        [](Offset_Area& area) { area.Set(Variable::ground_speed_kt, 18); },
        [](Offset_Area& area) {
            Set_N1(area, 95);
            area.Set(Variable::ground_speed_kt, 140);
        },
        [](Offset_Area& area) {
            Set_Time(area, 12, 17);
            Set_Fuel(area, 2900);
            Set_Vertical(area, 33, 1500);
            area.Set(Variable::on_ground, 0);
            area.Set(Variable::indicated_airspeed_kt, 151);
        },
        [](Offset_Area& area) { Set_Vertical(area, 9000, 2400); },
        [](Offset_Area& area) {
            Set_Place(area, 41.5, -72.5, 400);
            Set_Vertical(area, 35000, 12);
        },
        [](Offset_Area& area) { Set_Vertical(area, 35600, 1500); },
        [](Offset_Area& area) { Set_Vertical(area, 37010, -30); },
        [](Offset_Area& area) { Set_Vertical(area, 33000, -2200); },
        [](Offset_Area& area) {
            Set_Vertical(area, 60, -1210);
            area.Set(Variable::indicated_airspeed_kt, 139);
        },
        [](Offset_Area& area) {
            Set_Time(area, 13, 40);
            Set_Place(area, 42.36, -71.01, 20);
            Set_Fuel(area, 1400);
            Set_N1(area, 40);
            Set_Vertical(area, 20, 0);
            area.Set(Variable::on_ground, 1);
            area.Set(Variable::ground_speed_kt, 130);
        },
        [](Offset_Area& area) { area.Set(Variable::ground_speed_kt, 8); },
        [](Offset_Area& area) { area.Set(Variable::ground_speed_kt, 22); },
        [](Offset_Area& area) {
            Set_Fuel(area, 1380);
            area.Set(Variable::ground_speed_kt, 0);
        },
        [](Offset_Area& area) {
            Set_Time(area, 13, 52);
            Set_Place(area, 42.36435, -71.00518, 20);
            area.Set(Variable::parking_brake, 32767);
        },
    };
}

Engine_World::Engine_World() {
    Write("bin/fs9.wld",
          "// the world of the tests\r\n\r\n"
          "40.63975|-73.77893|13|KJFK|John F Kennedy International\r\n"
          "42.36435|-71.00518|20|KBOS|Boston Logan\r\n");
    settings = std::make_unique<clsAppSettings>(services);
    settings->Set_ACARS_Date(0);
    settings->Set_ACARS_Time(time_kind::utc);
    settings->Set_ACARS_Fuel(unit::pounds);
    settings->Set_ACARS_Weight(unit::pounds);
    settings->Set_ACARS_EOF(0);
    settings->Set_ACARS_TakeOff_Alt(0);
    settings->Set_ACARS_RecordArrival(0);
    settings->Set_WX_URL("NOAA");
    airline = std::make_unique<clsVASettings>(services);
    utc = std::make_unique<clsUTC>(clock);
    Replace_Engine();
    Jet_Flight()[moment::parked](area);
}

void Engine_World::Replace_Engine() {
    link.IPC_Close();
    engine = std::make_unique<clsACARS>(clsACARS::Parts{services, link, *settings, *airline, *utc});
    Record_Events(engine->events, raised);
}

bool Engine_World::Start(bool resume) {
    clsACARS::Start_Request request;
    request.resume = resume;
    request.flight_number = "NV101";
    request.aircraft_type = "B738";
    return engine->Start(error_text, request);
}

void Engine_World::Step(const Moment& change) {
    change(area);
    engine->Refresh();
}

void Engine_World::Fly(std::size_t from, std::size_t to) {
    const auto flight = Jet_Flight();
    for (std::size_t i = from; i < to; ++i)
        Step(flight[i]);
}

void Engine_World::Use_Airline_With_Script() {
    Write("VA/server.cfg", "server.example\r\npirep.php\r\nacars.php\r\n");
    airline->Get_VA_Settings("DEFAULT");
}

std::vector<std::string> Engine_World::Take_Raised() {
    auto lines = std::exchange(raised, {});
    std::erase_if(lines, [](const std::string& line) { return line.starts_with("FSTime"); });
    return lines;
}

std::string Engine_World::Once(const std::string& name) const {
    EXPECT_EQ(Count(name), 1U) << name;
    for (const std::string& line : raised) {
        if (line.starts_with(name + " "))
            return line.substr(name.size() + 1);
    }
    return "not raised";
}

std::size_t Engine_World::Count(const std::string& name) const {
    return static_cast<std::size_t>(std::count_if(
        raised.begin(), raised.end(),
        [&](const std::string& line) { return line == name || line.starts_with(name + " "); }));
}

std::vector<std::string> Engine_World::Messages(Message_Type type) const {
    const std::string mark = "ACARSMessage " + Number_Text(type) + " ";
    std::vector<std::string> texts;
    for (const std::string& line : raised) {
        if (line.starts_with(mark))
            texts.push_back(line.substr(mark.size()));
    }
    return texts;
}

}  // namespace norvane::test
