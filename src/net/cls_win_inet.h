#pragma once
// The network client whose answers are waited for: a PIREP that the pilot sends, weather, the
// online network's data. Users make a fresh one for each operation; the ACARS panel keeps one for
// the network's data. A
// second operation on a client whose request is still running fails. Operations report their own
// failures and never raise.

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "net/http_client.h"
#include "simdata/cls_ini_file.h"

namespace norvane {

class clsAppSettings;
class clsVASettings;
struct Services;

struct Post_Result {
    /// The request was answered, whatever the script said.
    bool success = false;
    /// The answer without blanks around it.
    std::string answer;
    /// Why there is none, as the error log has it.
    std::string failure = {};
    /// What is known of it besides, for the pilot; may be empty.
    std::string for_pilot = {};
};

class clsWinInet {
  public:
    clsWinInet(Services& services, const clsAppSettings& settings, const clsVASettings& airline,
               const Http_Options& options = {});

    /// Posts the values of a PIREP, separated by "|", under the active airline's field names, and
    /// keeps the answer in the file "sr" of the program directory. The caller tells the pilot about
    /// a failure and knows which file it was.
    [[nodiscard]] Post_Result Send_PIREP(std::string_view web_server, std::string_view post_script,
                                         std::string_view pirep);

    /// The airport's METAR from the pilot's weather source, or a line that tells there is none;
    /// empty when the request or its answer failed, or when the source is "NONE".
    [[nodiscard]] std::string Get_METAR(std::string_view icao);
    /// METAR and TAF as a message shows them; empty when the source offers none.
    [[nodiscard]] std::string Get_WX(std::string_view icao);
    /// The pilot's line of the online network's data, its ending CR included; empty when the pilot
    /// is not found or has filed no plan; none when the request failed or brought no data. Field 0
    /// is the call sign, 9 the aircraft, 11 and 13 the airports, 12 the altitude, 21 the rules, 30
    /// the route, separated by
    /// ":".
    [[nodiscard]] std::optional<std::string> Get_VATSIM_FlightPlan(std::string_view pilot_id);

    /// Ends a running request; its operation fails.
    void Cancel() { m_client.Cancel(); }
    [[nodiscard]] bool Is_Busy() const { return m_client.Is_Busy(); }

  private:
    [[nodiscard]] std::string HTTP_Request(std::string_view host, Http_Verb verb,
                                           std::string_view path, const std::string& form = {});
    [[nodiscard]] std::string Ask_Source(std::string_view path, std::string_view code);
    [[nodiscard]] std::string Get_TAF(std::string_view icao);
    [[nodiscard]] std::string Get_METAR_TAF(std::string_view icao);

    Services& m_services;
    const clsAppSettings& m_settings;
    const clsVASettings& m_airline;
    Http_Client m_client;
    std::function<bool()> m_given_up;
    clsIniFile m_sources;
};

/// True when a text of `Get_METAR` or `Get_WX` holds more than lines that tell there is no report.
[[nodiscard]] bool Holds_Report(std::string_view weather);

}  // namespace norvane
