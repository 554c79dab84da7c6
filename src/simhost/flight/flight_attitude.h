#pragma once
// How a flown aircraft lies in the air and what weighs on it, found afterwards from the whole
// flight: pitch from its path and speed, bank from the turns it makes, the load from the change of
// its vertical speed, with a peak where the wheels meet the ground.

#include "simhost/flight/flight_model.h"

namespace norvane {

/// Fills in `pitch_deg`, `bank_deg` and `load_g` of all the table's states.
void Add_Attitude(const Scenario_Data& scenario, const Flight_Route& route, Flight_Table& table);

}  // namespace norvane
