#pragma once
// The response viewer's window: what the airline's PIREP script answered, drawn as a plain
// page, and a link that closes it. Nothing that the page names is loaded or followed.

#include <QDialog>
#include <QLabel>
#include <QTextBrowser>

#include "logentry/frm_response.h"

namespace norvane {

class Response_View : public QDialog {
  public:
    /// Shows itself, without blocking, while the viewer is open. The model lives longer.
    Response_View(frmResponse& response, QWidget* parent);

    /// Closing the window is the link's click.
    void reject() override;

  private:
    void Show_State();
    void Show_Page(const std::string& bytes);

    frmResponse& m_response;
    QTextBrowser* m_page;
    QLabel* m_length;
};

}  // namespace norvane
