#pragma once
// One HTTP request at a time, on the program's one thread: while the server is waited for, the
// desktop goes on handling events. Owned by `clsWinInet`. Certificates are always verified.

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "net/http_address.h"
#include "net/http_transfers.h"

namespace norvane {

class Desktop;
class Http_Exchange;

/// The limits of a request. Redirects included, except that each hop connects anew.
struct Http_Options {
    std::chrono::milliseconds connect_within{15'000};
    std::chrono::milliseconds all_within{60'000};
    std::size_t most_bytes = std::size_t{64} << 20;
    int most_redirects = 5;
    /// Certificates to trust instead of the system's; empty: the system's.
    std::filesystem::path trusted_certificates;
    /// Asked while a request runs, and before; true ends it as `Cancel` does. None: never.
    std::function<bool()> given_up;
    /// With which other requests this one is driven while they wait within one another; none:
    /// alone.
    std::shared_ptr<Http_Transfers> together;
};

/// The limits of a request that is given up as well when `over` holds.
[[nodiscard]] Http_Options Given_Up_When(std::function<bool()> over, const Http_Options& options);

struct Http_Request {
    Http_Verb verb = Http_Verb::get;
    /// Both as `Request_Address` takes them.
    std::string host;
    std::string path;
    /// The form of a POST, sent as it is; a GET sends none.
    std::string body;
};

class Http_Client {
  public:
    explicit Http_Client(Desktop& desktop, Http_Options options = {});
    Http_Client(const Http_Client&) = delete;
    Http_Client& operator=(const Http_Client&) = delete;

    /// The answer's bytes whatever its status: an error page is an answer. After the status line a
    /// time-out, a limit or the server's early close is no error; what was read until then is the
    /// answer, though nothing at all is none to a POST that was promised some. An answer that
    /// stated no length may end with its connection. Raises the failures of http_failure.h, and 5
    /// while another request of this client is running.
    [[nodiscard]] std::string Request(const Http_Request& request);
    /// Ends the running request, if any, from within an event: it raises `http_send_request`.
    void Cancel() { m_cancelled = true; }
    [[nodiscard]] bool Is_Busy() const { return m_busy; }

  private:
    [[nodiscard]] bool Is_Given_Up() const;
    std::string Follow(const Http_Request& request);
    /// Runs one exchange to its end; raises when no status line came.
    void Perform(const Http_Exchange& exchange);
    /// How the exchange ended, as libcurl tells it.
    int Wait_For(const Http_Exchange& exchange);

    Desktop& m_desktop;
    Http_Options m_options;
    bool m_busy = false;
    bool m_cancelled = false;
};

}  // namespace norvane
