// Airport weather: which source is asked.

#include <algorithm>
#include <utility>
#include <vector>

#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/setting_codes.h"
#include "net/cls_win_inet.h"
#include "net/form_encoding.h"
#include "net/weather_pages.h"

namespace norvane {

namespace {

constexpr std::string_view no_report = "Unable to connect to WX server or ICAO not found";
constexpr std::string_view no_server = "Unable to connect to WX server";

std::string Code_Of(std::string_view icao) {
    return Upper(Trim(icao));
}

}  // namespace

/// The source's answer to `path` with the code behind it.
std::string clsWinInet::Ask_Source(std::string_view path, std::string_view code) {
    return Without_Controls(
        HTTP_Request(m_sources.URL(), Http_Verb::get, std::string(path) + Encode_URL(code)));
}

std::string clsWinInet::Get_METAR(std::string_view icao) {
    // A copy: the pilot may choose another source while this one is asked.
    const std::string source = m_settings.WX_URL();
    if (Weather_Source_Of(source) == Weather_Source::none)
        return {};
    std::string result;
    Guarded(m_services, "clsWinInet.Get_METAR()", Show::silent, [&] {
        const std::string code = Code_Of(icao);
        std::string report;
        if (!code.empty()) {
            m_sources.Get_URLs(source);
            std::string answer = Ask_Source(m_sources.URL_METAR(), code);
            report = METAR_In(m_services, source, code, std::move(answer));
        }
        result = report.empty() ? no_report : report;
    });
    return result;
}

std::string clsWinInet::Get_TAF(std::string_view icao) {
    std::string result;
    Guarded(m_services, "clsWinInet.Get_TAF()", Show::silent, [&] {
        const std::string code = Code_Of(icao);
        std::string report;
        if (!code.empty()) {
            m_sources.Get_URLs(Name_Of(Weather_Source::noaa));
            report = TAF_In(code, Ask_Source(m_sources.URL_TAF(), code));
        }
        result = report.empty() ? no_report : report;
    });
    return result;
}

std::string clsWinInet::Get_METAR_TAF(std::string_view icao) {
    std::string result;
    Guarded(m_services, "clsWinInet.Get_METAR_TAF()", Show::silent, [&] {
        const std::string code = Code_Of(icao);
        std::string report;
        if (!code.empty()) {
            m_sources.Get_URLs(Name_Of(Weather_Source::adds));
            report = METAR_TAF_In(m_services, Ask_Source(m_sources.URL_METAR_TAF(), code));
        }
        result = report.empty() ? no_server : Trim(report);
    });
    return result;
}

std::string clsWinInet::Get_WX(std::string_view icao) {
    std::string result;
    Guarded(m_services, "clsWinInet.Get_WX()", Show::silent, [&] {
        const Weather_Source source = Weather_Source_Of(m_settings.WX_URL());
        if (source == Weather_Source::simulator || source == Weather_Source::adds) {
            result = Trim(Get_METAR_TAF(icao));
        } else if (source == Weather_Source::noaa || source == Weather_Source::vatsim) {
            const std::string metar = Get_METAR(icao);
            const std::string taf = Get_TAF(icao);
            const bool both = !metar.empty() && !taf.empty();
            result = Trim(metar + (both ? "\r\n\r\n" : "") + taf);
        }
    });
    return result;
}

bool Holds_Report(std::string_view weather) {
    const std::vector<std::string> lines = Split(weather, cr_lf);
    return std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
        return !Trimmed_View(line).empty() && line != no_report && line != no_server;
    });
}

}  // namespace norvane
