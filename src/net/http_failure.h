#pragma once
// How a request to a web server fails: the terse names of the error log and what each means to the
// pilot who asked. Raised by the HTTP client, reported by the caller.

#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "common/run_error.h"

namespace norvane {

struct Http_Failure {
    int number;
    std::string_view text;
    /// What went wrong, as the end of a sentence; then what to do about it, in a whole one.
    std::string_view meaning;
    std::string_view advice;
};

/// Where the numbers of an application's own failures begin: hexadecimal 80040000 in 32 bits.
inline constexpr int application_error = -2147221504;

/// Neither a host and a path nor a whole address.
inline constexpr Http_Failure missing_url{
    application_error + 508, "Missing URL", "no server is named",
    "Please look at the airline's server.cfg, or at the weather source in bin/url.cfg."};
/// The library cannot be used at all.
inline constexpr Http_Failure internet_open{application_error + 507, "InternetOpen",
                                            "the network cannot be used at all",
                                            "Please start Norvane again."};
/// The host is unknown, refuses, does not answer in time, or its certificate is not trusted.
inline constexpr Http_Failure internet_connect{
    application_error + 506, "InternetConnect",
    "the server is unknown, cannot be reached, or its certificate is not trusted",
    "Please check the connection to the network and the server's name, then try again."};
/// No request can be made of host and path.
inline constexpr Http_Failure http_open_request{
    application_error + 505, "HttpOpenRequest", "this is no web address",
    "Please look at the address in the airline's server.cfg, or in bin/url.cfg."};
/// Connected, but no status line came, the connection was reset within the answer, or the server
/// pointed where the request may not go.
inline constexpr Http_Failure http_send_request{
    application_error + 504, "HttpSendRequest", "the connection ended before an answer came",
    "Please try again; if it comes back, tell who runs the server."};

/// The failure that an entry of the error log begins with; null when it is none of these.
[[nodiscard]] inline const Http_Failure* Find_Http_Failure(std::string_view entry) {
    static constexpr std::array all{&missing_url, &internet_open, &internet_connect,
                                    &http_open_request, &http_send_request};
    for (const Http_Failure* each : all) {
        if (entry.substr(0, entry.find(':')) == each->text)
            return each;
    }
    return nullptr;
}

/// The entry with what its failure means behind it, where it is one of these.
[[nodiscard]] inline std::string With_Meaning(std::string entry) {
    if (const Http_Failure* failure = Find_Http_Failure(entry))
        entry.append(": ").append(failure->meaning);
    return entry;
}

/// `detail` follows the failure's own text, for the error log; `for_pilot` as in `Run_Error`, in
/// place of what the failure means on its own.
[[nodiscard]] inline Run_Error Http_Error(const Http_Failure& failure, std::string_view detail = {},
                                          std::string_view for_pilot = {}) {
    std::string text(failure.text);
    if (!detail.empty())
        text.append(": ").append(detail);
    std::string words(for_pilot);
    if (words.empty()) {
        words.append("The request was not answered: ").append(failure.meaning);
        words.append(".  The flight goes on.  ").append(failure.advice);
    }
    return {failure.number, std::move(text), std::move(words)};
}

}  // namespace norvane
