#pragma once
// The ACARS panel as the pilot sees it: a title bar with the panel's links, and one of its four
// pages below.

#include <QMenu>
#include <QStackedWidget>
#include <QWidget>
#include <array>

#include "acarspanel/uc_acars.h"

namespace norvane {

class Form_Page;
class frmMain;

class Acars_View : public QWidget {
  public:
    /// The models live longer than the view.
    Acars_View(ucACARS& panel, frmMain& window, QWidget* parent);

  private:
    [[nodiscard]] QWidget* Make_Title(frmMain& window);
    [[nodiscard]] QMenu* Make_Menu();
    void Open_Menu(const QPoint& on_screen);
    void Focus(const Control& model);

    ucACARS& m_panel;
    QMenu* m_menu;
    QStackedWidget* m_stack = nullptr;
    /// By the panel's page number.
    std::array<Form_Page*, 4> m_pages{};
};

}  // namespace norvane
