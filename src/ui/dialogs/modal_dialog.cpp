#include "ui/dialogs/modal_dialog.h"

#include "ui/controls/bind.h"
#include "ui/window/qt_desktop.h"

namespace norvane {

void Show_With(Modal_Form& form, Qt_Desktop& desktop, QObject& owner, const QString& title,
               const std::function<void(QDialog& dialog)>& make) {
    Keep(owner, form.shown.Connect([&form, &desktop, title, make] {
        QDialog dialog(desktop.Window());
        dialog.setWindowTitle(title);
        make(dialog);
        Keep(dialog, form.closed.Connect([&dialog] { dialog.reject(); }));
        desktop.Run_Dialog(dialog);
    }));
}

}  // namespace norvane
