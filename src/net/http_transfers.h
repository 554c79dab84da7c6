#pragma once
// The transfers of all requests of a program. Requests may nest: while one waits for its server,
// events are handled, and an event may ask another server. All of them are driven together, so that
// an inner request which hangs costs an outer one nothing. Shared by the HTTP clients.

#include <map>
#include <memory>
#include <optional>

namespace norvane {

class Http_Transfers {
  public:
    /// The library is not woken before the first request: it takes more memory than the window.
    Http_Transfers() = default;
    ~Http_Transfers();
    Http_Transfers(const Http_Transfers&) = delete;
    Http_Transfers& operator=(const Http_Transfers&) = delete;

    /// Wakes the library, and raises `internet_open` when it cannot be used. Before `Add`.
    void Open();
    /// A prepared handle of libcurl; false when it cannot be taken in.
    [[nodiscard]] bool Add(void* handle);
    void Remove(void* handle);
    /// Does what can be done now, for all handles.
    void Drive();
    /// The handle's CURLcode once its transfer has ended.
    [[nodiscard]] std::optional<int> Result(void* handle) const;
    /// Sits until something can be done, for `at_most_ms`.
    void Wait(int at_most_ms);

  private:
    void* m_multi = nullptr;
    /// Of the handles that are in; empty while the transfer runs.
    std::map<void*, std::optional<int>> m_results;
};

}  // namespace norvane
