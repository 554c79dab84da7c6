#include "acarspanel/simbrief_fields.h"

#include <fmt/format.h>

#include <algorithm>

#include "acars/flight_figures.h"
#include "acarspanel/panel_fields.h"
#include "common/date_time.h"
#include "common/flight_level.h"
#include "common/number.h"
#include "config/setting_codes.h"
#include "net/simbrief.h"

namespace norvane {

namespace {

using Form = ACARS_Form;

/// As the engine makes it of the simulator's.
std::string Flight_Number(const Simbrief_Plan& plan, const clsAppSettings& settings) {
    if (plan.flight_number.empty() || !settings.Airline_IATAPrefix())
        return plan.flight_number;
    return settings.Airline_IATA() + plan.flight_number;
}

std::string Whole_Lbs(const std::optional<double>& lbs) {
    return lbs && *lbs >= 0 ? Format_Whole(*lbs) : std::string();
}

std::optional<double> Sum(const std::optional<double>& a, const std::optional<double>& b) {
    return a && b ? std::optional(*a + *b) : std::nullopt;
}

}  // namespace

std::vector<Simbrief_Field> Simbrief_Fields(const Simbrief_Plan& plan,
                                            const clsAppSettings& settings) {
    const bool in_kilograms = settings.ACARS_Weight() == unit::kilograms;
    std::vector<Simbrief_Field> fields{
        {"Origin", &Form::txtOrigin, plan.origin.icao},
        {"Destination", &Form::txtDestination, plan.destination.icao},
        {"Flight Number", &Form::txtFlightNumber, Flight_Number(plan, settings)},
        {"Aircraft Type", &Form::txtAircraftType, plan.aircraft_type},
        {"Aircraft ID", &Form::txtAircraftID, plan.registration},
        {"Pax", &Form::txtPax, plan.passengers ? std::to_string(*plan.passengers) : ""},
        // A number alone, as the simulator's is: airlines count with it.
        {in_kilograms ? "Cargo, kg" : "Cargo, lbs", &Form::txtCargo,
         plan.cargo_lbs ? Weight_In_Unit(*plan.cargo_lbs, settings.ACARS_Weight()) : ""},
        {"Flight Level", &Form::txtFlightLevel,
         plan.level_ft ? Format_FlightLevel(*plan.level_ft) : ""},
        {"Flight Plan", &Form::txtFlightPlan, plan.route},
    };
    std::erase_if(fields, [](const Simbrief_Field& field) { return field.text.empty(); });
    return fields;
}

std::string Planned_Time_Text(const std::optional<std::int64_t>& moment) {
    return moment ? Format_Hhmm(Date_Time_Of_Seconds(*moment).time) + "Z" : std::string();
}

Planned_Flight Planned_Of(const Simbrief_Plan& plan) {
    Planned_Flight planned;
    for (std::size_t event = 0; event < plan.times.size(); ++event)
        planned.at(event) = Planned_Time_Text(plan.times.at(event).Best());
    const auto set = [&](Planned figure, const std::optional<double>& lbs) {
        planned.at(static_cast<std::size_t>(figure)) = Whole_Lbs(lbs);
    };
    set(Planned::fuel_out, plan.fuel_ramp_lbs);
    set(Planned::fuel_off, plan.fuel_takeoff_lbs);
    set(Planned::fuel_on, plan.fuel_landing_lbs);
    // What taxiing in takes is not planned.
    set(Planned::block_fuel, Sum(plan.fuel_taxi_lbs, plan.fuel_burn_lbs));
    set(Planned::flight_fuel, plan.fuel_burn_lbs);
    return planned;
}

std::string Shown_Planned(Planned figure, const std::string& value, int fuel_unit) {
    if (value.empty() || !Is_Fuel(figure))
        return value;
    const int shown = fuel_unit == unit::kilograms ? unit::kilograms : unit::pounds;
    return Shown_Fuel(Weight_In_Unit(Figure_Of(value), shown), shown);
}

void Show_Planned(const Planned_Flight& planned, const clsAppSettings& settings, ACARS_Form& form) {
    for (std::size_t i = 0; i < planned.size(); ++i) {
        form.lblPlanned.at(i).Set_Text(
            Shown_Planned(static_cast<Planned>(i), planned.at(i), settings.ACARS_Fuel()));
    }
}

}  // namespace norvane
