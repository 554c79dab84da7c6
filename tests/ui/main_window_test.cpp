#include "ui/window/main_window.h"

#include <QMouseEvent>
#include <QScreen>
#include <QShortcut>

#include "ui/controls/value_label.h"
#include "ui/panels/acars_view.h"
#include "ui/panels/message_view.h"
#include "ui/ui_world.h"
#include "ui/window/frame_view.h"
#include "ui/window/look.h"

namespace norvane::test {
namespace {

using namespace std::chrono_literals;

class Main_Window_Test : public Program_World {
  protected:
    void Open() {
        Start();
        window.emplace(*form, *program, qt_desktop);
        window->show();
        window->activateWindow();
        Settle();
    }
    Frame_Bar& Bar() {
        return Find_If<Frame_Bar>(*window, [](const Frame_Bar&) { return true; });
    }
    Frame_Item& Item(const std::string& title) { return Find<Frame_Item>(*window, title); }
    /// A view is made when its panel is first turned to.
    template <class View>
    bool Sees() {
        const auto children = window->findChildren<QWidget*>();
        return std::any_of(children.begin(), children.end(), [](const QWidget* child) {
            return dynamic_cast<const View*>(child) != nullptr && child->isVisible();
        });
    }
    void Mouse(QEvent::Type type, const QPoint& at) {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, Bar().mapToGlobal(at), button, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&Bar(), &event);
    }
    void Shortcut(const QKeySequence& keys) {
        for (QShortcut* shortcut : window->findChildren<QShortcut*>()) {
            if (shortcut->key() == keys)
                return Q_EMIT shortcut->activated();
        }
        FAIL() << keys.toString().toStdString();
    }
    /// The panel shown, as the pilot sees it.
    std::string Shown() {
        const bool acars = Sees<Acars_View>();
        const bool messages = Sees<Message_View>();
        return acars && messages ? "both" : acars ? "ACARS" : messages ? "messages" : "none";
    }

    std::optional<Main_Window> window;
};

TEST_F(Main_Window_Test, The_mouse_and_the_keyboard_turn_the_panels) {
    Open();
    EXPECT_EQ(Shown(), "ACARS");
    const QPoint messages = Item("ACARS Messages").geometry().center();
    Mouse(QEvent::MouseMove, messages);
    EXPECT_EQ(form->frame.Hovered(), 2);
    EXPECT_EQ(QWidget::mouseGrabber(), &Bar());
    Mouse(QEvent::MouseButtonRelease, messages);
    EXPECT_EQ(Shown(), "messages");
    program->messages.Log_Appended.Emit("OUT 1405");
    auto& view = Find_If<Message_View>(*window, [](const Message_View&) { return true; });
    EXPECT_EQ(view.findChild<QPlainTextEdit*>()->toPlainText(), "OUT 1405");
    // Off the items, where the bar lets go of the mouse and a click means nothing.
    const QPoint below(messages.x(), Bar().height() - 2);
    Mouse(QEvent::MouseMove, below);
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
    Mouse(QEvent::MouseButtonRelease, below);
    EXPECT_EQ(Shown(), "messages");

    Item("ACARS").setFocus(Qt::TabFocusReason);
    Press(Qt::Key_Return);
    EXPECT_EQ(Shown(), "ACARS");
    Press(Qt::Key_Down);
    EXPECT_EQ(QApplication::focusWidget(), &Item("ACARS Messages"));
    Press(Qt::Key_Space);
    EXPECT_EQ(Shown(), "messages");
    EXPECT_TRUE(Item("ACARS Messages").isChecked());
    EXPECT_FALSE(Item("ACARS").isChecked());
    // The active item again: it stays the active one.
    Press(Qt::Key_Space);
    EXPECT_TRUE(Item("ACARS Messages").isChecked());
    Shortcut(Qt::CTRL | Qt::Key_PageUp);
    EXPECT_EQ(Shown(), "ACARS");
    Shortcut(Qt::ALT | Qt::Key_2);
    EXPECT_EQ(Shown(), "messages");
}

TEST_F(Main_Window_Test, Nothing_is_clipped_in_a_small_window_and_nothing_moves_in_a_wait) {
    Open();
    const QSize smallest = window->minimumSizeHint().expandedTo(window->minimumSize());
    EXPECT_LE(smallest.width(), 1024);
    EXPECT_LE(smallest.height(), 640);
    window->resize(1024, 640);
    Settle();
    const auto places = [this] {
        std::vector<QRect> all;
        for (const QWidget* child : window->findChildren<QWidget*>()) {
            if (dynamic_cast<const Value_Label*>(child) != nullptr && child->isVisible())
                all.emplace_back(child->mapTo(&*window, QPoint(0, 0)), child->size());
        }
        return all;
    };
    const std::vector<QRect> before = places();
    for (const QRect& place : before)
        EXPECT_TRUE(window->rect().contains(place));
    const Wait_Notice notice(qt_desktop, std::string(300, 'W'));
    Settle();
    EXPECT_EQ(window->size(), QSize(1024, 640));
    EXPECT_EQ(places(), before);
}

TEST_F(Main_Window_Test, It_stands_on_a_screen_and_is_closed_by_the_program_only) {
    for (const auto* measure : {"MainLeft", "MainTop", "MainWidth", "MainHeight"})
        store.Set("AppPos", measure, "900000");
    Open();
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    // The frame comes around it when it is shown.
    EXPECT_TRUE(
        qt_desktop.Wait_Until([&] { return screen.contains(window->frameGeometry()); }, 5s));
    // What the screen asked for is not the pilot's choice.
    window->close();
    EXPECT_EQ(store.Get("AppPos", "MainWidth"), "900000");
    window.reset();
    form.reset();
    store.Set("AppPos", "MainState", "Maximized");
    Open();
    EXPECT_TRUE(window->isMaximized());
    window->showNormal();
    const auto stand_still = [this] { qt_desktop.Wait_Until([] { return false; }, 300ms); };
    stand_still();
    window->move(-30, 45);
    window->resize(760, 520);
    stand_still();
    EXPECT_LT(window->x(), 0) << "brought back to a screen that the pilot had left";
    int heard = 0;
    form->Closed.Connect([this, &heard] {
        ++heard;
        for (const auto& [measure, pixels] : {std::pair{"MainLeft", window->x()},
                                              {"MainTop", window->y()},
                                              {"MainWidth", 760},
                                              {"MainHeight", 520}})
            EXPECT_EQ(store.Get("AppPos", measure),
                      std::to_string(Pixels_To_Twips(*window, pixels)));
        EXPECT_EQ(store.Get("AppPos", "MainState"), "");
    });
    // A second time, as an impatient pilot does.
    for (int time = 0; time < 2; ++time)
        window->close();
    EXPECT_EQ(heard, 1);
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(qt_desktop.Choose_File({"Plan", "Plans (*.pln)|*.pln", {}}).empty());
}

}  // namespace
}  // namespace norvane::test
