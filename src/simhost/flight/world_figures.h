#pragma once
// What all worlds put into the offset area alike: the simulator's clock, the parking brake, and the
// simulator's directory as clients are told it. Pure functions but for the area they fill.

#include <filesystem>
#include <string>

#include "common/date_time.h"
#include "simhost/flight/flight_air.h"
#include "simlink/offset_area.h"

namespace norvane {

void Set_Clock(const Date_Time& utc, const Time_Of_Day& local, Offset_Area& area);
void Set_Parking_Brake(bool set, Offset_Area& area);
/// Whole metres and what is beyond them.
void Set_Exact_Altitude(double altitude_ft, Offset_Area& area);

/// What a thermometer in the airstream shows, degrees C; `outside_c` is the temperature of the
/// still air.
[[nodiscard]] double Total_Temperature_C(double outside_c, double true_kt, const Air& air);

/// The directory as the simulator names it: absolute, with "\" between and after its parts. Empty
/// when the simulator's field cannot hold it: longer than 255 characters, or of characters that
/// the code page lacks. Clients look there for "Aircraft\<folder>\aircraft.cfg".
[[nodiscard]] std::string Simulator_Directory_Text(const std::filesystem::path& directory);
/// The flight model file of the aircraft in `folder`, below that directory.
[[nodiscard]] std::string Aircraft_Path_Text(const std::string& folder);

}  // namespace norvane
