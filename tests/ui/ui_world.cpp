#include "ui/ui_world.h"

#include <QKeyEvent>
#include <QPointer>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTimer>

#include "common/text.h"
#include "ui/window/guarded_application.h"

namespace norvane::test {

namespace {

/// What every test of widgets stands on: Qt's application object, drawing into memory.
class Ui_Environment : public testing::Environment {
  public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        m_application.emplace(m_count, m_arguments);
        // As the program: a window that closes ends no event loop by itself.
        QApplication::setQuitOnLastWindowClosed(false);
        // A slow machine is no slow typist.
        QApplication::setKeyboardInputInterval(60000);
    }
    void TearDown() override { m_application.reset(); }

  private:
    char m_name[8] = "test_ui";
    char* m_arguments[2] = {m_name, nullptr};
    int m_count = 1;
    std::optional<Guarded_Application> m_application;
};

// The framework owns it.
const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new Ui_Environment);

}  // namespace

void Settle() {
    for (int round = 0; round < 3; ++round)
        QApplication::processEvents();
}

void Press(int key, const QString& text, Qt::KeyboardModifiers modifiers, QWidget* widget) {
    QPointer<QWidget> target(widget);
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (widget == nullptr)
            target = QApplication::focusWidget();
        QKeyEvent event(type, key, modifiers, text);
        if (target)
            QApplication::sendEvent(target, &event);
    }
    Settle();
}

void Type(const QString& letters, QWidget* widget) {
    for (const QChar letter : letters)
        Press(letter.toUpper().unicode(), letter, Qt::NoModifier, widget);
}

std::string Name(const QWidget& widget) {
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    const QString name = widget.accessibleName();
    return (name.isEmpty() && button != nullptr ? button->text() : name).toStdString();
}

std::string Tab_Round() {
    std::vector<std::string> names;
    const QWidget* first = QApplication::focusWidget();
    do {
        names.push_back(Name(*QApplication::focusWidget()));
        Press(Qt::Key_Tab);
    } while (QApplication::focusWidget() != first && names.size() < 50);
    return Join(names, ", ");
}

void Tab_To(const std::string& name) {
    for (int i = 0; i < 50 && Name(*QApplication::focusWidget()) != name; ++i)
        Press(Qt::Key_Tab);
    ASSERT_EQ(Name(*QApplication::focusWidget()), name);
}

void Open_View(QWidget& view) {
    view.resize(920, 420);
    view.show();
    view.activateWindow();
    Settle();
}

void Expect_No_Page_To_Scroll(QWidget& view) {
    const QSize room = view.findChild<QStackedWidget*>()->size();
    for (const QScrollArea* page : view.findChildren<QScrollArea*>()) {
        const QSize least = page->widget()->minimumSizeHint();
        EXPECT_EQ(least.boundedTo(room), least);
    }
}

void Desktop_World::When_Open(const std::function<void(QDialog& dialog)>& act) {
    QTimer::singleShot(0, &owner, [this, act] {
        auto* dialog = dynamic_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        ++opened;
        Settle();
        const QPointer<QDialog> open(dialog);
        act(*dialog);
        QTimer::singleShot(0, &owner, [open] {
            if (open && open->isVisible()) {
                ADD_FAILURE() << "still open";
                open->reject();
            }
        });
    });
}

void Program_World::Start() {
    Write("bin/fs9.wld", "21.3|-157.9|13|PHNL|Honolulu\r\n19.7|-155.0|38|PHTO|Hilo\r\n");
    // Else the simulator would be asked for its aircraft.
    Write("bin/ac.cfg", "B738@DH8D");
    program.emplace(services, transport);
    form.emplace(*program);
    Take_Errors();
}

void Program_World::Write_Airline(const std::string& name, const std::string& own_fields) {
    std::string fields;
    for (int i = 0; i < 41; ++i)
        fields += "Label^name\r\n";
    Write("VA_" + name + "/server.cfg", "www.example.org\r\n/pirep\r\n\r\n");
    Write("VA_" + name + "/pirep.cfg", fields);
    Write("VA_" + name + "/vafields.cfg", own_fields);
}

}  // namespace norvane::test
