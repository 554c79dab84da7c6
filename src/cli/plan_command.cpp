#include "cli/plan_command.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "acars/acars_events.h"
#include "acars/flight_figures.h"
#include "acarspanel/panel_fields.h"
#include "cli/exit_status.h"
#include "common/code_page.h"
#include "common/date_time.h"
#include "common/flight_level.h"
#include "common/run_error.h"
#include "config/cls_app_settings.h"
#include "net/http_failure.h"

namespace norvane {

namespace {

/// The values by the names that "plan" prints.
using Plan_Values = std::array<std::pair<std::string_view, std::string_view>, 7>;

Plan_Values Values_Of(const clsIniFile& plan) {
    return {{
        {"FLIGHT_PLAN", plan.FLIGHT_PLAN()},
        {"Flight_Origin_ICAO", plan.Flight_Origin_ICAO()},
        {"Flight_Origin_Name", plan.Flight_Origin_Name()},
        {"Flight_Destination_ICAO", plan.Flight_Destination_ICAO()},
        {"Flight_Destination_Name", plan.Flight_Destination_Name()},
        {"FLIGHT_LEVEL", plan.FLIGHT_LEVEL()},
        {"Flight_Type", plan.Flight_Type()},
    }};
}

/// "2026-02-11T10:20:00Z".
std::string Moment_Text(const std::optional<std::int64_t>& moment) {
    if (!moment)
        return {};
    const auto [date, time] = Date_Time_Of_Seconds(*moment);
    return fmt::format("{}T{:02}:{:02}:{:02}Z", Format_Iso_Date(date), time.hour, time.minute,
                       time.second);
}

std::string Duration_Words(const std::optional<std::int64_t>& seconds) {
    return seconds ? Hours_And_Minutes(static_cast<int>(*seconds / 60)) : std::string();
}

std::vector<std::pair<std::string, std::string>> Values_Of(const Simbrief_Plan& plan,
                                                           const clsAppSettings& settings) {
    const auto pounds = [](const std::optional<double>& lbs, int shown) {
        const int known = shown == unit::kilograms ? unit::kilograms : unit::pounds;
        return lbs ? Shown_Weight(Weight_In_Unit(*lbs, known), known) : std::string();
    };
    const auto fuel = [&](const auto& lbs) { return pounds(lbs, settings.ACARS_Fuel()); };
    const auto weight = [&](const auto& lbs) { return pounds(lbs, settings.ACARS_Weight()); };
    const std::string rules = plan.is_ifr.value_or(true) ? "IFR" : "VFR";
    std::vector<std::pair<std::string, std::string>> values{
        {"FLIGHT_PLAN", plan.route},
        {"Flight_Origin_ICAO", plan.origin.icao},
        {"Flight_Origin_Name", plan.origin.name},
        {"Flight_Destination_ICAO", plan.destination.icao},
        {"Flight_Destination_Name", plan.destination.name},
        {"FLIGHT_LEVEL", plan.level_ft ? Format_FlightLevel(*plan.level_ft) : ""},
        {"Flight_Type", plan.is_ifr ? rules : ""},
        {"Alternate_ICAO", plan.alternate.icao},
        {"Callsign", plan.call_sign},
        {"Flight_Number", plan.flight_number},
        {"Aircraft", plan.aircraft_type},
        {"Registration", plan.registration},
        {"Passengers", plan.passengers ? std::to_string(*plan.passengers) : ""},
        {"Cargo", weight(plan.cargo_lbs)},
        {"Zero_Fuel_Weight", weight(plan.zero_fuel_weight_lbs)},
        {"Takeoff_Weight", weight(plan.takeoff_weight_lbs)},
        {"Landing_Weight", weight(plan.landing_weight_lbs)},
        {"Fuel_Ramp", fuel(plan.fuel_ramp_lbs)},
        {"Fuel_Taxi", fuel(plan.fuel_taxi_lbs)},
        {"Fuel_Takeoff", fuel(plan.fuel_takeoff_lbs)},
        {"Fuel_Burn", fuel(plan.fuel_burn_lbs)},
        {"Fuel_Landing", fuel(plan.fuel_landing_lbs)},
        {"Block_Time", Duration_Words(plan.block_seconds)},
        {"Flight_Time", Duration_Words(plan.air_seconds)},
        {"Generated", Moment_Text(plan.generated)},
    };
    constexpr std::array<const char*, block_event_count> events{"OUT", "OFF", "ON", "IN"};
    for (std::size_t i = 0; i < events.size(); ++i) {
        values.emplace_back(fmt::format("Scheduled_{}", events.at(i)),
                            Moment_Text(plan.times.at(i).scheduled));
        values.emplace_back(fmt::format("Estimated_{}", events.at(i)),
                            Moment_Text(plan.times.at(i).estimated));
    }
    return values;
}

}  // namespace

clsIniFile Read_Plan(Services& services, const std::string& file) {
    std::error_code failure;
    if (!std::filesystem::exists(file, failure) && !failure)
        throw Run_Error(error_number::file_not_found, "File not found: " + From_Path(file));
    clsIniFile plan(services);
    plan.Set_INI_FilePath(file);
    plan.Get_Flight_Plan();
    const Plan_Values values = Values_Of(plan);
    if (std::all_of(values.begin(), values.end(),
                    [](const auto& value) { return value.second.empty(); })) {
        throw Run_Error(error_number::other, "There is no flight plan in " + From_Path(file));
    }
    return plan;
}

int Show_Plan(Session& session, const std::string& file) {
    const clsIniFile plan = Read_Plan(session.Outside(), file);
    for (const auto& [name, value] : Values_Of(plan))
        fmt::print("{}: {}\n", name, Console_Desktop::Printable(To_Utf8(value)));
    return exit_status::done;
}

Simbrief_Plan Fetch_Plan_Of(Console& console, Services& services, const std::string& user) {
    try {
        return Fetch_Simbrief_Plan(services, From_Utf8(user), console.Until_Signal());
    } catch (...) {
        const Run_Error error = Caught_Error();
        if (console.signals.Raised())
            throw Run_Error(error.Number(), "Ended by a signal.");
        throw Run_Error(error.Number(), With_Meaning(error.Description()));
    }
}

int Show_SimBrief_Plan(Console& console, Session& session, const std::string& user) {
    const clsAppSettings settings(session.Outside());
    const Simbrief_Plan plan = Fetch_Plan_Of(console, session.Outside(), user);
    for (const auto& [name, value] : Values_Of(plan, settings))
        Console_Desktop::Print(fmt::format("{}: {}", name, value));
    return exit_status::done;
}

}  // namespace norvane
