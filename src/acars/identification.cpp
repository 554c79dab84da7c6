#include "acars/identification.h"

#include <algorithm>

#include "acars/airports.h"
#include "acars/composer.h"
#include "acars/engine_context.h"
#include "acars/engine_texts.h"
#include "acars/flight_figures.h"
#include "acars/sampler.h"
#include "common/find_file.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "config/setting_codes.h"
#include "simdata/cls_ini_file.h"

namespace norvane {

namespace {

constexpr std::string_view separators = "\\/";
constexpr std::string_view network_prefix = "\\\\";

/// A simulator text as it may enter a field of the log.
std::string Read_Field(Engine_Context& engine, Variable variable) {
    return Clean_Field(engine.reader.Read_Text(variable), Field_Lines::one);
}

std::string_view Last_Component(std::string_view directory) {
    while (!directory.empty() && Contains(separators, directory.substr(directory.size() - 1)))
        directory.remove_suffix(1);
    const auto before = directory.find_last_of(separators);
    return before == std::string_view::npos ? directory : directory.substr(before + 1);
}

/// The directory that holds "aircraft.cfg", as the simulator writes it, with a final separator.
std::string Configuration_Directory(const Flight_State& state, const std::string& aircraft_file) {
    const auto cut = aircraft_file.find_last_of(separators);
    std::string aircraft_directory =
        cut == std::string::npos ? std::string() : aircraft_file.substr(0, cut + 1);
    if (state.simulator_name != "FSX")
        return state.simulator_directory + aircraft_directory;
    if (!state.simulator_directory.starts_with(network_prefix))
        return aircraft_directory;
    return state.simulator_directory + "SimObjects\\Airplanes\\" +
           std::string(Last_Component(aircraft_directory)) + "\\";
}

clsIniFile Read_Configuration(Engine_Context& engine) {
    Flight_State& state = engine.state;
    state.simulator_directory = engine.reader.Read_Text(Variable::simulator_directory);
    const std::string aircraft_file = engine.reader.Read_Text(Variable::aircraft_path);
    clsIniFile configuration(engine.services);
    if (engine.reader.Failed())
        return configuration;
    state.configuration_file = Find_Simulator_Path(
        engine.services, Configuration_Directory(state, aircraft_file) + "aircraft.cfg");
    configuration.Set_INI_FilePath(state.configuration_file);
    configuration.Get_Configuration_Info();
    return configuration;
}

/// Airline and flight number are taken once; both events are raised only then.
void Identify_Flight(Engine_Context& engine) {
    Flight_State& state = engine.state;
    if (!state.atc_airline.empty() || !state.atc_flight_number.empty())
        return;
    state.atc_airline = Read_Field(engine, Variable::atc_airline);
    state.atc_flight_number = Read_Field(engine, Variable::atc_flight_number);
    if (!state.atc_flight_number.empty()) {
        if (engine.settings.Airline_IATAPrefix())
            state.atc_flight_number = engine.settings.Airline_IATA() + state.atc_flight_number;
        if (!state.atc_airline.empty()) {
            engine.output.Post(engine.events.ATCFlight,
                               state.atc_airline + " - " + state.atc_flight_number);
        }
    }
    engine.output.Post(engine.events.AirlineFlight, state.atc_flight_number);
}

void Identify_Aircraft(Engine_Context& engine, const std::string& atc_model) {
    Flight_State& state = engine.state;
    if (engine.settings.ACARS_ATCModel())
        state.type_name = Clean_Field(atc_model, Field_Lines::one);
    if (state.simulator_name == "FS2000") {
        if (state.type_name.empty())
            state.type_name = Get_AC_Title(engine);
    } else {
        if (state.type_name.empty())
            state.type_name = Read_Field(engine, Variable::aircraft_title);
        state.atc_tail = Read_Field(engine, Variable::atc_identifier);
        engine.output.Post(engine.events.ATCTail, state.atc_tail);
        Identify_Flight(engine);
    }
    if (!state.type_name.empty())
        engine.output.Post(engine.events.ATCType, state.type_name);
}

void Gather_Masses_And_Engines(Engine_Context& engine, const std::string& max_rpm) {
    Flight_State& state = engine.state;
    const int unit = engine.settings.ACARS_Weight();
    state.zero_fuel_weight =
        Weight_In_Unit(engine.reader.Read(Variable::zero_fuel_weight_lbs), unit);
    engine.output.Post(engine.events.WeightZFW, state.zero_fuel_weight, unit);
    state.engine_type = engine.reader.Read_Whole(Variable::engine_type);
    state.engine_count = engine.reader.Read_Whole(Variable::engine_count);
    state.max_rpm = Figure_Of(max_rpm);
}

void Find_Departure(Engine_Context& engine) {
    Airport_Fix& departure = engine.state.departure;
    departure = Look_Up_Airport(engine);
    if (Plan_Source{engine.settings.VATSIM_FP()} == Plan_Source::file)
        engine.output.Post(engine.events.ICAODep, departure.icao, departure.name);
    if (Weather_Source_Of(engine.settings.WX_URL()) == Weather_Source::simulator)
        engine.output.Post(engine.events.WXDep, departure.icao + Weather_Report(engine));
}

/// A flight taken up again has its departure; its messages need a position, and an arrival that
/// was recorded at ON but not stored is looked up again without saying so.
void Take_Up_Flight(Engine_Context& engine) {
    Flight_State& state = engine.state;
    const bool arrival_missing =
        state.phase == Flight_Phase::on && !state.arrival.known &&
        Recorded_At{engine.settings.ACARS_RecordArrival()} == Recorded_At::on;
    if (arrival_missing) {
        state.arrival = Get_Airport(engine);
    } else {
        Sample_Position(engine, Sample_Extent::position_only);
    }
}

/// What OFF settled and the store's numbered keys do not hold.
void Report_Taxi_Out(Engine_Context& engine) {
    const Flight_State& state = engine.state;
    if (state.phase >= Flight_Phase::off && state.engine_type == engine_kind::jet)
        engine.output.Post(engine.events.MaxTaxiOrigin, Format_Whole(state.taxi.fastest_out_kt));
}

void Note_Start_Of_Climb(Engine_Context& engine, bool resume) {
    Flight_State& state = engine.state;
    const std::int32_t altitude_ft = engine.reader.Read_Whole(Variable::altitude_ft);
    const bool airborne = engine.reader.Read_Whole(Variable::on_ground) == 0;
    if (!resume || state.phase <= Flight_Phase::out)
        state.start_altitude_ft = altitude_ft;
    state.began_airborne = airborne;
    state.climbed = state.climbed || airborne;
}

void Initialise(Engine_Context& engine, bool resume) {
    Flight_State& state = engine.state;
    if (!resume || state.flight_date.empty())
        state.flight_date = Read_Date(engine);
    engine.output.Post(engine.events.FlightDate, state.flight_date);

    const clsIniFile configuration = Read_Configuration(engine);
    Identify_Aircraft(engine, configuration.ATC_Model());
    Gather_Masses_And_Engines(engine, configuration.Max_RPM());
    if (resume) {
        Take_Up_Flight(engine);
        Report_Taxi_Out(engine);
    } else {
        Find_Departure(engine);
    }
    Note_Start_Of_Climb(engine, resume);
    if (!configuration.PAX().empty())
        engine.output.Post(engine.events.PAX, configuration.PAX());
    if (!configuration.Baggage_Cargo().empty())
        engine.output.Post(engine.events.BaggageCargo, configuration.Baggage_Cargo());
    if (!engine.airline.Script_ACARS().empty())
        Compose_Message(engine, Message_Type::connected);
}

}  // namespace

void Init_ACARS(Engine_Context& engine, bool resume) {
    Guarded(engine.services, "clsACARS.Init_ACARS()", Show::box,
            [&] { Initialise(engine, resume); });
}

std::string Get_AC_Title(Engine_Context& engine) {
    std::string title;
    Guarded(engine.services, "clsACARS.Get_AC_Title()", Show::silent, [&] {
        const std::filesystem::path& file = engine.state.configuration_file;
        if (file.empty() || !std::filesystem::exists(file))
            return;
        const auto lines = Read_Lines(file);
        const auto line = std::find_if(lines.begin(), lines.end(), [](const std::string& text) {
            return Contains_No_Case(text, "title") && Contains(text, "=");
        });
        if (line != lines.end())
            title = Clean_Field(Trim(line->substr(line->find('=') + 1)), Field_Lines::one);
    });
    return title;
}

}  // namespace norvane
