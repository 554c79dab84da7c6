#pragma once
// The desktop of the program with a window: Qt's event loop runs the timers, boxes are Qt's. One
// object, owned by `main`, older than every window. Boxes that nobody asked for (raised in a
// timer's tick, with nothing to answer) do not block.

#include <QDialog>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <vector>

#include "common/services.h"
#include "common/signal.h"
#include "common/system_clock.h"
#include "common/timer_queue.h"

class QMessageBox;

namespace norvane {

class Qt_Desktop : public Desktop {
  public:
    /// `speed` divides every timer.
    Qt_Desktop(Clock& clock, double speed);

    void Set_Busy(bool busy) override;
    void End_Busy() override;
    Answer Show_Message(const Message_Box& box) override;
    void Withdraw(std::string_view topic) override;
    std::filesystem::path Choose_File(const File_Choice& choice) override;
    std::optional<std::int32_t> Choose_Color(std::int32_t current) override;
    void Open_File(const std::filesystem::path& file, std::string_view anchor) override;
    void Copy_Text(std::string_view text) override;
    void Process_Events() override;
    bool Wait_Until(const std::function<bool()>& condition,
                    std::chrono::milliseconds at_most) override;
    [[nodiscard]] Timer_Queue& Timers() override { return m_timers; }

    /// Repaints, within a wait that nothing may interrupt: no timer runs, Qt's own neither, and
    /// what the pilot does is kept for later.
    void Repaint();
    /// Runs a dialog until the pilot closes it, or the program ends; whether it was accepted.
    bool Run_Dialog(QDialog& dialog);
    /// Puts a window that is about to be shown above those that are there. One that opens while a
    /// dialog is waited for can be used beside it.
    void Put_On_Top(QWidget& window);
    /// The window that boxes belong to.
    void Set_Window(QWidget* window) { m_window = window; }
    [[nodiscard]] QWidget* Window() const { return m_window; }
    /// Closes the dialogs that are open: questions stay without an answer, files are not chosen.
    /// Those that would open later do not.
    void End_Dialogs();

    /// `Waiting_For` is another one now.
    Signal<> wait_changed;

  private:
    void Wait_Changed() override { wait_changed.Emit(); }
    void Run_Timers();
    void Arm();
    QMessageBox* Make_Box(const Message_Box& box);
    void Note_Dialog(QDialog* dialog);
    int Ask(QDialog& dialog);

    Timer_Queue m_timers;
    QTimer m_wake;
    QPointer<QWidget> m_window;
    std::vector<QPointer<QDialog>> m_dialogs;
    int m_busy = 0;
    bool m_ended = false;
    bool m_repainting = false;
};

/// The computer's clock, whose pauses let the window repaint.
class Window_Clock : public System_Clock {
  public:
    void Sleep(std::chrono::microseconds duration) override;
    /// Until then, and without, pauses repaint nothing.
    void Set_Desktop(Qt_Desktop* desktop) { m_desktop = desktop; }

  private:
    Qt_Desktop* m_desktop = nullptr;
};

}  // namespace norvane
