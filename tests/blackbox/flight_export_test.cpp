// What other programs read of a flight: no line over a gap, no text that breaks the file, altitudes
// and times as they were.

#include "blackbox/flight_export.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "blackbox/sample_flight.h"
#include "common/text.h"

namespace norvane::test {
namespace {

using testing::HasSubstr;
using testing::Not;

std::size_t Count(const std::string& text, std::string_view what) {
    return Split(text, what).size() - 1;
}

/// Every end belongs to the element that was begun last.
std::string Nesting_Fault(const std::string& xml) {
    std::vector<std::string> open;
    for (const std::string& piece : Split(xml.substr(xml.find("?>") + 2), '<')) {
        const std::string name = piece.substr(0, piece.find_first_of(" >"));
        if (piece.find('>') == std::string::npos)
            continue;
        if (name.front() != '/')
            open.push_back(name);
        else if (open.empty() || open.back() != name.substr(1))
            return name;
        else
            open.pop_back();
    }
    return open.empty() ? std::string() : open.back();
}

TEST(Flight_Exports, Leave_gaps_open_and_keep_height_and_time) {
    const Flight_Summary flight = Sample_Flight();
    const std::string kml = Export_Flight(flight, Export_Format::kml);
    EXPECT_EQ(Count(kml, "<gx:Track>"), 3U);
    EXPECT_THAT(kml, HasSubstr("<gx:coord>-73.1000000 40.1000000 304.8</gx:coord>"));
    EXPECT_EQ(Count(kml, "<when>2026-11-23T14:05:22.345Z</when>"), 1U);
    EXPECT_THAT(kml, HasSubstr("<gx:interpolate>0</gx:interpolate>"));
    const std::string gpx = Export_Flight(flight, Export_Format::gpx);
    EXPECT_EQ(Count(gpx, "<trkseg>"), 3U);
    EXPECT_EQ(Count(gpx, "<trkpt "), 5U);
    EXPECT_THAT(gpx, HasSubstr("<trkpt lat=\"40.1000000\" lon=\"-73.1000000\">\n<ele>304.8</ele>\n"
                               "<time>2026-11-23T14:05:22.345Z</time>"));
    const auto track =
        nlohmann::json::parse(Export_Flight(flight, Export_Format::geojson)).at("features").at(0);
    const auto& lines = track.at("geometry").at("coordinates");
    const auto& times = track.at("properties").at("coordTimes");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines.at(1).size(), 2U) << "a line has two ends";
    EXPECT_EQ(lines.at(0).at(1), (nlohmann::json{-73.1, 40.1, 304.8}));
    EXPECT_EQ(times.at(0).at(1), "2026-11-23T14:05:22.345Z");
    EXPECT_EQ(times.at(1).size(), lines.at(1).size());
    const auto rows = Split(Export_Flight(flight, Export_Format::csv), cr_lf);
    ASSERT_EQ(rows.size(), 7U);
    EXPECT_EQ(rows.at(2),
              "10.000,2026-11-23T14:05:22.345Z,40.1000000,-73.1000000,1000.0,12.5,-700,140.5,139.9,"
              "271.25,0,off,1");
    EXPECT_TRUE(rows.at(3).ends_with(",2") && rows.at(4).ends_with(",3"));
}

TEST(Flight_Exports, Stay_whole_whatever_a_text_holds) {
    Flight_Summary flight = Sample_Flight();
    flight.aircraft = "<B&\"7\"> \x01 Zo\xEB";
    for (const auto format : {Export_Format::kml, Export_Format::gpx}) {
        const std::string xml = Export_Flight(flight, format);
        EXPECT_THAT(xml, HasSubstr("&lt;B&amp;&quot;7&quot;&gt;  Zo\xC3\xAB<"));
        EXPECT_EQ(Nesting_Fault(xml), "");
    }
    const auto json = nlohmann::json::parse(Export_Flight(flight, Export_Format::geojson));
    EXPECT_EQ(json.at("features").at(0).at("properties").at("aircraft"),
              "<B&\"7\"> \x01 Zo\xC3\xAB");
}

TEST(Flight_Exports, Invent_no_time_and_no_track) {
    Flight_Summary flight = Sample_Flight();
    flight.began_utc.clear();
    const std::string kml = Export_Flight(flight, Export_Format::kml);
    EXPECT_THAT(kml, Not(HasSubstr("<when>")));
    EXPECT_EQ(Count(kml, "<LineString>"), 3U);
    EXPECT_EQ(Nesting_Fault(kml), "");
    EXPECT_THAT(Export_Flight(flight, Export_Format::gpx), Not(HasSubstr("<time>")));
    EXPECT_THAT(Export_Flight(flight, Export_Format::geojson), Not(HasSubstr("imes")));
    EXPECT_THAT(Export_Flight(flight, Export_Format::csv), HasSubstr("\r\n0.000,,40.0"));
    for (const auto* name : {"kml", "gpx", "geojson", "csv"})
        EXPECT_NE(Export_Flight({}, Export_Format_Of(name).value()), "");
}

TEST(Flight_Exports, Cut_a_line_at_the_antimeridian) {
    Flight_Summary flight;
    flight.track.resize(2);
    flight.track[0].position = {10, 179};
    flight.track[1].position = {20, -178};
    flight.track[1].altitude_ft = 3 * 3280.84;
    const auto json = nlohmann::json::parse(Export_Flight(flight, Export_Format::geojson));
    const auto lines = json.at("features").at(0).at("geometry").at("coordinates");
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines.at(0).at(1), (nlohmann::json{180.0, 13.3333333, 1000.0}));
    EXPECT_EQ(lines.at(1).at(0), (nlohmann::json{-180.0, 13.3333333, 1000.0}));
    flight.track[0].position.longitude = 180;
    EXPECT_THAT(Export_Flight(flight, Export_Format::gpx), HasSubstr("lon=\"-180.0000000\""));
}

}  // namespace
}  // namespace norvane::test
