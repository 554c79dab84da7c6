#include "blackbox/flight_json.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "blackbox/flight_fields.h"
#include "blackbox/flight_track.h"
#include "common/code_page.h"

namespace norvane {

namespace {

using Json = nlohmann::ordered_json;

constexpr int json_version = 2;

Json Json_Of(const std::vector<Evidence_Value>& values) {
    Json list = Json::array();
    for (const Evidence_Value& value : values) {
        list.push_back({{"name", To_Utf8(value.name)},
                        {"before", To_Utf8(value.before)},
                        {"now", To_Utf8(value.now)}});
    }
    return list;
}

struct Member_Writer {
    void operator()(const char* name, const std::string& text) { object[name] = To_Utf8(text); }
    void operator()(const char* name, double value) { object[name] = value; }
    void operator()(const char* name, int value) { object[name] = value; }
    void operator()(const char* name, bool value) { object[name] = value; }
    void operator()(const char* name, const std::optional<double>& value) {
        object[name] = value ? Json(*value) : Json();
    }
    void operator()(const char* name, const Block_Evidence& evidence) {
        if (evidence.rule == Block_Rule::none) {
            object[name] = Json();
            return;
        }
        object[name] = {{"rule", Words_Of(evidence.rule)},
                        {"step", evidence.step},
                        {"values", Json_Of(evidence.values)},
                        {"settings", Json_Of(evidence.settings)}};
    }
    void operator()(const char* name, const std::vector<std::string>& lines) {
        Json& list = object[name] = Json::array();
        for (const std::string& line : lines)
            list.push_back(To_Utf8(line));
    }
    template <class Value>
    requires std::is_enum_v<Value>
    void operator()(const char* name, Value value) { object[name] = Name_Of(value); }

    Json& object;
};

template <class Part>
Json Object_Of(const Part& part) {
    Json object = Json::object();
    Each_Field(part, Member_Writer{object});
    return object;
}

template <class Part>
Json List_Of(const std::vector<Part>& parts) {
    Json list = Json::array();
    for (const Part& part : parts)
        list.push_back(Object_Of(part));
    return list;
}

Json Whole_Json(const Flight_Summary& flight) {
    Json object{{"version", json_version}, {"id", To_Utf8(flight.id)}};
    Each_Field(flight, Member_Writer{object});
    object["settings"] = Json::object();
    for (const auto& [name, value] : flight.settings)
        object["settings"][To_Utf8(name)] = To_Utf8(value);
    object["events"] = List_Of(flight.events);
    object["landings"] = List_Of(flight.landings);
    for (std::size_t i = 0; i < flight.landings.size(); ++i)
        object["landings"][i]["touches"] = List_Of(flight.landings[i].touches);
    object["phases"] = List_Of(flight.phases);
    object["incidents"] = List_Of(flight.incidents);
    object["planned"] = List_Of(flight.planned);
    return object;
}

std::string Compared_Text(const Json& value) {
    if (value.is_number_float())
        return fmt::format("{:.9g}", value.get<double>());
    return value.is_string() ? From_Utf8(value.get<std::string>()) : value.dump();
}

std::map<std::string, std::string> Compared_Texts(const Flight_Summary& flight) {
    std::map<std::string, std::string> texts;
    const Json flat = Whole_Json(flight).flatten();
    for (const auto& [path, value] : flat.items())
        texts[path.substr(1)] = Compared_Text(value);
    return texts;
}

void Compare_Tracks(const std::vector<Flight_Point>& stored,
                    const std::vector<Flight_Point>& derived,
                    std::vector<Flight_Difference>& differences) {
    if (Pack_Track(stored) == Pack_Track(derived))
        return;
    // What the points before had in common does not say which point differs.
    std::size_t same = 0;
    while (same < std::min(stored.size(), derived.size()) &&
           Pack_Track({stored[same]}) == Pack_Track({derived[same]}))
        ++same;
    const auto text = [&](const std::vector<Flight_Point>& track) {
        return same < track.size() ? fmt::format("{} points, another one from {:.3f} s",
                                                 track.size(), track[same].seconds)
                                   : fmt::format("{} points", track.size());
    };
    differences.push_back({"track", text(stored), text(derived)});
}

}  // namespace

std::string Flight_Json(const Flight_Summary& flight) {
    return Whole_Json(flight).dump(2);
}

std::vector<Flight_Difference> Differences(const Flight_Summary& stored,
                                           const Flight_Summary& derived) {
    auto before = Compared_Texts(stored);
    auto now = Compared_Texts(derived);
    std::set<std::string> paths;
    for (const auto* texts : {&before, &now}) {
        for (const auto& [path, text] : *texts)
            paths.insert(path);
    }
    std::vector<Flight_Difference> differences;
    for (const std::string& path : paths) {
        if (before[path] != now[path])
            differences.push_back({From_Utf8(path), before[path], now[path]});
    }
    Compare_Tracks(stored.track, derived.track, differences);
    return differences;
}

}  // namespace norvane
