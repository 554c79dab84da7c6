#include "ui/main_window.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QShortcut>
#include <optional>
#include <vector>

#include "simlink/in_process_transport.h"
#include "simlink/offset_area.h"
#include "support/test_world.h"
#include "ui/acars_view.h"
#include "ui/frame_view.h"
#include "ui/look.h"
#include "ui/message_view.h"
#include "ui/qt_desktop.h"
#include "ui/value_label.h"

namespace norvane {
namespace {

using namespace std::chrono_literals;

class Main_Window_Test : public test::Test_World {
  protected:
    void Open() {
        // Else the simulator would be asked for its aircraft.
        Write("bin/ac.cfg", "B738");
        program.emplace(services, transport);
        form.emplace(*program);
        window.emplace(*form, *program, qt_desktop);
        window->show();
        window->activateWindow();
        QApplication::processEvents();
    }
    /// The first of its kind in the window.
    template <class View>
    View& The() {
        for (QWidget* child : window->findChildren<QWidget*>()) {
            if (auto* view = dynamic_cast<View*>(child))
                return *view;
        }
        throw std::runtime_error("no such view");
    }
    /// A view is made when its panel is first turned to.
    template <class View>
    bool Sees() {
        for (const QWidget* child : window->findChildren<QWidget*>()) {
            if (dynamic_cast<const View*>(child) != nullptr && child->isVisible())
                return true;
        }
        return false;
    }
    Frame_Item& Item(const QString& title) {
        for (QAbstractButton* button : The<Frame_Bar>().findChildren<QAbstractButton*>()) {
            if (button->text() == title)
                return dynamic_cast<Frame_Item&>(*button);
        }
        throw std::runtime_error("no such item");
    }
    void Mouse(QEvent::Type type, const QPoint& at) {
        Frame_Bar& bar = The<Frame_Bar>();
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, bar.mapToGlobal(at), button, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&bar, &event);
    }
    static void Press(int key) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier);
            QApplication::sendEvent(QApplication::focusWidget(), &event);
        }
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

    Offset_Area area;
    In_Process_Transport transport{area};
    Window_Clock qt_clock;
    Qt_Desktop qt_desktop{qt_clock, 1};
    std::optional<Program> program;
    std::optional<frmMain> form;
    std::optional<Main_Window> window;
};

TEST_F(Main_Window_Test, The_mouse_and_the_keyboard_turn_the_panels) {
    Open();
    EXPECT_EQ(Shown(), "ACARS");
    const QPoint messages = Item("ACARS Messages").geometry().center();
    Mouse(QEvent::MouseMove, messages);
    EXPECT_EQ(form->frame.Hovered(), 2);
    EXPECT_EQ(QWidget::mouseGrabber(), &The<Frame_Bar>());
    Mouse(QEvent::MouseButtonRelease, messages);
    EXPECT_EQ(Shown(), "messages");
    // Off the items, where the bar lets go of the mouse and a click means nothing.
    const QPoint below(messages.x(), The<Frame_Bar>().height() - 2);
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
    QApplication::processEvents();
    const auto places = [this] {
        std::vector<QRect> all;
        for (const QWidget* child : window->findChildren<QWidget*>()) {
            if (dynamic_cast<const Value_Label*>(child) != nullptr && child->isVisible())
                all.push_back({child->mapTo(&*window, QPoint(0, 0)), child->size()});
        }
        return all;
    };
    const std::vector<QRect> before = places();
    for (const QRect& place : before)
        EXPECT_TRUE(window->rect().contains(place));
    const Wait_Notice notice(qt_desktop, std::string(300, 'W'));
    QApplication::processEvents();
    EXPECT_EQ(window->size(), QSize(1024, 640));
    EXPECT_EQ(places(), before);
}

TEST_F(Main_Window_Test, It_stands_on_a_screen_and_is_closed_by_the_program_only) {
    store.Set("AppPos", "MainLeft", "900000");
    store.Set("AppPos", "MainTop", "-900000");
    store.Set("AppPos", "MainWidth", "900000");
    store.Set("AppPos", "MainHeight", "900000");
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
    program.reset();
    store.Set("AppPos", "MainState", "Maximized");
    Open();
    EXPECT_TRUE(window->isMaximized());
    window->showNormal();
    window->move(30, 45);
    window->resize(700, 500);
    QApplication::processEvents();
    int heard = 0;
    form->Closed.connect([this, &heard] {
        ++heard;
        EXPECT_EQ(store.Get("AppPos", "MainLeft"),
                  std::to_string(Pixels_To_Twips(*window, window->x())));
        EXPECT_EQ(store.Get("AppPos", "MainWidth"),
                  std::to_string(Pixels_To_Twips(*window, window->width())));
        EXPECT_EQ(store.Get("AppPos", "MainState"), "");
    });
    window->close();
    // A second time, as an impatient pilot does.
    window->close();
    EXPECT_EQ(heard, 1);
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(qt_desktop.Choose_File({"Plan", "Plans (*.pln)|*.pln", {}}).empty());
}

}  // namespace
}  // namespace norvane
