#include "simlink/link_socket.h"

#include <algorithm>
#include <cerrno>

#include "common/code_page.h"
#include "common/run_error.h"

namespace norvane {

namespace {

using namespace std::chrono_literals;

/// 0, or why the connection did not come about.
int Connect_One(const Link_Socket& socket, const Socket_Name& name, Link_Deadline deadline) {
    const int failure = system_sockets::Connect(socket.Descriptor(), name);
    if (failure != EINPROGRESS)
        return failure;
    if (!Wait_For(socket, POLLOUT, deadline))
        return ETIMEDOUT;
    return system_sockets::Connection_Failure(socket.Descriptor());
}

[[noreturn]] void Refuse_To_Listen(const Link_Address& address, const std::string& reason) {
    throw Run_Error(error_number::path_file_access,
                    "Cannot listen on " + From_Utf8(address.Text()) + ": " + reason);
}

/// Makes way for a new Unix socket: what a killed predecessor left is removed.
void Remove_Stale(const Link_Address& address) {
    std::error_code trouble;
    const auto status = std::filesystem::symlink_status(address.socket_file, trouble);
    if (!std::filesystem::exists(status))
        return;
    if (!std::filesystem::is_socket(status))
        Refuse_To_Listen(address, "a file of that name is there and is no socket");
    int failure = 0;
    const Link_Deadline deadline{std::chrono::steady_clock::now() + 1s};
    const Link_Socket probe = Connect_To(address, deadline, failure);
    if (probe.Is_Open() || failure != ECONNREFUSED)
        Refuse_To_Listen(address, "another program listens there");
    if (!std::filesystem::remove(address.socket_file, trouble) && trouble)
        Refuse_To_Listen(address, trouble.message());
}

}  // namespace

Link_Socket& Link_Socket::operator=(Link_Socket&& other) noexcept {
    Link_Socket taken(std::move(other));
    std::swap(m_descriptor, taken.m_descriptor);
    return *this;
}

void Link_Socket::Close() {
    if (m_descriptor >= 0)
        system_sockets::Close(std::exchange(m_descriptor, -1));
}

std::vector<Socket_Name> Names_Of(const Link_Address& address, bool listening) {
    return address.Is_Unix() ? system_sockets::Names_Of_File(address.socket_file)
                             : system_sockets::Names_Of_Host(address.host, address.port, listening);
}

Link_Socket Connect_To(const Link_Address& address, Link_Deadline deadline, int& errno_value) {
    errno_value = EHOSTUNREACH;
    for (const Socket_Name& name : Names_Of(address, false)) {
        Link_Socket socket(system_sockets::New_Stream(name));
        errno_value = socket.Is_Open() ? Connect_One(socket, name, deadline) : errno;
        if (errno_value == 0) {
            system_sockets::Send_At_Once(socket.Descriptor());
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
    Link_Socket socket(system_sockets::New_Stream(name));
    if (!socket.Is_Open() || !system_sockets::Listen(socket.Descriptor(), name))
        Refuse_To_Listen(address, system_sockets::Failure_Text());
    return socket;
}

Link_Socket Accept_From(const Link_Socket& listener) {
    Link_Socket socket(system_sockets::Accept(listener.Descriptor()));
    if (socket.Is_Open())
        system_sockets::Send_At_Once(socket.Descriptor());
    return socket;
}

Link_Address Bound_Address(const Link_Socket& listener, const Link_Address& asked) {
    Link_Address address = asked;
    if (!asked.Is_Unix())
        address.port = system_sockets::Port_Of(listener.Descriptor());
    return address;
}

bool Wait_For(const Link_Socket& socket, short events, Link_Deadline deadline) {
    const bool has_work = deadline.meanwhile != nullptr && *deadline.meanwhile;
    const std::chrono::milliseconds longest = has_work ? 20ms : 60s;
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline.moment - std::chrono::steady_clock::now());
        pollfd entry = system_sockets::Poll_Entry(socket.Descriptor(), events);
        if (system_sockets::Poll({&entry, 1}, std::clamp(left, 0ms, longest)) > 0)
            return true;
        if (deadline.Has_Passed())
            return false;
        if (has_work && !(*deadline.meanwhile)())
            return false;
    }
}

}  // namespace norvane
