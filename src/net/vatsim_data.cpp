#include "net/vatsim_data.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "common/code_page.h"
#include "common/text.h"

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
/// How deep a client's entry lies: in a list of the data's outermost object.
constexpr int entry_depth = 2;
constexpr int entries_between_events = 50;

std::string Line_In_Text(const std::string& data, std::string_view pilot_id) {
    const std::size_t found = Find_No_Case(data, pilot_id);
    if (found == std::string::npos)
        return {};
    const std::size_t before = std::string_view(data).substr(0, found).rfind(cr_lf);
    const std::size_t start = before == std::string::npos ? 0 : before + cr_lf.size();
    const std::size_t end = data.find(cr_lf, found);
    if (end == std::string::npos)
        return {};
    return Trim(data.substr(start, end + 1 - start));
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

std::string Line_In_Json(const std::string& data, std::string_view pilot_id,
                         const std::function<void()>& between) {
    int entries = 0;
    // Thousands of entries pass by; only the pilot's own are kept.
    const auto keep = [&](int depth, Json::parse_event_t event, Json& value) {
        if (event != Json::parse_event_t::object_end || depth != entry_depth)
            return true;
        if (++entries % entries_between_events == 0)
            between();
        return Is_Entry_Of(value, pilot_id);
    };
    const Json root = Json::parse(data, keep, false);
    if (!root.is_object())
        return {};
    for (const char* list : {"pilots", "prefiles"}) {
        const auto found = root.find(list);
        if (found == root.end() || !found->is_array())
            continue;
        for (const Json& entry : *found) {
            if (!entry.is_object())
                continue;
            std::string line = Line_Of(entry);
            if (!line.empty())
                return line;
        }
    }
    return {};
}

}  // namespace

std::string Find_VATSIM_Line(const std::string& data, std::string_view pilot_id,
                             const std::function<void()>& between) {
    if (data.starts_with('{'))
        return Line_In_Json(data, Trimmed_View(pilot_id), between);
    return Line_In_Text(data, pilot_id);
}

}  // namespace norvane
