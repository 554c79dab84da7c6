#include "acars/captures.h"

#include <array>

#include "acars/airports.h"
#include "acars/composer.h"
#include "acars/engine_context.h"
#include "acars/engine_texts.h"
#include "acars/flight_figures.h"
#include "acars/sampler.h"
#include "common/flight_level.h"
#include "common/number.h"
#include "config/cls_app_settings.h"
#include "config/setting_codes.h"

namespace norvane {

namespace {

/// The events that carry an event's time, fuel and weight, by block event.
struct Block_Signals {
    ACARS_Events::Figure ACARS_Events::*time;
    ACARS_Events::Figure ACARS_Events::*fuel;
    ACARS_Events::Figure ACARS_Events::*weight;
};
constexpr std::array<Block_Signals, block_event_count> block_signals{{
    {&ACARS_Events::FlightOUT, &ACARS_Events::FuelOUT, &ACARS_Events::WeightOUT},
    {&ACARS_Events::FlightOFF, &ACARS_Events::FuelOFF, &ACARS_Events::WeightOFF},
    {&ACARS_Events::FlightON, &ACARS_Events::FuelON, &ACARS_Events::WeightON},
    {&ACARS_Events::FlightIN, &ACARS_Events::FuelIN, &ACARS_Events::WeightIN},
}};

const Block_Signals& Signals_Of(Block_Event event) {
    return block_signals.at(static_cast<std::size_t>(event));
}

void Take_Time(Engine_Context& engine, Block_Event event) {
    Block_Figures& figures = engine.state.At(event);
    figures.captured = true;
    figures.time_utc = Read_UTC_Time(engine);
    auto& signal = engine.events.*Signals_Of(event).time;
    if (engine.settings.ACARS_Time() == time_kind::utc) {
        engine.output.Post(signal, figures.time_utc, time_kind::utc);
        return;
    }
    figures.time_local = Read_Local_Time(engine);
    engine.output.Post(signal, figures.time_local, time_kind::local);
}

void Take_Fuel(Engine_Context& engine, Block_Event event) {
    Block_Figures& figures = engine.state.At(event);
    const int unit = engine.settings.ACARS_Fuel();
    Capture_Fuel(engine, figures);
    engine.output.Post(engine.events.*Signals_Of(event).fuel, Fuel_In_Unit(figures, unit), unit);
}

void Take_Weight(Engine_Context& engine, Block_Event event) {
    Block_Figures& figures = engine.state.At(event);
    figures.weight = Read_Weight(engine);
    engine.output.Post(engine.events.*Signals_Of(event).weight, figures.weight,
                       engine.settings.ACARS_Weight());
}

std::string Read_Indicated_Airspeed(Engine_Context& engine) {
    return Format_Whole(engine.reader.Read(Variable::indicated_airspeed_kt));
}

void Report_Arrival(Engine_Context& engine) {
    const Airport_Fix& arrival = engine.state.arrival;
    engine.output.Post(engine.events.ICAOArr, arrival.icao, arrival.name);
}

void Report_Times(Engine_Context& engine) {
    Flight_State& state = engine.state;
    const auto block =
        Minutes_Between(state.At(Block_Event::out).time_utc, state.At(Block_Event::in).time_utc);
    const auto flight =
        Minutes_Between(state.At(Block_Event::off).time_utc, state.At(Block_Event::on).time_utc);
    if (block) {
        state.block_time = Decimal_Hours(*block);
        state.block_time_hhmm = Hours_And_Minutes(*block);
    }
    if (flight) {
        state.flight_time = Decimal_Hours(*flight);
        state.flight_time_hhmm = Hours_And_Minutes(*flight);
    }
    engine.output.Post(engine.events.BlockTime, state.block_time);
    engine.output.Post(engine.events.BlockTimeHHMM, state.block_time_hhmm);
    engine.output.Post(engine.events.FlightTime, state.flight_time);
    engine.output.Post(engine.events.FlightTimeHHMM, state.flight_time_hhmm);
}

void Report_Fuel_Used(Engine_Context& engine) {
    Flight_State& state = engine.state;
    const int unit = engine.settings.ACARS_Fuel();
    state.fuel_used_block = Fuel_Used(state.At(Block_Event::out), state.At(Block_Event::in), unit);
    state.fuel_used_flight = Fuel_Used(state.At(Block_Event::off), state.At(Block_Event::on), unit);
    engine.output.Post(engine.events.FuelUsedBlock, state.fuel_used_block, unit);
    engine.output.Post(engine.events.FuelUsedFlight, state.fuel_used_flight, unit);
}

/// At the gate the arrival is looked up unless it was at ON.
void Find_Arrival_At_Gate(Engine_Context& engine) {
    const bool at_gate = Recorded_At{engine.settings.ACARS_RecordArrival()} == Recorded_At::in;
    if (at_gate || !engine.state.arrival.known) {
        engine.state.arrival = Look_Up_Airport(engine);
        if (Plan_Source{engine.settings.VATSIM_FP()} == Plan_Source::file)
            Report_Arrival(engine);
    }
    if (Weather_Source_Of(engine.settings.WX_URL()) == Weather_Source::simulator) {
        engine.output.Post(engine.events.WXArr, engine.state.arrival.icao + Weather_Report(engine));
    }
}

/// The message of a block event says where it happened.
void Send_Block_Message(Engine_Context& engine, Message_Type type) {
    Sample_Position(engine, Sample_Extent::position_only);
    Compose_Message(engine, type);
}

}  // namespace

void Capture_OUT(Engine_Context& engine) {
    Take_Time(engine, Block_Event::out);
    Take_Fuel(engine, Block_Event::out);
    Take_Weight(engine, Block_Event::out);
    Send_Block_Message(engine, Message_Type::out);
}

void Capture_OFF(Engine_Context& engine) {
    Flight_State& state = engine.state;
    Take_Time(engine, Block_Event::off);
    Take_Fuel(engine, Block_Event::off);
    Take_Weight(engine, Block_Event::off);
    engine.output.Post(engine.events.IASTakeOff, Read_Indicated_Airspeed(engine));
    state.engines_at_off = Engine_Settings(engine);
    if (state.engine_type == engine_kind::jet || state.engine_type == engine_kind::turboprop) {
        engine.output.Post(engine.events.NSettings, state.engines_at_off);
    } else if (state.engine_type == engine_kind::piston) {
        engine.output.Post(engine.events.EngSettings, state.engines_at_off);
    }
    if (state.engine_type == engine_kind::jet)
        engine.output.Post(engine.events.MaxTaxiOrigin, Format_Whole(state.taxi.fastest_out_kt));
    Send_Block_Message(engine, Message_Type::off);
}

void Capture_ON(Engine_Context& engine) {
    Flight_State& state = engine.state;
    state.touchdown = {engine.reader.Read_Whole(Variable::altitude_ft), 0};
    Take_Time(engine, Block_Event::on);
    Take_Fuel(engine, Block_Event::on);
    Take_Weight(engine, Block_Event::on);
    engine.output.Post(engine.events.VS, state.level.vertical_speed);
    engine.output.Post(engine.events.IASLanding, Read_Indicated_Airspeed(engine));
    if (Recorded_At{engine.settings.ACARS_RecordArrival()} == Recorded_At::on) {
        state.arrival = Look_Up_Airport(engine);
        Report_Arrival(engine);
    }
    Send_Block_Message(engine, Message_Type::on);
}

void Capture_IN(Engine_Context& engine) {
    Flight_State& state = engine.state;
    Take_Time(engine, Block_Event::in);
    Report_Times(engine);
    Take_Fuel(engine, Block_Event::in);
    Find_Arrival_At_Gate(engine);
    Report_Fuel_Used(engine);
    const double distance_nm = Great_Circle_Nm(state.departure.position, state.arrival.position);
    engine.output.Post(engine.events.Distance, Format_Whole(distance_nm));
    Take_Weight(engine, Block_Event::in);
    if (state.engine_type == engine_kind::jet) {
        engine.output.Post(engine.events.MaxTaxiDestination,
                           Format_Whole(state.taxi.fastest_in_kt));
    }
    engine.output.Post(engine.events.FlightLevel, Format_FlightLevel(state.level.highest_level_ft));
    Send_Block_Message(engine, Message_Type::in);
    Compose_Message(engine, Message_Type::times);
    engine.output.at_gate = true;
}

}  // namespace norvane
