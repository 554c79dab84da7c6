// An empty main window of the toolkit, with the style and the fonts that the program's window has:
// what a window costs before there is anything in it. Measured beside the program by
// scripts/measure_window.py.

#include <QApplication>
#include <QFontMetrics>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>

namespace {

/// The faces that the program's window writes in are loaded, as by any window that writes in them.
int Load_Fonts() {
    QFont bold = QApplication::font();
    bold.setBold(true);
    QFont teleprinter("Courier New");
    teleprinter.setStyleHint(QFont::Monospace);
    return QFontMetrics(bold).horizontalAdvance("Empty") +
           QFontMetrics(teleprinter).horizontalAdvance("Empty");
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    window.menuBar()->addMenu("&File")->addAction("E&xit");
    window.statusBar()->showMessage("Empty");
    window.resize(1024, Load_Fonts() > 0 ? 640 : 0);
    window.show();
    return QApplication::exec();
}
