#pragma once
// The flight log panel as the pilot sees it: a title bar with the log's commands, the sums, the
// grid, and below it what became of edits that were not saved.

#include <QWidget>

#include "logpanel/uc_flight_log.h"

namespace norvane {

class Qt_Desktop;
class frmMain;

class Flight_Log_View : public QWidget {
  public:
    /// The models live longer than the view.
    Flight_Log_View(ucFlightLog& log, frmMain& window, Qt_Desktop& desktop, QWidget* parent);

  private:
    [[nodiscard]] QWidget* Make_Title(ucFlightLog& log, frmMain& window);
    [[nodiscard]] QWidget* Make_Line(Label& model, const QString& name);
};

}  // namespace norvane
