#pragma once
// The flight log's grid: its table in place, its layout in twips, its pop-up menu and its keys.
// Lines have one height and only what is on the screen is asked for, so that a log of many years
// scrolls as a new one does.

#include <QLabel>
#include <QMenu>
#include <QTableView>

#include "logpanel/uc_flight_log.h"

namespace norvane {

class Log_Grid_Model;

class Log_Grid : public QTableView {
  public:
    Log_Grid(ucFlightLog& log, QWidget* parent);

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void Make_Headers();
    void Make_Menu();
    void Apply_Layout();
    void Keep_Width(int column, int pixels);
    void Keep_Row_Height(int pixels);
    void Open_Column_Menu(const QPoint& place);
    void Show_Current_Row();
    void Show_Hint();

    ucFlightLog& m_log;
    Log_Grid_Model* m_model;
    QMenu* m_menu;
    /// Tells how a first flight comes in, on a grid without any.
    QLabel* m_hint;
    /// The sizes change by the program's hand.
    bool m_applying = false;
};

}  // namespace norvane
