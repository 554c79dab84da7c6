#pragma once
// One position of the pilot's or the airline's own fields on the ACARS panel.

#include <string>
#include <string_view>

#include "common/controls.h"
#include "config/field_definitions.h"

namespace norvane {

/// A caption and, of the two inputs, the one that the field's definition asks for; hidden and
/// disabled without a definition.
struct Custom_Field {
    Custom_Field();
    /// Hidden, disabled and empty.
    void Remove();
    void Define(const Field_Definition& definition);
    /// The value of the enabled input, trimmed; empty when none is enabled.
    [[nodiscard]] std::string Value() const;
    /// Puts a stored value back into the enabled input; a list without it selects nothing.
    void Restore(std::string_view value);
    /// The input that the pilot sees; null when the position is hidden.
    [[nodiscard]] const Control* Shown() const;

    Label lblCaption;
    Text_Box txt;
    Combo_Box cbo;
};

}  // namespace norvane
