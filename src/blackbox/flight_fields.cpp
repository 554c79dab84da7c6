#include "blackbox/flight_fields.h"

#include <algorithm>
#include <array>

namespace norvane {

namespace {

constexpr std::array<std::string_view, 5> phase_names{"before_out", "out", "off", "on", "in"};
constexpr std::array<std::string_view, block_event_count> event_names{"OUT", "OFF", "ON", "IN"};
constexpr std::array<std::string_view, 6> incident_names{"pause",       "gap",      "taken_up",
                                                         "rate_change", "teleport", "replay"};

template <class Names, class Value>
void Take(const Names& names, std::string_view name, Value& value) {
    const auto found = std::find(names.begin(), names.end(), name);
    if (found != names.end())
        value = static_cast<Value>(found - names.begin());
}

}  // namespace

std::string_view Name_Of(Flight_Phase phase) {
    return phase_names.at(static_cast<std::size_t>(phase));
}

std::string_view Name_Of(Block_Event event) {
    return event_names.at(static_cast<std::size_t>(event));
}

std::string_view Name_Of(Incident_Kind kind) {
    return incident_names.at(static_cast<std::size_t>(kind));
}

void Take_Name(std::string_view name, Flight_Phase& phase) {
    Take(phase_names, name, phase);
}

void Take_Name(std::string_view name, Block_Event& event) {
    Take(event_names, name, event);
}

void Take_Name(std::string_view name, Incident_Kind& kind) {
    Take(incident_names, name, kind);
}

}  // namespace norvane
