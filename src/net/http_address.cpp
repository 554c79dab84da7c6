#include "net/http_address.h"

#include <curl/curl.h>

#include <algorithm>
#include <array>
#include <memory>

#include "common/text.h"
#include "net/http_failure.h"

namespace norvane {

namespace {

constexpr std::string_view post_sent_away =
    "The server did not answer what was sent to it but pointed to another page, which takes no "
    "forms.  Whether anything was taken is not known: look at the airline's pages before you send "
    "it again, and tell the airline that its script answers with a redirect.";

using Url = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;

/// The scheme and its "://" at the start of the text; empty when there is none.
std::string_view Scheme_Of(std::string_view text) {
    static constexpr std::array<std::string_view, 2> schemes{"http://", "https://"};
    for (const std::string_view scheme : schemes) {
        if (Equal_No_Case(text.substr(0, scheme.size()), scheme))
            return text.substr(0, scheme.size());
    }
    return {};
}

/// Blanks and letters beyond ASCII are escaped, as a browser does.
Url Parsed(const std::string& address, const Http_Failure& otherwise) {
    Url url(curl_url(), &curl_url_cleanup);
    if (!url || curl_url_set(url.get(), CURLUPART_URL, address.c_str(),
                             CURLU_URLENCODE | CURLU_DISALLOW_USER) != CURLUE_OK)
        throw Http_Error(otherwise);
    curl_url_set(url.get(), CURLUPART_FRAGMENT, nullptr, 0);
    return url;
}

std::string Piece(const Url& url, CURLUPart part, unsigned flags = 0) {
    char* text = nullptr;
    if (curl_url_get(url.get(), part, &text, flags) != CURLUE_OK)
        return {};
    std::string piece(text);
    curl_free(text);
    return piece;
}

std::string Host_Without_Www(const Url& url) {
    const std::string host = Lower(Piece(url, CURLUPART_HOST));
    return host.starts_with("www.") ? host.substr(4) : host;
}

/// The same place but for the scheme (each with its usual port) and a leading "www.".
bool Same_Place(const Url& a, const Url& b) {
    const auto port = [](const Url& url) {
        return Piece(url, CURLUPART_PORT, CURLU_NO_DEFAULT_PORT);
    };
    return Host_Without_Www(a) == Host_Without_Www(b) && port(a) == port(b) &&
           Piece(a, CURLUPART_PATH) == Piece(b, CURLUPART_PATH) &&
           Piece(a, CURLUPART_QUERY) == Piece(b, CURLUPART_QUERY);
}

}  // namespace

std::string Request_Address(std::string_view host, std::string_view path) {
    std::string address = Trim(path);
    if (address.empty())
        throw Http_Error(missing_url);
    if (Scheme_Of(address).empty()) {
        std::string server = Trim(host);
        const std::string scheme(Scheme_Of(server));
        server.erase(0, scheme.size());
        while (server.ends_with('/'))
            server.pop_back();
        if (server.empty())
            throw Http_Error(missing_url);
        const std::string_view slash = address.starts_with('/') ? "" : "/";
        address = (scheme.empty() ? "http://" : scheme) + server + std::string(slash) + address;
    }
    return Piece(Parsed(address, http_open_request), CURLUPART_URL);
}

std::optional<Http_Hop> Next_Hop(const Http_Hop& hop, long status, const std::string& location) {
    static constexpr std::array<long, 5> redirects{301, 302, 303, 307, 308};
    if (std::find(redirects.begin(), redirects.end(), status) == redirects.end() ||
        location.empty())
        return std::nullopt;
    const Url here = Parsed(hop.address, http_send_request);
    const Url there = Parsed(location, http_send_request);
    const std::string scheme = Lower(Piece(there, CURLUPART_SCHEME));
    const bool from_https = Lower(Piece(here, CURLUPART_SCHEME)) == "https";
    if (scheme != "https" && (scheme != "http" || from_https))
        throw Http_Error(http_send_request);

    const std::string next = Piece(there, CURLUPART_URL);
    const bool keeps = status == 307 || status == 308 || (status != 303 && Same_Place(here, there));
    if (hop.verb == Http_Verb::post && !keeps) {
        throw Http_Error(http_send_request,
                         "status " + std::to_string(status) + " sends the form away to " + next,
                         post_sent_away);
    }
    return Http_Hop{hop.verb, next};
}

}  // namespace norvane
