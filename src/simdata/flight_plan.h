#pragma once
// The simulator's saved flight plans. Two layouts share the ".pln" ending: sections and keys with
// numbered waypoints, and XML with one element a line. clsIniFile reads them with these functions;
// texts are in the code page, `file` is the name that errors tell.

#include <string>
#include <string_view>

namespace norvane {

/// What a plan says, each text empty until it is found.
struct Flight_Plan {
    std::string route;
    std::string origin_icao;
    std::string origin_name;
    std::string destination_icao;
    std::string destination_name;
    std::string flight_level;
    std::string type;
};

/// The code page text of a plan's bytes: UTF-16 (by its byte order mark, or the NUL beside its
/// first character), UTF-8 where all of it is that, else the code page. Nothing in it breaks a log
/// line.
[[nodiscard]] std::string Flight_Plan_Text(std::string_view bytes);

/// A text of sections and keys; every other one counts as XML.
[[nodiscard]] bool Is_Ini_Flight_Plan(const std::string& text);

/// Both fill `plan` with what they find. Raise for an element or waypoint that is cut or misshapen,
/// the former also for a cruising altitude that is no number; what was found before stays in
/// `plan`, the route is set at the end only.
void Read_Ini_Flight_Plan(const std::string& text, std::string_view file, Flight_Plan& plan);
void Read_Xml_Flight_Plan(std::string_view text, std::string_view file, Flight_Plan& plan);

}  // namespace norvane
