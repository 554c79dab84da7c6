#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "blackbox/export_parts.h"
#include "blackbox/flight_fields.h"
#include "blackbox/flight_time.h"
#include "common/code_page.h"
#include "common/number.h"
#include "simlink/catalogue.h"

namespace norvane {

namespace {

using Json = nlohmann::ordered_json;

/// Figures as they are written elsewhere, not as binary neighbours of them.
Json Coordinates(Position position, double altitude_ft) {
    return {Round_Half_Up(position.longitude, 7), Round_Half_Up(position.latitude, 7),
            Round_Half_Up(altitude_ft / feet_per_metre, 1)};
}

Json Feature(Json geometry, Json properties) {
    return {{"type", "Feature"},
            {"geometry", std::move(geometry)},
            {"properties", std::move(properties)}};
}

Json Track_Feature(const Flight_Summary& flight) {
    Json lines = Json::array();
    Json times = Json::array();
    for (auto piece : Pieces_Of_One_Hemisphere(flight)) {
        // A line has two ends.
        if (piece.size() == 1)
            piece.push_back(piece.front());
        Json& line = lines.emplace_back(Json::array());
        Json& line_times = times.emplace_back(Json::array());
        for (const Flight_Point& point : piece) {
            line.push_back(Coordinates(point.position, point.altitude_ft));
            line_times.push_back(Utc_At(flight, point.seconds).value_or(""));
        }
    }
    Json properties{{"name", To_Utf8(Title_Of(flight))},
                    {"id", To_Utf8(flight.id)},
                    {"aircraft", To_Utf8(flight.aircraft)},
                    {"tail", To_Utf8(flight.tail)}};
    if (Utc_At(flight, 0))
        properties["coordTimes"] = std::move(times);
    return Feature({{"type", "MultiLineString"}, {"coordinates", std::move(lines)}},
                   std::move(properties));
}

/// No text that could need quotes stands in the table.
std::string Csv_Figures(const Flight_Point& point) {
    std::string row;
    const auto add = [&](double value, int decimals) {
        row += "," + Format_Fixed(value, decimals);
    };
    add(point.position.latitude, 7);
    add(point.position.longitude, 7);
    add(point.altitude_ft, 1);
    add(point.ground_elevation_ft, 1);
    add(point.vertical_speed_fpm, 0);
    add(point.ground_speed_kt, 1);
    add(point.indicated_airspeed_kt, 1);
    add(point.true_heading_deg, 2);
    return row;
}

}  // namespace

std::string Export_Geo_Json(const Flight_Summary& flight) {
    Json features = Json::array();
    if (!flight.track.empty())
        features.push_back(Track_Feature(flight));
    for (const Marked_Place& place : Marked_Places(flight)) {
        Json properties{{"name", To_Utf8(place.name)}, {"description", To_Utf8(place.description)}};
        if (const auto utc = Utc_At(flight, place.seconds))
            properties["time"] = *utc;
        features.push_back(Feature(
            {{"type", "Point"}, {"coordinates", Coordinates(place.position, place.altitude_ft)}},
            std::move(properties)));
    }
    return Json{{"type", "FeatureCollection"}, {"features", std::move(features)}}.dump(1) + "\n";
}

std::string Export_Csv(const Flight_Summary& flight) {
    std::string csv =
        "seconds,utc,latitude,longitude,altitude_ft,ground_elevation_ft,vertical_speed_fpm,"
        "ground_speed_kt,indicated_airspeed_kt,true_heading_deg,on_ground,phase,segment\r\n";
    int segment = 0;
    for (const auto& piece : Track_Pieces(flight)) {
        ++segment;
        for (const Flight_Point& point : piece) {
            csv += fmt::format("{},{}{},{},{},{}\r\n", Format_Fixed(point.seconds, 3),
                               Utc_At(flight, point.seconds).value_or(""), Csv_Figures(point),
                               point.on_ground ? 1 : 0, Name_Of(point.phase), segment);
        }
    }
    return csv;
}

}  // namespace norvane
