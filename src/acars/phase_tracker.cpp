#include "acars/phase_tracker.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "acars/captures.h"
#include "acars/composer.h"
#include "acars/engine_context.h"
#include "acars/persistence.h"
#include "acars/sampler.h"
#include "common/flight_level.h"
#include "common/number.h"
#include "config/cls_app_settings.h"
#include "config/setting_codes.h"

namespace norvane {

namespace {

/// Above the start altitude by this much, the aircraft has flown.
constexpr std::int32_t climbed_ft = 25;
/// After a landing the aircraft flies on once it was off the ground in so many steps in a row and
/// is above where it touched down by more than this; anything less is a bounce.
constexpr std::int32_t steps_to_fly_on = 6;
constexpr std::int32_t fly_on_ft = 25;
/// Slower than this after landing, the aircraft taxies.
constexpr std::int32_t taxi_speed_kt = 11;
/// With more N1 than this the aircraft is not taxiing but taking off or braking.
constexpr int taxi_n1_percent = 60;
constexpr std::int32_t level_below_fpm = 31;
constexpr std::int32_t leaving_from_fpm = 200;
constexpr std::int32_t leaving_from_ft = 200;

/// Reads what decides, and notes it as evidence.
std::int32_t Read_Noted(Engine_Context& engine, Variable variable,
                        std::optional<std::int32_t>& note, int number = 1) {
    const std::int32_t value = engine.reader.Read_Whole(variable, number);
    note = value;
    return value;
}

std::int32_t Read_Altitude(Engine_Context& engine) {
    return Read_Noted(engine, Variable::altitude_ft, engine.state.decisive.altitude_ft);
}

/// Read at the beginning of every step.
struct Ground_Contact {
    bool brake_set = false;
    bool on_ground = false;
};

bool Is_Trackable(Sim_Reader& reader) {
    return reader.Read_Whole(Variable::slew_mode) == 0 &&
           reader.Read_Whole(Variable::simulator_version) >= 1;
}

/// Asks the engines in order, up to the first that runs.
bool Engines_Off(Engine_Context& engine) {
    const int count = std::min(engine.state.engine_count, most_engines);
    for (int number = 1; number <= count; ++number) {
        auto& note = engine.state.decisive.engine_runs.at(static_cast<std::size_t>(number - 1));
        if (Read_Noted(engine, Variable::engine_combustion, note, number) != 0)
            return false;
    }
    return true;
}

bool Has_Taken_Off(Engine_Context& engine) {
    const std::int32_t least_ft = engine.settings.ACARS_TakeOff_Alt();
    if (least_ft == 0 || engine.state.began_airborne)
        return true;
    return Read_Altitude(engine) > engine.state.start_altitude_ft + least_ft;
}

bool Has_Ended(Engine_Context& engine, bool brake_set) {
    const bool parked = brake_set || engine.state.engine_type == engine_kind::helicopter;
    switch (End_Of_Flight{engine.settings.ACARS_EOF()}) {
        case End_Of_Flight::parking_brake:
            return parked;
        case End_Of_Flight::engine_shutdown:
            return Engines_Off(engine);
        case End_Of_Flight::both:
            return parked && Engines_Off(engine);
        default:
            return false;
    }
}

bool Flies_On(Engine_Context& engine) {
    const Touchdown& touchdown = engine.state.touchdown;
    return touchdown.steps_off_ground >= steps_to_fly_on &&
           Counted_Landing{engine.settings.ACARS_TouchAndGo()} != Counted_Landing::first &&
           Read_Altitude(engine) > touchdown.altitude_ft + fly_on_ft;
}

Flight_Phase Next_Phase(Engine_Context& engine, const Ground_Contact& contact) {
    const Flight_State& state = engine.state;
    switch (state.phase) {
        case Flight_Phase::before_out:
            if (!contact.brake_set)
                return Flight_Phase::out;
            break;
        case Flight_Phase::out:
            if (!contact.on_ground && Has_Taken_Off(engine))
                return Flight_Phase::off;
            break;
        case Flight_Phase::off:
            if (contact.on_ground && state.climbed)
                return Flight_Phase::on;
            break;
        case Flight_Phase::on:
            if (Has_Ended(engine, contact.brake_set))
                return Flight_Phase::in;
            if (Flies_On(engine))
                return Flight_Phase::off;
            break;
        case Flight_Phase::in:
            break;
    }
    return state.phase;
}

/// A jet's ground speed while it taxies; negative when it does not.
std::int32_t Read_Taxi_Speed(Engine_Context& engine) {
    if (engine.state.engine_type != engine_kind::jet)
        return -1;
    if (Whole(engine.reader.Read(Variable::engine_n1_percent, 1)) > taxi_n1_percent)
        return -1;
    return engine.reader.Read_Whole(Variable::ground_speed_kt);
}

void Track_Taxi_Out(Engine_Context& engine) {
    Taxi_Tracking& taxi = engine.state.taxi;
    taxi.fastest_out_kt = std::max(taxi.fastest_out_kt, Read_Taxi_Speed(engine));
}

void Track_Taxi_In(Engine_Context& engine) {
    Taxi_Tracking& taxi = engine.state.taxi;
    const std::int32_t speed_kt = Read_Taxi_Speed(engine);
    if (speed_kt < 0)
        return;
    if (!taxi.in_armed)
        taxi.in_armed = speed_kt < taxi_speed_kt;
    if (taxi.in_armed)
        taxi.fastest_in_kt = std::max(taxi.fastest_in_kt, speed_kt);
}

void Send_Altitude(Engine_Context& engine, const std::string& text) {
    Sample_Position(engine, Sample_Extent::full);
    Compose_Message(engine, Message_Type::altitude, text);
}

void Track_Level(Engine_Context& engine) {
    Level_Tracking& level = engine.state.level;
    const std::int32_t speed_fpm = engine.reader.Read_Whole(Variable::vertical_speed_fpm);
    level.vertical_speed = Format_Grouped(speed_fpm);
    const bool is_level = std::abs(speed_fpm) < level_below_fpm;
    const bool is_leaving = std::abs(speed_fpm) >= leaving_from_fpm;
    if (is_level && !level.level) {
        level.level = true;
        level.level_altitude_ft = engine.reader.Read_Whole(Variable::altitude_ft);
        Send_Altitude(engine, Format_FlightLevel(level.level_altitude_ft) + " LEVEL");
        level.highest_level_ft = std::max(level.highest_level_ft, level.level_altitude_ft);
    } else if (is_leaving && level.level) {
        const std::int32_t altitude_ft = engine.reader.Read_Whole(Variable::altitude_ft);
        if (std::abs(altitude_ft - level.level_altitude_ft) < leaving_from_ft)
            return;
        level.level = false;
        Send_Altitude(engine, "CHG " + Format_FlightLevel(level.level_altitude_ft) +
                                  (speed_fpm >= 1 ? " CLMB" : " DESC"));
    }
}

void Act_In_Flight(Engine_Context& engine, const Ground_Contact& contact) {
    Flight_State& state = engine.state;
    if (!state.At(Block_Event::off).captured)
        Capture_OFF(engine);
    if (!contact.on_ground)
        Track_Level(engine);
    state.last_position = Read_Position(engine.reader);
    if (state.position_report_requested) {
        state.position_report_requested = false;
        Sample_Position(engine, Sample_Extent::full);
        Compose_Message(engine, Message_Type::position);
    }
    if (!state.climbed) {
        const std::int32_t altitude_ft = engine.reader.Read_Whole(Variable::altitude_ft);
        state.climbed = altitude_ft > state.start_altitude_ft + climbed_ft;
    }
}

/// What the landing settled is open again; OFF stays as it was.
void Fly_On(Engine_Context& engine) {
    Flight_State& state = engine.state;
    state.At(Block_Event::on) = {};
    state.evidence.at(static_cast<std::size_t>(Block_Event::on)) = {};
    state.arrival = {};
    state.taxi.in_armed = false;
    state.taxi.fastest_in_kt = 0;
    engine.output.Post(engine.events.TouchAndGo);
}

/// A flight that was taken up again after its landing must not end at whatever place the aircraft
/// stands at now.
bool Is_Where_It_Landed(Engine_Context& engine) {
    Flight_State& state = engine.state;
    if (!state.awaits_place)
        return true;
    const double away_nm = Great_Circle_Nm(state.last_position, Read_Position(engine.reader));
    state.awaits_place = away_nm > resume_within_nm;
    if (state.awaits_place && !std::exchange(state.elsewhere_told, true))
        engine.output.Post(engine.events.Elsewhere, Format_Whole(away_nm));
    return !state.awaits_place;
}

Block_Rule Rule_Of_End(const Engine_Context& engine) {
    const bool is_helicopter = engine.state.engine_type == engine_kind::helicopter;
    switch (End_Of_Flight{engine.settings.ACARS_EOF()}) {
        case End_Of_Flight::engine_shutdown:
            return Block_Rule::engines_stopped;
        case End_Of_Flight::both:
            return is_helicopter ? Block_Rule::engines_stopped : Block_Rule::brake_and_engines;
        default:
            return is_helicopter ? Block_Rule::helicopter : Block_Rule::brake_set;
    }
}

/// Why the phase is another one than in the step before.
void Keep_Evidence(Engine_Context& engine, const Decisive_Values& last) {
    Flight_State& state = engine.state;
    const auto phase = static_cast<std::size_t>(state.phase);
    constexpr std::array rules{Block_Rule::brake_released, Block_Rule::off_ground,
                               Block_Rule::on_ground};
    Block_Evidence& evidence = state.evidence.at(phase - 1);
    evidence = {phase <= rules.size() ? rules.at(phase - 1) : Rule_Of_End(engine),
                state.steps,
                Named_Values(last, state.decisive),
                {{"ACARS_UseTime", {}, Format_Whole(engine.settings.ACARS_UseTime())}}};
    const auto matters = [&](const char* name, std::int32_t value) {
        evidence.settings.push_back({name, {}, Format_Whole(value)});
    };
    if (state.phase == Flight_Phase::off || state.phase == Flight_Phase::on)
        evidence.values.push_back(
            {"altitude ft at the start", {}, Format_Whole(state.start_altitude_ft)});
    if (state.phase == Flight_Phase::off)
        matters("ACARS_TakeOff_Alt", engine.settings.ACARS_TakeOff_Alt());
    if (state.phase == Flight_Phase::on)
        matters("ACARS_TouchAndGo", engine.settings.ACARS_TouchAndGo());
    if (state.phase == Flight_Phase::in)
        matters("ACARS_EOF", engine.settings.ACARS_EOF());
}

void Act(Engine_Context& engine, const Ground_Contact& contact) {
    Flight_State& state = engine.state;
    switch (state.phase) {
        case Flight_Phase::before_out:
            break;
        case Flight_Phase::out:
            if (!state.At(Block_Event::out).captured)
                Capture_OUT(engine);
            Track_Taxi_Out(engine);
            break;
        case Flight_Phase::off:
            Act_In_Flight(engine, contact);
            break;
        case Flight_Phase::on:
            if (!state.At(Block_Event::on).captured)
                Capture_ON(engine);
            Track_Taxi_In(engine);
            state.last_position = Read_Position(engine.reader);
            break;
        case Flight_Phase::in:
            if (!state.At(Block_Event::in).captured)
                Capture_IN(engine);
            break;
    }
}

}  // namespace

void Advance_Flight(Engine_Context& engine) {
    Flight_State& state = engine.state;
    ++state.steps;
    const Decisive_Values last = std::exchange(state.decisive, {});
    Ground_Contact contact;
    contact.brake_set =
        Read_Noted(engine, Variable::parking_brake, state.decisive.parking_brake) > 0;
    contact.on_ground = Read_Noted(engine, Variable::on_ground, state.decisive.on_ground) != 0;
    if (!Is_Trackable(engine.reader) || !Is_Where_It_Landed(engine))
        return;
    state.touchdown.steps_off_ground =
        contact.on_ground ? 0 : std::min(state.touchdown.steps_off_ground + 1, steps_to_fly_on);
    const Flight_Phase before = std::exchange(state.phase, Next_Phase(engine, contact));
    // A failed read must not set a capture going that could only be undone.
    if (engine.reader.Failed())
        return;
    if (before == Flight_Phase::on && state.phase == Flight_Phase::off)
        Fly_On(engine);
    else if (before != state.phase)
        Keep_Evidence(engine, last);
    Act(engine, contact);
}

}  // namespace norvane
