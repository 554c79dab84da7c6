#pragma once
// The forms that an airline's scripts take, as they are posted: a PIREP and an ACARS report. Each
// is made with the field names and by the encoding of one airline.

#include <string>
#include <string_view>

namespace norvane {

class clsVASettings;

/// What an ACARS report tells besides its addressee.
struct ACARS_Report {
    /// Lines separated by CR LF, at least four: time, flight, aircraft or route, kind; then the
    /// text.
    std::string message;
    std::string pilot_id;
    std::string departure_icao;
    std::string arrival_icao;
};

/// The values of a PIREP, separated by "|", under the airline's field names.
[[nodiscard]] std::string PIREP_Form(const clsVASettings& airline, std::string_view pirep);
/// One message as the fields "acars0" to "acars7". Raises 9 for one of less than four lines.
[[nodiscard]] std::string Report_Form(const clsVASettings& airline, const ACARS_Report& report);

}  // namespace norvane
