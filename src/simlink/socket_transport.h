#pragma once
// The client's end of the Norvane link: one request frame out, one answer frame back, over a Unix
// domain socket or TCP. The program owns it and hands it to modFSUIPC, which repeats what failed.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "simlink/link_socket.h"
#include "simlink/transport.h"

namespace norvane {

class Socket_Transport : public Transport {
  public:
    /// Not connected yet. A connection that does not come about within `connect_at_most` counts as
    /// silence. `meanwhile` is done every few milliseconds of a wait that lasts; it must not use
    /// the transport. Once it says false, nobody waits any longer: what is asked counts as silence
    /// at once.
    explicit Socket_Transport(
        Link_Address address,
        std::chrono::milliseconds connect_at_most = std::chrono::milliseconds(2000),
        std::function<bool()> meanwhile = {});

    /// Another simulator's address, for the next connection; one that is open is closed.
    void Set_Address(Link_Address address);
    /// Connects; result 2 when nobody answers at the address.
    [[nodiscard]] Transport_Opening Open() override;
    /// A peer that closes, resets or breaks the framing is a failed delivery, and the next one
    /// connects anew; no answer in time is a silent one, whose answer is skipped should it come
    /// later. An answer that says "processed" with another length than the request counts as
    /// refused.
    Delivery Deliver(std::span<std::byte> block, std::chrono::milliseconds at_most) override;
    void Close() override;
    /// A simulator has answered a request since this object was made.
    [[nodiscard]] bool Has_Answered() const { return m_has_answered; }
    [[nodiscard]] std::string Where() const override { return m_address.Text(); }
    [[nodiscard]] bool Is_Given_Up() const override { return m_meanwhile && !m_meanwhile(); }

  private:
    [[nodiscard]] Link_Deadline Within(std::chrono::milliseconds span) const;
    Delivery_Outcome Connect(Link_Deadline deadline);
    Delivery_Outcome Send(std::span<const std::byte> block, Link_Deadline deadline);
    Delivery Receive(std::span<std::byte> block, Link_Deadline deadline);
    bool Take_Answer(std::span<std::byte> block, Delivery& delivery);

    Link_Address m_address;
    std::chrono::milliseconds m_connect_at_most;
    std::function<bool()> m_meanwhile;
    Link_Socket m_socket;
    bool m_has_answered = false;
    std::uint32_t m_sequence = 0;
    std::vector<std::byte> m_outgoing;
    /// What has come and was not taken yet: part of a frame, or stale frames.
    std::vector<std::byte> m_incoming;
};

}  // namespace norvane
