#pragma once
// What a plan of SimBrief fills on the ACARS panel: which field with which text, and the planned
// times and fuel beside the flown ones. The question to the pilot, the filling and the command
// line walk the same list.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "acarspanel/acars_form.h"
#include "blackbox/planned_flight.h"

namespace norvane {

struct Simbrief_Plan;

/// A field that the plan has a text for, in the pilot's units.
struct Simbrief_Field {
    std::string_view caption;
    Text_Box ACARS_Form::*box;
    std::string text;
};
[[nodiscard]] std::vector<Simbrief_Field> Simbrief_Fields(const Simbrief_Plan& plan,
                                                          const clsAppSettings& settings);

/// "1020Z"; empty without a moment.
[[nodiscard]] std::string Planned_Time_Text(const std::optional<std::int64_t>& moment);
[[nodiscard]] Planned_Flight Planned_Of(const Simbrief_Plan& plan);
/// A planned figure in the pilot's unit; in lbs where fuel is shown in gallons, which a plan does
/// not tell.
[[nodiscard]] std::string Shown_Planned(Planned figure, const std::string& value, int fuel_unit);
/// Onto the form's second column.
void Show_Planned(const Planned_Flight& planned, const clsAppSettings& settings, ACARS_Form& form);

}  // namespace norvane
