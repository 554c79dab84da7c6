#pragma once
// The pilot at the windows: real keys to real widgets, dialogs that open and are left, and a
// program for the views to stand on.

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/frm_main.h"
#include "app/program.h"
#include "simlink/in_process_transport.h"
#include "simlink/offset_area.h"
#include "support/test_world.h"
#include "ui/window/qt_desktop.h"
#include "ui/window/qt_text.h"

namespace norvane::test {

/// A key goes down and up again at `widget`, or where the keyboard is; what follows has happened.
void Press(int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
           QWidget* widget = nullptr);
inline void Press(int key, QWidget* widget) {
    Press(key, {}, {}, widget);
}
void Type(const QString& letters, QWidget* widget = nullptr);
/// What is waiting to happen, and what follows from it.
void Settle();
/// What a widget tells the blind that it is.
[[nodiscard]] std::string Name(const QWidget& widget);
/// What the Tab key passes from the focus until it is there again: "Date, Aircraft Type, ...".
[[nodiscard]] std::string Tab_Round();
void Tab_To(const std::string& name);
/// Opens a window of its own, as wide and high as the program leaves it to a panel.
void Open_View(QWidget& view);
/// No page of the view needs more room than the window has when it opens.
void Expect_No_Page_To_Scroll(QWidget& view);

/// From here on windows are of the same letters and style on every machine.
void Set_Known_Look();
/// One line for each visible widget, further right than the one that it stands in.
[[nodiscard]] std::string Window_Text(const QWidget& window, int depth = 0);
/// The lightness of each square of so many pixels, 'A' to 'P'; blank where nothing is drawn.
[[nodiscard]] std::string Drawing_Text(const QImage& image, int square);
/// Compares with tests/data/windows/NAME.txt, letters to within `tolerance` of the alphabet. Who
/// means a window to look otherwise looks at the difference and takes over the new file.
void Expect_Look(const std::string& name, const std::string& seen, int tolerance = 0);

/// The first of a kind in `window` for which `fits` holds.
template <class Widget>
Widget& Find_If(QWidget& window, const std::function<bool(const Widget&)>& fits) {
    for (QWidget* child : window.findChildren<QWidget*>()) {
        if (auto* widget = dynamic_cast<Widget*>(child); widget != nullptr && fits(*widget))
            return *widget;
    }
    throw std::runtime_error("no such widget");
}
template <class Widget>
Widget& Find(QWidget& window, const std::string& name) {
    return Find_If<Widget>(window, [&](const Widget& widget) { return Name(widget) == name; });
}
inline QLabel& Caption(QWidget& window, const QString& words) {
    return Find_If<QLabel>(window, [&](const QLabel& label) { return label.text() == words; });
}

/// With the desktop that the program has.
class Desktop_World : public Test_World {
  protected:
    /// What the pilot does in the dialog that opens next, which closes it.
    void When_Open(const std::function<void(QDialog& dialog)>& act);

    Window_Clock qt_clock;
    Qt_Desktop qt_desktop{qt_clock, 1};
    QObject owner;
    /// Dialogs that did.
    int opened = 0;
};

class Program_World : public Desktop_World {
  protected:
    void Start();
    /// An airline with a form that fits, and the fields of its own.
    void Write_Airline(const std::string& name, const std::string& own_fields);

    Offset_Area area;
    In_Process_Transport transport{area};
    std::optional<Program> program;
    std::optional<frmMain> form;
};

}  // namespace norvane::test
