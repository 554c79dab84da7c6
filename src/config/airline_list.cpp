#include "config/airline_list.h"

#include <algorithm>
#include <array>
#include <system_error>

#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr std::string_view directory_prefix = "VA_";

/// The store keeps a section for each airline, so these cannot be airlines.
constexpr std::array<std::string_view, 10> reserved_names{
    "DEFAULT", "VA",   "Virtual Airline", "Options", "PIREP",
    "AppPos",  "Grid", "Flight Plan",     "ACARS",   "Due PIREPs"};

}  // namespace

std::string Airline_Name_Fault(std::string_view name) {
    const bool reserved =
        std::any_of(reserved_names.begin(), reserved_names.end(),
                    [&](std::string_view section) { return Equal_No_Case(section, name); });
    if (!reserved)
        return {};
    return "No airline can be named \"" + std::string(name) +
           "\": the settings keep a section of that name";
}

std::string Airline_Directory(std::string_view name) {
    if (name == default_airline)
        return std::string(stored_default_airline);
    return std::string(directory_prefix) + std::string(name);
}

std::vector<std::string> List_Airlines(Services& services) {
    std::vector<std::string> airlines;
    bool has_default = false;
    std::error_code failure;
    for (std::filesystem::directory_iterator entry(services.program_directory, failure), end;
         !failure && entry != end; entry.increment(failure)) {
        std::error_code unknown;
        if (!entry->is_directory(unknown))
            continue;
        const std::string directory = Upper(From_Path(entry->path().filename()));
        has_default = has_default || directory == stored_default_airline;
        if (!directory.starts_with(directory_prefix) || directory == directory_prefix)
            continue;
        const std::string name = directory.substr(directory_prefix.size());
        // Two names that differ in such letters only would be one airline.
        const bool is_held =
            To_Path(From_Path(entry->path().filename())) == entry->path().filename();
        const std::string fault =
            is_held ? Airline_Name_Fault(name)
                    : "its name has letters that the program's character set, Windows-1252, does "
                      "not have; rename the directory to fly for this airline";
        if (fault.empty()) {
            airlines.push_back(name);
        } else {
            Log_Error(services, "modFunctions.List_Airlines()",
                      {error_number::invalid_call, From_Path(entry->path()) + ": " + fault},
                      Show::silent);
        }
    }
    std::sort(airlines.begin(), airlines.end());
    airlines.erase(std::unique(airlines.begin(), airlines.end()), airlines.end());
    if (has_default || airlines.empty())
        airlines.emplace_back(default_airline);
    return airlines;
}

std::vector<Airline_Codes> Read_Airline_Codes(const std::filesystem::path& file) {
    std::vector<Airline_Codes> rows;
    const std::string content = Read_File(file);
    for (Line_Reader reader(content); reader.Next();) {
        std::string_view rest = reader.Line();
        if (rest.empty())
            continue;
        const auto take_field = [&rest] {
            std::string field(Before(rest, std::string_view(&field_separator, 1)));
            rest.remove_prefix(std::min(field.size() + 1, rest.size()));
            return field;
        };
        Airline_Codes& row = rows.emplace_back();
        for (auto* field : {&row.name, &row.iata, &row.icao})
            *field = take_field();
    }
    return rows;
}

}  // namespace norvane
