#include "blackbox/recording_head.h"

#include <fmt/format.h>

#include <array>
#include <charconv>

#include "acars/cls_acars.h"
#include "acars/cls_utc.h"
#include "common/services.h"
#include "common/version.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "config/setting_table.h"

namespace norvane {

namespace {

/// What decides about a flight's figures.
constexpr auto settings_in_force = std::to_array<std::string_view>({
    "ACARS_Date",
    "ACARS_UseTime",
    "ACARS_Time",
    "ACARS_Fuel",
    "ACARS_Weight",
    "ACARS_EOF",
    "ACARS_ATCModel",
    "ACARS_TakeOff_Alt",
    "ACARS_RecordArrival",
    "ACARS_TouchAndGo",
    "WX_URL",
    "VATSIM_FP",
    "Airline_IATA",
    "Airline_ICAO",
    "Airline_IATAPrefix",
});

std::string Moment_Text(const Date_Time& moment) {
    return fmt::format("{}T{:02}:{:02}:{:02}", Format_Iso_Date(moment.date), moment.time.hour,
                       moment.time.minute, moment.time.second);
}

/// A line of its own, whatever a simulator calls its aircraft.
std::string One_Line(std::string_view key, std::string_view value) {
    std::string line = fmt::format("{}: {}", key, value);
    for (char& c : line) {
        if (c == '\r' || c == '\n')
            c = ' ';
    }
    return line;
}

std::optional<Date_Time> Parse_Moment(std::string_view text) {
    constexpr std::size_t length = 19;
    constexpr auto places = std::to_array<std::size_t>({0, 5, 8, 11, 14, 17});
    if (text.size() < length)
        return std::nullopt;
    std::array<int, places.size()> parts{};
    for (std::size_t i = 0; i < places.size(); ++i) {
        const std::size_t digits = i == 0 ? 4 : 2;
        const char* begin = text.data() + places.at(i);
        const auto [end, failure] = std::from_chars(begin, begin + digits, parts.at(i));
        if (failure != std::errc() || end != begin + digits)
            return std::nullopt;
    }
    const Date date{parts[0], parts[1], parts[2]};
    if (!Is_Valid(date))
        return std::nullopt;
    return Date_Time{date, {parts[3], parts[4], parts[5]}};
}

}  // namespace

Clock_Moments Read_Clocks(Services& services) {
    const Date_Time local = services.clock.Local_Now();
    const auto utc = services.clock.Utc_Now();
    return {utc.value_or(local), local};
}

std::string Clock_Text(const Clock_Moments& moments) {
    return Moment_Text(moments.utc) + "Z " + Moment_Text(moments.local);
}

std::optional<Clock_Moments> Parse_Clock(std::string_view text) {
    const auto blank = text.find(' ');
    if (blank == std::string_view::npos)
        return std::nullopt;
    const auto utc = Parse_Moment(text.substr(0, blank));
    const auto local = Parse_Moment(text.substr(blank + 1));
    if (!utc || !local)
        return std::nullopt;
    return Clock_Moments{*utc, *local};
}

std::vector<std::string> Head_Remarks(Services& services, const clsAppSettings& settings,
                                      const clsVASettings& airline, const clsACARS& engine) {
    const Clock_Moments now = Read_Clocks(services);
    std::vector<std::string> remarks = {
        One_Line("program", fmt::format("{} {}", product_name, version)),
        One_Line("utc", Moment_Text(now.utc) + "Z"),
        One_Line("local", Moment_Text(now.local)),
        One_Line("speed", fmt::format("{}", services.desktop.Timers().Speed())),
        One_Line("airline", airline.Name()),
    };
    const Flight_State& state = engine.State();
    for (const auto& [key, value] : {std::pair{"flight", state.flight_number},
                                     {"aircraft", state.type_name},
                                     {"tail", state.atc_tail},
                                     {"simulator", state.simulator_name},
                                     {"date pattern", services.regional.short_date}})
        remarks.push_back(One_Line(key, value));
    for (const std::string_view name : settings_in_force)
        remarks.push_back(
            One_Line("setting", fmt::format("{}={}", name, Get_Setting_Text(settings, name))));
    return remarks;
}

std::string Remark_Value(const std::vector<std::string>& remarks, std::string_view key) {
    for (const std::string& remark : remarks) {
        if (remark.starts_with(key) && remark.substr(key.size()).starts_with(": "))
            return remark.substr(key.size() + 2);
    }
    return {};
}

double Seconds_Since_Beginning(const std::vector<Recorded_Moment>& moments,
                               const Clock_Moments& now) {
    const auto utc = Parse_Moment(Remark_Value(moments.front().remarks, "utc"));
    return utc ? static_cast<double>(Seconds_Of(now.utc) - Seconds_Of(*utc)) : -1;
}

std::string Recording_Stamp(const Date_Time& utc) {
    return fmt::format("{}_{:02}{:02}{:02}Z", Format_Iso_Date(utc.date), utc.time.hour,
                       utc.time.minute, utc.time.second);
}

std::filesystem::path Free_Name(const std::filesystem::path& directory, std::string_view stem,
                                std::string_view ending) {
    auto file = directory / fmt::format("{}{}", stem, ending);
    for (int number = 2; std::filesystem::exists(file); ++number)
        file = directory / fmt::format("{}-{}{}", stem, number, ending);
    return file;
}

}  // namespace norvane
