#include "simlink/link_server.h"

#include <algorithm>
#include <cerrno>

#include "simlink/offset_area.h"
#include "simlink/request_block.h"

namespace norvane {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t piece_size = 65536;
constexpr std::chrono::milliseconds longest_wait = 60s;

}  // namespace

Link_Server::Link_Server(const Link_Address& address, Offset_Area& area)
    : Link_Server(address, [&area](std::span<std::byte> records) -> Delivery {
          return {Delivery_Outcome::answered, area.Process(records) ? 1U : 0U};
      }) {}

Link_Server::Link_Server(const Link_Address& address, Answer_Records answer)
    : m_answer(std::move(answer)), m_listener(Listen_At(address)), m_piece(piece_size) {
    m_address = Bound_Address(m_listener, address);
    if (m_address.Is_Unix())
        m_file = system_sockets::Identity_Of(m_address.socket_file);
}

Link_Server::~Link_Server() {
    std::error_code ignored;
    if (m_address.Is_Unix() && m_file == system_sockets::Identity_Of(m_address.socket_file))
        std::filesystem::remove(m_address.socket_file, ignored);
}

bool Link_Server::Serve(std::chrono::milliseconds at_most, int wake) {
    m_polled.clear();
    m_polled.push_back(system_sockets::Poll_Entry(m_full ? -1 : m_listener.Descriptor(), POLLIN));
    m_polled.push_back(system_sockets::Poll_Entry(wake, POLLIN));
    for (const Client& client : m_clients) {
        const short events = client.outgoing.empty() ? POLLIN : POLLOUT;
        m_polled.push_back(system_sockets::Poll_Entry(client.socket.Descriptor(), events));
    }
    if (system_sockets::Poll(m_polled, std::clamp(at_most, 0ms, longest_wait)) <= 0)
        return false;
    const auto asks = [](const pollfd& entry) { return entry.revents != 0; };
    if (before_requests && std::any_of(m_polled.begin() + 2, m_polled.end(), asks))
        before_requests();
    auto entry = m_polled.begin() + 2;
    for (Client& client : m_clients)
        Serve_Client(client, (entry++)->revents);
    if (std::erase_if(m_clients, [](const Client& client) { return client.gone; }) > 0)
        m_full = false;
    if (m_polled.front().revents != 0)
        Accept_All();
    return m_polled[1].revents != 0;
}

void Link_Server::Accept_All() {
    for (;;) {
        Link_Socket socket = Accept_From(m_listener);
        if (!socket.Is_Open()) {
            m_full = (errno == EMFILE || errno == ENFILE) && !m_clients.empty();
            return;
        }
        m_clients.emplace_back().socket = std::move(socket);
        if (on_connect)
            on_connect();
    }
}

void Link_Server::Serve_Client(Client& client, short events) {
    if ((events & POLLOUT) != 0) {
        Send(client);
        Answer_All(client);
    } else if (events != 0) {
        Receive(client);
        Answer_All(client);
    }
}

void Link_Server::Receive(Client& client) {
    const auto got = system_sockets::Receive(client.socket.Descriptor(), m_piece);
    if (got > 0)
        client.incoming.insert(client.incoming.end(), m_piece.begin(), m_piece.begin() + got);
    else if (got == 0 || !system_sockets::Try_Later())
        client.gone = true;
}

void Link_Server::Answer_All(Client& client) {
    const std::span<std::byte> incoming = client.incoming;
    std::size_t place = 0;
    while (!client.gone && client.outgoing.empty() &&
           incoming.size() - place >= request_head_size) {
        const std::uint32_t length = Load_U32(incoming, place + 4);
        if (length > request_block_limit) {
            client.gone = true;
            return;
        }
        if (incoming.size() - place - request_head_size < length)
            break;
        const auto records = incoming.subspan(place + request_head_size, length);
        const Delivery delivery = m_answer(records);
        client.gone = delivery.outcome == Delivery_Outcome::failed;
        if (delivery.outcome == Delivery_Outcome::answered) {
            client.outgoing.resize(answer_head_size);
            Store_U32(client.outgoing, 0, Load_U32(incoming, place));
            Store_U32(client.outgoing, 4, delivery.answer);
            Store_U32(client.outgoing, 8, length);
            client.outgoing.insert(client.outgoing.end(), records.begin(), records.end());
        }
        place += request_head_size + length;
        Send(client);
    }
    client.incoming.erase(client.incoming.begin(),
                          client.incoming.begin() + static_cast<std::ptrdiff_t>(place));
}

void Link_Server::Send(Client& client) {
    while (!client.gone && !client.outgoing.empty()) {
        const auto sent = system_sockets::Send(client.socket.Descriptor(), client.outgoing);
        if (sent < 0) {
            client.gone = !system_sockets::Try_Later();
            return;
        }
        client.outgoing.erase(client.outgoing.begin(), client.outgoing.begin() + sent);
    }
}

}  // namespace norvane
