// The properties as the command line shows and changes them, by name.

#include <algorithm>
#include <optional>

#include "common/code_page.h"
#include "common/find_file.h"
#include "common/number.h"
#include "common/run_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/airline_list.h"
#include "config/log_names.h"
#include "config/profile_reader.h"
#include "config/setting_codes.h"
#include "config/setting_table.h"
#include "simlink/link_address.h"

namespace norvane {

namespace {

constexpr std::string_view optional_fields_name = "OptFields";

std::string Quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

Run_Error Refusal(std::string_view name, const std::string& reason) {
    return {error_number::invalid_call, std::string(name) + " " + reason};
}

const Setting_Row* Find_Row(std::string_view name) {
    const auto rows = Setting_Table();
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const Setting_Row& row) {
        return Equal_No_Case(row.name, name);
    });
    return found == rows.end() ? nullptr : &*found;
}

/// The index of "OptFields(index)"; empty for any other name.
std::optional<std::size_t> Optional_Field_Index(std::string_view name) {
    const auto open = name.find('(');
    if (open == std::string_view::npos || !name.ends_with(')') ||
        !Equal_No_Case(name.substr(0, open), optional_fields_name)) {
        return std::nullopt;
    }
    const auto index = Parse_Int32(name.substr(open + 1, name.size() - open - 2));
    if (!index || *index < 0)
        return std::nullopt;
    return static_cast<std::size_t>(*index);
}

std::vector<std::pair<std::string, std::string>> Read_Only_Settings(
    const clsAppSettings& settings) {
    return {{"FlightLog_Path", From_Path(settings.FlightLog_Path())},
            {"Yield_In_Loop", settings.Yield_In_Loop() ? "True" : "False"}};
}

std::optional<std::string> Read_Only_Text(const clsAppSettings& settings, std::string_view name) {
    for (const auto& [known, value] : Read_Only_Settings(settings)) {
        if (Equal_No_Case(known, name))
            return value;
    }
    return std::nullopt;
}

std::string Row_Text(const clsAppSettings& settings, const Setting_Row& row) {
    return row.step == Setting_Step::airline_name ? settings.Virtual_Airline()
                                                  : Stored_Text(row, settings.Values());
}

void Check_Range(const Setting_Row& row, const Number_Range& range, std::int32_t number) {
    if (number >= range.low && number <= range.high && (number - range.low) % range.step == 0)
        return;
    std::string reason = "takes a whole number from " + std::to_string(range.low) + " to " +
                         std::to_string(range.high);
    if (range.step != 1)
        reason += " in steps of " + std::to_string(range.step);
    throw Refusal(row.name, reason + ", not " + std::to_string(number));
}

/// The entry equal to `value` without regard to case; raises when there is none.
std::string Choose(const Setting_Row& row, const std::vector<std::string>& entries,
                   std::string_view value) {
    for (const auto& entry : entries) {
        if (Equal_No_Case(entry, value))
            return entry;
    }
    throw Refusal(row.name,
                  "takes one of " + Quoted(Join(entries, "\", \"")) + ", not " + Quoted(value));
}

std::string Existing_Log(const Setting_Row& row, const Services& services, std::string_view value) {
    const auto logs = List_Logs(services);
    if (std::find(logs.begin(), logs.end(), value) == logs.end())
        throw Refusal(row.name,
                      "takes the name of a flight log; there is none named " + Quoted(value));
    const std::string fault = Check_Log_Name(value, {});
    if (!fault.empty())
        throw Refusal(row.name, "cannot be " + Quoted(value) + ": " + fault);
    return std::string(value);
}

std::string Existing_Airline(const Setting_Row& row, Services& services, std::string_view value) {
    const std::string fault = Airline_Name_Fault(value);
    if (!fault.empty() && !Equal_No_Case(value, default_airline))
        throw Refusal(row.name, "is unchanged. " + fault);
    return Choose(row, List_Airlines(services), value);
}

std::string Known_Source(const Setting_Row& row, Services& services, std::string_view value) {
    const Profile sources(Find_Path(services, services.program_directory, "bin\\url.cfg"));
    std::vector<std::string> names = sources.Section_Names();
    for (const std::string_view always :
         {Name_Of(Weather_Source::none), Name_Of(Weather_Source::simulator)}) {
        std::erase(names, always);
        names.emplace(names.begin(), always);
    }
    return Choose(row, names, value);
}

/// The text to assign; raises when the property does not take it.
std::string Checked_Text(const Setting_Row& row, const Text_Property& property,
                         const clsAppSettings& settings, std::string_view value) {
    switch (property.values) {
        case Text_Values::flight_log:
            return Existing_Log(row, settings.Outside(), value);
        case Text_Values::airline:
            return Existing_Airline(row, settings.Outside(), value);
        case Text_Values::weather_source:
            return Known_Source(row, settings.Outside(), value);
        case Text_Values::link_address: {
            const std::string fault =
                value.empty() ? std::string() : Link_Address_Fault(std::string(value));
            if (!fault.empty())
                throw Refusal(row.name, "is unchanged. " + fault);
            break;
        }
        case Text_Values::any:
            break;
    }
    return std::string(value);
}

void Check_Definition(std::string_view name, std::string_view definition) {
    if (!definition.empty() && (definition.find('^') == std::string_view::npos ||
                                Trimmed_View(Before(definition, "^")).empty())) {
        throw Refusal(name,
                      "takes the field's name, \"^\", and the entries of its list separated by "
                      "\"|\"");
    }
}

}  // namespace

std::vector<std::pair<std::string, std::string>> List_Settings(const clsAppSettings& settings) {
    std::vector<std::pair<std::string, std::string>> list;
    for (const auto& row : Setting_Table())
        list.emplace_back(row.name, Row_Text(settings, row));
    for (std::size_t i = 0; i < optional_field_count; ++i) {
        list.emplace_back(std::string(optional_fields_name) + "(" + std::to_string(i) + ")",
                          settings.OptFields(i));
    }
    for (auto& entry : Read_Only_Settings(settings))
        list.push_back(std::move(entry));
    return list;
}

std::string Get_Setting_Text(const clsAppSettings& settings, std::string_view name) {
    if (const auto* row = Find_Row(name))
        return Row_Text(settings, *row);
    if (const auto index = Optional_Field_Index(name))
        return settings.OptFields(*index);
    if (auto text = Read_Only_Text(settings, name))
        return *text;
    throw Run_Error(error_number::invalid_call, "There is no setting named " + Quoted(name));
}

void Set_Setting_Text(clsAppSettings& settings, std::string_view name, std::string_view value) {
    if (Read_Only_Text(settings, name))
        throw Refusal(name, "can only be read");
    const auto is_control = [](char c) { return static_cast<unsigned char>(c) < ' '; };
    if (std::any_of(value.begin(), value.end(), is_control))
        throw Refusal(name, "takes a text of one line without control characters");
    const std::string trimmed = Trim(value);
    if (const auto index = Optional_Field_Index(name)) {
        Check_Definition(name, trimmed);
        settings.Set_OptFields(*index, trimmed);
        return;
    }
    const auto* row = Find_Row(name);
    if (row == nullptr)
        throw Run_Error(error_number::invalid_call, "There is no setting named " + Quoted(name));
    if (const auto* text = std::get_if<Text_Property>(&row->property)) {
        Assign_Text(*row, Checked_Text(*row, *text, settings, trimmed), settings);
        return;
    }
    App_Setting_Values trial;
    Take_Stored_Text(*row, trimmed, trial);
    if (const auto* number = std::get_if<Number_Property>(&row->property))
        Check_Range(*row, number->range, trial.*number->value);
    Assign_Text(*row, trimmed, settings);
}

}  // namespace norvane
