#include "ui/dialogs/message_boxes.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QScreen>
#include <algorithm>

#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr const char* details_caption = "&Details";

/// A question: Escape and its window's close button leave it without an answer, which is neither of
/// its buttons.
class Question_Box : public QMessageBox {
  public:
    using QMessageBox::QMessageBox;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->matches(QKeySequence::Cancel))
            done(QMessageBox::NoButton);
        else
            QMessageBox::keyPressEvent(event);
    }
    void closeEvent(QCloseEvent* event) override {
        event->accept();
        done(QMessageBox::NoButton);
    }
};

QMessageBox::Icon Qt_Icon(Icon icon) {
    switch (icon) {
        case Icon::information:
            return QMessageBox::Information;
        case Icon::question:
            return QMessageBox::Question;
        case Icon::exclamation:
            return QMessageBox::Warning;
        case Icon::none:
            break;
    }
    return QMessageBox::NoIcon;
}

/// A box that grew goes up, so that its end stays on the screen.
void Keep_On_Screen(QWidget& box) {
    const QRect room = box.screen()->availableGeometry();
    const QRect frame = box.frameGeometry();
    if (frame.bottom() > room.bottom())
        box.move(frame.x(), std::max(room.top(), room.bottom() + 1 - frame.height()));
}

void Add_Details(QMessageBox& shown, const QString& details) {
    shown.setDetailedText(details);
    for (QAbstractButton* button : shown.buttons()) {
        if (shown.buttonRole(button) != QMessageBox::ActionRole)
            continue;
        // Behind Qt's own handler, which gives the box its new size and the button other words.
        QObject::connect(
            button, &QAbstractButton::clicked, button,
            [&shown, button] {
                button->setText(details_caption);
                Keep_On_Screen(shown);
            },
            Qt::QueuedConnection);
        button->setText(details_caption);
    }
}

}  // namespace

QMessageBox* Make_Message_Box(const Message_Box& box, QWidget* parent) {
    const bool question = box.buttons == Buttons::yes_no;
    const auto buttons = question ? QMessageBox::Yes | QMessageBox::No
                                  : QMessageBox::StandardButtons(QMessageBox::Ok);
    const QString title = To_Q(box.title);
    const QString text = To_Q(box.text);
    QMessageBox* shown = question
                             ? new Question_Box(Qt_Icon(box.icon), title, text, buttons, parent)
                             : new QMessageBox(Qt_Icon(box.icon), title, text, buttons, parent);
    shown->setTextFormat(Qt::PlainText);
    // Some desktops put another button first.
    if (!question)
        shown->setDefaultButton(QMessageBox::Ok);
    if (!box.details.empty())
        Add_Details(*shown, To_Q(box.details));
    return shown;
}

}  // namespace norvane
