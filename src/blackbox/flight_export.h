#pragma once
// A flight's track, its block events and its touches for other programs, in their formats. UTF-8;
// degrees of WGS 84; altitudes above mean sea level, in metres but for CSV, whose columns name
// their units. Where the track has a gap the line has one. Times are left out where the recording
// does not tell when it began.

#include <optional>
#include <string>
#include <string_view>

#include "blackbox/flight_summary.h"

namespace norvane {

enum class Export_Format {
    kml,      // KML 2.2, gx:MultiTrack; lines where there are no times
    gpx,      // GPX 1.1
    geojson,  // RFC 7946; the times of the track stand in its property "coordTimes"
    csv       // RFC 4180; the track alone
};

/// "kml", "gpx", "geojson", "csv", whatever the case.
[[nodiscard]] std::optional<Export_Format> Export_Format_Of(std::string_view name);

[[nodiscard]] std::string Export_Flight(const Flight_Summary& flight, Export_Format format);

}  // namespace norvane
