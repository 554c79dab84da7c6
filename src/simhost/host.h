#pragma once
// The simulator's stand-in at work: a world behind a link server. Requests are answered from the
// world as it is at their moment. Time runs by the clock or, in step mode, by the client's own
// sampling steps, so that a flight comes out the same to the byte however fast the machines are.

#include <chrono>
#include <optional>
#include <string>

#include "common/signal.h"
#include "simhost/world_source.h"
#include "simlink/link_server.h"
#include "simlink/offset_area.h"

namespace norvane {

class Clock;

struct Host_Options {
    Link_Address listen;
    /// World seconds in a second of the clock, more than 0.
    double speed = 1;
    /// The world's moment at the start.
    double at_seconds = 0;
    /// Step mode: the world stands still but for this advance at each sampling step of the client,
    /// which begins with a read of the parking brake. The first such read of a new connection
    /// advances nothing, so that a client that was killed within a step finds the moment it left.
    std::optional<std::chrono::milliseconds> step;
};

class Host {
  public:
    /// Listens; raises when the address cannot be had. `world` and `clock` outlive the host.
    Host(World_Source& world, const Host_Options& options, Clock& clock);

    /// Where clients find it.
    [[nodiscard]] const Link_Address& Address() const { return m_server.Address(); }
    /// The moment the world stands at now.
    [[nodiscard]] double World_Seconds() const;
    /// Waits for requests at most so long and answers those that are there; true when `stop` has
    /// something to read.
    bool Serve(std::chrono::milliseconds at_most, int stop = -1);
    /// Serves until the descriptor `stop` has something to read.
    void Run(int stop);

    /// A client shows a text in the simulator: one line of code page text, not empty.
    Signal<const std::string&> text_shown;

  private:
    void Take_Read(std::uint32_t offset);
    void Take_Write(std::uint32_t offset, std::uint32_t size);
    void Catch_Up();

    World_Source& m_world;
    Host_Options m_options;
    Clock& m_clock;
    Offset_Area m_area;
    Link_Server m_server;
    std::chrono::microseconds m_start;
    std::chrono::microseconds m_caught_up;
    std::int64_t m_steps = 0;
    bool m_first_read = true;
};

}  // namespace norvane
