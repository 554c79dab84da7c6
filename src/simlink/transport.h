#pragma once
// The way a request block travels to the simulator and back. modFSUIPC owns the block and the
// retries; a Transport finds the simulator's side and delivers one block. Implementations:
// in-process (in_process_transport.h), the Norvane link over a socket (socket_transport.h).

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace norvane {

/// What became of one delivery.
enum class Delivery_Outcome {
    answered,  // the block came back with an answer
    silent,    // no answer in time
    failed,    // the peer is gone: refused, reset, closed, broken framing
};

struct Delivery {
    Delivery_Outcome outcome = Delivery_Outcome::failed;
    /// 1: processed; anything else: refused. Meaningful only when answered.
    std::uint32_t answer = 0;
};

struct Transport_Opening {
    /// 0, or the link's result code 2 to 6.
    int result = 0;
    /// The peer was found by its fallback name only.
    bool fallback = false;
};

class Transport {
  public:
    virtual ~Transport() = default;
    Transport() = default;
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;

    [[nodiscard]] virtual Transport_Opening Open() = 0;
    /// Delivers `block` (records through the 4-byte end record); when answered, the reads in it are
    /// filled. A delivery after the peer was found gone reconnects first.
    virtual Delivery Deliver(std::span<std::byte> block, std::chrono::milliseconds at_most) = 0;
    virtual void Close() = 0;
    /// Where the peer is looked for, for people to read; empty where there is only one place.
    [[nodiscard]] virtual std::string Where() const { return {}; }
    /// Nobody waits for an answer any longer: the program is about to end.
    [[nodiscard]] virtual bool Is_Given_Up() const { return false; }
};

}  // namespace norvane
