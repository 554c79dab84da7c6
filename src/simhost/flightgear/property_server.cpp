#include "simhost/flightgear/property_server.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <span>
#include <utility>

#include "common/text.h"

namespace norvane {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t piece_size = 65536;
/// No property that is asked for comes near: more than that without an end is no answer.
constexpr std::size_t longest_line = 65536;

}  // namespace

Property_Server::Property_Server(Link_Address address, Property_Pace pace)
    : m_address(std::move(address)), m_pace(pace), m_piece(piece_size) {}

pollfd Property_Server::Wanted() const {
    if (m_connecting)
        return system_sockets::Poll_Entry(m_socket.Descriptor(), POLLOUT);
    const short events = m_outgoing.empty() ? POLLIN : POLLIN | POLLOUT;
    return system_sockets::Poll_Entry(m_socket.Descriptor(), events);
}

std::chrono::milliseconds Property_Server::Until_Next_Step() const {
    const auto left = m_next - std::chrono::steady_clock::now();
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(left), 0ms);
}

void Property_Server::Step() {
    if (m_connecting) {
        Await_Connection();
        return;
    }
    if (m_socket.Is_Open())
        Receive();
    if (m_socket.Is_Open())
        Send();
    if (std::chrono::steady_clock::now() < m_next)
        return;
    if (!m_socket.Is_Open())
        Connect();
    else if (m_due > 0 && m_answers.empty() && m_incoming.empty())
        Lose("it takes the connection but says nothing");
    else if (m_due > 0)
        Lose(fmt::format("it gave {} answers to {} questions", m_answers.size(), m_due));
    else
        Ask();
}

void Property_Server::Connect() {
    m_names = Names_Of(m_address, false);
    std::reverse(m_names.begin(), m_names.end());
    Try_Next_Name("the host is unknown");
}

/// `failure`: why there is no connection should no name be left.
void Property_Server::Try_Next_Name(std::string failure) {
    m_connecting = false;
    while (!m_names.empty()) {
        const Socket_Name name = m_names.back();
        m_names.pop_back();
        m_socket = Link_Socket(system_sockets::New_Stream(name));
        const int result =
            m_socket.Is_Open() ? system_sockets::Connect(m_socket.Descriptor(), name) : errno;
        if (result == 0) {
            Begin();
            return;
        }
        if (result == EINPROGRESS) {
            m_connecting = true;
            m_next = std::chrono::steady_clock::now() + m_pace.connect;
            return;
        }
        failure = std::strerror(result);
    }
    Lose(failure);
}

void Property_Server::Await_Connection() {
    pollfd entry = Wanted();
    const bool decided = system_sockets::Poll({&entry, 1}, 0ms) > 0;
    if (!decided && std::chrono::steady_clock::now() < m_next)
        return;
    const int result =
        decided ? system_sockets::Connection_Failure(m_socket.Descriptor()) : ETIMEDOUT;
    if (result == 0)
        Begin();
    else
        Try_Next_Name(std::strerror(result));
}

void Property_Server::Begin() {
    m_connecting = false;
    system_sockets::Send_At_Once(m_socket.Descriptor());
    // Answers without prompt and decoration.
    m_outgoing = "data\r\n";
    m_next = std::chrono::steady_clock::now();
    Ask();
}

void Property_Server::Sample_Every(std::chrono::milliseconds pace) {
    m_pace.sample = pace;
    if (m_socket.Is_Open() && !m_connecting && m_due == 0)
        m_next = m_sampled_at + pace;
}

void Property_Server::Ask() {
    const auto now = std::chrono::steady_clock::now();
    // A step that comes a little late makes the samples after it no later.
    m_sampled_at = now - m_next < m_pace.sample ? m_next : now;
    const std::vector<std::string>& wanted = paths();
    for (const std::string& path : wanted)
        m_outgoing += fmt::format("get {}\r\n", path);
    m_due = wanted.size();
    m_answers.clear();
    m_next = now + m_pace.answer;
    Send();
}

void Property_Server::Set(std::string_view path, std::string_view value) {
    if (!m_socket.Is_Open() || m_connecting)
        return;
    std::string line = fmt::format("set {} {}", path, value);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    m_outgoing += line + "\r\n";
    Send();
}

void Property_Server::Send() {
    while (m_socket.Is_Open() && !m_outgoing.empty()) {
        const auto sent =
            system_sockets::Send(m_socket.Descriptor(), std::as_bytes(std::span(m_outgoing)));
        if (sent < 0) {
            if (!system_sockets::Try_Later())
                Lose(system_sockets::Failure_Text());
            return;
        }
        m_outgoing.erase(0, static_cast<std::size_t>(sent));
    }
}

void Property_Server::Receive() {
    for (;;) {
        const auto got = system_sockets::Receive(m_socket.Descriptor(), m_piece);
        if (got == 0) {
            Lose("it has closed the connection");
            return;
        }
        if (got < 0) {
            if (!system_sockets::Try_Later())
                Lose(system_sockets::Failure_Text());
            return;
        }
        m_incoming.append(reinterpret_cast<const char*>(m_piece.data()),
                          static_cast<std::size_t>(got));
        Take_Lines();
        if (!m_socket.Is_Open())
            return;
    }
}

void Property_Server::Take_Lines() {
    std::size_t place = 0;
    std::size_t end = 0;
    while (m_answers.size() < m_due && (end = m_incoming.find(cr_lf, place)) != std::string::npos) {
        m_answers.push_back(m_incoming.substr(place, end - place));
        place = end + cr_lf.size();
    }
    m_incoming.erase(0, place);
    if (m_answers.size() == m_due && !m_incoming.empty()) {
        Lose("it says more than it was asked for");
        return;
    }
    if (m_incoming.size() > longest_line) {
        Lose("it sends a line without end");
        return;
    }
    if (m_due == 0 || m_answers.size() < m_due)
        return;
    m_due = 0;
    m_next = std::max(m_sampled_at + m_pace.sample, std::chrono::steady_clock::now());
    sampled.Emit(std::exchange(m_answers, {}));
}

void Property_Server::Lose(const std::string& reason) {
    m_socket.Close();
    m_outgoing.clear();
    m_incoming.clear();
    m_answers.clear();
    m_due = 0;
    m_next = std::chrono::steady_clock::now() + m_pace.retry;
    lost.Emit(reason);
}

}  // namespace norvane
