#include "simhost/flight/world_figures.h"

#include "common/code_page.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr double brake_set = 32767;
constexpr double kelvin = 273.15;
/// Texts of the simulator's field end with a NUL.
constexpr std::size_t longest_text = 255;

int Day_Of_Year(Date date) {
    return static_cast<int>(Day_Number(date) - Day_Number({date.year, 1, 1})) + 1;
}

}  // namespace

void Set_Clock(const Date_Time& utc, const Time_Of_Day& local, Offset_Area& area) {
    area.Set(Variable::utc_hour, utc.time.hour);
    area.Set(Variable::utc_minute, utc.time.minute);
    area.Set(Variable::local_hour, local.hour);
    area.Set(Variable::local_minute, local.minute);
    area.Set(Variable::day_of_year, Day_Of_Year(utc.date));
    area.Set(Variable::year, utc.date.year);
}

void Set_Parking_Brake(bool set, Offset_Area& area) {
    area.Set(Variable::parking_brake, set ? brake_set : 0);
}

void Set_Exact_Altitude(double altitude_ft, Offset_Area& area) {
    const std::uint32_t offset = Offset_Of(Variable::altitude_fraction_ft);
    Encode_Exact_Altitude(altitude_ft, area.Bytes(offset, exact_altitude_size));
}

double Total_Temperature_C(double outside_c, double true_kt, const Air& air) {
    const double mach = true_kt / air.sound_kt;
    return (outside_c + kelvin) * (1 + 0.2 * mach * mach) - kelvin;
}

std::string Simulator_Directory_Text(const std::filesystem::path& directory) {
    const std::string name =
        std::filesystem::absolute(directory / "").lexically_normal().generic_string();
    const std::string text = From_Utf8(name);
    if (text.size() > longest_text || To_Utf8(text) != name || Contains(text, "\\"))
        return {};
    return Replace_All(text, "/", "\\");
}

std::string Aircraft_Path_Text(const std::string& folder) {
    return "Aircraft\\" + folder + "\\" + folder + ".air";
}

}  // namespace norvane
