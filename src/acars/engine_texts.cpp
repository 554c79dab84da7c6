#include "acars/engine_texts.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "acars/engine_context.h"
#include "acars/sampler.h"
#include "common/date_time.h"
#include "common/number.h"
#include "common/services.h"
#include "common/text.h"

namespace norvane {

namespace {

int Engines_Read(const Engine_Context& engine) {
    return std::min(engine.state.engine_count, most_engines);
}

bool Is_Turbine(int engine_type) {
    return engine_type == engine_kind::jet || engine_type == engine_kind::turboprop;
}

/// A whole number; nothing for 0.
std::string Digits_Or_Nothing(double value) {
    std::string digits = Format_Whole(value);
    return digits == "0" ? std::string() : digits;
}

std::string Fuel_Flow_Text(Engine_Context& engine) {
    std::vector<std::string> items;
    for (int number = 1; number <= Engines_Read(engine); ++number) {
        const double flow_pph = engine.reader.Read(Variable::engine_fuel_flow_pph, number);
        items.push_back(fmt::format("/E{}FF {} PPH", number, Format_Whole(flow_pph)));
    }
    return Join(items, " ");
}

std::string Surface_Wind(Sim_Reader& reader) {
    std::string text = Format_Whole(reader.Read(Variable::surface_wind_direction_deg), 3);
    text += Format_Whole(reader.Read(Variable::surface_wind_speed_kt), 2);
    const std::string third = Format_Whole(reader.Read(Variable::surface_wind_third), 2);
    if (third != "00")
        text += third;
    return text + "KT";
}

/// "+RA", "-SN" and the like; empty without precipitation.
std::string Precipitation(Sim_Reader& reader) {
    constexpr int heavy_rate = 4;
    constexpr int rain = 1;
    const std::int32_t type = reader.Read_Whole(Variable::precipitation_type);
    if (type == 0)
        return {};
    const std::string sign =
        reader.Read_Whole(Variable::precipitation_rate) >= heavy_rate ? "+" : "-";
    return sign + (type == rain ? "RA" : "SN");
}

/// Cover and base of a cloud layer; empty when its sky is clear.
std::string Cloud_Layer(Sim_Reader& reader, Variable cover, Variable base) {
    const std::int32_t eighths = reader.Read_Whole(cover);
    const double base_hundred_ft = reader.Read(base);
    std::string text;
    if (eighths <= 0)
        return text;
    if (eighths <= 2) {
        text = "FEW";
    } else if (eighths <= 4) {
        text = "SCT";
    } else if (eighths <= 7) {
        text = "BKN";
    } else {
        text = "OVC";
    }
    if (base_hundred_ft >= 1)
        text += Format_Whole(base_hundred_ft, 3);
    return text;
}

/// Always four digits: "A2992", "A2940", "A3000".
std::string Altimeter(Sim_Reader& reader) {
    return "A" +
           Replace_All(Format_Fixed(reader.Read(Variable::sea_level_pressure_inhg), 2, 2), ".", "");
}

std::string Day_Of_Month(const std::string& date, const Services& services) {
    const auto moment = Parse_Date_Time(date, services.regional.short_date);
    return moment ? Format_Whole(moment->date.day) : std::string();
}

}  // namespace

std::string N_Text(Engine_Context& engine) {
    std::vector<std::string> items;
    for (int number = 1; number <= Engines_Read(engine); ++number) {
        const double n1 = engine.reader.Read(Variable::engine_n1_percent, number);
        const double n2 = engine.reader.Read(Variable::engine_n2_percent, number);
        items.push_back(fmt::format("E{}N1 {}", number, Format_Whole(n1)));
        items.push_back(fmt::format("E{}N2 {}", number, Format_Whole(n2)));
    }
    return Join(items, " /");
}

std::string Piston_Text(Engine_Context& engine) {
    std::vector<std::string> items;
    for (int number = 1; number <= Engines_Read(engine); ++number) {
        const double rpm =
            engine.reader.Read(Variable::engine_propeller_fraction, number) * engine.state.max_rpm;
        const double manifold_inhg = engine.reader.Read(Variable::engine_manifold_inhg, number);
        items.push_back(fmt::format("E{} {} RPM - MAN {}\" Hg", number, Digits_Or_Nothing(rpm),
                                    Digits_Or_Nothing(manifold_inhg)));
    }
    return Join(items, " /");
}

std::string Engine_Settings(Engine_Context& engine) {
    if (Is_Turbine(engine.state.engine_type))
        return N_Text(engine);
    if (engine.state.engine_type == engine_kind::piston)
        return Piston_Text(engine);
    return {};
}

std::string Engine_Report(Engine_Context& engine) {
    std::string text = Engine_Settings(engine);
    if (Is_Turbine(engine.state.engine_type)) {
        text += cr_lf;
        text += Fuel_Flow_Text(engine);
    }
    return text;
}

std::string Weather_Report(Engine_Context& engine) {
    Sim_Reader& reader = engine.reader;
    Sample_Message_Clock(engine);
    std::string text = " " + Day_Of_Month(engine.state.message_date, engine.services) +
                       engine.state.message_time + "Z " + Surface_Wind(reader) + " " +
                       Format_Whole(reader.Read(Variable::visibility_sm)) + "SM ";
    const std::string precipitation = Precipitation(reader);
    if (!precipitation.empty())
        text += precipitation + " ";
    const std::string first =
        Cloud_Layer(reader, Variable::cloud1_cover_eighths, Variable::cloud1_base_hundred_ft);
    text += (first.empty() ? "SKC" : first) + " ";
    const std::string second =
        Cloud_Layer(reader, Variable::cloud2_cover_eighths, Variable::cloud2_base_hundred_ft);
    if (!second.empty())
        text += second + " ";
    text += Format_Whole(reader.Read(Variable::surface_temperature_c)) + "/" +
            Format_Whole(reader.Read(Variable::dew_point_c));
    return text + " " + Altimeter(reader);
}

}  // namespace norvane
