#pragma once
// The whole program in a test's world, and a simulator beside it in the same process that outlives
// it. Killing the program takes its objects away; the settings store and the files stay.

#include <gmock/gmock.h>

#include <optional>

#include "app/program.h"
#include "simlink/in_process_transport.h"
#include "simlink/offset_area.h"
#include "support/test_world.h"

namespace norvane::test {

class Test_Flight : public Test_World {
  protected:
    Test_Flight() {
        // Else every start looks for the aircraft of the simulator.
        Write("bin/ac.cfg", "Test Jet\r\n");
        transport.on_deliver = [this](std::span<std::byte>) -> std::optional<Delivery> {
            return linked ? std::nullopt : std::optional(Delivery{Delivery_Outcome::failed, 0});
        };
    }

    /// Starts the program, in place of one that runs.
    Program& Start() {
        Kill();
        return program.emplace(services, transport, http);
    }
    /// Takes the program away without closing it.
    void Kill() { program.reset(); }

    Offset_Area area;
    In_Process_Transport transport{area};
    /// How the program's requests go out.
    Http_Options http;
    /// The simulator answers.
    bool linked = true;
    std::optional<Program> program;
};

}  // namespace norvane::test
