#include "ui/dialogs/log_dialogs.h"

#include <QComboBox>
#include <QLineEdit>

#include "logpanel/frm_log.h"
#include "ui/controls/bind.h"
#include "ui/dialogs/field_list.h"
#include "ui/ui_world.h"

namespace norvane::test {
namespace {

using Log_Dialogs_Test = Desktop_World;

TEST_F(Log_Dialogs_Test, A_list_completes_what_is_typed_and_lets_go_of_it_again) {
    Text_Combo model;
    model.Set_Entries({"Charter", "My Flight Log", "my trips"});
    QComboBox list;
    Bind(list, model, "Flight Log");
    EXPECT_EQ(list.currentText(), "");
    int entered = 0;
    model.edited.Connect([&entered] { ++entered; });
    QLineEdit& edit = *list.lineEdit();

    Type("my", &list);
    EXPECT_EQ(model.Text(), "My Flight Log");
    EXPECT_EQ(edit.selectedText(), " Flight Log");
    Type(" t", &list);
    EXPECT_EQ(model.Text(), "my trips");
    EXPECT_EQ(list.currentIndex(), 2);
    // A name that is the beginning of another, in the pilot's own letters.
    for (const auto* left : {"my t", "my ", "my"}) {
        Press(Qt::Key_Backspace, &list);
        EXPECT_EQ(model.Text(), left);
        EXPECT_EQ(edit.text(), left);
        EXPECT_EQ(model.Selected(), -1);
    }
    Type(" next log", &list);
    EXPECT_EQ(model.Text(), "my next log");
    edit.selectAll();
    Type("c", &list);
    Press(Qt::Key_Delete, &list);
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
    Press(Qt::Key_Down, &list);
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
            Press(Qt::Key_F10, {}, Qt::ShiftModifier);
            ASSERT_TRUE(list.Menu().isVisible());
            list.Menu().actions().at(1)->trigger();
            list.Menu().close();
            EXPECT_EQ(list.topLevelItem(2)->checkState(0), Qt::Unchecked);
            Press(Qt::Key_Down, &list);
            Press(Qt::Key_Space, " ");
            EXPECT_TRUE(form.lvwFields[1].box.Checked());
            Press(Qt::Key_Return, &Find<QAbstractButton>(dialog, end.Caption()));
        };
    };
    When_Open(choose(form.hypCancel));
    EXPECT_FALSE(form.Get_Selections(fields));
    EXPECT_TRUE(fields[0].included && fields[1].included && fields[2].included);

    When_Open(choose(form.hypOK));
    EXPECT_TRUE(form.Get_Selections(fields));
    EXPECT_TRUE(!fields[0].included && fields[1].included && !fields[2].included);

    When_Open([](QDialog& dialog) { Press(Qt::Key_Escape, &dialog); });
    EXPECT_FALSE(form.Get_Selections(fields));
    EXPECT_EQ(opened, 3);
    EXPECT_FALSE(form.Is_Open());
}

TEST_F(Log_Dialogs_Test, The_end_of_the_program_closes_a_form_and_lets_none_open) {
    Write("logs/Charter.txt", "");
    frmLog form;
    Draw(form, qt_desktop, owner);
    When_Open([&form](QDialog& dialog) {
        Type("ch", dialog.findChild<QComboBox*>());
        form.hypOK.Click();
    });
    EXPECT_EQ(form.Select_FlightLog(services, "My Flight Log"), "Charter");
    When_Open([this](QDialog& /*dialog*/) { qt_desktop.End_Dialogs(); });
    EXPECT_EQ(form.Select_FlightLog(services, "My Flight Log"), std::nullopt);
    EXPECT_EQ(form.Select_FlightLog(services, "My Flight Log"), std::nullopt);
    EXPECT_EQ(opened, 2);
}

}  // namespace
}  // namespace norvane::test
