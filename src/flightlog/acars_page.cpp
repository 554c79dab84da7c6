#include "flightlog/acars_page.h"

namespace norvane {

namespace {

// How many empty cells the headers of the two sections have within.
constexpr int aircraft_header_cells = 1;
constexpr int flight_header_cells = 2;

}  // namespace

std::filesystem::path Write_ACARS_Page(const Services& services, const ACARS_Page& page) {
    Report_File file(services, "Norvane ACARS Report");
    HTML_Heading(file, "ACARS Report");
    HTML_Section_Header(file, "AIRCRAFT INFORMATION", aircraft_header_cells);
    for (const Field_Row& row : page.aircraft)
        HTML_Field_Row(file, row);
    HTML_Field_Row(file, {{}, Row_Kind::bottom});
    HTML_Section_Header(file, "FLIGHT INFORMATION", flight_header_cells);
    for (const Field_Row& row : page.flight)
        HTML_Field_Row(file, row);
    HTML_Field_Row(file, Spacer_Row(Row_Kind::bottom));
    file.Line("</table>");
    HTML_Text_Box(file, "WX - ORIGIN", page.wx_origin);
    HTML_Text_Box(file, "WX - DESTINATION", page.wx_destination);
    HTML_Text_Box(file, "FLIGHT PLAN", page.flight_plan);
    HTML_Text_Box(file, "COMMENTS", page.comments);
    return file.Finish();
}

void Add_Own_Fields(ACARS_Page& page, std::span<const HTML_Pair> fields) {
    page.flight.push_back(Spacer_Row());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::size_t place = i % 3;
        if (place == 0)
            page.flight.emplace_back();
        page.flight.back().pairs.at(place) = fields[i];
    }
}

}  // namespace norvane
