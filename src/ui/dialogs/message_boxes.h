#pragma once
// Qt's message boxes as this program shows them: plain text whatever a server or a file says, a
// question that may be left without an answer, and a "Details" button for the technician's lines.

#include <QMessageBox>

#include "common/services.h"

namespace norvane {

/// The box, not shown yet; `parent`, or else the caller, owns it. Its result is the button pressed,
/// `QMessageBox::NoButton` for a question that was left by Escape or by its window's close button.
[[nodiscard]] QMessageBox* Make_Message_Box(const Message_Box& box, QWidget* parent);

}  // namespace norvane
