#include "config/setting_table.h"

#include <algorithm>
#include <array>

#include "common/number.h"
#include "common/run_error.h"
#include "common/text.h"
#include "config/airline_list.h"
#include "config/log_names.h"
#include "config/setting_codes.h"
#include "simlink/link_address.h"

namespace norvane {

namespace {

using Values = App_Setting_Values;
using Settings = clsAppSettings;
using Number = Number_Property;
using Flag = Flag_Property;
using Text = Text_Property;
using enum Setting_Step;

constexpr Number_Range colour{0, 0xFFFFFF};
constexpr bool fixed_in_flight = true;

// clang-format off
constexpr auto table = std::to_array<Setting_Row>({
    {"FlightLog", flight_log, "Options", "Flight Log",
     Text{&Values::FlightLog, &Settings::Set_FlightLog, default_log_name, nullptr, Text_Values::flight_log}},
    {"Color_Link_Bar", options, "Options", "Link Color",
     Number{&Values::Color_Link_Bar, &Settings::Set_Color_Link_Bar, 0xDFDFDF, colour}},
    {"Color_MenuBar_Back", options, "Options", "Menu Back Color",
     Number{&Values::Color_MenuBar_Back, &Settings::Set_Color_MenuBar_Back, 0x804000, colour}},
    {"Color_MenuBar_Fore", options, "Options", "Menu Fore Color",
     Number{&Values::Color_MenuBar_Fore, &Settings::Set_Color_MenuBar_Fore, 0xFFFFFF, colour}},
    {"ACARS_Date", options, "Options", "Report Date",
     Number{&Values::ACARS_Date, &Settings::Set_ACARS_Date, 1, {0, 1}}, fixed_in_flight},
    {"ACARS_Time", options, "Options", "Report Time",
     Number{&Values::ACARS_Time, &Settings::Set_ACARS_Time, 1, {0, 1}}, fixed_in_flight},
    {"ACARS_UseTime", options, "Options", "Use Time",
     Number{&Values::ACARS_UseTime, &Settings::Set_ACARS_UseTime, 0, {0, 1}}, fixed_in_flight},
    {"ACARS_Fuel", options, "Options", "Report Fuel",
     Number{&Values::ACARS_Fuel, &Settings::Set_ACARS_Fuel, 0, {0, 2}}, fixed_in_flight},
    {"ACARS_Weight", options, "Options", "Report Weight",
     Number{&Values::ACARS_Weight, &Settings::Set_ACARS_Weight, 0, {0, 1}}, fixed_in_flight},
    {"ACARS_EOF", options, "Options", "Report EOF",
     Number{&Values::ACARS_EOF, &Settings::Set_ACARS_EOF, 0, {0, 2}}, fixed_in_flight},
    {"ACARS_ATCModel", options, "Options", "atc model",
     Flag{&Values::ACARS_ATCModel, &Settings::Set_ACARS_ATCModel}, fixed_in_flight},
    {"OPT_MessageLog", options, "Options", "ACARS Message Log",
     Flag{&Values::OPT_MessageLog, &Settings::Set_OPT_MessageLog}},
    {"OPT_AutoLog", options, "Options", "Auto Log",
     Flag{&Values::OPT_AutoLog, &Settings::Set_OPT_AutoLog}},
    {"OPT_ACARS_To_FS", options, "Options", "ACARS to FS",
     Flag{&Values::OPT_ACARS_To_FS, &Settings::Set_OPT_ACARS_To_FS}},
    {"OPT_Recordings", options, "Options", "Recordings",
     Number{&Values::OPT_Recordings, &Settings::Set_OPT_Recordings, 200, {-1, 100'000}}},
    {"OPT_PIREP", options, "PIREP", "PIREP",
     Flag{&Values::OPT_PIREP, &Settings::Set_OPT_PIREP}},
    {"OPT_PIREP_SEND", options, "PIREP", "PIREP Send",
     Flag{&Values::OPT_PIREP_SEND, &Settings::Set_OPT_PIREP_SEND}},
    {"ACARS_TakeOff_Alt", options, "Options", "Take Off Alt",
     Number{&Values::ACARS_TakeOff_Alt, &Settings::Set_ACARS_TakeOff_Alt, 0, {0, 100, 5}}, fixed_in_flight},
    {"ACARS_RecordArrival", options, "Options", "Record Arrival",
     Number{&Values::ACARS_RecordArrival, &Settings::Set_ACARS_RecordArrival, 0, {0, 1}}, fixed_in_flight},
    {"ACARS_TouchAndGo", options, "Options", "Touch And Go",
     Number{&Values::ACARS_TouchAndGo, &Settings::Set_ACARS_TouchAndGo, 0, {0, 1}}, fixed_in_flight},
    {"Simulator_Address", sources, simulator_address_section, simulator_address_key,
     Text{&Values::Simulator_Address, &Settings::Set_Simulator_Address, "", nullptr, Text_Values::link_address}},
    {"WX_URL", sources, "Options", "WX URL",
     Text{&Values::WX_URL, &Settings::Set_WX_URL, Name_Of(Weather_Source::simulator), nullptr, Text_Values::weather_source}},
    {"VATSIM_FP", sources, "Options", "VATSIM FP",
     Number{&Values::VATSIM_FP, &Settings::Set_VATSIM_FP, 0, {0, 1}}},
    {"VATSIM_PID", sources, "Options", "VATSIM PID",
     Text{&Values::VATSIM_PID, &Settings::Set_VATSIM_PID, ""}},
    {"SimBrief_User", sources, "Options", "SimBrief User",
     Text{&Values::SimBrief_User, &Settings::Set_SimBrief_User, ""}},
    {"Virtual_Airline", airline_name, "Virtual Airline", "Current",
     Text{&Values::Virtual_Airline, &Settings::Set_Virtual_Airline, stored_default_airline, nullptr, Text_Values::airline}, fixed_in_flight},
    {"Virtual_Airline_Log", airline, "", "Field5",
     Text{&Values::Virtual_Airline_Log, &Settings::Set_Virtual_Airline_Log, "", &Values::FlightLog, Text_Values::flight_log}},
    {"PilotName", airline, "", "Field0",
     Text{&Values::PilotName, &Settings::Set_PilotName, "", &Values::PilotName}},
    {"PilotEmail", airline, "", "Field4",
     Text{&Values::PilotEmail, &Settings::Set_PilotEmail, "", &Values::PilotEmail}},
    {"PilotID", airline, "", "Field1",
     Text{&Values::PilotID, &Settings::Set_PilotID, ""}},
    {"Airline_IATA", airline, "", "Field2",
     Text{&Values::Airline_IATA, &Settings::Set_Airline_IATA, ""}, fixed_in_flight},
    {"Airline_ICAO", airline, "", "Field3",
     Text{&Values::Airline_ICAO, &Settings::Set_Airline_ICAO, ""}, fixed_in_flight},
    {"Airline_IATAPrefix", airline, "", "Field6",
     Flag{&Values::Airline_IATAPrefix, &Settings::Set_Airline_IATAPrefix}, fixed_in_flight},
});
// clang-format on

/// A stored text as a report quotes it: what stands in a broken store may be of any length.
std::string Quoted(std::string_view text) {
    constexpr std::size_t longest = 60;
    return "\"" + std::string(text.substr(0, longest)) + (text.size() > longest ? "...\"" : "\"");
}

std::int32_t To_Number(const Setting_Row& row, std::string_view text) {
    if (const auto number = Parse_Int32(text))
        return *number;
    throw Run_Error(error_number::type_mismatch,
                    std::string(row.name) + " takes a whole number, not " + Quoted(text));
}

bool To_Flag(const Setting_Row& row, std::string_view text) {
    if (Equal_No_Case(Trimmed_View(text), "True"))
        return true;
    if (Equal_No_Case(Trimmed_View(text), "False"))
        return false;
    if (const auto number = Parse_Number(text))
        return *number != 0;
    throw Run_Error(error_number::type_mismatch,
                    std::string(row.name) + " takes True or False, not " + Quoted(text));
}

std::string To_Text(const Setting_Row& row, std::string_view text) {
    std::string taken(text);
    if (std::get<Text>(row.property).values == Text_Values::link_address && !taken.empty()) {
        const std::string fault = Link_Address_Fault(taken);
        if (!fault.empty())
            throw Run_Error(error_number::type_mismatch, std::string(row.name) + ": " + fault);
    }
    return taken;
}

}  // namespace

std::span<const Setting_Row> Setting_Table() {
    return table;
}

bool Is_Fixed_In_Flight(std::string_view name) {
    return std::any_of(table.begin(), table.end(), [&](const Setting_Row& row) {
        return row.fixed_in_flight && Equal_No_Case(row.name, name);
    });
}

std::string Stored_Text(const Setting_Row& row, const App_Setting_Values& values) {
    if (const auto* number = std::get_if<Number>(&row.property))
        return std::to_string(values.*number->value);
    if (const auto* flag = std::get_if<Flag>(&row.property))
        return values.*flag->value ? "True" : "False";
    return values.*std::get<Text>(row.property).value;
}

std::string Default_Text(const Setting_Row& row, const App_Setting_Values& values) {
    if (const auto* number = std::get_if<Number>(&row.property))
        return std::to_string(number->otherwise);
    if (std::holds_alternative<Flag>(row.property))
        return "False";
    const auto& text = std::get<Text>(row.property);
    return text.otherwise_from != nullptr ? values.*text.otherwise_from
                                          : std::string(text.otherwise);
}

void Take_Stored_Text(const Setting_Row& row, std::string_view text, App_Setting_Values& values) {
    if (const auto* number = std::get_if<Number>(&row.property))
        values.*number->value = To_Number(row, text);
    else if (const auto* flag = std::get_if<Flag>(&row.property))
        values.*flag->value = To_Flag(row, text);
    else
        values.*std::get<Text>(row.property).value = To_Text(row, text);
}

void Assign_Text(const Setting_Row& row, std::string_view text, clsAppSettings& settings) {
    if (const auto* number = std::get_if<Number>(&row.property))
        (settings.*number->assign)(To_Number(row, text));
    else if (const auto* flag = std::get_if<Flag>(&row.property))
        (settings.*flag->assign)(To_Flag(row, text));
    else
        (settings.*std::get<Text>(row.property).assign)(text);
}

}  // namespace norvane
