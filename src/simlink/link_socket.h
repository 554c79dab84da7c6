#pragma once
// The sockets under the Norvane link: connecting and listening at a Link_Address, waiting, and the
// layout of frames. All sockets are non-blocking; who waits, waits with a deadline.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "simlink/link_address.h"
#include "simlink/system_sockets.h"

namespace norvane {

/// Request frame: sequence, length, records. Answer frame: sequence, answer, length, records.
inline constexpr std::size_t request_head_size = 8;
inline constexpr std::size_t answer_head_size = 12;

/// An owned socket descriptor.
class Link_Socket {
  public:
    Link_Socket() = default;
    explicit Link_Socket(int descriptor) : m_descriptor(descriptor) {}
    Link_Socket(Link_Socket&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    Link_Socket& operator=(Link_Socket&& other) noexcept;
    ~Link_Socket() { Close(); }

    [[nodiscard]] int Descriptor() const { return m_descriptor; }
    [[nodiscard]] bool Is_Open() const { return m_descriptor >= 0; }
    void Close();

  private:
    int m_descriptor = -1;
};

/// How long to wait, and what is done every few milliseconds of a wait that lasts.
struct Link_Deadline {
    std::chrono::steady_clock::time_point moment;
    /// None: nothing. Outlives the wait. False: nobody waits any longer, as if the moment were
    /// past.
    const std::function<bool()>* meanwhile = nullptr;

    [[nodiscard]] bool Has_Passed() const { return std::chrono::steady_clock::now() >= moment; }
};

/// All names of the address, in the order to try them; none when its host is unknown.
[[nodiscard]] std::vector<Socket_Name> Names_Of(const Link_Address& address, bool listening);

/// A socket connected to `address`; closed, with the reason in `errno_value`, when nobody takes the
/// connection (ETIMEDOUT: not in time) or the host is unknown.
[[nodiscard]] Link_Socket Connect_To(const Link_Address& address, Link_Deadline deadline,
                                     int& errno_value);

/// A listening socket. Raises when the address cannot be had. A Unix socket whose listener is gone
/// is replaced; any other file, and a socket that someone listens on, is left alone and refused.
[[nodiscard]] Link_Socket Listen_At(const Link_Address& address);

/// The next connection of a listening socket, closed (and `errno` set) when there is none.
[[nodiscard]] Link_Socket Accept_From(const Link_Socket& listener);

/// The address with the port that the listening socket was given.
[[nodiscard]] Link_Address Bound_Address(const Link_Socket& listener, const Link_Address& asked);

/// Waits until the socket is ready for the poll `events`, or has failed; false when the deadline
/// has passed.
[[nodiscard]] bool Wait_For(const Link_Socket& socket, short events, Link_Deadline deadline);

}  // namespace norvane
