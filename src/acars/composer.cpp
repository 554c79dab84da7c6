#include "acars/composer.h"

#include <fmt/format.h>

#include <array>

#include "acars/engine_context.h"
#include "acars/sampler.h"
#include "common/date_time.h"
#include "common/number.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"

namespace norvane {

namespace {

/// By message type.
constexpr std::array<std::string_view, message_type_count> labels{
    "QA", "QB", "QC", "QD", "QM", "WX", "PR", "AR", "CM", "FC", "FD"};

std::string Location(const Flight_State& state) {
    constexpr int decimals = 5;
    return Format_Fixed(state.sample.position.latitude, decimals) + " " +
           Format_Fixed(state.sample.position.longitude, decimals);
}

std::string Block_Body(const Engine_Context& engine, Block_Event event) {
    const Flight_State& state = engine.state;
    const Block_Figures& figures = state.At(event);
    const std::string& fuel = Fuel_In_Unit(figures, engine.settings.ACARS_Fuel());
    const std::string position = " /POS " + Location(state);
    switch (event) {
        case Block_Event::out:
            return fmt::format("OUT {}Z /ZFW {} /FUEL {} /TAW {}", figures.time_utc,
                               state.zero_fuel_weight, fuel, figures.weight) +
                   position;
        case Block_Event::off:
            return fmt::format("OFF {}Z /FUEL {} /TOW {}\r\n/{}", figures.time_utc, fuel,
                               figures.weight, state.engines_at_off) +
                   position;
        case Block_Event::on:
            return fmt::format("ON {}Z /FUEL {} /LDW {}", figures.time_utc, fuel, figures.weight) +
                   position;
        case Block_Event::in:
            return fmt::format("IN {}Z /FUEL {} /RAW {}", figures.time_utc, fuel, figures.weight) +
                   position;
    }
    return {};
}

std::string Times_Body(const Flight_State& state) {
    return fmt::format("BLOCK TIME {} [{}] /FUEL {}\r\nFLIGHT TIME {} [ {}] /FUEL {}",
                       state.block_time, state.block_time_hhmm, state.fuel_used_block,
                       state.flight_time, state.flight_time_hhmm, state.fuel_used_flight);
}

std::string Position_Body(const Flight_State& state) {
    const Position_Sample& sample = state.sample;
    return "POS " + Location(state) +
           fmt::format("\r\n/ALT {}\r\n/HDG {}\r\n/WND {}{} /TAT {}", sample.altitude_ft,
                       sample.heading, sample.wind_direction, sample.wind_speed,
                       sample.temperature_c) +
           fmt::format("\r\n/GS {} /TAS {} /IAS {}\r\n/FUEL {}\r\n/ENG {}", sample.ground_speed_kt,
                       sample.true_airspeed_kt, sample.indicated_airspeed_kt, sample.fuel_lbs,
                       sample.engines);
}

std::string Body(const Engine_Context& engine, Message_Type type, std::string_view text) {
    switch (type) {
        case Message_Type::out:
            return Block_Body(engine, Block_Event::out);
        case Message_Type::off:
            return Block_Body(engine, Block_Event::off);
        case Message_Type::on:
            return Block_Body(engine, Block_Event::on);
        case Message_Type::in:
            return Block_Body(engine, Block_Event::in);
        case Message_Type::times:
            return Times_Body(engine.state);
        case Message_Type::position:
            return Position_Body(engine.state);
        case Message_Type::altitude:
            return fmt::format("ALT {}\r\n /POS ", text) + Location(engine.state);
        case Message_Type::connected:
            return "Flight Connected";
        case Message_Type::disconnected:
            return "Flight Disconnected";
        case Message_Type::weather:
        case Message_Type::comment:
            break;
    }
    return std::string(text);
}

/// "[2026-03-14 15:09Z]"; a date text that is no date is shown as it stands.
std::string Date_Line(const Engine_Context& engine) {
    const std::string& time = engine.state.message_time;
    const std::string& text = engine.state.message_date;
    const auto moment = Parse_Date_Time(text, engine.services.regional.short_date);
    const std::string hour = time.substr(0, 2);
    const std::string minute = time.size() < 2 ? time : time.substr(time.size() - 2);
    return fmt::format("[{} {}:{}Z]\r\n", moment ? Format_Iso_Date(moment->date) : text, hour,
                       minute);
}

std::string Aircraft_Line(const Engine_Context& engine) {
    const Flight_State& state = engine.state;
    const std::string& type = state.aircraft_type.empty() ? state.type_name : state.aircraft_type;
    return fmt::format("ACARS Mode: C Aircraft Reg: {} [{} {}]\r\n", state.atc_tail, type,
                       engine.settings.Airline_ICAO());
}

/// A number that the pilot typed, behind the airline's code unless it was typed with it.
std::string With_Code(const std::string& code, const std::string& typed) {
    const bool has_code = Equal_No_Case(typed.substr(0, code.size()), code);
    return has_code ? typed : code + typed;
}

std::string Flight_Identifier(const Engine_Context& engine) {
    const Flight_State& state = engine.state;
    const clsAppSettings& settings = engine.settings;
    const bool prefix = settings.Airline_IATAPrefix();
    if (!prefix && settings.Airline_ICAO().empty())
        return state.flight_number.empty() ? state.atc_flight_number : state.flight_number;
    const std::string& code = prefix ? settings.Airline_IATA() : settings.Airline_ICAO();
    if (state.atc_flight_number.empty() && !state.flight_number.empty())
        return With_Code(code, state.flight_number);
    // The number of the simulator carries the prefix since it was read.
    return prefix ? state.atc_flight_number : code + state.atc_flight_number;
}

/// Block reports as they are; a position report in three pieces, the engines last. Other messages
/// are not shown in the simulator.
void Hold_Display_Text(Engine_Context& engine, Message_Type type, const std::string& flight_part,
                       const std::string& body) {
    if (type <= Message_Type::times) {
        engine.output.display_texts.push_back(flight_part + body);
    } else if (type == Message_Type::position) {
        const auto engines = std::min(body.find("ENG"), body.size());
        engine.output.display_texts.push_back(flight_part + "|" + body.substr(0, engines) + "|" +
                                              body.substr(engines));
    }
}

}  // namespace

void Compose_Message(Engine_Context& engine, Message_Type type, std::string_view text) {
    Sample_Message_Clock(engine);
    Message_Counts& counts = engine.state.counts;
    const auto type_number = static_cast<std::size_t>(type);
    ++counts.messages;
    ++counts.blocks.at(type_number);
    if (type == Message_Type::connected || type == Message_Type::disconnected)
        engine.state.is_connected = type == Message_Type::connected;
    const std::string body = Body(engine, type, text);
    const std::string label_line =
        fmt::format("Msg Label: {} Block ID: {:02} Msg No: M{:02}A\r\n", labels.at(type_number),
                    counts.blocks.at(type_number), counts.messages);
    const std::string flight_part =
        fmt::format("Flight ID: {}\r\nMessage:\r\n", Flight_Identifier(engine));
    engine.output.Post(engine.events.ACARSMessage, type,
                       Date_Line(engine) + Aircraft_Line(engine) + label_line + flight_part + body);
    if (engine.settings.OPT_ACARS_To_FS())
        Hold_Display_Text(engine, type, flight_part, body);
}

}  // namespace norvane
