#pragma once
// Where a request goes: the address made of host and path as airlines and sources write them, and
// the next address when a server sends the request elsewhere. Used by the HTTP client.

#include <optional>
#include <string>
#include <string_view>

namespace norvane {

enum class Http_Verb { get, post };

/// `host` is a bare name, "name:port", or begins with "http://" or "https://"; without either it is
/// asked over HTTP. A `path` without a leading "/" gets one; a path that is a whole address needs
/// no host. Raises `missing_url`, or `http_open_request` for what is no address.
[[nodiscard]] std::string Request_Address(std::string_view host, std::string_view path);

struct Http_Hop {
    Http_Verb verb = Http_Verb::get;
    /// As `Request_Address` gives it.
    std::string address;
};

/// Where a server's answer to `hop` sends the request next; empty when the answer is the final one.
/// A POST stays one after 307 and 308, and after 301 and 302 when nothing but the scheme or a
/// leading "www." changes. `location` is a whole address, empty when the server named none. Raises
/// `http_send_request` for a POST that would go on as a GET, without what it carries, and for a way
/// from HTTPS back to HTTP or out of both.
[[nodiscard]] std::optional<Http_Hop> Next_Hop(const Http_Hop& hop, long status,
                                               const std::string& location);

}  // namespace norvane
