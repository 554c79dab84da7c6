#pragma once
// An engine in a test's world: a simulator area in the same process, the link, settings and
// airline, and a record of every event as a line of text. A jet stands at KJFK, ready to fly to
// KBOS.

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "acars/cls_acars.h"
#include "acars/cls_utc.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "simlink/in_process_transport.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"
#include "support/test_world.h"

namespace norvane::test {

/// A moment of a flight: UTC, fuel in gallons and N1, brake, ground, altitude, vertical speed,
/// ground speed, airspeed, and the place with its elevation.
struct Moment {
    std::array<double, 12> values;
    void operator()(Offset_Area& area) const;
};
/// KJFK to KBOS: 0 parked, 1 brake released, 4 airborne, 6 level, 11 touchdown, 15 brake set.
[[nodiscard]] const std::vector<Moment>& Jet_Flight();
namespace moment {
inline constexpr std::size_t parked = 0;
inline constexpr std::size_t out = 1;
inline constexpr std::size_t off = 4;
inline constexpr std::size_t level = 6;
inline constexpr std::size_t on = 11;
inline constexpr std::size_t in = 15;
}  // namespace moment

class Engine_World : public Test_World {
  protected:
    Engine_World();

    /// A second engine on the same link and store, as after a restart of the program. What it
    /// raises goes to `raised` too.
    void Replace_Engine();
    bool Start(bool resume = false);
    /// Puts values into the simulator: a variable and its value, another and its value ...
    template <class... More>
    void Put(Variable variable, double value, More... more) {
        area.Set(variable, value);
        if constexpr (sizeof...(more) > 0)
            Put(more...);
    }
    /// Changes one variable and lets the engine take a step.
    void Set(Variable variable, double value, int engine_number = 1);
    /// A parked jet and a new engine; nothing stored, nothing raised.
    void Begin_Anew();
    /// Every exchange with the simulator is refused from now on.
    void Refuse_Link(Delivery_Outcome outcome = Delivery_Outcome::answered) {
        transport.on_deliver = [=](std::span<std::byte>) { return Delivery{outcome, 0}; };
    }
    /// Steps through moments [from, to) of the jet's flight.
    void Fly(std::size_t from, std::size_t to);
    /// Starts, and steps through the moments before `to`.
    void Fly_To(std::size_t to);
    /// What was raised since the last call, line by line, `FSTime` left out.
    std::string Take_Raised();
    /// The arguments of each event of that name raised so far.
    [[nodiscard]] std::vector<std::string> All(const std::string& name) const;
    [[nodiscard]] std::size_t Count(const std::string& name) const { return All(name).size(); }
    /// Those of the only one; fails unless it came once.
    [[nodiscard]] std::string Once(const std::string& name) const;
    /// The texts of the messages of a type, in order.
    [[nodiscard]] std::vector<std::string> Messages(Message_Type type) const {
        return All("ACARSMessage " + std::to_string(static_cast<int>(type)));
    }

    /// What stands in front of a message's body.
    static std::string Head(const std::string& time, const std::string& label_line) {
        return "[2026-03-14 " + time + "Z]\r\nACARS Mode: C Aircraft Reg: N738NV [B738 ]\r\n" +
               "Msg Label: " + label_line + "\r\nFlight ID: NV101\r\nMessage:\r\n";
    }

    Offset_Area area;
    In_Process_Transport transport{area};
    modFSUIPC link{transport, clock};
    clsAppSettings settings{services};
    clsVASettings airline{services};
    std::unique_ptr<clsUTC> utc = std::make_unique<clsUTC>(clock);
    std::unique_ptr<clsACARS> engine;
    std::vector<std::string> raised;
    std::string error_text;
};

}  // namespace norvane::test
