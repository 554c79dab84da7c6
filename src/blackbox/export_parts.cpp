#include "blackbox/export_parts.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "blackbox/flight_fields.h"
#include "common/code_page.h"
#include "common/number.h"
#include "simlink/catalogue.h"

namespace norvane {

namespace {

/// Altitude of the track at a moment, between its points; 0 without a track.
double Altitude_At(const std::vector<Flight_Point>& track, double seconds) {
    if (track.empty())
        return 0;
    const auto after = std::lower_bound(
        track.begin(), track.end(), seconds,
        [](const Flight_Point& point, double moment) { return point.seconds < moment; });
    if (after == track.begin())
        return after->altitude_ft;
    const auto before = after - 1;
    if (after == track.end() || after->begins_segment || after->seconds <= before->seconds)
        return before->altitude_ft;
    return std::lerp(before->altitude_ft, after->altitude_ft,
                     (seconds - before->seconds) / (after->seconds - before->seconds));
}

/// Where the line between two points meets the antimeridian, on the first one's side.
Flight_Point Crossing(const Flight_Point& from, const Flight_Point& to) {
    constexpr double full_turn = 360;
    const double side = from.position.longitude < 0 ? -180 : 180;
    const double unrolled = to.position.longitude + (side < 0 ? -full_turn : full_turn);
    const double width = unrolled - from.position.longitude;
    const double part = width == 0 ? 0 : (side - from.position.longitude) / width;
    Flight_Point crossing = from;
    crossing.seconds = std::lerp(from.seconds, to.seconds, part);
    crossing.position = {std::lerp(from.position.latitude, to.position.latitude, part), side};
    crossing.altitude_ft = std::lerp(from.altitude_ft, to.altitude_ft, part);
    return crossing;
}

std::string Touch_Text(const Touch& touch) {
    std::string text = touch.rate_fpm ? Format_Whole(*touch.rate_fpm) + " fpm" : std::string();
    if (touch.peak_g)
        text += (text.empty() ? "" : ", ") + Format_Fixed(*touch.peak_g, 2) + " g";
    return text;
}

}  // namespace

std::vector<std::vector<Flight_Point>> Track_Pieces(const Flight_Summary& flight) {
    std::vector<std::vector<Flight_Point>> pieces;
    for (const Flight_Point& point : flight.track) {
        if (pieces.empty() || point.begins_segment)
            pieces.emplace_back();
        pieces.back().push_back(point);
    }
    return pieces;
}

std::vector<std::vector<Flight_Point>> Pieces_Of_One_Hemisphere(const Flight_Summary& flight) {
    constexpr double half_turn = 180;
    std::vector<std::vector<Flight_Point>> cut;
    for (const auto& piece : Track_Pieces(flight)) {
        cut.emplace_back();
        for (const Flight_Point& point : piece) {
            if (!cut.back().empty() && std::abs(point.position.longitude -
                                                cut.back().back().position.longitude) > half_turn) {
                Flight_Point crossing = Crossing(cut.back().back(), point);
                cut.back().push_back(crossing);
                crossing.position.longitude = -crossing.position.longitude;
                cut.push_back({crossing});
            }
            cut.back().push_back(point);
        }
    }
    return cut;
}

std::vector<Marked_Place> Marked_Places(const Flight_Summary& flight) {
    std::vector<Marked_Place> places;
    for (const Recorded_Event& event : flight.events) {
        places.push_back({event.seconds, event.position, Altitude_At(flight.track, event.seconds),
                          std::string(Name_Of(event.event)),
                          std::string(Words_Of(event.evidence.rule))});
    }
    int number = 0;
    for (const Landing_Record& landing : flight.landings) {
        for (const Touch& touch : landing.touches) {
            places.push_back({touch.seconds, touch.position,
                              Altitude_At(flight.track, touch.seconds),
                              fmt::format("Touch {}", ++number), Touch_Text(touch)});
        }
    }
    return places;
}

std::string Title_Of(const Flight_Summary& flight) {
    if (flight.origin.empty() && flight.destination.empty())
        return flight.id;
    const std::string number = flight.flight_number.empty() ? "" : flight.flight_number + " ";
    return number + flight.origin + "-" + flight.destination;
}

std::string Metres(double feet) {
    return Format_Fixed(feet / feet_per_metre, 1);
}

std::string Degrees(double degrees) {
    return Format_Fixed(degrees, 7);
}

std::string Xml_Text(std::string_view text) {
    std::string xml;
    for (const char c : To_Utf8(text)) {
        switch (c) {
            case '&':
                xml += "&amp;";
                break;
            case '<':
                xml += "&lt;";
                break;
            case '>':
                xml += "&gt;";
                break;
            case '"':
                xml += "&quot;";
                break;
            case '\'':
                xml += "&apos;";
                break;
            default:
                if (static_cast<unsigned char>(c) >= ' ' || c == '\t' || c == '\n' || c == '\r')
                    xml += c;
        }
    }
    return xml;
}

}  // namespace norvane
