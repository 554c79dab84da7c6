#include "simlink/system_sockets.h"

#include <array>
#include <cerrno>
#include <system_error>

namespace norvane::system_sockets {

namespace {

/// The library of sockets, which must be started before the first call.
struct Library {
    Library() {
        WSADATA data{};
        (void)::WSAStartup(MAKEWORD(2, 2), &data);
    }
};

struct Failure_Row {
    int windows = 0;
    int errno_value = 0;
};

/// What the program tells apart; every other failure is an EIO to it.
constexpr auto failures = std::to_array<Failure_Row>({
    {WSAEWOULDBLOCK, EWOULDBLOCK},
    {WSAEINTR, EINTR},
    {WSAECONNREFUSED, ECONNREFUSED},
    {WSAETIMEDOUT, ETIMEDOUT},
    {WSAEMFILE, EMFILE},
});

int Errno_Of(int failure) {
    if (failure == 0)
        return 0;
    for (const Failure_Row& row : failures) {
        if (row.windows == failure)
            return row.errno_value;
    }
    return EIO;
}

/// Notes why a call failed, and tells whether it did.
bool Failed(int result) {
    if (result == SOCKET_ERROR)
        errno = Errno_Of(::WSAGetLastError());
    return result == SOCKET_ERROR;
}

/// Handles of sockets fit 32 bits, as those of the whole system do.
SOCKET Socket_Of(int descriptor) {
    return descriptor < 0 ? INVALID_SOCKET : static_cast<SOCKET>(descriptor);
}

/// The socket made non-blocking, -1 when it is none.
int Descriptor_Of(SOCKET made) {
    u_long on = 1;
    if (made == INVALID_SOCKET) {
        errno = Errno_Of(::WSAGetLastError());
        return -1;
    }
    if (Failed(::ioctlsocket(made, static_cast<long>(FIONBIO), &on))) {
        ::closesocket(made);
        return -1;
    }
    return static_cast<int>(made);
}

}  // namespace

void Start() {
    static const Library library;
}

std::vector<Socket_Name> Names_Of_File(const std::filesystem::path& /*file*/) {
    return {};
}

std::pair<std::uint64_t, std::uint64_t> Identity_Of(const std::filesystem::path& /*file*/) {
    return {0, 0};
}

int New_Stream(const Socket_Name& name) {
    Start();
    return Descriptor_Of(::WSASocketW(name.storage.ss_family, SOCK_STREAM, 0, nullptr, 0,
                                      WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT));
}

void Close(int descriptor) {
    ::closesocket(Socket_Of(descriptor));
}

int Connect(int descriptor, const Socket_Name& name) {
    if (!Failed(::connect(Socket_Of(descriptor), name.Get(), name.size)))
        return 0;
    return errno == EWOULDBLOCK || errno == EINTR ? EINPROGRESS : errno;
}

int Connection_Failure(int descriptor) {
    int failure = 0;
    socklen_t size = sizeof failure;
    if (Failed(::getsockopt(Socket_Of(descriptor), SOL_SOCKET, SO_ERROR,
                            reinterpret_cast<char*>(&failure), &size)))
        return errno;
    return Errno_Of(failure);
}

bool Listen(int descriptor, const Socket_Name& name) {
    // The option that frees an occupied port elsewhere would here share a port that is in use.
    return !Failed(::bind(Socket_Of(descriptor), name.Get(), name.size)) &&
           !Failed(::listen(Socket_Of(descriptor), SOMAXCONN));
}

int Accept(int listener) {
    return Descriptor_Of(::accept(Socket_Of(listener), nullptr, nullptr));
}

void Send_At_Once(int descriptor) {
    const int on = 1;
    (void)::setsockopt(Socket_Of(descriptor), IPPROTO_TCP, TCP_NODELAY,
                       reinterpret_cast<const char*>(&on), sizeof on);
}

std::ptrdiff_t Receive(int descriptor, std::span<std::byte> bytes) {
    const int got = ::recv(Socket_Of(descriptor), reinterpret_cast<char*>(bytes.data()),
                           static_cast<int>(bytes.size()), 0);
    return Failed(got) ? -1 : got;
}

std::ptrdiff_t Send(int descriptor, std::span<const std::byte> bytes) {
    const int sent = ::send(Socket_Of(descriptor), reinterpret_cast<const char*>(bytes.data()),
                            static_cast<int>(bytes.size()), 0);
    return Failed(sent) ? -1 : sent;
}

std::string Failure_Text() {
    return std::system_category().message(::WSAGetLastError());
}

pollfd Poll_Entry(int descriptor, short events) {
    return {Socket_Of(descriptor), events, 0};
}

int Poll(std::span<pollfd> entries, std::chrono::milliseconds at_most) {
    const int ready = ::WSAPoll(entries.data(), static_cast<ULONG>(entries.size()),
                                static_cast<int>(at_most.count()));
    return Failed(ready) ? -1 : ready;
}

}  // namespace norvane::system_sockets
