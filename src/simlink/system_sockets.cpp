#include "simlink/system_sockets.h"

#ifndef _WIN32
#include <netdb.h>
#include <netinet/in.h>
#endif

#include <cerrno>
#include <cstring>
#include <memory>

namespace norvane::system_sockets {

std::vector<Socket_Name> Names_Of_Host(const std::string& host, std::uint16_t port,
                                       bool listening) {
    Start();
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV | (listening ? AI_PASSIVE : 0);
    addrinfo* found = nullptr;
    if (::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) != 0)
        return {};
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(found, &::freeaddrinfo);
    std::vector<Socket_Name> names;
    for (const addrinfo* entry = found; entry != nullptr; entry = entry->ai_next) {
        Socket_Name name;
        name.size = static_cast<socklen_t>(entry->ai_addrlen);
        std::memcpy(&name.storage, entry->ai_addr, entry->ai_addrlen);
        names.push_back(name);
    }
    return names;
}

std::uint16_t Port_Of(int listener) {
    sockaddr_storage storage{};
    socklen_t size = sizeof storage;
    // An entry to poll for holds the descriptor in the system's own type.
    const auto socket = Poll_Entry(listener, 0).fd;
    if (::getsockname(socket, reinterpret_cast<sockaddr*>(&storage), &size) != 0)
        return 0;
    // Both families keep the port in the same place.
    sockaddr_in name{};
    std::memcpy(&name, &storage, sizeof name);
    return ntohs(name.sin_port);
}

bool Try_Later() {
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

}  // namespace norvane::system_sockets
