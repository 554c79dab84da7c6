#pragma once
// The ACARS message panel as the pilot sees it: a title bar, the command box with its two links,
// and below them the messages of the flight.

#include <QPlainTextEdit>
#include <QWidget>

#include "messagepanel/uc_msg.h"

namespace norvane {

class frmMain;

class Message_View : public QWidget {
  public:
    /// The models live longer than the view.
    Message_View(ucMSG& messages, frmMain& window, QWidget* parent);

  private:
    [[nodiscard]] QWidget* Make_Command_Row(ucMSG& messages);
    void Make_Log(ucMSG& messages);
    /// Follows the messages for as long as the pilot looks at the last one.
    void Append(const QString& text);

    QPlainTextEdit* m_log = nullptr;
};

}  // namespace norvane
