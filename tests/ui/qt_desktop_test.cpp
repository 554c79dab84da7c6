#include "ui/window/qt_desktop.h"

#include <QMessageBox>
#include <QTimer>
#include <QWindow>

#include "ui/controls/bind.h"
#include "ui/controls/link_button.h"
#include "ui/ui_world.h"
#include "ui/window/guarded_application.h"

namespace norvane {
namespace {

using std::chrono::milliseconds;

class Qt_Desktop_Test : public testing::Test {
  protected:
    void SetUp() override {
        timer.tick.Connect([this] { ++ticks; });
        timer.Set_Enabled(true);
    }
    bool Comes(const std::function<bool()>& condition) {
        return desktop.Wait_Until(condition, milliseconds(5000));
    }
    static std::vector<QMessageBox*> Open_Boxes() {
        std::vector<QMessageBox*> boxes;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* box = qobject_cast<QMessageBox*>(window); box != nullptr && box->isVisible())
                boxes.push_back(box);
        }
        return boxes;
    }
    static QMessageBox* Open_Box() { return Open_Boxes().empty() ? nullptr : Open_Boxes().front(); }
    /// Runs in a tick of its own, once.
    void In_A_Tick(const std::function<void()>& run) {
        Timer once(desktop.Timers(), milliseconds(10));
        bool done = false;
        once.tick.Connect([&] {
            once.Set_Enabled(false);
            run();
            done = true;
        });
        once.Set_Enabled(true);
        EXPECT_TRUE(Comes([&] { return done; }));
    }

    const Message_Box question{"Log it?", "Norvane", Icon::question, Buttons::yes_no};
    Window_Clock clock;
    Qt_Desktop desktop{clock, 1};
    Timer timer{desktop.Timers(), milliseconds(10)};
    int ticks = 0;
};

TEST_F(Qt_Desktop_Test, Timers_run_in_waits_within_ticks_and_behind_a_question) {
    In_A_Tick([this] { EXPECT_TRUE(Comes([this, now = ticks] { return ticks >= now + 3; })); });
    // The pilot answers when the timers have run a while behind the box.
    Timer pilot(desktop.Timers(), milliseconds(50));
    pilot.tick.Connect([this] {
        if (QMessageBox* box = Open_Box(); box != nullptr && ticks >= 5)
            box->button(QMessageBox::Yes)->click();
    });
    pilot.Set_Enabled(true);
    ticks = 0;
    In_A_Tick([&] { EXPECT_EQ(desktop.Show_Message(question), Answer::yes); });
    EXPECT_GE(ticks, 5);
}

TEST_F(Qt_Desktop_Test, Boxes_that_nobody_asked_for_do_not_block_and_go_when_true_no_longer) {
    const auto texts = [] {
        QStringList shown;
        for (const QMessageBox* box : Open_Boxes()) {
            EXPECT_FALSE(box->isModal());
            EXPECT_EQ(box->textFormat(), Qt::PlainText);
            shown << box->text();
        }
        shown.sort();
        return shown.join(", ").toStdString();
    };
    for (const auto& [text, topic] : {std::pair{"Interrupted", "link"},
                                      {"Interrupted again", "link"},
                                      {"Saved", "log"},
                                      {"Noted", ""}})
        In_A_Tick([&, text = text, topic = topic] {
            desktop.Show_Message({text, "Norvane", Icon::exclamation, Buttons::ok, {}, topic});
        });
    EXPECT_EQ(texts(), "Interrupted again, Noted, Saved");
    desktop.Withdraw("link");
    EXPECT_EQ(texts(), "Noted, Saved");
    desktop.End_Dialogs();
    EXPECT_EQ(texts(), "");
}

TEST_F(Qt_Desktop_Test, A_note_that_comes_behind_a_dialog_can_be_read_and_closed) {
    QWidget window;
    window.show();
    desktop.Set_Window(&window);
    QDialog dialog(&window);
    QTimer::singleShot(30, [&] {
        In_A_Tick([this] { desktop.Show_Message({"Interrupted", "Norvane", Icon::exclamation}); });
        QMessageBox* box = Open_Box();
        EXPECT_EQ(box->windowHandle()->transientParent(), dialog.windowHandle());
        EXPECT_FALSE(QApplication::activeModalWidget() == box);
        dialog.reject();
        EXPECT_TRUE(box->isVisible() && box->isEnabled());
    });
    EXPECT_FALSE(desktop.Run_Dialog(dialog));
    desktop.End_Dialogs();
}

TEST_F(Qt_Desktop_Test, The_busy_cursor_lasts_until_the_outermost_procedure_ends_or_one_fails) {
    const auto is_busy = [] {
        const QCursor* shown = QApplication::overrideCursor();
        return shown != nullptr && shown->shape() == Qt::WaitCursor;
    };
    for (const bool fails : {false, true}) {
        const Busy_Cursor outer(desktop);
        { const Busy_Cursor inner(desktop); }
        EXPECT_TRUE(is_busy());
        if (fails)
            desktop.End_Busy();
        EXPECT_EQ(is_busy(), !fails);
    }
    EXPECT_FALSE(is_busy());
}

TEST_F(Qt_Desktop_Test, Only_a_button_answers_a_question) {
    const std::vector<std::pair<std::function<void()>, Answer>> ways{
        {[&] { Open_Box()->button(QMessageBox::Yes)->click(); }, Answer::yes},
        {[&] { Open_Box()->button(QMessageBox::No)->click(); }, Answer::no},
        {[&] { test::Press(Qt::Key_Escape, Open_Box()); }, Answer::none},
        {[&] { Open_Box()->close(); }, Answer::none},
        {[&] { desktop.End_Dialogs(); }, Answer::none}};
    for (const auto& [leave, answer] : ways) {
        QTimer::singleShot(30, [&leave = leave] { leave(); });
        EXPECT_EQ(desktop.Show_Message(question), answer);
    }
    // The program has ended: nobody is asked any more.
    EXPECT_EQ(desktop.Show_Message(question), Answer::none);
    EXPECT_TRUE(desktop.Choose_File({"Plan", "Plans (*.pln)|*.pln", {}}).empty());
}

TEST_F(Qt_Desktop_Test, A_pause_repaints_without_running_timers_and_loses_none) {
    clock.Set_Desktop(&desktop);
    int fired = 0;
    QTimer::singleShot(10, [&] { ++fired; });
    clock.Sleep(milliseconds(100));
    EXPECT_EQ(ticks + fired, 0);
    EXPECT_TRUE(Comes([&] { return fired == 1 && ticks > 0; }));
    clock.Set_Desktop(nullptr);
}

class Guard_Test : public test::Test_World {};

TEST_F(Guard_Test, What_fails_within_Qt_is_logged_and_the_program_goes_on) {
    auto& application = dynamic_cast<Guarded_Application&>(*QCoreApplication::instance());
    application.Set_Outside(&services);
    QTimer::singleShot(0, [] { throw std::runtime_error("an event handler failed"); });
    test::Settle();
    EXPECT_EQ(Take_Errors().size(), 1U);
    EXPECT_TRUE(desktop.boxes.empty());
    // What the pilot asked for is not done: he is told.
    Link link("Print");
    link.clicked.Connect([] { throw std::runtime_error("a command failed"); });
    Link_Button button;
    Bind(button, link);
    button.click();
    EXPECT_EQ(Take_Errors().size(), 1U);
    EXPECT_EQ(desktop.boxes.size(), 1U);
    application.Set_Outside(nullptr);
}

}  // namespace
}  // namespace norvane
