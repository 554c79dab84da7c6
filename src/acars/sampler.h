#pragma once
// What the engine reads from the simulator to fill its figures: clocks, fuel, weight, position.
// Pieces of the engine; a read that fails makes the whole step undone, so nothing here looks at
// failures except the clock of messages, which must also serve without a link.

#include <string>

#include "acars/acars_events.h"
#include "acars/flight_state.h"

namespace norvane {

struct Engine_Context;
class Sim_Reader;

/// "hhmm" of the clock that times the flight (setting `ACARS_UseTime`): the simulator's or the
/// computer's. Empty for a setting that is neither.
[[nodiscard]] std::string Read_UTC_Time(Engine_Context& engine);
[[nodiscard]] std::string Read_Local_Time(Engine_Context& engine);
/// "hhmm" of the simulator's clock as `FSTime` shows it, UTC or local by the setting `ACARS_Time`.
[[nodiscard]] std::string Read_Simulator_Time(Engine_Context& engine);
/// Today, the simulator's or the computer's by the setting `ACARS_Date`, in the short date pattern.
/// Empty when the simulator's is no date.
[[nodiscard]] std::string Read_Date(Engine_Context& engine);
/// Samples the time and date that messages carry; what cannot be read keeps its last value.
void Sample_Message_Clock(Engine_Context& engine);

/// Fuel on board into an event's texts, in the units that the setting `ACARS_Fuel` needs.
void Capture_Fuel(Engine_Context& engine, Block_Figures& figures);
/// An event's fuel in the unit of the setting.
[[nodiscard]] const std::string& Fuel_In_Unit(const Block_Figures& figures, int unit);
/// Fuel burnt between two events in the unit; kilograms are converted from the pounds burnt.
[[nodiscard]] std::string Fuel_Used(const Block_Figures& from, const Block_Figures& to, int unit);
/// Total weight in the unit of the setting `ACARS_Weight`.
[[nodiscard]] std::string Read_Weight(Engine_Context& engine);

enum class Sample_Extent { position_only, full };
/// Takes a new position sample into the state.
void Sample_Position(Engine_Context& engine, Sample_Extent extent);
/// Where the aircraft is, without touching the sample that messages carry.
[[nodiscard]] Position Read_Position(Sim_Reader& reader);

}  // namespace norvane
