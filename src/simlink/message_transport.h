#pragma once
// The transport of FSUIPC itself, on Windows: a block of shared memory, named by an atom, and one
// registered message to the simulator's window, which returns when the block has been processed.
// Owned by the bridge, which must run in the simulator's own session.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "simlink/transport.h"

namespace norvane {

class Message_Transport : public Transport {
  public:
    /// Closed. `longest_wait` limits a delivery even when its caller would wait longer; FSUIPC's
    /// own limit unless told otherwise.
    explicit Message_Transport(
        std::chrono::milliseconds longest_wait = std::chrono::milliseconds(2000));
    ~Message_Transport() override;

    /// Results 2 to 6, each for the step that failed. `fallback`: only the older window was found.
    [[nodiscard]] Transport_Opening Open() override;
    Delivery Deliver(std::span<std::byte> block, std::chrono::milliseconds at_most) override;
    void Close() override;

    /// The window that was found is still there.
    [[nodiscard]] bool Peer_Exists() const;
    /// Its class; empty when closed.
    [[nodiscard]] const std::string& Peer_Class() const { return m_window_class; }
    /// The system's number for why the last failed delivery failed; 0 after any other.
    [[nodiscard]] std::uint32_t Failure() const { return m_failure; }

  private:
    void Find_Window();
    [[nodiscard]] int Share_Block();

    std::chrono::milliseconds m_longest_wait;
    // Handles of the system, null or 0 when absent.
    void* m_window = nullptr;
    std::string m_window_class;
    std::uint32_t m_message = 0;
    std::uint16_t m_atom = 0;
    void* m_mapping = nullptr;
    std::byte* m_view = nullptr;
    std::uint32_t m_failure = 0;
};

}  // namespace norvane
