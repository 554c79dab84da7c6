// An empty main window of the toolkit, with the style and the fonts that the program's window has:
// what a window costs before there is anything in it. Measured beside the program by
// scripts/measure_window.py.

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    window.menuBar()->addMenu("&File")->addAction("E&xit");
    window.statusBar()->showMessage("Empty");
    window.resize(1024, 640);
    window.show();
    return QApplication::exec();
}
