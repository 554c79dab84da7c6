#include <fmt/format.h>

#include "blackbox/export_parts.h"
#include "blackbox/flight_time.h"

namespace norvane {

namespace {

constexpr std::string_view xml_head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

/// An element with this text, on a line of its own; none when the text is empty.
std::string Element(std::string_view name, std::string_view text) {
    return text.empty() ? std::string() : fmt::format("<{0}>{1}</{0}>\n", name, Xml_Text(text));
}

/// Longitude, latitude and altitude as KML has them.
std::string Kml_Coordinates(Position position, double altitude_ft, char divider) {
    return Degrees(position.longitude) + divider + Degrees(position.latitude) + divider +
           Metres(altitude_ft);
}

std::string Kml_Place(const Flight_Summary& flight, const Marked_Place& place) {
    const auto utc = Utc_At(flight, place.seconds);
    return "<Placemark>\n" + Element("name", place.name) +
           Element("description", place.description) +
           (utc ? "<TimeStamp>\n" + Element("when", *utc) + "</TimeStamp>\n" : std::string()) +
           "<Point>\n<altitudeMode>absolute</altitudeMode>\n<coordinates>" +
           Kml_Coordinates(place.position, place.altitude_ft, ',') +
           "</coordinates>\n</Point>\n</Placemark>\n";
}

/// All times stand in front of all places.
std::string Kml_Timed_Piece(const Flight_Summary& flight, const std::vector<Flight_Point>& piece) {
    std::string xml = "<gx:Track>\n<altitudeMode>absolute</altitudeMode>\n";
    for (const Flight_Point& point : piece)
        xml += Element("when", Utc_At(flight, point.seconds).value_or(""));
    for (const Flight_Point& point : piece)
        xml += Element("gx:coord", Kml_Coordinates(point.position, point.altitude_ft, ' '));
    return xml + "</gx:Track>\n";
}

std::string Kml_Line(const std::vector<Flight_Point>& piece) {
    std::string xml = "<LineString>\n<altitudeMode>absolute</altitudeMode>\n<coordinates>\n";
    for (const Flight_Point& point : piece)
        xml += Kml_Coordinates(point.position, point.altitude_ft, ',') + "\n";
    // A line has two ends.
    if (piece.size() == 1)
        xml += Kml_Coordinates(piece[0].position, piece[0].altitude_ft, ',') + "\n";
    return xml + "</coordinates>\n</LineString>\n";
}

/// In a piece of its own the gap to the next one stays open.
std::string Kml_Track(const Flight_Summary& flight) {
    const bool timed = Utc_At(flight, 0).has_value();
    std::string xml = timed ? "<gx:MultiTrack>\n<altitudeMode>absolute</altitudeMode>\n"
                              "<gx:interpolate>0</gx:interpolate>\n"
                            : "<MultiGeometry>\n";
    for (const auto& piece : Track_Pieces(flight))
        xml += timed ? Kml_Timed_Piece(flight, piece) : Kml_Line(piece);
    return xml + (timed ? "</gx:MultiTrack>\n" : "</MultiGeometry>\n");
}

/// Longitudes of GPX end before 180.
std::string Gpx_Place(Position position) {
    constexpr double antimeridian = 180;
    const std::string longitude = Degrees(position.longitude);
    return fmt::format("lat=\"{}\" lon=\"{}\"", Degrees(position.latitude),
                       longitude == Degrees(antimeridian) ? "-" + longitude : longitude);
}

std::string Gpx_Height_And_Time(const Flight_Summary& flight, double altitude_ft, double seconds) {
    return Element("ele", Metres(altitude_ft)) +
           Element("time", Utc_At(flight, seconds).value_or(""));
}

}  // namespace

std::string Export_Kml(const Flight_Summary& flight) {
    std::string xml(xml_head);
    xml +=
        "<kml xmlns=\"http://www.opengis.net/kml/2.2\" "
        "xmlns:gx=\"http://www.google.com/kml/ext/2.2\">\n<Document>\n";
    xml += Element("name", Title_Of(flight)) + Element("description", flight.aircraft);
    xml +=
        "<Style id=\"track\">\n<LineStyle>\n<color>ff0070ff</color>\n<width>3</width>\n"
        "</LineStyle>\n</Style>\n";
    if (!flight.track.empty()) {
        xml += "<Placemark>\n" + Element("name", flight.id) + "<styleUrl>#track</styleUrl>\n" +
               Kml_Track(flight) + "</Placemark>\n";
    }
    for (const Marked_Place& place : Marked_Places(flight))
        xml += Kml_Place(flight, place);
    return xml + "</Document>\n</kml>\n";
}

std::string Export_Gpx(const Flight_Summary& flight) {
    std::string xml(xml_head);
    xml +=
        "<gpx version=\"1.1\" creator=\"Norvane\" xmlns=\"http://www.topografix.com/GPX/1/1\">\n"
        "<metadata>\n";
    xml += Element("name", Title_Of(flight)) + Element("desc", flight.aircraft) +
           Element("time", Utc_At(flight, 0).value_or("")) + "</metadata>\n";
    for (const Marked_Place& place : Marked_Places(flight)) {
        xml += "<wpt " + Gpx_Place(place.position) + ">\n" +
               Gpx_Height_And_Time(flight, place.altitude_ft, place.seconds) +
               Element("name", place.name) + Element("desc", place.description) + "</wpt>\n";
    }
    xml += "<trk>\n" + Element("name", flight.id);
    for (const auto& piece : Track_Pieces(flight)) {
        xml += "<trkseg>\n";
        for (const Flight_Point& point : piece) {
            xml += "<trkpt " + Gpx_Place(point.position) + ">\n" +
                   Gpx_Height_And_Time(flight, point.altitude_ft, point.seconds) + "</trkpt>\n";
        }
        xml += "</trkseg>\n";
    }
    return xml + "</trk>\n</gpx>\n";
}

}  // namespace norvane
