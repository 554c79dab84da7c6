#pragma once
// The response viewer's window: what the airline's PIREP script answered, drawn as the page it is,
// and a link that closes it. Nothing that the page names is loaded or followed.

#include <QDialog>
#include <QLabel>
#include <QTextBrowser>

#include "logentry/frm_response.h"

namespace norvane {

/// The bytes of an answer as text: without control characters, at most about 32 KiB of it.
[[nodiscard]] QString Readable_Page(const std::string& bytes);

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
