#include "net/weather_pages.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/setting_codes.h"

namespace norvane {

namespace {

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

/// Replaces `text` by the text of its first element `tag`, up to any element within.
void Strip_HTML(Services& services, std::string& text, std::string_view tag) {
    Guarded(services, "clsWinInet.Strip_HTML()", Show::silent, [&] {
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

/// What a page of the weather source holds as METAR.
std::string Cut_METAR(Services& services, std::string_view source, std::string_view icao,
                      std::string answer) {
    const Weather_Source kind = Weather_Source_Of(source);
    if (kind == Weather_Source::noaa)
        return Cut_At_Code(icao, answer);
    if (kind == Weather_Source::vatsim)
        return Cut_Form_Value(icao, answer);
    if (kind == Weather_Source::adds && !Is_Plain(answer))
        Strip_HTML(services, answer, "SPAN");
    return answer;
}

}  // namespace

std::string Without_Controls(std::string text) {
    static constexpr std::string_view undefined = "\x81\x8D\x8F\x90\x9D";
    std::erase_if(text, [](char c) {
        const auto code = static_cast<unsigned char>(c);
        const bool kept = c == '\t' || c == '\r' || c == '\n';
        return (code < ' ' && !kept) || code == 0x7F || undefined.find(c) != undefined.npos;
    });
    return text;
}

std::string METAR_In(Services& services, std::string_view source, std::string_view icao,
                     std::string answer) {
    if (Holds_Any(answer, {"error", "sorry", "you entered", "no metar"}))
        return {};
    return On_One_Line(Cut_METAR(services, source, icao, std::move(answer)));
}

std::string TAF_In(std::string_view icao, const std::string& answer) {
    if (Holds_Any(answer, {"error", "sorry", "no taf"}))
        return {};
    return On_One_Line(Cut_At_Code(icao, answer));
}

std::string METAR_TAF_In(Services& services, std::string answer) {
    if (Holds_Any(answer, {"error", "sorry", "you entered"}))
        return {};
    if (!Is_Plain(answer))
        Strip_HTML(services, answer, "PRE");
    return answer;
}

}  // namespace norvane
