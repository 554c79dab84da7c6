#include "cli/plan_command.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "cli/console_desktop.h"
#include "cli/exit_status.h"
#include "common/code_page.h"
#include "common/run_error.h"

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

}  // namespace norvane
