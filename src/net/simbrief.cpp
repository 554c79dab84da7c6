#include "net/simbrief.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "acars/flight_figures.h"
#include "common/code_page.h"
#include "common/date_time.h"
#include "common/find_file.h"
#include "common/number.h"
#include "common/run_error.h"
#include "common/services.h"
#include "common/text.h"
#include "net/form_encoding.h"
#include "net/http_failure.h"
#include "net/json_entries.h"
#include "simdata/cls_ini_file.h"

namespace norvane {

namespace {

using Json = nlohmann::json;

/// A plan with all its legs and texts has one or two million bytes.
constexpr std::size_t most_plan_bytes = std::size_t{16} << 20;
/// Nothing that flies carries more.
constexpr double heaviest_lbs = 3e6;
constexpr double highest_ft = 100'000;
constexpr double most_passengers = 2000;
constexpr double longest_seconds = 7 * 24 * 3600;
/// The first and last moments that a calendar of four-digit years has room for.
constexpr std::int64_t last_moment = 253'402'300'799;
/// What the service calls a flight by instruments: I, and Y for one that begins so.
constexpr std::string_view instrument_rules = "IY";
constexpr std::string_view visual_rules = "VZ";

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t\r\n";

Run_Error Unreadable(std::string_view why) {
    return {error_number::other, fmt::format("SimBrief's answer {}", why),
            fmt::format("SimBrief's answer {}.  Please try again later.", why)};
}

/// What stands under the key, the first of several; null where nothing does.
const Json& Member(const Json& object, const char* key) {
    static const Json none;
    if (!object.is_object())
        return none;
    const auto found = object.find(key);
    if (found == object.end())
        return none;
    if (!found->is_array())
        return *found;
    return found->empty() ? none : found->front();
}

/// A text or a number, fit for a field of one line.
std::string Text(const Json& object, const char* key) {
    const Json& value = Member(object, key);
    if (value.is_string())
        return Trim(Clean_Field(From_Utf8(value.get_ref<const std::string&>()), Field_Lines::one));
    return value.is_number() ? value.dump() : std::string();
}

/// None when it is no number from 0 to `most`.
std::optional<double> Figure(const Json& object, const char* key, double most) {
    const auto number = Parse_Number(Text(object, key));
    if (!number || *number < 0 || *number > most)
        return std::nullopt;
    return number;
}

std::optional<std::int32_t> Whole_Figure(const Json& object, const char* key, double most) {
    const auto number = Figure(object, key, most);
    return number ? std::optional(Whole(*number)) : std::nullopt;
}

/// Unix seconds, or a moment as ISO writes it; 0 stands for none.
std::optional<std::int64_t> Moment(const Json& object, const char* key) {
    const std::string text = Text(object, key);
    std::int64_t seconds = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (failure == std::errc() && end == text.data() + text.size()) {
        return seconds > 0 && seconds <= last_moment ? std::optional(seconds) : std::nullopt;
    }
    // Its end says that it is UTC, in one of several ways, or tells parts of a second.
    constexpr std::size_t to_the_second = 19;
    const auto moment = Parse_Date_Time(text.substr(0, to_the_second), "yyyy-MM-dd");
    return moment && text.size() >= to_the_second ? std::optional(Seconds_Of(*moment))
                                                  : std::nullopt;
}

/// Seconds, or "hh:mm:ss".
std::optional<std::int64_t> Duration(const Json& object, const char* key) {
    double seconds = 0;
    for (const std::string& part : Split(Text(object, key), ':')) {
        const auto number = Parse_Number(part);
        if (!number || *number < 0)
            return std::nullopt;
        seconds = seconds * 60 + *number;
    }
    if (seconds <= 0 || seconds > longest_seconds)
        return std::nullopt;
    return static_cast<std::int64_t>(seconds);
}

Simbrief_Plan::Airport Airport_In(const Json& plan, const char* key) {
    const Json& airport = Member(plan, key);
    return {Upper(Text(airport, "icao_code")), Text(airport, "name")};
}

struct Weight_Row {
    const char* part;
    const char* key;
    std::optional<double> Simbrief_Plan::*weight_lbs;
};
constexpr auto weight_rows = std::to_array<Weight_Row>({
    {"fuel", "plan_ramp", &Simbrief_Plan::fuel_ramp_lbs},
    {"fuel", "plan_takeoff", &Simbrief_Plan::fuel_takeoff_lbs},
    {"fuel", "plan_landing", &Simbrief_Plan::fuel_landing_lbs},
    {"fuel", "enroute_burn", &Simbrief_Plan::fuel_burn_lbs},
    {"fuel", "taxi", &Simbrief_Plan::fuel_taxi_lbs},
    {"weights", "est_zfw", &Simbrief_Plan::zero_fuel_weight_lbs},
    {"weights", "est_tow", &Simbrief_Plan::takeoff_weight_lbs},
    {"weights", "est_ldw", &Simbrief_Plan::landing_weight_lbs},
    {"weights", "cargo", &Simbrief_Plan::cargo_lbs},
});

void Read_Weights(const Json& answer, Simbrief_Plan& plan) {
    const std::string unit = Lower(Text(Member(answer, "params"), "units"));
    const bool in_kilograms = unit.starts_with("kg");
    // A weight in a unit that nobody knows is none.
    if (!in_kilograms && !unit.starts_with("lb"))
        return;
    const double pounds = in_kilograms ? 1 / kilograms_per_pound : 1;
    for (const Weight_Row& row : weight_rows) {
        const auto weight = Figure(Member(answer, row.part), row.key, heaviest_lbs / pounds);
        if (weight)
            plan.*row.weight_lbs = *weight * pounds;
    }
}

void Read_Times(const Json& answer, Simbrief_Plan& plan) {
    struct Row {
        const char* scheduled;
        const char* estimated;
    };
    constexpr std::array<Row, block_event_count> rows{{{"sched_out", "est_out"},
                                                       {"sched_off", "est_off"},
                                                       {"sched_on", "est_on"},
                                                       {"sched_in", "est_in"}}};
    const Json& times = Member(answer, "times");
    for (std::size_t event = 0; event < rows.size(); ++event) {
        plan.times.at(event) = {Moment(times, rows.at(event).scheduled),
                                Moment(times, rows.at(event).estimated)};
    }
    plan.block_seconds = Duration(times, "est_block");
    if (!plan.block_seconds)
        plan.block_seconds = Duration(times, "sched_block");
    plan.air_seconds = Duration(times, "est_time_enroute");
    plan.generated = Moment(Member(answer, "params"), "time_generated");
}

std::optional<bool> Rules_Of(const std::string& rules) {
    if (rules.empty())
        return std::nullopt;
    if (instrument_rules.find(Upper(rules)[0]) != std::string_view::npos)
        return true;
    if (visual_rules.find(Upper(rules)[0]) != std::string_view::npos)
        return false;
    return std::nullopt;
}

std::string First_Of(const std::string& first, const std::string& second) {
    return first.empty() ? second : first;
}

void Read_Flight(const Json& answer, Simbrief_Plan& plan) {
    const Json& general = Member(answer, "general");
    const Json& aircraft = Member(answer, "aircraft");
    const Json& atc = Member(answer, "atc");
    const Json& weights = Member(answer, "weights");
    plan.origin = Airport_In(answer, "origin");
    plan.destination = Airport_In(answer, "destination");
    plan.alternate = Airport_In(answer, "alternate");
    plan.route = First_Of(Text(general, "route"), Text(atc, "route"));
    plan.level_ft = Whole_Figure(general, "initial_altitude", highest_ft);
    plan.call_sign = Text(atc, "callsign");
    plan.flight_number = Text(general, "flight_number");
    plan.aircraft_type = First_Of(Text(aircraft, "icao_code"), Text(aircraft, "icaocode"));
    plan.registration = Text(aircraft, "reg");
    plan.is_ifr = Rules_Of(Text(atc, "flight_rules"));
    plan.passengers = Whole_Figure(weights, "pax_count", most_passengers);
    if (!plan.passengers)
        plan.passengers = Whole_Figure(general, "passengers", most_passengers);
}

/// The service's own words for why there is no plan.
[[noreturn]] void Refuse(const std::string& status) {
    throw Run_Error(error_number::other, "SimBrief gives no flight plan: " + status,
                    "SimBrief gives no flight plan and says: \"" + status +
                        "\"\r\n\r\nPlease look at the SimBrief user in Settings, and whether there "
                        "is a plan of that user.");
}

}  // namespace

Simbrief_Plan Read_Simbrief_Plan(std::string_view answer) {
    if (answer.starts_with(byte_order_mark))
        answer.remove_prefix(byte_order_mark.size());
    answer.remove_prefix(std::min(answer.find_first_not_of(blanks), answer.size()));
    if (answer.empty())
        throw Unreadable("is empty");
    if (answer.size() >= most_plan_bytes)
        throw Unreadable("is too large for a flight plan");
    if (answer.starts_with('<'))
        throw Unreadable("is a page, not data");
    const Json whole = Json::parse(Mended_Json(answer), nullptr, false);
    if (!whole.is_object())
        throw Unreadable("cannot be read, or is cut off");
    const std::string status = Text(Member(whole, "fetch"), "status");
    if (!status.empty() && !Equal_No_Case(status, "Success"))
        Refuse(status);
    Simbrief_Plan plan;
    Read_Flight(whole, plan);
    if (plan.origin.icao.empty() && plan.destination.icao.empty())
        throw Unreadable("holds no flight plan");
    Read_Weights(whole, plan);
    Read_Times(whole, plan);
    return plan;
}

std::string Simbrief_Address(std::string_view path, std::string_view user) {
    const std::string_view name = Trimmed_View(user);
    const bool is_number = !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
        return c >= '0' && c <= '9';
    });
    // The service has the pilot's name in the encoding of the web.
    return fmt::format("{}{}{}={}&json=v2", path,
                       path.find('?') == std::string_view::npos ? '?' : '&',
                       is_number ? "userid" : "username", Encode_URL(To_Utf8(name)));
}

Simbrief_Plan Fetch_Simbrief_Plan(Services& services, std::string_view user,
                                  const Http_Options& options) {
    if (Trimmed_View(user).empty()) {
        throw Run_Error(error_number::other, "No SimBrief user is named",
                        "The settings hold no SimBrief user.  Please enter your name or number "
                        "there under \"ACARS\".");
    }
    clsIniFile source(services);
    source.Set_INI_FilePath(Find_Path(services, services.program_directory, "bin\\plans.cfg"));
    source.Get_URLs("SIMBRIEF");
    if (source.URL().empty()) {
        throw Http_Error(missing_url, "SIMBRIEF",
                         "bin/plans.cfg does not say where SimBrief is.  Please put a section "
                         "[SIMBRIEF] with its URL and DATA into it.");
    }
    Http_Options limits = options;
    limits.most_bytes = std::min(limits.most_bytes, most_plan_bytes);
    Http_Client client(services.desktop, std::move(limits));
    return Read_Simbrief_Plan(client.Request(
        {Http_Verb::get, source.URL(), Simbrief_Address(source.URL_Data(), user), {}}));
}

}  // namespace norvane
