#pragma once
// The four pages of the ACARS panel, each bound to the panel's models: identity and figures, the
// airline's page, the pilot's own fields, the airline's own fields.

#include <QString>
#include <span>

#include "ui/panels/form_page.h"

namespace norvane {

class ucACARS;
struct Custom_Field;

[[nodiscard]] Form_Page* Make_Figures_Page(ucACARS& panel, QWidget* parent);
[[nodiscard]] Form_Page* Make_Airline_Page(ucACARS& panel, QWidget* parent);
/// `kind` ("Airline field") with a number names a field for as long as it has no caption.
[[nodiscard]] Form_Page* Make_Fields_Page(std::span<Custom_Field> fields, const QString& heading,
                                          const QString& kind, QWidget* parent);

}  // namespace norvane
