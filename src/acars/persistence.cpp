#include "acars/persistence.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <string>
#include <string_view>
#include <variant>

#include "acars/engine_context.h"
#include "common/log_error.h"
#include "common/number.h"
#include "common/services.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr std::string_view section = "ACARS";
constexpr std::string_view phase_key = "45";
constexpr std::string_view last_latitude_key = "LastLatitude";
constexpr std::string_view last_longitude_key = "LastLongitude";

/// A field of the state, whatever it holds.
using Field =
    std::variant<std::string*, std::int32_t*, double*, bool*, Message_Counts*, Block_Evidence*>;

struct Stored_Field {
    std::string_view key;
    Field (*of)(Flight_State&);
};

template <Block_Event event, std::string Block_Figures::*member>
Field Figure(Flight_State& state) {
    return &(state.At(event).*member);
}

template <Block_Event event>
Field Evidence(Flight_State& state) {
    return &state.evidence.at(static_cast<std::size_t>(event));
}

template <Block_Event event>
constexpr auto time_utc = Figure<event, &Block_Figures::time_utc>;
template <Block_Event event>
constexpr auto time_local = Figure<event, &Block_Figures::time_local>;
template <Block_Event event>
constexpr auto fuel_lbs = Figure<event, &Block_Figures::fuel_lbs>;
template <Block_Event event>
constexpr auto fuel_kg = Figure<event, &Block_Figures::fuel_kg>;
template <Block_Event event>
constexpr auto fuel_gal = Figure<event, &Block_Figures::fuel_gal>;

/// The flight as the store has always held it, after the phase.
constexpr auto flight_fields = std::to_array<Stored_Field>({
    {"46", time_utc<Block_Event::out>},
    {"47", time_utc<Block_Event::off>},
    {"48", time_utc<Block_Event::on>},
    {"49", time_utc<Block_Event::in>},
    {"50", time_local<Block_Event::out>},
    {"51", time_local<Block_Event::off>},
    {"52", time_local<Block_Event::on>},
    {"53", time_local<Block_Event::in>},
    {"54", fuel_lbs<Block_Event::out>},
    {"55", fuel_lbs<Block_Event::off>},
    {"56", fuel_lbs<Block_Event::on>},
    {"57", fuel_lbs<Block_Event::in>},
    {"58", fuel_kg<Block_Event::out>},
    {"59", fuel_kg<Block_Event::off>},
    {"60", fuel_kg<Block_Event::on>},
    {"61", fuel_kg<Block_Event::in>},
    {"62", fuel_gal<Block_Event::out>},
    {"63", fuel_gal<Block_Event::off>},
    {"64", fuel_gal<Block_Event::on>},
    {"65", fuel_gal<Block_Event::in>},
    {"66", [](Flight_State& state) -> Field { return &state.departure.position.latitude; }},
    {"67", [](Flight_State& state) -> Field { return &state.departure.position.longitude; }},
});

/// What a flight taken up again needs besides, so that its figures come out as if it had never
/// been interrupted. Each may be absent.
constexpr auto tracking_fields = std::to_array<Stored_Field>({
    {"FlightDate", [](Flight_State& state) -> Field { return &state.flight_date; }},
    {"DepartureICAO", [](Flight_State& state) -> Field { return &state.departure.icao; }},
    {"DepartureName", [](Flight_State& state) -> Field { return &state.departure.name; }},
    {"ArrivalKnown", [](Flight_State& state) -> Field { return &state.arrival.known; }},
    {"ArrivalICAO", [](Flight_State& state) -> Field { return &state.arrival.icao; }},
    {"ArrivalName", [](Flight_State& state) -> Field { return &state.arrival.name; }},
    {"ArrivalLatitude",
     [](Flight_State& state) -> Field { return &state.arrival.position.latitude; }},
    {"ArrivalLongitude",
     [](Flight_State& state) -> Field { return &state.arrival.position.longitude; }},
    {"StartAltitude", [](Flight_State& state) -> Field { return &state.start_altitude_ft; }},
    {"Climbed", [](Flight_State& state) -> Field { return &state.climbed; }},
    {"VerticalSpeed", [](Flight_State& state) -> Field { return &state.level.vertical_speed; }},
    {"Level", [](Flight_State& state) -> Field { return &state.level.level; }},
    {"LevelAltitude", [](Flight_State& state) -> Field { return &state.level.level_altitude_ft; }},
    {"HighestLevel", [](Flight_State& state) -> Field { return &state.level.highest_level_ft; }},
    {"TaxiOut", [](Flight_State& state) -> Field { return &state.taxi.fastest_out_kt; }},
    {"TaxiIn", [](Flight_State& state) -> Field { return &state.taxi.fastest_in_kt; }},
    {last_latitude_key, [](Flight_State& state) -> Field { return &state.last_position.latitude; }},
    {last_longitude_key,
     [](Flight_State& state) -> Field { return &state.last_position.longitude; }},
    {"TaxiInArmed", [](Flight_State& state) -> Field { return &state.taxi.in_armed; }},
    {"TouchdownAltitude",
     [](Flight_State& state) -> Field { return &state.touchdown.altitude_ft; }},
    {"StepsOffGround",
     [](Flight_State& state) -> Field { return &state.touchdown.steps_off_ground; }},
    {"MessageCounts", [](Flight_State& state) -> Field { return &state.counts; }},
    {"EvidenceOUT", Evidence<Block_Event::out>},
    {"EvidenceOFF", Evidence<Block_Event::off>},
    {"EvidenceON", Evidence<Block_Event::on>},
    {"EvidenceIN", Evidence<Block_Event::in>},
});

std::string Text_Of(const std::string* value) {
    return *value;
}
std::string Text_Of(const std::int32_t* value) {
    return Format_Whole(*value);
}
std::string Text_Of(const double* value) {
    return Format_Exact(*value);
}
std::string Text_Of(const bool* value) {
    return *value ? "True" : "False";
}

/// The count over all types, then that of each.
std::string Text_Of(const Message_Counts* value) {
    return fmt::format("{} {}", value->messages, fmt::join(value->blocks, " "));
}

std::string Text_Of(const Block_Evidence* value) {
    return Evidence_Text(*value);
}

/// Each takes a stored text; false when it is nothing of the kind.
bool Take(std::string* value, const std::string& text) {
    *value = text;
    return true;
}
bool Take(std::int32_t* value, const std::string& text) {
    const auto number = Parse_Int32(text);
    *value = number.value_or(*value);
    return number.has_value();
}
bool Take(double* value, const std::string& text) {
    const auto number = Parse_Number(text);
    *value = number.value_or(*value);
    return number.has_value();
}
bool Take(bool* value, const std::string& text) {
    *value = text == "True";
    return *value || text == "False";
}

bool Take(Message_Counts* value, const std::string& text) {
    const auto numbers = Split(text, ' ');
    Message_Counts counts;
    if (numbers.size() != counts.blocks.size() + 1)
        return false;
    bool taken = Take(&counts.messages, numbers[0]);
    for (std::size_t type = 0; type < counts.blocks.size(); ++type)
        taken = taken && Take(&counts.blocks.at(type), numbers[type + 1]);
    if (taken)
        *value = counts;
    return taken;
}

bool Take(Block_Evidence* value, const std::string& text) {
    *value = Parse_Evidence(text).value_or(Block_Evidence());
    return text.empty() || value->rule != Block_Rule::none;
}

void Write_Field(Engine_Context& engine, const Stored_Field& field) {
    const std::string text =
        std::visit([](auto* value) { return Text_Of(value); }, field.of(engine.state));
    engine.services.settings.Set(section, field.key, text);
}

void Take_Field(Engine_Context& engine, const Stored_Field& field, const std::string& text) {
    const bool taken =
        std::visit([&](auto* value) { return Take(value, text); }, field.of(engine.state));
    if (!taken) {
        throw Run_Error(error_number::type_mismatch,
                        fmt::format("Stored value \"{}\" cannot be read: \"{}\"", field.key, text));
    }
}

void Take_Phase(Flight_State& state, const std::string& text) {
    const auto number = Parse_Number(text);
    constexpr auto last = static_cast<std::int32_t>(Flight_Phase::in);
    if (!number || *number < 0 || *number > last)
        return;
    state.phase = static_cast<Flight_Phase>(static_cast<std::int32_t>(Round_Half_Even(*number)));
}

}  // namespace

void Persist(Engine_Context& engine, Show show) {
    Flight_State& state = engine.state;
    if (state.At(Block_Event::off).time_utc.empty())
        return;
    // What stands in the store from the gate on is the panel's to keep or to delete.
    if (!state.At(Block_Event::in).time_utc.empty() && !engine.output.at_gate)
        return;
    Guarded(engine.services, "clsACARS.Persist()", show, [&] {
        Settings_Batch batch(engine.services.settings);
        engine.services.settings.Set(section, phase_key,
                                     Format_Whole(static_cast<std::int32_t>(state.phase)));
        for (const Stored_Field& field : flight_fields)
            Write_Field(engine, field);
        for (const Stored_Field& field : tracking_fields)
            Write_Field(engine, field);
        batch.Commit();
    });
}

void Restore(Engine_Context& engine) {
    Flight_State& state = engine.state;
    Guarded(engine.services, "clsACARS.Restore()", Show::box, [&] {
        Settings_Store& store = engine.services.settings;
        Take_Phase(state, store.Get(section, phase_key));
        // Where the store does not say otherwise, an aircraft that was flying had climbed.
        state.climbed = state.phase >= Flight_Phase::off;
        state.awaits_place =
            state.phase == Flight_Phase::on && store.Find(section, last_latitude_key).has_value();
        for (const Stored_Field& field : flight_fields)
            Take_Field(engine, field, store.Get(section, field.key));
        for (const Stored_Field& field : tracking_fields) {
            if (const auto text = store.Find(section, field.key))
                Take_Field(engine, field, *text);
        }
    });
    for (Block_Figures& figures : state.block)
        figures.captured = !figures.time_utc.empty();
}

Stored_Flight Read_Stored_Flight(Services& services) {
    Settings_Store& store = services.settings;
    Flight_State state;
    Take_Phase(state, store.Get(section, phase_key));
    Stored_Flight stored{state.phase, std::nullopt};
    const auto latitude = Parse_Number(store.Get(section, last_latitude_key));
    const auto longitude = Parse_Number(store.Get(section, last_longitude_key));
    if (latitude && longitude)
        stored.last_position = Position{*latitude, *longitude};
    return stored;
}

}  // namespace norvane
