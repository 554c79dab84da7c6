#pragma once
// How a request to a web server fails. Raised by the HTTP client, reported by whoever asked.

#include <string>
#include <string_view>
#include <utility>

#include "common/run_error.h"

namespace norvane {

struct Http_Failure {
    int number;
    std::string_view text;
};

/// Where the numbers of an application's own failures begin: hexadecimal 80040000 in 32 bits.
inline constexpr int application_error = -2147221504;

/// Neither a host and a path nor a whole address.
inline constexpr Http_Failure missing_url{application_error + 508, "Missing URL"};
/// The library cannot be used at all.
inline constexpr Http_Failure internet_open{application_error + 507, "InternetOpen"};
/// The host is unknown, refuses, does not answer in time, or its certificate is not trusted.
inline constexpr Http_Failure internet_connect{application_error + 506, "InternetConnect"};
/// No request can be made of host and path.
inline constexpr Http_Failure http_open_request{application_error + 505, "HttpOpenRequest"};
/// Connected, but no status line came, the connection was reset within the answer, or the server
/// pointed where the request may not go.
inline constexpr Http_Failure http_send_request{application_error + 504, "HttpSendRequest"};

/// `detail` follows the failure's own text, for the error log; `for_pilot` as in `Run_Error`.
[[nodiscard]] inline Run_Error Http_Error(const Http_Failure& failure, std::string_view detail = {},
                                          std::string_view for_pilot = {}) {
    std::string text(failure.text);
    if (!detail.empty())
        text.append(": ").append(detail);
    return {failure.number, std::move(text), std::string(for_pilot)};
}

}  // namespace norvane
