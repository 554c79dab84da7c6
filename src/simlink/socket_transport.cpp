#include "simlink/socket_transport.h"

#include <algorithm>
#include <utility>

#include "simlink/mod_fsuipc.h"
#include "simlink/request_block.h"
#include "simlink/system_sockets.h"

namespace norvane {

Socket_Transport::Socket_Transport(Link_Address address, std::chrono::milliseconds connect_at_most,
                                   std::function<bool()> meanwhile)
    : m_address(std::move(address)),
      m_connect_at_most(connect_at_most),
      m_meanwhile(std::move(meanwhile)) {}

void Socket_Transport::Set_Address(Link_Address address) {
    if (address.Text() == m_address.Text())
        return;
    Close();
    m_address = std::move(address);
}

Link_Deadline Socket_Transport::Within(std::chrono::milliseconds span) const {
    return {std::chrono::steady_clock::now() + span, &m_meanwhile};
}

Transport_Opening Socket_Transport::Open() {
    Close();
    const auto outcome = Connect(Within(m_connect_at_most));
    const bool connected = outcome == Delivery_Outcome::answered;
    return {connected ? ipc_result::okay : ipc_result::no_simulator, false};
}

void Socket_Transport::Close() {
    m_socket.Close();
    m_incoming.clear();
}

Delivery_Outcome Socket_Transport::Connect(Link_Deadline deadline) {
    m_incoming.clear();
    int failure = 0;
    m_socket = Connect_To(m_address, deadline, failure);
    if (m_socket.Is_Open())
        return Delivery_Outcome::answered;
    return failure == ETIMEDOUT ? Delivery_Outcome::silent : Delivery_Outcome::failed;
}

Delivery Socket_Transport::Deliver(std::span<std::byte> block, std::chrono::milliseconds at_most) {
    const Link_Deadline deadline = Within(at_most);
    auto outcome = Delivery_Outcome::answered;
    if (!m_socket.Is_Open())
        outcome = Connect(Within(std::min(at_most, m_connect_at_most)));
    if (outcome == Delivery_Outcome::answered)
        outcome = Send(block, deadline);
    Delivery delivery{outcome, 0};
    if (outcome == Delivery_Outcome::answered)
        delivery = Receive(block, deadline);
    if (delivery.outcome == Delivery_Outcome::failed)
        Close();
    m_has_answered = m_has_answered || delivery.outcome == Delivery_Outcome::answered;
    return delivery;
}

Delivery_Outcome Socket_Transport::Send(std::span<const std::byte> block, Link_Deadline deadline) {
    ++m_sequence;
    m_outgoing.resize(request_head_size + block.size());
    Store_U32(m_outgoing, 0, m_sequence);
    Store_U32(m_outgoing, 4, static_cast<std::uint32_t>(block.size()));
    std::copy(block.begin(), block.end(), m_outgoing.begin() + request_head_size);
    std::span<const std::byte> rest = m_outgoing;
    while (!rest.empty()) {
        const auto sent = system_sockets::Send(m_socket.Descriptor(), rest);
        if (sent > 0) {
            rest = rest.subspan(static_cast<std::size_t>(sent));
        } else if (sent == 0 || !system_sockets::Try_Later()) {
            return Delivery_Outcome::failed;
        } else if (!Wait_For(m_socket, POLLOUT, deadline)) {
            // Half a frame may be out: what follows on this connection would be misread.
            Close();
            return Delivery_Outcome::silent;
        }
    }
    return Delivery_Outcome::answered;
}

Delivery Socket_Transport::Receive(std::span<std::byte> block, Link_Deadline deadline) {
    constexpr std::size_t piece = answer_head_size + request_block_limit;
    Delivery delivery;
    while (!Take_Answer(block, delivery)) {
        // The deadline also ends an endless stream of stale answers.
        if (!Wait_For(m_socket, POLLIN, deadline) || deadline.Has_Passed())
            return {Delivery_Outcome::silent, 0};
        const std::size_t kept = m_incoming.size();
        m_incoming.resize(kept + piece);
        const auto got =
            system_sockets::Receive(m_socket.Descriptor(), std::span(m_incoming).subspan(kept));
        m_incoming.resize(kept + static_cast<std::size_t>(std::max<std::ptrdiff_t>(got, 0)));
        if (got == 0 || (got < 0 && !system_sockets::Try_Later()))
            return {Delivery_Outcome::failed, 0};
    }
    return delivery;
}

bool Socket_Transport::Take_Answer(std::span<std::byte> block, Delivery& delivery) {
    std::size_t place = 0;
    bool taken = false;
    while (!taken && m_incoming.size() - place >= answer_head_size) {
        const auto frame = std::span<const std::byte>(m_incoming).subspan(place);
        const std::uint32_t length = Load_U32(frame, 8);
        if (length > request_block_limit) {
            delivery = {Delivery_Outcome::failed, 0};
            return true;
        }
        if (frame.size() < answer_head_size + length)
            break;
        place += answer_head_size + length;
        if (Load_U32(frame, 0) != m_sequence)
            continue;
        taken = true;
        delivery = {Delivery_Outcome::answered, Load_U32(frame, 4)};
        if (delivery.answer == 1 && length == block.size())
            std::copy_n(frame.begin() + answer_head_size, length, block.begin());
        else if (delivery.answer == 1)
            delivery.answer = 0;
    }
    m_incoming.erase(m_incoming.begin(), m_incoming.begin() + static_cast<std::ptrdiff_t>(place));
    return taken;
}

}  // namespace norvane
