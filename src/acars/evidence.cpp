#include "acars/evidence.h"

#include <algorithm>
#include <array>

#include "common/number.h"
#include "common/text.h"

namespace norvane {

namespace {

struct Rule_Row {
    std::string_view name;
    std::string_view words;
};

/// In the order of `Block_Rule`.
constexpr auto rules = std::to_array<Rule_Row>({
    {"", ""},
    {"brake-released", "the parking brake was released"},
    {"off-ground", "the aircraft left the ground"},
    {"on-ground", "the aircraft touched the ground after it had climbed"},
    {"brake-set", "the parking brake was set"},
    {"engines-stopped", "the last engine stopped"},
    {"brake-and-engines", "the parking brake was set and no engine ran"},
    {"helicopter", "the helicopter had landed"},
});

const Rule_Row& Row_Of(Block_Rule rule) {
    return rules.at(static_cast<std::size_t>(rule));
}

constexpr char divider = '|';
constexpr std::string_view value_mark = "v";
constexpr std::string_view setting_mark = "s";
constexpr std::size_t fields_of_a_value = 4;

void Add_Values(std::string& text, std::string_view mark,
                const std::vector<Evidence_Value>& values) {
    for (const Evidence_Value& value : values) {
        for (const std::string_view field :
             {mark, std::string_view(value.name), std::string_view(value.before),
              std::string_view(value.now)}) {
            text += divider;
            text += field;
        }
    }
}

}  // namespace

std::string_view Words_Of(Block_Rule rule) {
    return Row_Of(rule).words;
}

std::vector<Evidence_Value> Named_Values(const Decisive_Values& before,
                                         const Decisive_Values& now) {
    std::vector<Evidence_Value> values;
    const auto add = [&](const std::string& name, const std::optional<std::int32_t>& was,
                         const std::optional<std::int32_t>& is) {
        if (is)
            values.push_back({name, was ? Format_Whole(*was) : std::string(), Format_Whole(*is)});
    };
    add("parking brake", before.parking_brake, now.parking_brake);
    add("on ground", before.on_ground, now.on_ground);
    add("altitude ft", before.altitude_ft, now.altitude_ft);
    for (std::size_t i = 0; i < now.engine_runs.size(); ++i) {
        add("engine " + std::to_string(i + 1) + " runs", before.engine_runs.at(i),
            now.engine_runs.at(i));
    }
    return values;
}

std::string Evidence_Text(const Block_Evidence& evidence) {
    if (evidence.rule == Block_Rule::none)
        return {};
    std::string text(Row_Of(evidence.rule).name);
    text += divider + Format_Whole(evidence.step);
    Add_Values(text, value_mark, evidence.values);
    Add_Values(text, setting_mark, evidence.settings);
    return text;
}

std::optional<Block_Evidence> Parse_Evidence(std::string_view text) {
    const auto fields = Split(text, divider);
    if (fields.size() < 2 || (fields.size() - 2) % fields_of_a_value != 0 || fields[0].empty())
        return std::nullopt;
    const auto rule = std::find_if(rules.begin(), rules.end(),
                                   [&](const Rule_Row& row) { return row.name == fields[0]; });
    const auto step = Parse_Int32(fields[1]);
    if (rule == rules.end() || !step)
        return std::nullopt;
    Block_Evidence evidence{static_cast<Block_Rule>(rule - rules.begin()), *step, {}, {}};
    for (std::size_t i = 2; i < fields.size(); i += fields_of_a_value) {
        Evidence_Value value{fields[i + 1], fields[i + 2], fields[i + 3]};
        if (fields[i] == value_mark)
            evidence.values.push_back(std::move(value));
        else if (fields[i] == setting_mark)
            evidence.settings.push_back(std::move(value));
        else
            return std::nullopt;
    }
    return evidence;
}

}  // namespace norvane
