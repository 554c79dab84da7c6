#include "net/http_client.h"

#include <curl/curl.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include "common/services.h"
#include "common/text.h"
#include "net/http_ending.h"
#include "net/http_failure.h"

namespace norvane {

using std::chrono::microseconds;
using std::chrono::milliseconds;

/// One request and its answer, of which a redirected request needs several.
struct Http_Client::Exchange {
    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> easy{curl_easy_init(), &curl_easy_cleanup};
    std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers{nullptr,
                                                                        &curl_slist_free_all};
    Http_Verb verb = Http_Verb::get;
    std::string answer;
    std::size_t most_bytes = 0;
    milliseconds time_left{0};
    long status = 0;
    std::string location;
};

namespace {

/// How long the thread may sit waiting for the network before events are handled again.
constexpr int longest_wait_ms = 5;

/// The program's file name without extension, by which it presents itself to servers.
std::string Agent_Name() {
    std::error_code failure;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", failure);
    return failure ? Lower(product_name) : program.stem().string();
}

template <class Target>
std::size_t Take_Bytes(const char* bytes, std::size_t one, std::size_t count, void* target) {
    auto& exchange = *static_cast<Target*>(target);
    const std::size_t room = exchange.most_bytes - exchange.answer.size();
    exchange.answer.append(bytes, std::min(one * count, room));
    return std::min(one * count, room);
}

constexpr std::string_view answer_broken_off =
    "The connection broke off while the server answered.  Whether it took what was sent to it is "
    "not known: look at its pages before you send it again.";

template <class Exchange>
Http_Ending Ending_Of(const Exchange& exchange, int result) {
    CURL* easy = exchange.easy.get();
    Http_Ending ending{result, exchange.verb, !exchange.answer.empty()};
    curl_off_t length = -1;
    curl_header* pieces = nullptr;
    curl_easy_getinfo(easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
    curl_easy_getinfo(easy, CURLINFO_OS_ERRNO, &ending.system_error);
    ending.states_length = length >= 0 || curl_easy_header(easy, "Transfer-Encoding", 0,
                                                           CURLH_HEADER, -1, &pieces) == CURLHE_OK;
    return ending;
}

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
    milliseconds time_left = m_options.all_within;
    for (int redirects = 0; redirects <= m_options.most_redirects; ++redirects) {
        Exchange exchange;
        exchange.most_bytes = m_options.most_bytes;
        exchange.time_left = time_left;
        exchange.verb = hop.verb;
        Prepare(exchange, hop, request.body);
        Perform(exchange);
        const auto next = Next_Hop(hop, exchange.status, exchange.location);
        if (!next)
            return std::move(exchange.answer);
        hop = *next;
        time_left = exchange.time_left;
        if (time_left <= milliseconds::zero())
            break;
    }
    throw Http_Error(http_send_request);
}

void Http_Client::Prepare(Exchange& exchange, const Http_Hop& hop, const std::string& body) const {
    CURL* easy = exchange.easy.get();
    if (easy == nullptr)
        throw Http_Error(internet_open);
    // A header without a value takes away what the library would send by itself.
    for (const char* header : {"Accept:", "Expect:", "Pragma: no-cache",
                               "Content-Type: application/x-www-form-urlencoded"}) {
        const bool of_post = std::string_view(header).starts_with("Content-Type");
        if (of_post && hop.verb != Http_Verb::post)
            continue;
        curl_slist* longer = curl_slist_append(exchange.headers.get(), header);
        if (longer == nullptr)
            throw Http_Error(http_open_request);
        static_cast<void>(exchange.headers.release());
        exchange.headers.reset(longer);
    }
    if (curl_easy_setopt(easy, CURLOPT_URL, hop.address.c_str()) != CURLE_OK ||
        curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https") != CURLE_OK)
        throw Http_Error(http_open_request);
    if (hop.verb == Http_Verb::post) {
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, body.c_str());
    }
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, exchange.headers.get());
    curl_easy_setopt(easy, CURLOPT_USERAGENT, Agent_Name().c_str());
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, 2L);
    if (!m_options.trusted_certificates.empty())
        curl_easy_setopt(easy, CURLOPT_CAINFO, m_options.trusted_certificates.c_str());
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS,
                     static_cast<long>(m_options.connect_within.count()));
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, static_cast<long>(exchange.time_left.count()));
    // Nothing is kept for a next request: each one connects anew.
    curl_easy_setopt(easy, CURLOPT_FORBID_REUSE, 1L);
    // A name that is still being looked up must not hold up the end of the request.
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Take_Bytes<Exchange>);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &exchange);
}

void Http_Client::Perform(Exchange& exchange) {
    CURL* easy = exchange.easy.get();
    Http_Transfers& transfers = *m_options.together;
    if (!transfers.Add(easy))
        throw Http_Error(internet_open);
    const auto take_out = [&transfers](CURL* added) { transfers.Remove(added); };
    const std::unique_ptr<CURL, decltype(take_out)> added(easy, take_out);
    const int result = Wait_For(exchange);

    curl_off_t duration_us = 0;
    curl_off_t ready_after_us = 0;
    char* location = nullptr;
    curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &exchange.status);
    curl_easy_getinfo(easy, CURLINFO_TOTAL_TIME_T, &duration_us);
    curl_easy_getinfo(easy, CURLINFO_PRETRANSFER_TIME_T, &ready_after_us);
    curl_easy_getinfo(easy, CURLINFO_REDIRECT_URL, &location);
    if (Is_Given_Up())
        throw Http_Error(http_send_request);
    const bool status_line_came = exchange.status >= 200;
    if (result != CURLE_OK && !status_line_came)
        throw Http_Error(ready_after_us == 0 ? internet_connect : http_send_request);
    if (!Is_Answered(Ending_Of(exchange, result)))
        throw Http_Error(http_send_request, "the answer broke off", answer_broken_off);
    if (location != nullptr)
        exchange.location = location;
    exchange.time_left -= std::chrono::duration_cast<milliseconds>(microseconds(duration_us));
}

int Http_Client::Wait_For(const Exchange& exchange) {
    Http_Transfers& transfers = *m_options.together;
    while (!Is_Given_Up()) {
        transfers.Drive();
        if (const auto result = transfers.Result(exchange.easy.get()))
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
