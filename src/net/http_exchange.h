#pragma once
// One request of libcurl's and its answer, of which a redirected request needs several. Made and
// read by whoever drives it: the HTTP client, which waits, and the posts of the outbox, which do
// not.

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "net/http_address.h"
#include "net/http_ending.h"

struct curl_slist;

namespace norvane {

struct Http_Options;

/// What a POST of a form says of itself.
inline constexpr const char* form_content_type = "Content-Type: application/x-www-form-urlencoded";

class Http_Exchange {
  public:
    struct Content {
        /// Of a hop that posts: any method with a body.
        std::string method = "POST";
        std::vector<std::string> headers;
        std::string body;
    };

    /// Ready to be driven. `content` stays where it is until the exchange is over. Raises
    /// `internet_open` and `http_open_request`.
    Http_Exchange(const Http_Hop& hop, const Content& content, const Http_Options& options,
                  std::chrono::milliseconds time_left);
    ~Http_Exchange();
    Http_Exchange(const Http_Exchange&) = delete;
    Http_Exchange& operator=(const Http_Exchange&) = delete;

    /// libcurl's, for `Http_Transfers`.
    [[nodiscard]] void* Handle() const { return m_easy; }
    [[nodiscard]] std::string& Answer() { return m_answer; }

    // What is known of it by now.
    /// Of the final status line; 0, or of the first hundred, before it came.
    [[nodiscard]] long Status() const;
    /// A connection stood, secured where it had to be: what follows on it may have arrived.
    [[nodiscard]] bool Was_Connected() const;
    /// How much of the body went onto the connection.
    [[nodiscard]] std::size_t Body_Bytes_Sent() const;
    /// Where the server points; empty when nowhere.
    [[nodiscard]] std::string Location() const;
    /// The value of a header of the answer; empty when there is none.
    [[nodiscard]] std::string Header(const char* name) const;
    [[nodiscard]] std::chrono::milliseconds Duration() const;
    /// How it ended, `result` as `Http_Transfers` tells it.
    [[nodiscard]] Http_Ending Ending(int result) const;

  private:
    static std::size_t Take_Bytes(const char* bytes, std::size_t one, std::size_t count,
                                  void* exchange);
    void Add_Header(const char* header);
    void Set_Limits(const Http_Options& options, std::chrono::milliseconds time_left);

    void* m_easy;
    curl_slist* m_headers = nullptr;
    Http_Verb m_verb;
    std::string m_answer;
    std::size_t m_most_bytes;
};

}  // namespace norvane
