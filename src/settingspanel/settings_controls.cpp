#include "settingspanel/settings_controls.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <functional>

namespace norvane {

namespace {

using App = clsAppSettings;
using Panel = ucSettings;

constexpr std::array flags = {
    Setting_Flag{Panel::auto_log, &App::OPT_AutoLog, &App::Set_OPT_AutoLog},
    Setting_Flag{Panel::message_log, &App::OPT_MessageLog, &App::Set_OPT_MessageLog},
    Setting_Flag{Panel::acars_to_fs, &App::OPT_ACARS_To_FS, &App::Set_OPT_ACARS_To_FS},
    Setting_Flag{Panel::save_pirep, &App::OPT_PIREP, &App::Set_OPT_PIREP},
    Setting_Flag{Panel::send_pirep, &App::OPT_PIREP_SEND, &App::Set_OPT_PIREP_SEND},
};

constexpr std::array colors = {
    Setting_Color_Row{&App::Color_Link_Bar, &App::Set_Color_Link_Bar, 0xDFDFDF},
    Setting_Color_Row{&App::Color_MenuBar_Back, &App::Set_Color_MenuBar_Back, 0x804000},
    Setting_Color_Row{&App::Color_MenuBar_Fore, &App::Set_Color_MenuBar_Fore, 0xFFFFFF},
};

constexpr std::array pilot_texts = {
    Pilot_Text{&App_Setting_Values::PilotName, &App::Set_PilotName},
    Pilot_Text{&App_Setting_Values::PilotEmail, &App::Set_PilotEmail},
    Pilot_Text{&App_Setting_Values::PilotID, &App::Set_PilotID},
    Pilot_Text{&App_Setting_Values::Airline_IATA, &App::Set_Airline_IATA},
    Pilot_Text{&App_Setting_Values::Airline_ICAO, &App::Set_Airline_ICAO},
};

/// What a flight begins and ends with, and in which units.
std::vector<Setting_List> Lists_Of_Units() {
    return {
        {&Panel::cboDate,
         "Default Date:",
         "Default date used when ACARS started",
         {"FS Date", "System Date"},
         &App::ACARS_Date,
         &App::Set_ACARS_Date},
        {&Panel::cboEOF,
         "End of Flight:",
         "Event used to mark end of flight",
         {"Parking Brake", "Engine Shutdown", "Parking Brake and Engine Shutdown"},
         &App::ACARS_EOF,
         &App::Set_ACARS_EOF},
        {&Panel::cboWeight,
         "Weight:",
         "Weight Units",
         {"lbs", "kg"},
         &App::ACARS_Weight,
         &App::Set_ACARS_Weight},
        {&Panel::cboFuel,
         "Fuel:",
         "Fuel Units",
         {"lbs", "kg", "gal"},
         &App::ACARS_Fuel,
         &App::Set_ACARS_Fuel},
        {&Panel::cboTime,
         "Time:",
         "Time Format",
         {"Local", "Zulu"},
         &App::ACARS_Time,
         &App::Set_ACARS_Time},
    };
}

/// How it is recorded, and what goes with it.
std::vector<Setting_List> Lists_Of_Recording() {
    return {
        {&Panel::cboATCModel,
         "Aircraft Type:",
         "Variable in aircraft.cfg to use for Aircraft Type",
         {"Title", "atc_model"}},
        {&Panel::cboRecordArrival,
         "Record Arrival:",
         "Using IN time may provide better performance in FS",
         {"@ IN Time", "@ ON Time"},
         &App::ACARS_RecordArrival,
         &App::Set_ACARS_RecordArrival},
        {&Panel::cboTouchAndGo,
         "Touch and Go:",
         "One Flight: the flight goes on, and its last landing counts",
         {"One Flight", "First Landing Counts"},
         &App::ACARS_TouchAndGo,
         &App::Set_ACARS_TouchAndGo},
        {&Panel::cboWX,
         "Report Weather From:",
         "Select a source for weather reports or NONE to turn off weather reporting",
         {}},
        {&Panel::cboUseTime,
         "",
         "Note: If Real Time is selected, you should not PAUSE your flight.  Pausing your flight "
         "will cause an erroneous total time.",
         {"FS Time", "Real Time"},
         &App::ACARS_UseTime,
         &App::Set_ACARS_UseTime},
    };
}

}  // namespace

std::vector<Recording_Choice> Recording_Choices(std::int32_t now) {
    std::vector<std::int32_t> counts{1000, 500, 200, 100, 50, 20, 10};
    if (now > 0 && std::find(counts.begin(), counts.end(), now) == counts.end())
        counts.push_back(now);
    std::sort(counts.begin(), counts.end(), std::greater<>());
    std::vector<Recording_Choice> choices{{-1, "All Flights"}};
    for (const std::int32_t count : counts)
        choices.push_back({count, fmt::format("Last {} Flights", count)});
    choices.push_back({0, "No Flights"});
    return choices;
}

const std::vector<Setting_List>& Setting_Lists() {
    static const std::vector<Setting_List> lists = [] {
        std::vector<Setting_List> all = Lists_Of_Units();
        const std::vector<Setting_List> more = Lists_Of_Recording();
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }();
    return lists;
}

std::span<const Setting_Flag> Setting_Flags() {
    return flags;
}

std::span<const Setting_Color_Row> Setting_Colors() {
    return colors;
}

std::span<const Pilot_Text> Pilot_Texts() {
    return pilot_texts;
}

}  // namespace norvane
