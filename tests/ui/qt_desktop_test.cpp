#include "ui/qt_desktop.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <functional>

namespace norvane {
namespace {

using std::chrono::milliseconds;

class Qt_Desktop_Test : public testing::Test {
  protected:
    void SetUp() override {
        timer.tick.connect([this] { ++ticks; });
        timer.Set_Enabled(true);
    }
    bool Wait_For_Ticks(int more) {
        return desktop.Wait_Until([this, at_least = ticks + more] { return ticks >= at_least; },
                                  milliseconds(5000));
    }
    static void Press_Escape(QWidget* widget) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(widget, &press);
    }
    static QMessageBox* Open_Box() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* box = qobject_cast<QMessageBox*>(window);
            if (box != nullptr && box->isVisible())
                return box;
        }
        return nullptr;
    }
    /// Runs in a tick of its own, once.
    void In_A_Tick(const std::function<void()>& run) {
        Timer once(desktop.Timers(), milliseconds(10));
        bool done = false;
        once.tick.connect([&] {
            once.Set_Enabled(false);
            run();
            done = true;
        });
        once.Set_Enabled(true);
        EXPECT_TRUE(desktop.Wait_Until([&] { return done; }, milliseconds(5000)));
    }

    Window_Clock clock;
    Qt_Desktop desktop{clock, 1};
    Timer timer{desktop.Timers(), milliseconds(10)};
    int ticks = 0;
};

TEST_F(Qt_Desktop_Test, Timers_run_in_waits_within_ticks_and_behind_a_question) {
    In_A_Tick([this] { EXPECT_TRUE(Wait_For_Ticks(3)); });
    // The pilot answers when the timers have run a while behind the box.
    Timer pilot(desktop.Timers(), milliseconds(50));
    pilot.tick.connect([this] {
        QMessageBox* box = Open_Box();
        if (box != nullptr && ticks >= 5)
            box->button(QMessageBox::Yes)->click();
    });
    pilot.Set_Enabled(true);
    ticks = 0;
    const Message_Box question{"Log it?", "Norvane", Icon::question, Buttons::yes_no};
    In_A_Tick([&] { EXPECT_EQ(desktop.Show_Message(question), Answer::yes); });
    EXPECT_GE(ticks, 5);
}

TEST_F(Qt_Desktop_Test, A_box_that_nobody_asked_for_does_not_block) {
    In_A_Tick([this] { desktop.Show_Message({"<b>Error</b>", "Norvane", Icon::exclamation}); });
    QMessageBox* box = Open_Box();
    ASSERT_NE(box, nullptr);
    EXPECT_FALSE(box->isModal());
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    EXPECT_TRUE(Wait_For_Ticks(2));
    desktop.End_Dialogs();
    EXPECT_EQ(Open_Box(), nullptr);
}

TEST_F(Qt_Desktop_Test, The_busy_cursor_lasts_as_long_as_the_outermost_procedure) {
    {
        const Busy_Cursor outer(desktop);
        { const Busy_Cursor inner(desktop); }
        ASSERT_NE(QApplication::overrideCursor(), nullptr);
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    }
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(Qt_Desktop_Test, Only_a_button_answers_a_question) {
    const Message_Box question{"Log it?", "Norvane", Icon::question, Buttons::yes_no};
    struct {
        std::function<void()> leave;
        Answer answer;
    } const ways[] = {
        {[&] { Open_Box()->button(QMessageBox::Yes)->click(); }, Answer::yes},
        {[&] { Open_Box()->button(QMessageBox::No)->click(); }, Answer::no},
        {[&] { Press_Escape(Open_Box()); }, Answer::none},
        {[&] { Open_Box()->close(); }, Answer::none},
        {[&] { desktop.End_Dialogs(); }, Answer::none},
    };
    for (const auto& way : ways) {
        QTimer::singleShot(30, [&] { way.leave(); });
        EXPECT_EQ(desktop.Show_Message(question), way.answer);
    }
    // The program has ended: nobody is asked any more.
    EXPECT_EQ(desktop.Show_Message(question), Answer::none);
    EXPECT_TRUE(desktop.Choose_File({"Plan", "Plans (*.pln)|*.pln", {}}).empty());
}

TEST_F(Qt_Desktop_Test, A_pause_repaints_without_running_timers_and_loses_none) {
    clock.Set_Desktop(&desktop);
    clock.Sleep(milliseconds(100));
    EXPECT_EQ(ticks, 0);
    EXPECT_TRUE(Wait_For_Ticks(1));
    clock.Set_Desktop(nullptr);
}

}  // namespace
}  // namespace norvane
