#pragma once
// The virtual airlines the pilot has set up, each a directory "VA_" + name of the program directory
// ("VA" for the default one), and the list of all airlines' codes in "bin\airline.cfg".

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

struct Services;

/// The default airline as the pilot sees it, and as the store names it.
inline constexpr std::string_view default_airline = "DEFAULT";
inline constexpr std::string_view stored_default_airline = "VA";

/// Names of the airlines in capitals, in name order, "DEFAULT" last where its directory exists or
/// where there is no other. A directory whose name cannot be an airline's is left out and reported
/// to the error log.
[[nodiscard]] std::vector<std::string> List_Airlines(Services& services);

/// Why no airline can have this name: the settings store keeps a section of that name. Empty when
/// one can. Letter case does not matter.
[[nodiscard]] std::string Airline_Name_Fault(std::string_view name);

/// The name of an airline's directory: "VA", or "VA_" + name.
[[nodiscard]] std::string Airline_Directory(std::string_view name);

struct Airline_Codes {
    std::string name;
    std::string iata;
    std::string icao;
};

/// The rows of a file "airline.cfg"; what a line lacks is empty. Raises when it cannot be read.
[[nodiscard]] std::vector<Airline_Codes> Read_Airline_Codes(const std::filesystem::path& file);

}  // namespace norvane
