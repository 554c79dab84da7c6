#include "net/vatsim_data.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "common/code_page.h"
#include "common/run_error.h"
#include "common/text.h"
#include "net/json_entries.h"

namespace norvane {

namespace {

using Json = nlohmann::json;

/// Where a value of the filed plan stands in the line.
struct Plan_Field {
    std::size_t place;
    const char* key;
};

constexpr std::array<Plan_Field, 5> plan_fields{{
    {vatsim_place::departure, "departure"},
    {vatsim_place::altitude, "altitude"},
    {vatsim_place::arrival, "arrival"},
    {vatsim_place::rules, "flight_rules"},
    {vatsim_place::route, "route"},
}};
constexpr std::size_t line_fields = vatsim_place::route + 1;
constexpr int entries_between_events = 50;

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t\r\n";

Run_Error Unreadable(std::string_view why) {
    return {error_number::other, "The network's data " + std::string(why)};
}

Run_Error Cut_Off() {
    return Unreadable("is cut off before its end, and the pilot is not in what came");
}

std::string Line_In_Text(std::string_view data, std::string_view pilot_id) {
    const std::size_t found = Find_No_Case(data, pilot_id);
    if (found == std::string_view::npos)
        return {};
    const std::size_t start = data.substr(0, found).rfind('\n') + 1;
    const std::size_t end = data.find('\n', found);
    if (end == std::string_view::npos)
        throw Cut_Off();
    std::string line = Trim(data.substr(start, end - start));
    if (!line.ends_with('\r'))
        line += '\r';
    return line;
}

/// A text or a number of the object, fit for a field of the line.
std::optional<std::string> Value(const Json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || !(found->is_string() || found->is_number()))
        return std::nullopt;
    const std::string text =
        found->is_string() ? From_Utf8(found->get_ref<const std::string&>()) : found->dump();
    return Replace_All(Clean_Field(text, Field_Lines::one), ":", " ");
}

bool Is_Entry_Of(const Json& entry, std::string_view pilot_id) {
    const auto id = Value(entry, "cid");
    return id && Trimmed_View(*id) == pilot_id;
}

/// The line of an entry; empty while its plan is not complete.
std::string Line_Of(const Json& entry) {
    const auto plan = entry.find("flight_plan");
    if (plan == entry.end() || !plan->is_object())
        return {};
    const auto callsign = Value(entry, "callsign");
    auto aircraft = Value(*plan, "aircraft_short");
    if (!aircraft || aircraft->empty())
        aircraft = Value(*plan, "aircraft");
    if (!callsign || !aircraft)
        return {};
    std::vector<std::string> fields(line_fields);
    fields[vatsim_place::callsign] = *callsign;
    fields[vatsim_place::pilot_id] = Value(entry, "cid").value_or("");
    fields[vatsim_place::aircraft] = *aircraft;
    for (const Plan_Field& field : plan_fields) {
        const auto value = Value(*plan, field.key);
        if (!value)
            return {};
        fields.at(field.place) = *value;
    }
    // A field of its own, so that no value ends with it.
    fields.emplace_back("\r");
    return Join(fields, ":");
}

std::string Line_In_Json(std::string_view data, std::string_view pilot_id,
                         const std::function<void()>& between) {
    int passed = 0;
    std::string filed;
    Json_Entries entries(data);
    while (const auto found = entries.Next()) {
        if (++passed % entries_between_events == 0)
            between();
        const bool connected = found->list == "pilots";
        if ((!connected && found->list != "prefiles") || !Contains(found->text, pilot_id))
            continue;
        const Json entry = Json::parse(Mended_Json(found->text), nullptr, false);
        if (!entry.is_object() || !Is_Entry_Of(entry, pilot_id))
            continue;
        std::string line = Line_Of(entry);
        if (connected && !line.empty())
            return line;
        if (filed.empty())
            filed = std::move(line);
    }
    if (filed.empty() && !entries.Is_Whole())
        throw Cut_Off();
    if (filed.empty() && !Contains(data, "\"pilots\""))
        throw Unreadable("holds no list of pilots");
    return filed;
}

}  // namespace

std::string Find_VATSIM_Line(std::string_view data, std::string_view pilot_id,
                             const std::function<void()>& between) {
    if (data.starts_with(byte_order_mark))
        data.remove_prefix(byte_order_mark.size());
    data.remove_prefix(std::min(data.find_first_not_of(blanks), data.size()));
    if (data.empty())
        throw Unreadable("is empty");
    if (data.starts_with('<'))
        throw Unreadable("is a web page, not data");
    if (data.starts_with('{'))
        return Line_In_Json(data, Trimmed_View(pilot_id), between);
    return Line_In_Text(data, pilot_id);
}

}  // namespace norvane
