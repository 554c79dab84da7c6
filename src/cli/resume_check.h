#pragma once
// Unattended resuming: a stored flight is taken up only where it can go on.

#include <functional>

namespace norvane {

struct Services;
class modFSUIPC;

/// A flight stored in the air waits until the simulator's aircraft is in the air too, or within 10
/// nautical miles of the flight's last position: a simulator that stands at some gate must not land
/// it there. One that had landed waits until the aircraft is that near, so that it does not end at
/// another place. True when the flight may be resumed (or the link does not open, which resuming
/// itself reports), false when `ended` came first.
[[nodiscard]] bool Await_Stored_Flight_In_The_Simulator(Services& services, modFSUIPC& link,
                                                        const std::function<bool()>& ended);

}  // namespace norvane
