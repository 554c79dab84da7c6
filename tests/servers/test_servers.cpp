#include "servers/test_servers.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "support/child_process.h"

namespace norvane::test {

Web_Server::Web_Server(std::unique_ptr<httplib::Server> server)
    : m_server(std::move(server)), m_port(m_server->bind_to_any_port("127.0.0.1")) {
    if (m_port <= 0)
        throw std::runtime_error("no port");
}

void Web_Server::Start() {
    m_thread = std::thread([this] { m_server->listen_after_bind(); });
    while (!m_server->is_running())
        std::this_thread::yield();
}

Web_Server::~Web_Server() {
    m_server->stop();
    if (m_thread.joinable())
        m_thread.join();
}

std::string Web_Server::Host(const std::string& name) const {
    return name + ":" + std::to_string(m_port);
}

Raw_Server::Raw_Server(std::function<void(int)> answer)
    : m_answer(std::move(answer)), m_listening(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(m_listening, generic, size) != 0 || ::listen(m_listening, 8) != 0 ||
        ::getsockname(m_listening, generic, &size) != 0)
        throw std::runtime_error("no port");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { Serve(); });
}

Raw_Server::~Raw_Server() {
    ::shutdown(m_listening, SHUT_RDWR);
    m_thread.join();
    ::close(m_listening);
}

std::string Raw_Server::Host() const {
    return "127.0.0.1:" + std::to_string(m_port);
}

void Raw_Server::Serve() {
    for (;;) {
        const int socket = ::accept(m_listening, nullptr, nullptr);
        if (socket < 0)
            return;
        std::string request;
        std::size_t whole = std::string::npos;
        std::array<char, 4096> buffer{};
        while (request.size() < whole) {
            const auto got = ::recv(socket, buffer.data(), buffer.size(), 0);
            if (got <= 0)
                break;
            request.append(buffer.data(), static_cast<std::size_t>(got));
            const auto end = request.find("\r\n\r\n");
            if (whole == std::string::npos && end != std::string::npos) {
                const auto length = request.find("Content-Length: ");
                whole = end + 4;
                if (length < end)
                    whole += std::stoul(request.substr(length + 16));
            }
        }
        m_request = request;
        m_answer(socket);
        ::close(socket);
    }
}

void Send(int socket, const std::string& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const auto more = ::send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (more <= 0)
            return;
        sent += static_cast<std::size_t>(more);
    }
}

void Hang(int socket) {
    char byte = 0;
    while (::recv(socket, &byte, 1, 0) > 0) {
    }
}

void Reset(int socket) {
    const linger at_once{1, 0};
    ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
}

Test_Certificate::Test_Certificate(const std::filesystem::path& directory)
    : certificate(directory / "test.crt"), key(directory / "test.key") {
    const auto made =
        Run_Program({"/usr/bin/env", "openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                     "ec_paramgen_curve:prime256v1", "-nodes", "-days", "2", "-subj",
                     "/CN=localhost", "-addext", "subjectAltName=DNS:localhost", "-keyout",
                     key.string(), "-out", certificate.string()});
    if (made.status != 0)
        throw std::runtime_error("no certificate: " + made.errors);
}

}  // namespace norvane::test
