#pragma once
// The four pages of the settings panel, each bound to the panel's models. A control's name for
// those who cannot see the form is its caption without the colon.

#include "ui/panels/form_page.h"

namespace norvane {

class ucSettings;

[[nodiscard]] Form_Page* Make_Appearance_Page(ucSettings& settings, QWidget* parent);
[[nodiscard]] Form_Page* Make_ACARS_Settings_Page(ucSettings& settings, QWidget* parent);
[[nodiscard]] Form_Page* Make_Flight_Log_Settings_Page(ucSettings& settings, QWidget* parent);
[[nodiscard]] Form_Page* Make_Airline_Settings_Page(ucSettings& settings, QWidget* parent);

}  // namespace norvane
