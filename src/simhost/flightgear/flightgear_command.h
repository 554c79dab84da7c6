#pragma once
// norvane-sim's service with FlightGear for a world: waits for it, samples it, and serves the
// Norvane link while it is there and flies. Whenever it is not, nobody listens on the link, so that
// clients see the simulator gone instead of figures that stand still.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "common/signal.h"
#include "simhost/flightgear/flightgear_world.h"
#include "simhost/flightgear/property_server.h"
#include "simhost/host.h"

namespace norvane {

/// Where `fgfs --telnet=socket,bi,60,localhost,5401,tcp` serves its properties.
inline constexpr std::string_view default_flightgear_address = "localhost:5401";

struct Flightgear_Options {
    Link_Address flightgear;
    Link_Address listen;
    /// The simulator that clients are told they fly.
    std::uint16_t simulator_version = 7;
    /// Holds "flightgear.cfg" and, for clients, "Aircraft".
    std::filesystem::path simulator_directory;
    Property_Pace pace;
};

class Flightgear_Service {
  public:
    /// Raises when the table cannot be read or the link's address cannot be had. `clock` outlives
    /// the service.
    Flightgear_Service(const Flightgear_Options& options, Clock& clock);
    ~Flightgear_Service();
    Flightgear_Service(const Flightgear_Service&) = delete;
    Flightgear_Service& operator=(const Flightgear_Service&) = delete;

    /// Where clients find it while the simulator is there.
    [[nodiscard]] const Link_Address& Address() const { return m_options.listen; }
    [[nodiscard]] bool Is_Serving() const { return m_host != nullptr; }
    /// Does what is to be done, waiting at most so long for it; true when `stop` has something to
    /// read.
    bool Serve(std::chrono::milliseconds at_most, int stop = -1);
    /// Serves until the descriptor `stop` has something to read.
    void Run(int stop);

    /// What goes on, a line for the pilot; once for each state.
    Signal<const std::string&> told;
    /// A text that was shown in the simulator.
    Signal<const std::string&> text_shown;

  private:
    void Take_Sample(std::vector<std::string> answers);
    void Take_Loss(const std::string& reason);
    void Begin_Serving();
    void Show_In_Simulator(const std::string& text);
    void Tell(const std::string& state);

    Flightgear_Options m_options;
    Clock& m_clock;
    Flightgear_World m_world;
    Property_Server m_simulator;
    std::unique_ptr<Host> m_host;
    /// Readable when there is something to do for the simulator's connection or to stop for.
    int m_wake = -1;
    std::string m_told;
    std::chrono::steady_clock::time_point m_last_taken;
};

}  // namespace norvane
