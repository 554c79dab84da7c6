#pragma once
// The check list of the field chooser: one line for each field, Space turns it over, the right
// mouse button and the menu key open its pop-up menu.

#include <QMenu>
#include <QTreeWidget>

#include "flightlog/frm_report.h"

namespace norvane {

class Field_List : public QTreeWidget {
  public:
    /// The list as it stands in the open form.
    Field_List(frmReport& form, QWidget* parent);

    [[nodiscard]] QMenu& Menu() { return *m_menu; }

  protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void Add(frmReport::Entry& entry);
    void Open_Menu_At_Line();

    QMenu* m_menu;
};

}  // namespace norvane
