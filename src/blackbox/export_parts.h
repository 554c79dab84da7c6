#pragma once
// What the formats of an export have in common: the pieces of a track, the places that are marked,
// and texts and figures fit for a file.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "blackbox/flight_summary.h"

namespace norvane {

/// The track from one gap to the next. Every point is in one piece; no piece is empty.
[[nodiscard]] std::vector<std::vector<Flight_Point>> Track_Pieces(const Flight_Summary& flight);
/// The same, with a piece cut in two where it crosses the antimeridian: its line ends and begins
/// there at 180 degrees.
[[nodiscard]] std::vector<std::vector<Flight_Point>> Pieces_Of_One_Hemisphere(
    const Flight_Summary& flight);

/// A block event or a contact with the ground.
struct Marked_Place {
    double seconds = 0;
    Position position;
    /// Where the track was at that moment, feet.
    double altitude_ft = 0;
    /// "OUT", or "Touch 1".
    std::string name;
    std::string description;
};
[[nodiscard]] std::vector<Marked_Place> Marked_Places(const Flight_Summary& flight);

/// "214 KJFK-KBOS", else the ID.
[[nodiscard]] std::string Title_Of(const Flight_Summary& flight);

/// Metres with one decimal, degrees with seven.
[[nodiscard]] std::string Metres(double feet);
[[nodiscard]] std::string Degrees(double degrees);
/// In UTF-8, with the marks of XML as entities and without what no XML may hold.
[[nodiscard]] std::string Xml_Text(std::string_view text);

[[nodiscard]] std::string Export_Kml(const Flight_Summary& flight);
[[nodiscard]] std::string Export_Gpx(const Flight_Summary& flight);
[[nodiscard]] std::string Export_Geo_Json(const Flight_Summary& flight);
[[nodiscard]] std::string Export_Csv(const Flight_Summary& flight);

}  // namespace norvane
