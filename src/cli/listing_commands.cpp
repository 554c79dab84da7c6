#include "cli/listing_commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "cli/console_desktop.h"
#include "cli/exit_status.h"
#include "cli/heard_error_log.h"
#include "common/code_page.h"
#include "common/run_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/airline_list.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "config/log_names.h"
#include "config/setting_table.h"
#include "flightlog/log_reading.h"
#include "flightlog/log_table.h"
#include "logentry/cls_log_entry.h"

namespace norvane {

namespace {

void Print(std::string_view text) {
    fmt::print("{}\n", Console_Desktop::Printable(To_Utf8(text)));
}

Log_Table Named_Log(Session& session, const std::string& name) {
    const clsAppSettings settings(session.Outside());
    return Read_Log(session.Outside(),
                    name.empty() ? settings.FlightLog() : Log_Name_From_Utf8(name));
}

/// The figures of one flight have one meaning: what decides it stays while a flight waits to be
/// taken up again.
void Refuse_While_A_Flight_Is_Stored(Session& session, std::string_view name) {
    if (Is_Fixed_In_Flight(name) &&
        !clsLogEntry(session.Outside()).Get(Log_Field::FLIGHT_DATE).empty()) {
        throw Run_Error(
            error_number::permission_denied,
            fmt::format("{} cannot be changed while a flight is stored: finish it, or drop it with "
                        "\"fly --new\"",
                        name));
    }
}

/// A name that the code page cannot hold would be taken for another one.
std::string Text_Of_Value(std::string_view name, const std::string& value) {
    constexpr std::array<std::string_view, 4> names{"FlightLog", "Virtual_Airline",
                                                    "Virtual_Airline_Log", "WX_URL"};
    std::string text = From_Utf8(value);
    const bool is_name = std::any_of(names.begin(), names.end(), [&](std::string_view each) {
        return Equal_No_Case(each, name);
    });
    if (is_name && To_Utf8(text) != value)
        throw Run_Error(error_number::invalid_call,
                        fmt::format("{} is unchanged: the name has letters that the program's "
                                    "character set, Windows-1252, does not have",
                                    name));
    return text;
}

/// The names of the values that a PIREP carries, in its order, for those who write "pirep.cfg".
std::vector<std::string> PIREP_Value_Names() {
    std::vector<std::string> names;
    for (const auto& row : All_Log_Fields()) {
        if (row.pirep_place == 0)
            continue;
        const auto place = static_cast<std::size_t>(row.pirep_place);
        names.resize(std::max(names.size(), place));
        names[place - 1] = row.name;
    }
    for (std::size_t slot = 0; slot < clsLogEntry::airline_slots; ++slot)
        names.push_back(fmt::format("VA_FIELDS({})", slot));
    return names;
}

}  // namespace

int Log_Rows(Session& session, const std::string& name) {
    const Log_Table table = Named_Log(session, name);
    for (std::size_t row = 0; row < table.Row_Count(); ++row)
        Print(Listed_Row(table, row));
    return exit_status::done;
}

int Log_Totals_Line(Session& session, const std::string& name) {
    const Regional& regional = session.Outside().regional;
    Print(Totals_Caption(Named_Log(session, name).Totals(regional), regional));
    return exit_status::done;
}

int Settings_List(Session& session) {
    const clsAppSettings settings(session.Outside());
    for (const auto& [name, value] : List_Settings(settings))
        Print(fmt::format("{}={}", name, value));
    return exit_status::done;
}

int Settings_Get(Session& session, const std::string& name) {
    const clsAppSettings settings(session.Outside());
    Print(Get_Setting_Text(settings, From_Utf8(name)));
    return exit_status::done;
}

int Settings_Set(Session& session, const std::string& name, const std::string& value) {
    Refuse_While_A_Flight_Is_Stored(session, name);
    // The file of the optional fields reports silently; who sets one on a command line is told.
    Heard_Error_Log heard(session.Outside().error_log);
    Services services = With_Error_Log(session.Outside(), heard);
    clsAppSettings settings(services);
    Set_Setting_Text(settings, From_Utf8(name), Text_Of_Value(name, value));
    const std::size_t before_save = heard.Reasons().size();
    if (settings.Save_Settings())
        return exit_status::done;
    for (std::size_t i = before_save; i < heard.Reasons().size(); ++i)
        Console_Desktop::Say(name + " was not saved: " + heard.Reasons()[i]);
    return exit_status::failed;
}

int Airline_List(Session& session) {
    const clsAppSettings settings(session.Outside());
    for (const auto& name : List_Airlines(session.Outside())) {
        const bool active = Equal_No_Case(name, settings.Virtual_Airline());
        Print((active ? "* " : "  ") + name);
    }
    return exit_status::done;
}

int Airline_Use(Session& session, const std::string& name) {
    return Settings_Set(session, "Virtual_Airline", name);
}

int Airline_Show(Session& session) {
    const clsAppSettings settings(session.Outside());
    clsVASettings airline(session.Outside());
    airline.Get_VA_Settings(settings.Virtual_Airline());
    Print("Airline: " + airline.Name());
    Print("Directory: " + airline.Directory());
    Print("Server: " + airline.WebServer());
    Print("PIREP script: " + airline.Script_PIREP());
    Print("ACARS script: " + airline.Script_ACARS());
    Print(std::string("Form data encoded: ") + (airline.URL_Encode() ? "True" : "False"));
    if (airline.PIREP_Fields(0).empty())
        return exit_status::done;
    const auto values = PIREP_Value_Names();
    Print("PIREP value = form field (label):");
    for (int i = 0; i <= airline.PIREP_Fields_Ubound(); ++i) {
        // Behind a faulty line of its file an airline has places without a field.
        if (airline.PIREP_Fields(i).empty() && airline.PIREP_Field_Names(i).empty())
            continue;
        const auto place = static_cast<std::size_t>(i);
        const std::string value = place < values.size() ? values[place] : "(not sent)";
        Print(fmt::format("  {} = {} ({})", value, airline.PIREP_Fields(i),
                          airline.PIREP_Field_Names(i)));
    }
    return exit_status::done;
}

}  // namespace norvane
