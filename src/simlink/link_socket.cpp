#include "simlink/link_socket.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <vector>

#include "common/code_page.h"
#include "common/run_error.h"

namespace norvane {

namespace {

using namespace std::chrono_literals;

/// A socket address as the system takes it.
struct Socket_Name {
    sockaddr_storage storage{};
    socklen_t size = 0;

    [[nodiscard]] const sockaddr* Get() const {
        return reinterpret_cast<const sockaddr*>(&storage);
    }
};

Socket_Name Unix_Name(const std::filesystem::path& file) {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    const std::string path = file.string();
    path.copy(name.sun_path, sizeof name.sun_path - 1);
    Socket_Name result;
    std::memcpy(&result.storage, &name, sizeof name);
    result.size = sizeof name;
    return result;
}

/// All names of the address; none when its host is unknown.
std::vector<Socket_Name> Names_Of(const Link_Address& address, bool listening) {
    if (address.Is_Unix())
        return {Unix_Name(address.socket_file)};
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV | (listening ? AI_PASSIVE : 0);
    addrinfo* found = nullptr;
    if (::getaddrinfo(address.host.c_str(), std::to_string(address.port).c_str(), &hints, &found) !=
        0)
        return {};
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(found, &::freeaddrinfo);
    std::vector<Socket_Name> names;
    for (const addrinfo* entry = found; entry != nullptr; entry = entry->ai_next) {
        Socket_Name name;
        name.size = entry->ai_addrlen;
        std::memcpy(&name.storage, entry->ai_addr, entry->ai_addrlen);
        names.push_back(name);
    }
    return names;
}

Link_Socket New_Socket(const Socket_Name& name) {
    return Link_Socket(
        ::socket(name.storage.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

/// One small frame waits for one answer: nothing is gained by holding frames back.
void Send_At_Once(const Link_Socket& socket) {
    const int on = 1;
    // Unix sockets know no such option and need none.
    (void)::setsockopt(socket.Descriptor(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

/// 0, or why the connection did not come about.
int Connect_One(const Link_Socket& socket, const Socket_Name& name, Link_Deadline deadline) {
    if (::connect(socket.Descriptor(), name.Get(), name.size) == 0)
        return 0;
    if (errno != EINPROGRESS && errno != EINTR)
        return errno;
    if (!Wait_For(socket, POLLOUT, deadline))
        return ETIMEDOUT;
    int failure = 0;
    socklen_t size = sizeof failure;
    if (::getsockopt(socket.Descriptor(), SOL_SOCKET, SO_ERROR, &failure, &size) != 0)
        return errno;
    return failure;
}

[[noreturn]] void Refuse_To_Listen(const Link_Address& address, const std::string& reason) {
    throw Run_Error(error_number::path_file_access,
                    "Cannot listen on " + From_Utf8(address.Text()) + ": " + reason);
}

/// Makes way for a new Unix socket: what a killed predecessor left is removed.
void Remove_Stale(const Link_Address& address) {
    struct stat status {};
    if (::lstat(address.socket_file.c_str(), &status) != 0)
        return;
    if (!S_ISSOCK(status.st_mode))
        Refuse_To_Listen(address, "a file of that name is there and is no socket");
    int failure = 0;
    const Link_Deadline deadline{std::chrono::steady_clock::now() + 1s};
    const Link_Socket probe = Connect_To(address, deadline, failure);
    if (probe.Is_Open() || failure != ECONNREFUSED)
        Refuse_To_Listen(address, "another program listens there");
    if (::unlink(address.socket_file.c_str()) != 0 && errno != ENOENT)
        Refuse_To_Listen(address, std::strerror(errno));
}

}  // namespace

Link_Socket& Link_Socket::operator=(Link_Socket&& other) noexcept {
    if (this != &other) {
        Close();
        m_descriptor = std::exchange(other.m_descriptor, -1);
    }
    return *this;
}

void Link_Socket::Close() {
    if (m_descriptor >= 0)
        ::close(std::exchange(m_descriptor, -1));
}

Link_Socket Connect_To(const Link_Address& address, Link_Deadline deadline, int& errno_value) {
    errno_value = EHOSTUNREACH;
    for (const Socket_Name& name : Names_Of(address, false)) {
        Link_Socket socket = New_Socket(name);
        errno_value = socket.Is_Open() ? Connect_One(socket, name, deadline) : errno;
        if (errno_value == 0) {
            Send_At_Once(socket);
            return socket;
        }
    }
    return {};
}

Link_Socket Listen_At(const Link_Address& address) {
    if (address.Is_Unix())
        Remove_Stale(address);
    const auto names = Names_Of(address, true);
    if (names.empty())
        Refuse_To_Listen(address, "the host is unknown");
    // One listener: of several names of a host the first one counts.
    const Socket_Name& name = names.front();
    Link_Socket socket = New_Socket(name);
    const int on = 1;
    const bool good = socket.Is_Open() &&
                      (address.Is_Unix() || ::setsockopt(socket.Descriptor(), SOL_SOCKET,
                                                         SO_REUSEADDR, &on, sizeof on) == 0) &&
                      ::bind(socket.Descriptor(), name.Get(), name.size) == 0 &&
                      ::listen(socket.Descriptor(), SOMAXCONN) == 0;
    if (!good)
        Refuse_To_Listen(address, std::strerror(errno));
    return socket;
}

Link_Socket Accept_From(const Link_Socket& listener) {
    Link_Socket socket(
        ::accept4(listener.Descriptor(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (socket.Is_Open())
        Send_At_Once(socket);
    return socket;
}

Link_Address Bound_Address(const Link_Socket& listener, const Link_Address& asked) {
    Link_Address address = asked;
    sockaddr_storage storage{};
    socklen_t size = sizeof storage;
    if (asked.Is_Unix() ||
        ::getsockname(listener.Descriptor(), reinterpret_cast<sockaddr*>(&storage), &size) != 0)
        return address;
    // Both families keep the port in the same place.
    sockaddr_in name{};
    std::memcpy(&name, &storage, sizeof name);
    address.port = ntohs(name.sin_port);
    return address;
}

bool Wait_For(const Link_Socket& socket, short events, Link_Deadline deadline) {
    const bool has_work = deadline.meanwhile != nullptr && *deadline.meanwhile;
    const std::chrono::milliseconds longest = has_work ? 20ms : 60s;
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline.moment - std::chrono::steady_clock::now());
        pollfd entry{socket.Descriptor(), events, 0};
        const auto wait = std::clamp(left, 0ms, longest);
        if (::poll(&entry, 1, static_cast<int>(wait.count())) > 0)
            return true;
        if (deadline.Has_Passed())
            return false;
        if (has_work)
            (*deadline.meanwhile)();
    }
}

}  // namespace norvane
