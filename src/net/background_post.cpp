#include "net/background_post.h"

#include <curl/curl.h>

#include <algorithm>
#include <utility>

#include "common/log_error.h"
#include "common/number.h"
#include "common/text.h"
#include "net/http_failure.h"

namespace norvane {

namespace {

constexpr std::int64_t longest_wait_s = 24 * 3600;

/// The whole answer was read, or as much of it as is taken from any server.
bool Is_Whole(const Http_Ending& ending) {
    switch (ending.result) {
        case CURLE_OPERATION_TIMEDOUT:
        case CURLE_PARTIAL_FILE:
            return false;
        default:
            return Is_Answered(ending);
    }
}

}  // namespace

Background_Post::Background_Post(const std::string& address, Http_Exchange::Content content,
                                 Http_Options options)
    : m_content(std::move(content)),
      m_options(std::move(options)),
      m_hop{Http_Verb::post, address},
      m_time_left(m_options.all_within) {
    if (!m_options.together)
        m_options.together = std::make_shared<Http_Transfers>();
}

Background_Post::~Background_Post() {
    if (m_exchange)
        m_options.together->Remove(m_exchange->Handle());
}

const std::optional<Post_End>& Background_Post::Drive() {
    if (m_end)
        return m_end;
    try {
        if (!m_exchange)
            Begin_Hop();
        m_options.together->Drive();
        if (const auto result = m_options.together->Result(m_exchange->Handle()))
            End_Hop(*result);
    } catch (...) {
        // A hop that could not begin: a server that pointed here did not take it.
        End(Post_End::Kind::unsent, Caught_Error().Description());
    }
    return m_end;
}

void Background_Post::Begin_Hop() {
    m_options.together->Open();
    auto exchange = std::make_unique<Http_Exchange>(m_hop, m_content, m_options, m_time_left);
    if (!m_options.together->Add(exchange->Handle()))
        throw Http_Error(internet_open);
    m_exchange = std::move(exchange);
}

void Background_Post::End_Hop(int result) {
    if (m_exchange->Status() < 200) {
        const bool connected = m_exchange->Was_Connected();
        End(Kind_By_Now(), std::string((connected ? http_send_request : internet_connect).text));
        return;
    }
    std::optional<Http_Hop> next;
    try {
        next = Next_Hop(m_hop, m_exchange->Status(), m_exchange->Location());
    } catch (...) {
        End(Post_End::Kind::unknown, Caught_Error().Description());
        return;
    }
    m_time_left -= m_exchange->Duration();
    if (next && (m_redirects++ >= m_options.most_redirects || m_time_left.count() <= 0)) {
        End(Post_End::Kind::unknown,
            Http_Error(http_send_request, "too many redirects").Description());
    } else if (next) {
        m_hop = *next;
        m_options.together->Remove(m_exchange->Handle());
        m_exchange.reset();
    } else {
        // A status that is no success says enough by itself.
        const bool is_success = m_exchange->Status() < 300;
        const bool is_whole = Is_Whole(m_exchange->Ending(result));
        End(is_whole || !is_success ? Post_End::Kind::answered : Post_End::Kind::unknown,
            is_whole ? "" : Http_Error(http_send_request, "the answer broke off").Description());
    }
}

/// Without an answer: a request without a body is its own headers.
Post_End::Kind Background_Post::Kind_By_Now() const {
    const bool left = m_exchange->Body_Bytes_Sent() > 0 ||
                      (m_content.body.empty() && m_exchange->Was_Connected());
    return left ? Post_End::Kind::unknown : Post_End::Kind::unsent;
}

void Background_Post::End(Post_End::Kind kind, std::string failure) {
    Post_End end{kind, 0, {}, {}, std::move(failure)};
    if (m_exchange) {
        end.status = m_exchange->Status() < 200 ? 0 : m_exchange->Status();
        end.retry_after = m_exchange->Header("Retry-After");
        m_options.together->Remove(m_exchange->Handle());
        end.answer = std::move(m_exchange->Answer());
        m_exchange.reset();
    }
    m_end = std::move(end);
}

Post_End Background_Post::Break_Off() {
    if (!m_end && m_exchange) {
        End(Kind_By_Now(), "the request was broken off");
    }
    return m_end.value_or(
        Post_End{Post_End::Kind::unsent, 0, {}, {}, "the request was broken off"});
}

std::optional<std::int64_t> Seconds_To_Wait(const std::string& retry_after, std::int64_t utc_s) {
    const std::string text = Trim(retry_after);
    std::int64_t seconds = 0;
    if (const auto number = Parse_Int32(text)) {
        seconds = *number;
    } else {
        const std::time_t moment = curl_getdate(text.c_str(), nullptr);
        if (text.empty() || moment == -1)
            return std::nullopt;
        seconds = std::int64_t{moment} - utc_s;
    }
    return std::clamp<std::int64_t>(seconds, 0, longest_wait_s);
}

}  // namespace norvane
