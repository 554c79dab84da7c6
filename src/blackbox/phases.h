#pragma once
// The phases of a flight and the block events between them: as the engine recorded them or, where
// it did not fly along, as the brake and the wheels tell.

#include <vector>

#include "blackbox/flight_notes.h"
#include "blackbox/recorded_flight.h"

namespace norvane {

/// Finds events and phases without the engine, by its rules as they are set by default.
void Find_Events(const std::vector<Flight_Sample>& flown, Flight_Notes& notes);

/// Gives every sample its phase.
void Set_Phases(std::vector<Flight_Sample>& flown, const std::vector<Phase_Change>& changes);

/// In the order of a flight, those that took any time. A time that was not recorded counts for the
/// phase it began in; one in which the simulator stood still does not count.
[[nodiscard]] std::vector<Phase_Sum> Sum_Phases(const std::vector<Flight_Sample>& flown);

/// The events with the sample they stand for described.
[[nodiscard]] std::vector<Recorded_Event> Describe_Events(const std::vector<Flight_Sample>& flown,
                                                          const std::vector<Noted_Event>& events);

}  // namespace norvane
