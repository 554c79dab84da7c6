#include "acars/sampler.h"

#include "acars/cls_utc.h"
#include "acars/engine_context.h"
#include "acars/engine_texts.h"
#include "acars/flight_figures.h"
#include "common/number.h"
#include "common/services.h"
#include "config/cls_app_settings.h"
#include "config/setting_codes.h"
#include "simlink/mod_fsuipc.h"

namespace norvane {

namespace {

std::string Two_Digits(Sim_Reader& reader, Variable variable) {
    return Format_Whole(reader.Read(variable), 2);
}

std::string Simulator_UTC(Sim_Reader& reader) {
    const std::string hour = Two_Digits(reader, Variable::utc_hour);
    return hour + Two_Digits(reader, Variable::utc_minute);
}

std::string Simulator_Local(Sim_Reader& reader) {
    const std::string hour = Two_Digits(reader, Variable::local_hour);
    return hour + Two_Digits(reader, Variable::local_minute);
}

/// Whole gallons as pounds, by the weight of the fuel on board.
std::string Pounds(Sim_Reader& reader, std::string_view gallons) {
    return Format_Whole(Figure_Of(gallons) * reader.Read(Variable::fuel_weight_lb_per_gal));
}

std::string Magnetic_Heading(Sim_Reader& reader) {
    double heading =
        reader.Read(Variable::true_heading_deg) - reader.Read(Variable::magnetic_variation_deg);
    if (heading < 0)
        heading += 360;
    if (heading > 360)
        heading -= 360;
    const std::string text = Format_Whole(heading, 3);
    return text == "360" ? "000" : text;
}

}  // namespace

std::string Read_UTC_Time(Engine_Context& engine) {
    switch (Clock_Source{engine.settings.ACARS_UseTime()}) {
        case Clock_Source::simulator:
            return Simulator_UTC(engine.reader);
        case Clock_Source::computer:
            return engine.utc.GetUTC();
        default:
            return {};
    }
}

std::string Read_Local_Time(Engine_Context& engine) {
    switch (Clock_Source{engine.settings.ACARS_UseTime()}) {
        case Clock_Source::simulator:
            return Simulator_Local(engine.reader);
        case Clock_Source::computer:
            return Format_Hhmm(engine.services.clock.Local_Now().time);
        default:
            return {};
    }
}

std::string Read_Simulator_Time(Engine_Context& engine) {
    switch (engine.settings.ACARS_Time()) {
        case time_kind::utc:
            return Simulator_UTC(engine.reader);
        case time_kind::local:
            return Simulator_Local(engine.reader);
        default:
            return {};
    }
}

std::string Read_Date(Engine_Context& engine) {
    const std::string& pattern = engine.services.regional.short_date;
    if (Clock_Source{engine.settings.ACARS_Date()} == Clock_Source::computer)
        return Format_Date(engine.services.clock.Local_Now().date, pattern);
    const std::int32_t day = engine.reader.Read_Whole(Variable::day_of_year);
    const std::int32_t year = engine.reader.Read_Whole(Variable::year);
    constexpr int last_year = 9999;
    if (year < 1 || year > last_year || day < 1)
        return {};
    const Date date = Date_Of_Day_Number(Day_Number({year, 1, 1}) + day - 1);
    return date.year > last_year ? std::string() : Format_Date(date, pattern);
}

void Sample_Message_Clock(Engine_Context& engine) {
    const bool linked = engine.link.Is_Open();
    if (linked || Clock_Source{engine.settings.ACARS_UseTime()} == Clock_Source::computer) {
        std::string time = Read_UTC_Time(engine);
        if (!engine.reader.Failed())
            engine.state.message_time = std::move(time);
    }
    if (linked || Clock_Source{engine.settings.ACARS_Date()} == Clock_Source::computer) {
        std::string date = Read_Date(engine);
        if (!engine.reader.Failed())
            engine.state.message_date = std::move(date);
    }
}

void Capture_Fuel(Engine_Context& engine, Block_Figures& figures) {
    const int unit = engine.settings.ACARS_Fuel();
    figures.fuel_gal = Format_Whole(engine.reader.Read_Fuel_Gallons());
    if (unit == unit::gallons)
        return;
    figures.fuel_lbs = Pounds(engine.reader, figures.fuel_gal);
    if (unit == unit::kilograms)
        figures.fuel_kg = Kilograms(Figure_Of(figures.fuel_lbs));
}

const std::string& Fuel_In_Unit(const Block_Figures& figures, int unit) {
    switch (unit) {
        case unit::gallons:
            return figures.fuel_gal;
        case unit::kilograms:
            return figures.fuel_kg;
        default:
            return figures.fuel_lbs;
    }
}

std::string Fuel_Used(const Block_Figures& from, const Block_Figures& to, int unit) {
    if (unit == unit::gallons)
        return Format_Whole(Figure_Of(from.fuel_gal) - Figure_Of(to.fuel_gal));
    return Weight_In_Unit(Figure_Of(from.fuel_lbs) - Figure_Of(to.fuel_lbs), unit);
}

std::string Read_Weight(Engine_Context& engine) {
    return Weight_In_Unit(engine.reader.Read(Variable::total_weight_lbs),
                          engine.settings.ACARS_Weight());
}

Position Read_Position(Sim_Reader& reader) {
    const double latitude = reader.Read(Variable::latitude_deg);
    return {latitude, reader.Read(Variable::longitude_deg)};
}

void Sample_Position(Engine_Context& engine, Sample_Extent extent) {
    Sim_Reader& reader = engine.reader;
    Position_Sample sample;
    if (extent == Sample_Extent::full) {
        sample.altitude_ft = reader.Read_Whole(Variable::altitude_ft);
        sample.fuel_lbs = Pounds(reader, Format_Whole(reader.Read_Fuel_Gallons()));
        sample.wind_speed = Two_Digits(reader, Variable::wind_speed_kt);
        sample.wind_direction = Format_Whole(reader.Read(Variable::wind_direction_deg), 3);
        sample.ground_speed_kt = reader.Read_Whole(Variable::ground_speed_kt);
        sample.true_airspeed_kt = reader.Read_Whole(Variable::true_airspeed_kt);
        sample.indicated_airspeed_kt = reader.Read_Whole(Variable::indicated_airspeed_kt);
        sample.temperature_c = reader.Read_Whole(Variable::total_air_temperature_c);
        sample.heading = Magnetic_Heading(reader);
        sample.engines = Engine_Report(engine);
    }
    sample.ground_elevation_ft = reader.Read(Variable::ground_elevation_ft);
    sample.position = Read_Position(reader);
    engine.state.sample = sample;
}

}  // namespace norvane
