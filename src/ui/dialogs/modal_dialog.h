#pragma once
// The one way in which the window draws a modal form: a dialog that lives as long as the form is
// open. Escape and the window's own close button close the form; so does the program's end.

#include <QDialog>
#include <functional>

#include "common/modal_form.h"

namespace norvane {

class Qt_Desktop;

/// Draws `form` under `title` each time it opens, until `owner` is gone. `make` fills the dialog
/// and gives the keyboard to the widget that has it first.
void Show_With(Modal_Form& form, Qt_Desktop& desktop, QObject& owner, const QString& title,
               const std::function<void(QDialog& dialog)>& make);

}  // namespace norvane
