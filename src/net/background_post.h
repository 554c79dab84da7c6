#pragma once
// A request that nobody waits for: it goes on a little whenever it is driven, and tells at its end
// what is certain of it. Used by the outbox, which must know whether something may have arrived.

#include <cstdint>
#include <optional>
#include <string>

#include "net/http_client.h"
#include "net/http_exchange.h"

namespace norvane {

struct Post_End {
    enum class Kind {
        answered,  // the server said what it thinks of it
        unsent,    // nothing that counts has left this computer
        unknown,   // it left, and no whole answer came back
    };
    Kind kind = Kind::unsent;
    /// 0 when no status line came.
    long status = 0;
    /// What was read of it.
    std::string answer;
    /// As the server wrote it; empty when it did not.
    std::string retry_after;
    /// Why there is no whole answer, as the error log has it; empty when there is.
    std::string failure;
};

class Background_Post {
  public:
    /// Begins when it is driven first. `address` is a whole one.
    Background_Post(const std::string& address, Http_Exchange::Content content,
                    Http_Options options);
    ~Background_Post();
    Background_Post(const Background_Post&) = delete;
    Background_Post& operator=(const Background_Post&) = delete;

    /// Does what can be done now, without waiting; empty while the request runs.
    [[nodiscard]] const std::optional<Post_End>& Drive();
    /// Ends it where it is.
    [[nodiscard]] Post_End Break_Off();

  private:
    void Begin_Hop();
    void End_Hop(int result);
    [[nodiscard]] Post_End::Kind Kind_By_Now() const;
    void End(Post_End::Kind kind, std::string failure);

    Http_Exchange::Content m_content;
    Http_Options m_options;
    Http_Hop m_hop;
    std::chrono::milliseconds m_time_left;
    int m_redirects = 0;
    std::unique_ptr<Http_Exchange> m_exchange;
    std::optional<Post_End> m_end;
};

/// How many seconds a server asks to wait that sent this `Retry-After`: a number of seconds or a
/// date, which `utc_s` (seconds since 1970) is now. Empty when it is neither.
[[nodiscard]] std::optional<std::int64_t> Seconds_To_Wait(const std::string& retry_after,
                                                          std::int64_t utc_s);

}  // namespace norvane
