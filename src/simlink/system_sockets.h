#pragma once
// The system's sockets under one set of names, so that framing and waiting are written once for
// every system. Functions that fail set `errno`, on Windows too. All sockets are non-blocking and
// no child inherits them.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <utility>
#include <vector>

#ifdef _WIN32
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <poll.h>
#include <sys/socket.h>
#endif

namespace norvane {

/// A socket address as the system takes it.
struct Socket_Name {
    sockaddr_storage storage{};
    socklen_t size = 0;

    [[nodiscard]] const sockaddr* Get() const {
        return reinterpret_cast<const sockaddr*>(&storage);
    }
};

namespace system_sockets {

/// Readies the system's sockets; after the first call it does nothing. Naming a host and making a
/// socket begin with it.
void Start();

/// All names of a host's port; none when the host is unknown. `listening`: as a listener takes
/// them.
[[nodiscard]] std::vector<Socket_Name> Names_Of_Host(const std::string& host, std::uint16_t port,
                                                     bool listening);
/// The name of a Unix domain socket; none on a system without such sockets.
[[nodiscard]] std::vector<Socket_Name> Names_Of_File(const std::filesystem::path& file);
/// Device and number of a file, not followed if it is a link; zeros when there is none.
[[nodiscard]] std::pair<std::uint64_t, std::uint64_t> Identity_Of(
    const std::filesystem::path& file);

/// A new stream socket of the name's family; -1 when there is none to be had.
[[nodiscard]] int New_Stream(const Socket_Name& name);
void Close(int descriptor);
/// 0 when connected at once; EINPROGRESS when it comes about later; else why it cannot.
[[nodiscard]] int Connect(int descriptor, const Socket_Name& name);
/// What became of a connection that was in progress: 0, or why it failed.
[[nodiscard]] int Connection_Failure(int descriptor);
/// Binds and listens. A port that a finished connection still occupies can be had.
[[nodiscard]] bool Listen(int descriptor, const Socket_Name& name);
/// The next connection, -1 when there is none.
[[nodiscard]] int Accept(int listener);
/// The port a listener was given; 0 when it has none.
[[nodiscard]] std::uint16_t Port_Of(int listener);
/// Small frames leave at once instead of being held back for more.
void Send_At_Once(int descriptor);

/// Bytes received, 0 at the peer's end, -1 on failure.
std::ptrdiff_t Receive(int descriptor, std::span<std::byte> bytes);
/// Bytes sent, -1 on failure. A peer that is gone raises no signal.
std::ptrdiff_t Send(int descriptor, std::span<const std::byte> bytes);
/// The last call failed only because it would have had to wait, or was interrupted.
[[nodiscard]] bool Try_Later();
/// What the last failure was, in the system's words.
[[nodiscard]] std::string Failure_Text();

/// An entry to poll for; a negative descriptor is passed over.
[[nodiscard]] pollfd Poll_Entry(int descriptor, short events);
/// How many entries have something to tell; waits at most so long for the first.
int Poll(std::span<pollfd> entries, std::chrono::milliseconds at_most);

}  // namespace system_sockets

}  // namespace norvane
