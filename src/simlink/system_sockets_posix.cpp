#include "simlink/system_sockets.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace norvane::system_sockets {

void Start() {}

std::vector<Socket_Name> Names_Of_File(const std::filesystem::path& file) {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    const std::string path = file.string();
    path.copy(name.sun_path, sizeof name.sun_path - 1);
    Socket_Name result;
    std::memcpy(&result.storage, &name, sizeof name);
    result.size = sizeof name;
    return {result};
}

std::pair<std::uint64_t, std::uint64_t> Identity_Of(const std::filesystem::path& file) {
    struct stat status {};
    if (::lstat(file.c_str(), &status) != 0)
        return {0, 0};
    return {status.st_dev, status.st_ino};
}

int New_Stream(const Socket_Name& name) {
    return ::socket(name.storage.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

void Close(int descriptor) {
    ::close(descriptor);
}

int Connect(int descriptor, const Socket_Name& name) {
    if (::connect(descriptor, name.Get(), name.size) == 0)
        return 0;
    return errno == EINTR ? EINPROGRESS : errno;
}

int Connection_Failure(int descriptor) {
    int failure = 0;
    socklen_t size = sizeof failure;
    if (::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &failure, &size) != 0)
        return errno;
    return failure;
}

bool Listen(int descriptor, const Socket_Name& name) {
    const int on = 1;
    const bool ready = name.storage.ss_family == AF_UNIX ||
                       ::setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) == 0;
    return ready && ::bind(descriptor, name.Get(), name.size) == 0 &&
           ::listen(descriptor, SOMAXCONN) == 0;
}

int Accept(int listener) {
    return ::accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
}

void Send_At_Once(int descriptor) {
    const int on = 1;
    // Unix sockets know no such option and need none.
    (void)::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

std::ptrdiff_t Receive(int descriptor, std::span<std::byte> bytes) {
    return ::recv(descriptor, bytes.data(), bytes.size(), 0);
}

std::ptrdiff_t Send(int descriptor, std::span<const std::byte> bytes) {
    return ::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

std::string Failure_Text() {
    return std::strerror(errno);
}

pollfd Poll_Entry(int descriptor, short events) {
    return {descriptor, events, 0};
}

int Poll(std::span<pollfd> entries, std::chrono::milliseconds at_most) {
    return ::poll(entries.data(), entries.size(), static_cast<int>(at_most.count()));
}

}  // namespace norvane::system_sockets
