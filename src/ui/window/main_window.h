#pragma once
// The main window: menus, keys, the navigation frame with its panels, the status bar, and the
// response viewer beside it. It shows what `frmMain` says.

#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <vector>

#include "app/frm_main.h"

namespace norvane {

class Frame_View;
class Qt_Desktop;

class Main_Window : public QMainWindow {
  public:
    /// All three outlive the window. When the program has ended behind `form`, the window is gone
    /// and the application's event loop ends.
    Main_Window(frmMain& form, Program& program, Qt_Desktop& desktop);
    ~Main_Window() override;
    Main_Window(const Main_Window&) = delete;
    Main_Window& operator=(const Main_Window&) = delete;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void Add_Panels(Program& program);
    void Add_Dialogs(Program& program);
    void Add_Menus();
    void Add_Keys();
    void Add_Status_Bar();
    void Add_Window(QWidget* window);
    void Place();
    void Fit_Screen();
    void Settle();
    void Note_Place();
    void Show_Caption();
    void End();

    frmMain& m_form;
    Qt_Desktop& m_desktop;
    Frame_View* m_frame;
    QLabel* m_wait;
    /// Those that do not block, beside this one.
    std::vector<QWidget*> m_windows;
    /// Where the window put itself.
    QRect m_own_place;
    /// Runs out when the window has stood still for a moment. A window that is being maximised is
    /// told of its new size first and of its state later.
    QTimer m_still;
    bool m_fitted = false;
    bool m_ended = false;
};

}  // namespace norvane
