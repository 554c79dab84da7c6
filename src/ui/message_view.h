#pragma once
// The message panel on the screen: the command box with its links over the flight's messages.

#include <QPlainTextEdit>
#include <QWidget>

namespace norvane {

class frmMain;
class ucMSG;

class Message_View : public QWidget {
  public:
    Message_View(ucMSG& panel, frmMain& window, QWidget* parent);

  private:
    QWidget* Make_Command_Row();
    QPlainTextEdit* Make_Log();

    ucMSG& m_panel;
};

}  // namespace norvane
