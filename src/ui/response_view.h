#pragma once
// The response viewer on the screen: the airline's answer as a page that runs no scripts and loads
// nothing, neither from the network nor from files.

#include <QDialog>
#include <QLabel>
#include <QString>
#include <QTextBrowser>
#include <string>

namespace norvane {

class frmResponse;

/// What of a server's answer is shown.
struct Shown_Page {
    QString text;
    bool is_markup = false;
    /// How many bytes the answer has more than are shown.
    std::size_t left_out = 0;
};
/// An answer in UTF-8 or the core's code page; without control characters, and no longer than can
/// be laid out at once.
[[nodiscard]] Shown_Page Page_To_Show(const std::string& answer);

/// A page whose pictures, styles and links lead nowhere.
class Closed_Browser : public QTextBrowser {
  public:
    explicit Closed_Browser(QWidget* parent);
    QVariant loadResource(int /*type*/, const QUrl& /*name*/) override { return {}; }
};

class Response_View : public QDialog {
  public:
    Response_View(frmResponse& model, QWidget* parent);
    /// Closing the window, by whatever means, is the model's "Close".
    void reject() override;

  private:
    void Show_Model();

    frmResponse& m_model;
    Closed_Browser* m_browser;
    QLabel* m_remark;
};

}  // namespace norvane
