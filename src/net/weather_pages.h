#pragma once
// Cutting an airport's report out of what a weather source answers: a page, or the plain report.
// Used by the network client. Codes are in capitals.

#include <string>
#include <string_view>

namespace norvane {

struct Services;

/// What a terminal or a browser would take as an order is no weather. Tabs and line breaks stay.
[[nodiscard]] std::string Without_Controls(std::string text);

/// The report in an answer of `source` ("NOAA", "VATSIM", "ADDS" ...), on one line; empty when the
/// answer says that there is none. Raises 5 when a mark is missing.
[[nodiscard]] std::string METAR_In(Services& services, std::string_view source,
                                   std::string_view icao, std::string answer);
/// The same of a forecast, which comes from one source only.
[[nodiscard]] std::string TAF_In(std::string_view icao, const std::string& answer);
/// Both reports in an answer that holds both, with their line breaks.
[[nodiscard]] std::string METAR_TAF_In(Services& services, std::string answer);

}  // namespace norvane
