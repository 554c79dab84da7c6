#include "blackbox/flight_export.h"

#include <array>

#include "blackbox/export_parts.h"
#include "common/text.h"

namespace norvane {

namespace {

struct Format_Row {
    std::string_view name;
    Export_Format format;
    std::string (*write)(const Flight_Summary& flight);
};

constexpr auto formats = std::to_array<Format_Row>({
    {"kml", Export_Format::kml, Export_Kml},
    {"gpx", Export_Format::gpx, Export_Gpx},
    {"geojson", Export_Format::geojson, Export_Geo_Json},
    {"csv", Export_Format::csv, Export_Csv},
});

}  // namespace

std::optional<Export_Format> Export_Format_Of(std::string_view name) {
    for (const Format_Row& row : formats) {
        if (Equal_No_Case(row.name, name))
            return row.format;
    }
    return std::nullopt;
}

std::string Export_Flight(const Flight_Summary& flight, Export_Format format) {
    for (const Format_Row& row : formats) {
        if (row.format == format)
            return row.write(flight);
    }
    return {};
}

}  // namespace norvane
