#pragma once
// The fields of the ACARS panel, stated once: which control shows a figure, which field of the log
// entry it feeds, which event of the engine fills it and by which rule. Creating the entry, storing
// and restoring the flight, clearing and greying all walk this table.

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "acars/acars_events.h"
#include "acarspanel/acars_form.h"
#include "common/signal.h"
#include "logentry/log_fields.h"

namespace norvane {

class clsAppSettings;

enum class Fill_Rule {
    apart,          // filled apart from this table, or by the pilot alone
    if_empty,       // takes a value only while it is empty: what the pilot typed stays
    replace,        // takes every value, the row's suffix behind it
    time_figure,    // shown when its time code is that of the settings
    fuel_figure,    // shown when its unit code is that of the settings
    weight_figure,  // likewise
};

struct Panel_Field {
    /// Empty for figures that the log entry does not hold.
    std::optional<Log_Field> field;
    std::variant<Label ACARS_Form::*, Text_Box ACARS_Form::*> control;
    Fill_Rule rule;
    std::variant<std::monostate, ACARS_Events::Text ACARS_Events::*,
                 ACARS_Events::Figure ACARS_Events::*>
        event;
    std::string_view suffix;

    [[nodiscard]] Label* Find_Label(ACARS_Form& form) const;
    [[nodiscard]] Text_Box* Find_Box(ACARS_Form& form) const;
    /// A label that the engine's figures fill: usable only while a flight is tracked.
    [[nodiscard]] bool Is_Figure() const;
};

/// In the order in which the log entry is written.
[[nodiscard]] std::span<const Panel_Field> Panel_Fields();

/// The engine's events fill the form's fields by the table, from now until the connections end.
void Connect_Fields(ACARS_Events& events, ACARS_Form& form, const clsAppSettings& settings,
                    Connections& connections);

/// "1405" as "14:05" (local) or "1405Z" (UTC); empty for an empty time or another code.
[[nodiscard]] std::string Shown_Time(std::string_view hhmm, int code);
/// The value with its unit; empty for a code that is no fuel or no weight unit.
[[nodiscard]] std::string Shown_Fuel(std::string_view value, int code);
[[nodiscard]] std::string Shown_Weight(std::string_view value, int code);

}  // namespace norvane
