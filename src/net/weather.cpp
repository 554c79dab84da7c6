// Airport weather: which source is asked, and how the report is cut out of its page.

#include <algorithm>
#include <initializer_list>
#include <vector>

#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/setting_codes.h"
#include "net/cls_win_inet.h"
#include "net/form_encoding.h"

namespace norvane {

namespace {

constexpr std::string_view no_report = "Unable to connect to WX server or ICAO not found";
constexpr std::string_view no_server = "Unable to connect to WX server";

bool Holds_Any(std::string_view answer, std::initializer_list<std::string_view> words) {
    return std::any_of(words.begin(), words.end(),
                       [&](std::string_view word) { return Contains_No_Case(answer, word); });
}

/// An answer without any element is the report itself, not a page around it.
bool Is_Plain(std::string_view answer) {
    return answer.find('<') == std::string_view::npos;
}

/// The place of `mark` from `start` on; raises 5 when there is none.
std::size_t Place_Of(std::string_view answer, std::string_view mark, std::size_t start,
                     std::string_view icao) {
    const std::size_t place = answer.find(mark, start);
    if (place == std::string_view::npos) {
        throw Run_Error(error_number::invalid_call,
                        "The weather source's answer holds no report of " + std::string(icao));
    }
    return place;
}

/// From the code and a blank to the next element, or to the end of a plain answer.
std::string Cut_At_Code(std::string_view icao, const std::string& answer) {
    const std::size_t start = Place_Of(answer, std::string(icao) + ' ', 0, icao);
    if (Is_Plain(answer))
        return answer.substr(start);
    return answer.substr(start, Place_Of(answer, "<", start, icao) - start);
}

/// The value of the form field "metar" within the page; nothing when the page has no such field.
std::string Cut_Form_Value(std::string_view icao, const std::string& answer) {
    static constexpr std::string_view field = "metar=";
    const std::size_t place = answer.find(field);
    if (place == std::string::npos)
        return Is_Plain(answer) ? answer : std::string();
    const std::size_t start = place + field.size();
    return answer.substr(start, Place_Of(answer, "\">", start, icao) - start);
}

std::string On_One_Line(std::string_view report) {
    return Trim(Replace_All(report, "\n", ""));
}

/// What a terminal or a browser would take as an order is no weather. Tabs and line breaks stay.
std::string Without_Controls(std::string text) {
    static constexpr std::string_view undefined = "\x81\x8D\x8F\x90\x9D";
    std::erase_if(text, [](char c) {
        const auto code = static_cast<unsigned char>(c);
        const bool kept = c == '\t' || c == '\r' || c == '\n';
        return (code < ' ' && !kept) || code == 0x7F || undefined.find(c) != undefined.npos;
    });
    return text;
}

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
    const std::string& source = m_settings.WX_URL();
    if (Weather_Source_Of(source) == Weather_Source::none)
        return {};
    std::string result;
    Guarded(m_services, "clsWinInet.Get_METAR()", Show::silent, [&] {
        const std::string code = Code_Of(icao);
        std::string report;
        if (!code.empty()) {
            m_sources.Get_URLs(source);
            std::string answer = Ask_Source(m_sources.URL_METAR(), code);
            if (!Holds_Any(answer, {"error", "sorry", "you entered", "no metar"}))
                report = On_One_Line(Cut_METAR(code, std::move(answer)));
        }
        result = report.empty() ? no_report : report;
    });
    return result;
}

std::string clsWinInet::Cut_METAR(std::string_view icao, std::string answer) {
    const Weather_Source source = Weather_Source_Of(m_settings.WX_URL());
    if (source == Weather_Source::noaa)
        return Cut_At_Code(icao, answer);
    if (source == Weather_Source::vatsim)
        return Cut_Form_Value(icao, answer);
    if (source == Weather_Source::adds && !Is_Plain(answer))
        Strip_HTML(answer, "SPAN");
    return answer;
}

std::string clsWinInet::Get_TAF(std::string_view icao) {
    std::string result;
    Guarded(m_services, "clsWinInet.Get_TAF()", Show::silent, [&] {
        const std::string code = Code_Of(icao);
        std::string report;
        if (!code.empty()) {
            m_sources.Get_URLs(Name_Of(Weather_Source::noaa));
            const std::string answer = Ask_Source(m_sources.URL_TAF(), code);
            if (!Holds_Any(answer, {"error", "sorry", "no taf"}))
                report = On_One_Line(Cut_At_Code(code, answer));
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
            report = Ask_Source(m_sources.URL_METAR_TAF(), code);
            if (Holds_Any(report, {"error", "sorry", "you entered"}))
                report.clear();
            else if (!Is_Plain(report))
                Strip_HTML(report, "PRE");
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

void clsWinInet::Strip_HTML(std::string& text, std::string_view tag) {
    Guarded(m_services, "clsWinInet.Strip_HTML()", Show::silent, [&] {
        const auto missing = [&](std::string_view what) {
            return Run_Error(error_number::invalid_call, "The page has no " + std::string(what) +
                                                             " tag of " + std::string(tag));
        };
        const std::size_t opening = Find_No_Case(text, "<" + std::string(tag));
        if (opening == std::string::npos)
            throw missing("opening");
        text.erase(0, opening);
        const std::size_t end_of_tag = text.find('>');
        text.erase(0, end_of_tag == std::string::npos ? 0 : end_of_tag + 1);
        const std::size_t closing = Find_No_Case(text, "</" + std::string(tag) + ">");
        if (closing == std::string::npos) {
            text.clear();
            throw missing("closing");
        }
        text.erase(closing);
        text = Trim(Before(text, "<"));
    });
}

}  // namespace norvane
