#pragma once
// Why a block event was recorded when it was: the rule that fired, in which sampling step, what the
// step before had read and what this one read, and the settings that mattered. Handed out by the
// engine with the event, stored with the flight and kept in its recording; nothing is concluded
// afterwards. A plain value with one text form.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

/// In the order of a flight.
enum class Block_Rule {
    none,
    brake_released,     // OUT
    off_ground,         // OFF
    on_ground,          // ON, after the aircraft had climbed
    brake_set,          // IN
    engines_stopped,    // IN
    brake_and_engines,  // IN
    helicopter          // IN, where the brake does not count
};
/// In words, as "the parking brake was released".
[[nodiscard]] std::string_view Words_Of(Block_Rule rule);

/// A variable or a setting by its name, as both were read.
struct Evidence_Value {
    std::string name;
    /// Of the step before; empty when that one did not read it, and for settings.
    std::string before;
    std::string now;
    bool operator==(const Evidence_Value&) const = default;
};

struct Block_Evidence {
    Block_Rule rule = Block_Rule::none;
    /// Sampling steps since tracking began or was taken up again, the event's own included.
    std::int32_t step = 0;
    std::vector<Evidence_Value> values;
    std::vector<Evidence_Value> settings;
    bool operator==(const Block_Evidence&) const = default;
};

/// What decides about the flight's phase, as one step read it; empty: it did not need it.
struct Decisive_Values {
    std::optional<std::int32_t> parking_brake;
    std::optional<std::int32_t> on_ground;
    std::optional<std::int32_t> altitude_ft;
    std::array<std::optional<std::int32_t>, 4> engine_runs;
};
/// By name, those that `now` has.
[[nodiscard]] std::vector<Evidence_Value> Named_Values(const Decisive_Values& before,
                                                       const Decisive_Values& now);

/// One line: fields divided by "|", empty without evidence.
[[nodiscard]] std::string Evidence_Text(const Block_Evidence& evidence);
/// None when the text is nothing that `Evidence_Text` makes.
[[nodiscard]] std::optional<Block_Evidence> Parse_Evidence(std::string_view text);

}  // namespace norvane
