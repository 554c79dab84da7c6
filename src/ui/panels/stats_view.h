#pragma once
// The statistics panel on the screen: its commands, the sum, and a row for each aircraft type.

#include <QLabel>
#include <QTableWidget>

#include "logpanel/uc_stats.h"

namespace norvane {

class frmMain;

class Stats_View : public QWidget {
  public:
    Stats_View(ucStats& stats, frmMain& window, QWidget* parent);

  private:
    void Make_Table();
    void Show_Totals();

    ucStats& m_stats;
    QTableWidget* m_table;
    /// Stands on the table while that is empty.
    QLabel* m_hint;
};

}  // namespace norvane
