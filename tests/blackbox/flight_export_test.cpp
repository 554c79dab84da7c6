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
