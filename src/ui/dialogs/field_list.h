#pragma once
// The check list of a chooser: one line for each entry, Space turns it over, the right mouse button
// and the menu key open its pop-up menu.

#include <QMenu>
#include <QTreeWidget>
#include <array>
#include <deque>
#include <string_view>

#include "logpanel/frm_report.h"

namespace norvane {

class Field_List : public QTreeWidget {
  public:
    /// Lines that stay while the form is open, and the menu's commands, the last one set apart.
    Field_List(std::string_view heading, std::deque<frmReport::Entry>& lines,
               const std::array<Menu_Command*, 3>& commands, QWidget* parent);

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
