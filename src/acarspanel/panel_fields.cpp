#include "acarspanel/panel_fields.h"

#include <fmt/format.h>

#include <array>

#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/units.h"

namespace norvane {

namespace {

using Events = ACARS_Events;
using Panel = ACARS_Form;
using enum Fill_Rule;

constexpr std::string_view nautical_miles = " nm";
constexpr std::string_view knots = " kts";
constexpr std::string_view feet_per_minute = " ft/min";

constexpr auto panel_fields = std::to_array<Panel_Field>({
    {Log_Field::FLIGHT_DATE, &Panel::txtDate, if_empty, &Events::FlightDate, {}},
    {Log_Field::AIRCRAFT_TYPE, &Panel::txtAircraftType, if_empty, &Events::ATCType, {}},
    {Log_Field::AIRCRAFT_ID, &Panel::txtAircraftID, if_empty, &Events::ATCTail, {}},
    {Log_Field::FLIGHT_ORIGIN, &Panel::txtOrigin, apart, {}, {}},
    {Log_Field::AIRPORT_ORIGIN, &Panel::lblOriginName, apart, {}, {}},
    {Log_Field::TIME_OUT, &Panel::lblTimeOut, time_figure, &Events::FlightOUT, {}},
    {Log_Field::TIME_OFF, &Panel::lblTimeOff, time_figure, &Events::FlightOFF, {}},
    {Log_Field::FUEL_OUT, &Panel::lblFuelOut, fuel_figure, &Events::FuelOUT, {}},
    {Log_Field::FLIGHT_DESTINATION, &Panel::txtDestination, apart, {}, {}},
    {Log_Field::AIRPORT_DESTINATION, &Panel::lblDestinationName, apart, {}, {}},
    {Log_Field::TIME_ON, &Panel::lblTimeOn, time_figure, &Events::FlightON, {}},
    {Log_Field::TIME_IN, &Panel::lblTimeIn, time_figure, &Events::FlightIN, {}},
    {Log_Field::FUEL_IN, &Panel::lblFuelIn, fuel_figure, &Events::FuelIN, {}},
    {Log_Field::FUEL_OFF, &Panel::lblFuelOff, fuel_figure, &Events::FuelOFF, {}},
    {Log_Field::FUEL_ON, &Panel::lblFuelOn, fuel_figure, &Events::FuelON, {}},
    {Log_Field::BLOCK_TIME, &Panel::lblBlockTime, replace, &Events::BlockTime, {}},
    {Log_Field::BLOCK_TIME_HHMM, &Panel::lblBlockTimeHHMM, replace, &Events::BlockTimeHHMM, {}},
    {Log_Field::FLIGHT_TIME, &Panel::lblFlightTime, replace, &Events::FlightTime, {}},
    {Log_Field::FLIGHT_TIME_HHMM, &Panel::lblFlightTimeHHMM, replace, &Events::FlightTimeHHMM, {}},
    {Log_Field::BLOCK_FUEL_USED, &Panel::lblBlockFuel, fuel_figure, &Events::FuelUsedBlock, {}},
    {Log_Field::FLIGHT_FUEL_USED, &Panel::lblFlightFuel, fuel_figure, &Events::FuelUsedFlight, {}},
    {Log_Field::COMMENTS, &Panel::txtComments, apart, {}, {}},
    {Log_Field::VERTICAL_SPEED, &Panel::lblVS, replace, &Events::VS, feet_per_minute},
    {Log_Field::FLIGHT_NUMBER, &Panel::txtFlightNumber, if_empty, &Events::AirlineFlight, {}},
    {Log_Field::PAX, &Panel::txtPax, if_empty, &Events::PAX, {}},
    {Log_Field::CARGO, &Panel::txtCargo, if_empty, &Events::BaggageCargo, {}},
    {Log_Field::FLIGHT_PLAN, &Panel::txtFlightPlan, apart, {}, {}},
    {Log_Field::WX_ORIGIN, &Panel::txtWXOrigin, replace, &Events::WXDep, {}},
    {Log_Field::WX_DESTINATION, &Panel::txtWXDestination, replace, &Events::WXArr, {}},
    {Log_Field::FLIGHT_LEVEL, &Panel::txtFlightLevel, if_empty, &Events::FlightLevel, {}},
    {Log_Field::FLIGHT_DISTANCE, &Panel::lblDistance, replace, &Events::Distance, nautical_miles},
    {Log_Field::WEIGHT_ZEROFUEL, &Panel::lblZFW, weight_figure, &Events::WeightZFW, {}},
    {Log_Field::WEIGHT_TAXI, &Panel::lblTaxiWeight, weight_figure, &Events::WeightOUT, {}},
    {Log_Field::WEIGHT_TAKEOFF, &Panel::lblTakeOffWeight, weight_figure, &Events::WeightOFF, {}},
    {Log_Field::WEIGHT_LANDING, &Panel::lblLandingWeight, weight_figure, &Events::WeightON, {}},
    {Log_Field::WEIGHT_RAMP, &Panel::lblRampWeight, weight_figure, &Events::WeightIN, {}},
    {Log_Field::IAS_TAKEOFF, &Panel::lblIASTakeOff, replace, &Events::IASTakeOff, knots},
    {Log_Field::IAS_LANDING, &Panel::lblIASLanding, replace, &Events::IASLanding, knots},
    {Log_Field::ENG_SETTINGS, &Panel::lblNSettings, replace, &Events::NSettings, {}},
    // Pistons report their settings by an event of their own, onto the same label.
    {{}, &Panel::lblNSettings, replace, &Events::EngSettings, {}},
    {{}, &Panel::lblMaxTaxiOrigin, replace, &Events::MaxTaxiOrigin, knots},
    {{}, &Panel::lblMaxTaxiDestination, replace, &Events::MaxTaxiDestination, knots},
    {{}, &Panel::lblATCFlight, apart, {}, {}},
});

std::string With_Unit(std::string_view value, std::string_view unit) {
    return unit.empty() ? std::string() : fmt::format("{}{}", value, unit);
}

template <class Control_Kind>
Control_Kind* Find_Control(const Panel_Field& row, ACARS_Form& form) {
    const auto* member = std::get_if<Control_Kind ACARS_Form::*>(&row.control);
    return member == nullptr ? nullptr : &(form.**member);
}

void Connect_Text(const Panel_Field& row, ACARS_Events& events, ACARS_Form& form,
                  Connections& connections) {
    auto& event = events.*std::get<ACARS_Events::Text ACARS_Events::*>(row.event);
    connections.Keep(event.Connect([&row, &form](const std::string& value) {
        if (Label* label = row.Find_Label(form))
            label->Set_Text(value + std::string(row.suffix));
        Text_Box* box = row.Find_Box(form);
        if (box != nullptr && (row.rule == replace || box->Is_Empty()))
            box->Set_Text(value);
    }));
}

/// Which code of the settings a figure's rule goes by, and how its value is shown.
struct Figure_Rule {
    Fill_Rule rule;
    int (clsAppSettings::*setting)() const;
    std::string (*shown)(std::string_view value, int code);
};
constexpr std::array figure_rules{
    Figure_Rule{time_figure, &clsAppSettings::ACARS_Time, &Shown_Time},
    Figure_Rule{fuel_figure, &clsAppSettings::ACARS_Fuel, &Shown_Fuel},
    Figure_Rule{weight_figure, &clsAppSettings::ACARS_Weight, &Shown_Weight},
};

}  // namespace

void Connect_Fields(ACARS_Events& events, ACARS_Form& form, const clsAppSettings& settings,
                    Connections& connections) {
    for (const Panel_Field& row : Panel_Fields()) {
        if (std::holds_alternative<Events::Text Events::*>(row.event))
            Connect_Text(row, events, form, connections);
        for (const Figure_Rule& figure : figure_rules) {
            if (figure.rule != row.rule)
                continue;
            Label& label = *row.Find_Label(form);
            connections.Keep(
                (events.*std::get<Events::Figure Events::*>(row.event))
                    .Connect([&label, &settings, &figure](const std::string& value, int code) {
                        if (code == (settings.*figure.setting)())
                            label.Set_Text(figure.shown(value, code));
                    }));
        }
    }
}

Label* Panel_Field::Find_Label(ACARS_Form& form) const {
    return Find_Control<Label>(*this, form);
}

Text_Box* Panel_Field::Find_Box(ACARS_Form& form) const {
    return Find_Control<Text_Box>(*this, form);
}

bool Panel_Field::Is_Figure() const {
    return std::holds_alternative<Label ACARS_Form::*>(control) && rule != apart;
}

std::span<const Panel_Field> Panel_Fields() {
    return panel_fields;
}

std::string Shown_Time(std::string_view hhmm, int code) {
    if (hhmm.size() < 4)
        return {};
    if (code == time_kind::local)
        return fmt::format("{}:{}", hhmm.substr(0, 2), hhmm.substr(hhmm.size() - 2));
    return code == time_kind::utc ? fmt::format("{}Z", hhmm) : std::string();
}

std::string Shown_Fuel(std::string_view value, int code) {
    return With_Unit(value, Unit_Of(fuel_units, code));
}

std::string Shown_Weight(std::string_view value, int code) {
    return With_Unit(value, Unit_Of(weight_units, code));
}

}  // namespace norvane
