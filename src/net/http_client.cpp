#include "net/http_client.h"

#include <curl/curl.h>

#include <memory>
#include <utility>

#include "common/services.h"
#include "net/http_ending.h"
#include "net/http_exchange.h"
#include "net/http_failure.h"

namespace norvane {

using std::chrono::milliseconds;

namespace {

/// How long the thread may sit waiting for the network before events are handled again.
constexpr int longest_wait_ms = 5;

constexpr std::string_view answer_broken_off =
    "The connection broke off while the server answered.  Whether it took what was sent to it is "
    "not known: look at its pages before you send it again.";

}  // namespace

Http_Client::Http_Client(Desktop& desktop, Http_Options options)
    : m_desktop(desktop), m_options(std::move(options)) {}

std::string Http_Client::Request(const Http_Request& request) {
    if (m_busy)
        throw Run_Error(error_number::invalid_call, "Another request is still running");
    m_busy = true;
    m_cancelled = false;
    const auto free = [](bool* busy) { *busy = false; };
    const std::unique_ptr<bool, decltype(free)> until_done(&m_busy, free);
    return Follow(request);
}

bool Http_Client::Is_Given_Up() const {
    return m_cancelled || (m_options.given_up && m_options.given_up());
}

std::string Http_Client::Follow(const Http_Request& request) {
    Http_Hop hop{request.verb, Request_Address(request.host, request.path)};
    if (!m_options.together)
        m_options.together = std::make_shared<Http_Transfers>();
    m_options.together->Open();
    const Http_Exchange::Content content{"POST", {form_content_type}, request.body};
    milliseconds time_left = m_options.all_within;
    for (int redirects = 0; redirects <= m_options.most_redirects; ++redirects) {
        Http_Exchange exchange(hop, content, m_options, time_left);
        Perform(exchange);
        const auto next = Next_Hop(hop, exchange.Status(), exchange.Location());
        if (!next)
            return std::move(exchange.Answer());
        hop = *next;
        time_left -= exchange.Duration();
        if (time_left <= milliseconds::zero())
            break;
    }
    throw Http_Error(http_send_request);
}

void Http_Client::Perform(const Http_Exchange& exchange) {
    Http_Transfers& transfers = *m_options.together;
    if (!transfers.Add(exchange.Handle()))
        throw Http_Error(internet_open);
    const auto take_out = [&transfers](void* added) { transfers.Remove(added); };
    const std::unique_ptr<void, decltype(take_out)> added(exchange.Handle(), take_out);
    const int result = Wait_For(exchange);
    if (Is_Given_Up())
        throw Http_Error(http_send_request);
    const bool status_line_came = exchange.Status() >= 200;
    if (result != CURLE_OK && !status_line_came)
        throw Http_Error(exchange.Was_Connected() ? http_send_request : internet_connect);
    if (!Is_Answered(exchange.Ending(result)))
        throw Http_Error(http_send_request, "the answer broke off", answer_broken_off);
}

int Http_Client::Wait_For(const Http_Exchange& exchange) {
    Http_Transfers& transfers = *m_options.together;
    while (!Is_Given_Up()) {
        transfers.Drive();
        if (const auto result = transfers.Result(exchange.Handle()))
            return *result;
        m_desktop.Process_Events();
        transfers.Wait(longest_wait_ms);
    }
    return CURLE_ABORTED_BY_CALLBACK;
}

Http_Options Given_Up_When(std::function<bool()> over, const Http_Options& options) {
    Http_Options result = options;
    result.given_up = [over = std::move(over), outer = options.given_up] {
        return over() || (outer && outer());
    };
    return result;
}

}  // namespace norvane
