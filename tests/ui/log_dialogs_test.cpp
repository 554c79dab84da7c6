#include "ui/log_dialogs.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

#include "flightlog/frm_log.h"
#include "support/test_world.h"
#include "ui/bind.h"
#include "ui/field_list.h"
#include "ui/qt_desktop.h"
#include "ui/qt_text.h"

namespace norvane {
namespace {

class Log_Dialogs_Test : public test::Test_World {
  protected:
    static void Press(QWidget& widget, int key, const QString& text = {},
                      Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, modifiers, text);
            QApplication::sendEvent(&widget, &event);
        }
    }
    static void Type(QWidget& widget, const QString& letters) {
        for (const QChar letter : letters)
            Press(widget, letter.toUpper().unicode(), letter);
    }
    /// What the pilot does once a dialog is open. A dialog that he leaves open is a fault, and is
    /// closed so that the test ends.
    void When_Open(const std::function<void(QDialog& dialog)>& act) {
        QTimer::singleShot(0, &owner, [this, act] {
            auto* dialog = dynamic_cast<QDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            ++opened;
            act(*dialog);
            const QPointer<QDialog> open(dialog);
            QTimer::singleShot(0, &owner, [open] {
                if (open && open->isVisible()) {
                    ADD_FAILURE() << "still open";
                    open->done(QDialog::Rejected);
                }
            });
        });
    }

    Window_Clock qt_clock;
    Qt_Desktop qt_desktop{qt_clock, 1};
    QObject owner;
    int opened = 0;
};

TEST_F(Log_Dialogs_Test, A_list_completes_what_is_typed_and_lets_go_of_it_again) {
    Text_Combo model;
    model.Set_Entries({"Charter", "My Flight Log", "my trips"});
    QComboBox list;
    Bind(list, model, "Flight Log");
    EXPECT_EQ(list.currentText(), "");
    int entered = 0;
    model.edited.connect([&entered] { ++entered; });
    QLineEdit& edit = *list.lineEdit();

    Type(list, "my");
    EXPECT_EQ(model.Text(), "My Flight Log");
    EXPECT_EQ(edit.selectedText(), " Flight Log");
    Type(list, " t");
    EXPECT_EQ(model.Text(), "my trips");
    EXPECT_EQ(list.currentIndex(), 2);
    // A name that is the beginning of another, in the pilot's own letters.
    Press(list, Qt::Key_Backspace);
    EXPECT_EQ(model.Text(), "my t");
    EXPECT_EQ(model.Selected(), -1);
    Press(list, Qt::Key_Backspace);
    Press(list, Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), "my");
    EXPECT_EQ(edit.cursorPosition(), 2);
    Type(list, " next log");
    EXPECT_EQ(model.Text(), "my next log");
    edit.selectAll();
    Type(list, "c");
    Press(list, Qt::Key_Delete);
    EXPECT_EQ(model.Text(), "c");

    // The program's own changes are shown, and are not the pilot's.
    entered = 0;
    model.Add_Entry("c");
    EXPECT_EQ(list.currentIndex(), 3);
    model.Set_Text("Charter");
    EXPECT_EQ(edit.text(), "Charter");
    model.Set_Entries({"Other"});
    EXPECT_EQ(edit.text(), "");
    EXPECT_EQ(entered, 0);
    Press(list, Qt::Key_Down);
    EXPECT_EQ(model.Text(), "Other");
    EXPECT_EQ(entered, 1);
}

TEST_F(Log_Dialogs_Test, Fields_are_chosen_with_the_keyboard_and_taken_by_OK_alone) {
    frmReport form;
    Draw(form, qt_desktop, owner);
    std::vector<Report_Field> fields{{"Date", 0}, {"Aircraft Type", 1}, {"Route", 24}};
    const auto choose = [&fields, &form](Link& end) {
        return [&fields, &form, &end](QDialog& dialog) {
            auto& list = dynamic_cast<Field_List&>(*dialog.focusWidget());
            ASSERT_EQ(list.topLevelItemCount(), static_cast<int>(fields.size()));
            Press(list, Qt::Key_F10, {}, Qt::ShiftModifier);
            ASSERT_TRUE(list.Menu().isVisible());
            list.Menu().actions().at(1)->trigger();
            list.Menu().close();
            EXPECT_EQ(list.topLevelItem(2)->checkState(0), Qt::Unchecked);
            Press(list, Qt::Key_Down);
            Press(list, Qt::Key_Space, " ");
            EXPECT_TRUE(form.lvwFields[1].box.Checked());
            for (QAbstractButton* link : dialog.findChildren<QAbstractButton*>()) {
                if (link->text() == To_Q(end.Caption()))
                    Press(*link, Qt::Key_Return);
            }
        };
    };
    When_Open(choose(form.hypCancel));
    EXPECT_FALSE(form.Get_Selections(fields));
    EXPECT_TRUE(fields[0].included && fields[1].included && fields[2].included);

    When_Open(choose(form.hypOK));
    EXPECT_TRUE(form.Get_Selections(fields));
    EXPECT_TRUE(!fields[0].included && fields[1].included && !fields[2].included);

    When_Open([](QDialog& dialog) { Press(dialog, Qt::Key_Escape); });
    EXPECT_FALSE(form.Get_Selections(fields));
    EXPECT_EQ(opened, 3);
    EXPECT_FALSE(form.Is_Open());
}

TEST_F(Log_Dialogs_Test, The_end_of_the_program_closes_a_form_and_lets_none_open) {
    Write("logs/Charter.txt", "");
    frmLog form;
    Draw(form, qt_desktop, owner);
    When_Open([&form](QDialog& dialog) {
        Type(*dialog.findChild<QComboBox*>(), "ch");
        form.hypOK.Click();
    });
    EXPECT_EQ(form.Select_FlightLog(services, "My Flight Log"), "Charter");
    When_Open([this](QDialog& /*dialog*/) { qt_desktop.End_Dialogs(); });
    EXPECT_EQ(form.Select_FlightLog(services, "My Flight Log"), std::nullopt);
    EXPECT_EQ(form.Select_FlightLog(services, "My Flight Log"), std::nullopt);
    EXPECT_EQ(opened, 2);
}

}  // namespace
}  // namespace norvane
