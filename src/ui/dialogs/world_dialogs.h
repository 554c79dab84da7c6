#pragma once
// What the window shows of the simulator's world: the dialog of the pilot's own locations, and the
// airport lookup.

#include <QDialog>
#include <QLineEdit>

#include "worldtools/frm_icao.h"

namespace norvane {

class Qt_Desktop;
class Row_List_View;
class frmFSWorld;

/// Draws the form whenever it opens, until `owner` is gone; the form outlives it.
void Draw(frmFSWorld& form, Qt_Desktop& desktop, QObject& owner);

/// The airport lookup: a search that answers as the pilot types, and what it finds.
class Airport_View : public QDialog {
  public:
    /// Shows itself, without blocking, while the lookup is open. The model lives longer.
    Airport_View(frmICAO& form, QWidget* parent);

    /// Closing the window is the link's click.
    void reject() override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Show_State();

    frmICAO& m_form;
    QLineEdit* m_search;
    Row_List_View* m_airports;
};

}  // namespace norvane
