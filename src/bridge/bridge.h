#pragma once
// The bridge at work: a simulator's window on one side, a link server on the other. It listens only
// while the window is there, so that a client without a simulator is refused a connection, just as
// it would find no window itself; and what a delivery comes to reaches the client as the same
// result: a refusal as a refusal, silence as silence, failure as a closed connection.

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "simlink/link_server.h"
#include "simlink/message_transport.h"

namespace norvane {

class Bridge {
  public:
    /// Raises when `listen` cannot be had now.
    explicit Bridge(Link_Address listen);

    /// Waits for simulators and serves them, one after another, until `stop` holds.
    void Run(const std::atomic<bool>& stop);

  private:
    /// True while the window is there and the address is had.
    bool Connect();
    /// True when the address is had.
    bool Listen();
    void Disconnect();
    Delivery Pass_On(std::span<std::byte> records);
    /// Tells the pilot, unless it was the last thing told.
    void Say(const std::string& text);

    Link_Address m_listen;
    Message_Transport m_transport;
    std::unique_ptr<Link_Server> m_server;
    std::string m_said;
};

}  // namespace norvane
