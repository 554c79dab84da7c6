#include "ui/window/qt_desktop.h"

#include <QApplication>
#include <QClipboard>
#include <QColorDialog>
#include <QDesktopServices>
#include <QFileDialog>
#include <QMessageBox>
#include <QUrl>
#include <QWindow>
#include <algorithm>

#include "common/code_page.h"
#include "common/run_error.h"
#include "common/text.h"
#include "ui/dialogs/message_boxes.h"
#include "ui/window/look.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

using std::chrono::ceil;
using std::chrono::microseconds;
using std::chrono::milliseconds;

/// An open wait looks at its condition at least this often.
constexpr milliseconds longest_sleep(200);

/// Keeps Qt's own timers from firing for as long as it lives; those that were due fire later. The
/// ones of windows themselves are what repaints them.
class Held_Timers : public QObject {
  public:
    Held_Timers() { QCoreApplication::instance()->installEventFilter(this); }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        return event->type() == QEvent::Timer && !watched->isWindowType();
    }
};

constexpr const char* topic_property = "topic";

}  // namespace

Qt_Desktop::Qt_Desktop(Clock& clock, double speed) : m_timers(clock, speed) {
    m_wake.setSingleShot(true);
    m_wake.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_wake, &QTimer::timeout, &m_wake, [this] { Run_Timers(); });
    m_timers.rescheduled.Connect([this] { Arm(); });
}

void Qt_Desktop::Run_Timers() {
    if (m_repainting)
        return;
    // A tick may wait for something; the other timers go on meanwhile.
    Arm();
    m_timers.Run_Due();
    Arm();
}

void Qt_Desktop::Arm() {
    const auto next = m_timers.Next_Due();
    if (!next) {
        m_wake.stop();
        return;
    }
    const auto wait = std::max(*next - m_timers.Now(), microseconds::zero());
    m_wake.start(ceil<milliseconds>(wait));
}

void Qt_Desktop::Set_Busy(bool busy) {
    m_busy = std::max(0, m_busy + (busy ? 1 : -1));
    const bool shown = QApplication::overrideCursor() != nullptr;
    if (m_busy > 0 && !shown)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    if (m_busy == 0 && shown)
        QApplication::restoreOverrideCursor();
}

void Qt_Desktop::End_Busy() {
    m_busy = 0;
    Set_Busy(false);
}

QMessageBox* Qt_Desktop::Make_Box(const Message_Box& box) {
    if (!box.topic.empty())
        Withdraw(box.topic);
    QMessageBox* shown = Make_Message_Box(box, m_window);
    shown->setProperty(topic_property, To_Q(box.topic));
    Note_Dialog(shown);
    return shown;
}

void Qt_Desktop::Note_Dialog(QDialog* dialog) {
    std::erase_if(m_dialogs, [](const auto& other) { return other.isNull(); });
    m_dialogs.emplace_back(dialog);
}

void Qt_Desktop::Withdraw(std::string_view topic) {
    const auto dialogs = m_dialogs;
    for (const QPointer<QDialog>& dialog : dialogs) {
        if (dialog && dialog->property(topic_property).toString() == To_Q(topic))
            dialog->reject();
    }
}

void Qt_Desktop::Put_On_Top(QWidget& window) {
    window.winId();
    QWidget* below = QApplication::activeModalWidget();
    if (below == nullptr || below == &window)
        below = m_window;
    if (below != nullptr)
        window.windowHandle()->setTransientParent(below->windowHandle());
    window.raise();
}

/// Runs a dialog that the pilot has to answer; what happens behind it is not the tick's any longer.
int Qt_Desktop::Ask(QDialog& dialog) {
    const Timer_Queue::Ticks_Set_Aside aside(m_timers);
    const bool busy = m_busy > 0;
    if (busy)
        QApplication::changeOverrideCursor(Qt::ArrowCursor);
    const QPointer<QWidget> window = QApplication::activeWindow();
    const int result = dialog.exec();
    // Desktops turn to the dialog's parent, which need not be where the pilot was.
    if (window && window->isVisible())
        window->activateWindow();
    if (busy && QApplication::overrideCursor() != nullptr)
        QApplication::changeOverrideCursor(Qt::WaitCursor);
    return result;
}

Answer Qt_Desktop::Show_Message(const Message_Box& box) {
    const bool question = box.buttons == Buttons::yes_no;
    if (m_ended)
        return question ? Answer::none : Answer::ok;
    QMessageBox* shown = Make_Box(box);
    if (!question && m_timers.Is_Ticking()) {
        shown->setAttribute(Qt::WA_DeleteOnClose);
        // What the pilot is typing is not meant for the box.
        shown->setAttribute(Qt::WA_ShowWithoutActivating);
        shown->setModal(false);
        Put_On_Top(*shown);
        shown->show();
        return Answer::ok;
    }
    Put_On_Top(*shown);
    const int pressed = Ask(*shown);
    delete shown;
    if (!question)
        return Answer::ok;
    if (pressed == QMessageBox::Yes)
        return Answer::yes;
    return pressed == QMessageBox::No ? Answer::no : Answer::none;
}

std::filesystem::path Qt_Desktop::Choose_File(const File_Choice& choice) {
    if (m_ended)
        return {};
    // "words|pattern" as this dialog takes it; letter case does not matter in names.
    const QStringList filter = To_Q(choice.filter).split('|');
    QFileDialog dialog(m_window, To_Q(choice.title), Path_To_Q(choice.directory));
    dialog.setFileMode(QFileDialog::ExistingFile);
    const QString pattern = filter.value(1) + ' ' + filter.value(1).toUpper();
    dialog.setNameFilter(filter.value(0).section(" (", 0, 0) + " (" + pattern + ")");
    if (!Run_Dialog(dialog) || dialog.selectedFiles().isEmpty())
        return {};
    return Path_From_Q(dialog.selectedFiles().constFirst());
}

bool Qt_Desktop::Run_Dialog(QDialog& dialog) {
    if (m_ended)
        return false;
    Note_Dialog(&dialog);
    return Ask(dialog) == QDialog::Accepted;
}

std::optional<std::int32_t> Qt_Desktop::Choose_Color(std::int32_t current) {
    QColorDialog dialog(Setting_Color(current), m_window);
    if (!Run_Dialog(dialog))
        return std::nullopt;
    return Color_Setting(dialog.currentColor());
}

void Qt_Desktop::Copy_Text(std::string_view text) {
    QGuiApplication::clipboard()->setText(To_Q(text));
}

void Qt_Desktop::Open_File(const std::filesystem::path& file, std::string_view anchor) {
    QUrl address = QUrl::fromLocalFile(Path_To_Q(file));
    if (!anchor.empty())
        address.setFragment(To_Q(anchor));
    if (!QDesktopServices::openUrl(address)) {
        throw Run_Error(error_number::other,
                        From_Path(file) + " cannot be shown: the desktop has no program for it");
    }
}

void Qt_Desktop::End_Dialogs() {
    m_ended = true;
    for (const QPointer<QDialog>& dialog : m_dialogs) {
        if (!dialog)
            continue;
        // Some ask on their own: whether to overwrite a file, which printer.
        for (QDialog* inner : dialog->findChildren<QDialog*>()) {
            if (inner->isVisible())
                inner->reject();
        }
        dialog->reject();
    }
}

void Qt_Desktop::Repaint() {
    if (m_repainting)
        return;
    m_repainting = true;
    const Held_Timers held;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                    QEventLoop::ExcludeSocketNotifiers);
    m_repainting = false;
    // A timer that was due meanwhile was put off.
    Arm();
}

void Window_Clock::Sleep(std::chrono::microseconds duration) {
    constexpr microseconds slice = milliseconds(20);
    const auto end = Monotonic() + duration;
    for (auto now = Monotonic(); now < end; now = Monotonic()) {
        System_Clock::Sleep(std::min(slice, end - now));
        if (m_desktop != nullptr)
            m_desktop->Repaint();
    }
}

void Qt_Desktop::Process_Events() {
    const Timer_Queue::Ticks_Set_Aside aside(m_timers);
    QCoreApplication::processEvents();
}

bool Qt_Desktop::Wait_Until(const std::function<bool()>& condition, milliseconds at_most) {
    const Timer_Queue::Ticks_Set_Aside aside(m_timers);
    const auto end = m_timers.Now() + m_timers.Scaled(at_most);
    QTimer alarm;
    alarm.setTimerType(Qt::PreciseTimer);
    while (!condition()) {
        const auto now = m_timers.Now();
        if (now >= end)
            return false;
        alarm.start(std::min(ceil<milliseconds>(end - now), longest_sleep));
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

}  // namespace norvane
