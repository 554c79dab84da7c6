#include "ui/modal_dialog.h"

#include "ui/bind.h"
#include "ui/qt_desktop.h"

namespace norvane {

void Show_With(Modal_Form& form, Qt_Desktop& desktop, QObject& owner, const QString& title,
               const std::function<void(QDialog& dialog)>& make) {
    Keep(owner, form.shown.connect([&form, &desktop, title, make] {
        QDialog dialog(desktop.Window());
        dialog.setWindowTitle(title);
        make(dialog);
        Keep(dialog, form.closed.connect([&dialog] { dialog.reject(); }));
        desktop.Run_Dialog(dialog);
    }));
}

}  // namespace norvane
