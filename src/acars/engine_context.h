#pragma once
// What the pieces of the ACARS engine share: the engine's surroundings, the state of the flight and
// what a step has to say. Owned by the engine; its pieces are functions that take it by reference.

#include <functional>
#include <string>
#include <vector>

#include "acars/acars_events.h"
#include "acars/flight_state.h"
#include "acars/world_file.h"
#include "simlink/sim_reader.h"

namespace norvane {

struct Services;
class clsAppSettings;
class clsUTC;
class clsVASettings;
class modFSUIPC;

/// What a step has brought up, held back until the step is known to be whole.
struct Step_Output {
    /// One closure an event, in the order in which they came up.
    std::vector<std::function<void()>> events;
    /// Texts to show in the simulator.
    std::vector<std::string> display_texts;
    /// What `FSTime` will say at the end of the step.
    std::string simulator_time;
    bool at_gate = false;

    /// Holds an event with its arguments.
    template <class Signal, class... Arguments>
    void Post(Signal& signal, Arguments... arguments) {
        events.emplace_back([&signal, arguments...] { signal.Emit(arguments...); });
    }
};

struct Engine_Context {
    Services& services;
    modFSUIPC& link;
    const clsAppSettings& settings;
    const clsVASettings& airline;
    const clsUTC& utc;
    ACARS_Events& events;

    Sim_Reader reader;
    Flight_State state;
    Step_Output output;
    /// The main world file and the pilot's own, kept between lookups.
    World_File world;
    World_File world_ud;
};

}  // namespace norvane
