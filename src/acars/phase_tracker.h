#pragma once
// One sampling step of a flight: from the parking brake, the ground and the engines to the next
// phase (before OUT, OUT, OFF, ON, IN), then what the phase asks for: its capture, taxi speeds,
// levels, position reports.

namespace norvane {

struct Engine_Context;

/// At most one transition a step; nothing while the simulator slews or none is attached.
void Advance_Flight(Engine_Context& engine);

}  // namespace norvane
