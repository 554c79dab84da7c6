#pragma once
// The PIREP editor's window: its commands, the open file's name, and a row for each value, of which
// eleven are seen at once. It is shown, without blocking, while the editor is open.

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <vector>

#include "logentry/frm_pirep.h"

namespace norvane {

class Pirep_View : public QDialog {
  public:
    /// The model lives longer.
    Pirep_View(frmPIREP& form, QWidget* parent);

    /// Closing the window is the link's click.
    void reject() override;

  private:
    class Row_Area;

    void Make_Commands();
    void Make_Area();
    void Show_State();
    void Show_Rows();
    void Show_Scroll();
    void Add_Row(std::size_t row, QWidget& sheet);

    frmPIREP& m_form;
    Row_Area* m_area;
    QScrollBar* m_bar;
    /// Stands in the rows' place while there are none.
    QLabel* m_hint;
    QWidget* m_first_link = nullptr;
    std::vector<QLineEdit*> m_fields;
    /// On the screen, where a row of the model's height has this one.
    int m_row_pixels;
};

}  // namespace norvane
