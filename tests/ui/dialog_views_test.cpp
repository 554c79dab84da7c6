// The windows of the PIREP editor, the lookups and the about box, as the pilot's keys and mouse
// find them.

#include <QAccessible>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>

#include "app/frm_about.h"
#include "ui/controls/link_button.h"
#include "ui/dialogs/about_dialogs.h"
#include "ui/dialogs/pirep_view.h"
#include "ui/dialogs/row_list_view.h"
#include "ui/dialogs/world_dialogs.h"
#include "ui/ui_world.h"

namespace norvane::test {
namespace {

class Dialog_Views : public Program_World {
  protected:
    static void Double_Click(QTreeView& list, int row) {
        const QPointF place = list.visualRect(list.model()->index(row, 1)).center();
        const QPointF on_screen = list.viewport()->mapToGlobal(place);
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                                        QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, place, on_screen, Qt::LeftButton,
                              type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                              Qt::NoModifier);
            QApplication::sendEvent(list.viewport(), &event);
        }
    }
    /// Whatever takes the keyboard says what it is.
    static void Expect_Names(QWidget& window) {
        int count = 0;
        for (QWidget* widget : window.findChildren<QWidget*>()) {
            if (!widget->isVisible() || (widget->focusPolicy() & Qt::TabFocus) == 0)
                continue;
            QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(widget);
            ASSERT_NE(seen, nullptr);
            EXPECT_FALSE(seen->text(QAccessible::Name).isEmpty())
                << widget->metaObject()->className() << " in " << From_Q(window.windowTitle());
            ++count;
        }
        EXPECT_GT(count, 0);
    }
};

TEST_F(Dialog_Views, The_rows_of_a_PIREP_follow_the_keyboard_and_go_with_the_file) {
    constexpr int count = 14;
    std::string fields;
    std::string line;
    for (int i = 0; i < count; ++i) {
        fields += (i == 3 ? "" : "Crew & Pax " + std::to_string(i)) + "^f\r\n";
        line += std::to_string(100 + i) + "|";
    }
    Write_Airline("X", "");
    Write("VA_X/pirep.cfg", fields);
    Start();
    program->airline.Get_VA_Settings("X");
    Take_Errors();  // a form that does not fit the fixed values is reported
    frmPIREP& form_of_report = program->pirep_editor;
    Pirep_View view(form_of_report, nullptr);
    form_of_report.Show_Form();
    Settle();
    const auto fields_shown = [&view] { return view.findChildren<QLineEdit*>(); };
    const auto bar = view.findChild<QScrollBar*>();
    EXPECT_TRUE(fields_shown().empty());

    desktop.chosen_files.push_back(Write("reports/my.txt", line + "\r\n"));
    Press(Qt::Key_Return, view.focusWidget());  // the first link has the keyboard
    ASSERT_EQ(fields_shown().size(), count);
    Expect_Names(view);
    fields_shown()[0]->setFocus();
    for (int i = 0; i < count; ++i)
        Press(Qt::Key_Down, view.focusWidget());
    QLineEdit* last = fields_shown()[count - 1];
    ASSERT_EQ(view.focusWidget(), last);
    EXPECT_EQ(bar->value(), form_of_report.Scroll_Range());
    QWidget* seen = last->parentWidget()->parentWidget();
    const auto is_seen = [seen](QWidget* field) {
        return seen->rect().contains(QRect(field->mapTo(seen, QPoint()), field->size()));
    };
    EXPECT_TRUE(is_seen(last));
    EXPECT_FALSE(is_seen(fields_shown()[2]));
    Type("7", last);
    EXPECT_EQ(form_of_report.Rows()[count - 1]->txtField.Text(), "7");
    // The program comes back from another window: what the pilot scrolled to stays.
    bar->setValue(0);
    QFocusEvent back(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(last, &back);
    EXPECT_EQ(form_of_report.Scroll(), 0);

    desktop.answers = {Answer::yes};
    form_of_report.hypPIREP[frmPIREP::remove].Click();
    EXPECT_TRUE(fields_shown().empty());
    EXPECT_FALSE(bar->isVisible());
    Press(Qt::Key_Escape, &view);
    EXPECT_FALSE(form_of_report.Is_Open() || view.isVisible());
}

TEST_F(Dialog_Views, A_row_is_chosen_by_keys_and_taken_by_Enter_or_a_double_click) {
    Row_List model({"Airline", "IATA"});
    const std::vector<Row_List::Row> rows{{"Alpha", "ZZ"}, {"Beta", "ZU"}, {"Zulu", "XX"}};
    model.Set_Rows(rows);
    model.Select(1);
    int activated = 0;
    model.activated.Connect([&activated] { ++activated; });
    QDialog window;
    auto* list = new Row_List_View(model, "Airlines", {}, &window);
    list->resize(300, 200);
    window.show();
    Settle();
    // A list that opens does not choose, nor does one that gets the keyboard.
    EXPECT_EQ(model.Selected(), 1);
    EXPECT_EQ(list->currentIndex().row(), 1);
    model.Set_Rows(rows);
    list->clearFocus();
    list->setFocus();
    Press(Qt::Key_Return, list);
    EXPECT_EQ(model.Selected(), -1);
    EXPECT_EQ(activated, 0);
    for (const int expected : {0, 1}) {
        Press(Qt::Key_Down, list);
        EXPECT_EQ(model.Selected(), expected);
    }
    Press(Qt::Key_Return, list);
    EXPECT_EQ(activated, 1);
    Double_Click(*list, 0);
    EXPECT_EQ(model.Selected(), 0);
    EXPECT_EQ(activated, 2);
    // The click was on a code; letters are those of names.
    Type("zu", list);
    EXPECT_EQ(model.Selected(), 2);
    model.Remove_Row(2);
    EXPECT_EQ(list->currentIndex().row(), 1);
    EXPECT_EQ(list->model()->rowCount(), 2);
}

TEST_F(Dialog_Views, Airports_are_found_while_the_pilot_types_and_copied_by_keys) {
    Start();
    frmICAO& lookup = program->airport_lookup;
    Airport_View view(lookup, nullptr);
    lookup.Show_Form();
    Settle();
    QWidget* search = view.focusWidget();
    Type("ph", search);
    ASSERT_EQ(lookup.lvwAirports.Rows().size(), 2U);
    Expect_Names(view);
    Press(Qt::Key_Down, search);
    auto* list = dynamic_cast<Row_List_View*>(view.focusWidget());
    ASSERT_NE(list, nullptr);
    Press(Qt::Key_Return, list);
    EXPECT_EQ(desktop.copied_text, lookup.lvwAirports.Rows()[0][0]);
    Press(Qt::Key_Down, list);
    Press(Qt::Key_C, "c", Qt::ControlModifier, list);
    EXPECT_EQ(desktop.copied_text, lookup.lvwAirports.Rows()[1][0]);
    view.close();
    EXPECT_FALSE(lookup.Is_Open());
    lookup.Show_Form();
    EXPECT_EQ(view.focusWidget(), search);
    EXPECT_EQ(list->model()->rowCount(), 0);
}

TEST_F(Dialog_Views, Modal_dialogs_are_left_by_their_links_and_by_Escape) {
    Write("bin/airline.cfg", "Alpha|AA|AAA\r\nBeta|BB|BBB\r\nZulu|ZZ|ZZZ\r\n");
    frmAirline lookup(services);
    Draw(lookup, qt_desktop, owner);
    std::string iata;
    std::string icao;
    for (const bool taken : {true, false}) {
        When_Open([taken](QDialog& dialog) {
            Expect_Names(dialog);
            Type("be", dialog.focusWidget());
            Press(taken ? Qt::Key_Return : Qt::Key_Escape, dialog.focusWidget());
        });
        EXPECT_EQ(lookup.LookUp_Airline(iata, icao), taken);
        EXPECT_EQ(icao, taken ? "BBB" : "");
    }
    // The keyboard goes back to the window that had it, which is not the dialog's owner.
    QWidget main;
    QDialog editor(&main);
    main.show();
    editor.show();
    editor.activateWindow();
    Settle();
    qt_desktop.Set_Window(&main);
    frmAbout about;
    Draw(about, qt_desktop, owner);
    When_Open([](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<Row_List_View*>()->model()->rowCount(),
                  static_cast<int>(frmAbout::Licensed_Parts().size()));
        Expect_Names(dialog);
        Press(Qt::Key_Return, dialog.focusWidget());
    });
    about.Show_Form();
    Settle();
    EXPECT_EQ(QApplication::activeWindow(), &editor);
    EXPECT_EQ(opened, 3);
}

TEST_F(Dialog_Views, Locations_are_added_and_deleted_from_the_keyboard) {
    Start();
    frmFSWorld& world = program->world_locations;
    Draw(world, qt_desktop, owner);
    When_Open([&](QDialog& dialog) {
        Expect_Names(dialog);
        auto& code = dynamic_cast<QLineEdit&>(*dialog.focusWidget());
        auto* list = dialog.findChild<Row_List_View*>();
        for (const char* text : {"one", "two"}) {
            code.setFocus();
            code.selectAll();
            Type(text, &code);
            Press(Qt::Key_Return, &code);
        }
        ASSERT_EQ(world.lvwWorld.Rows().size(), 2U);
        Press(Qt::Key_Down, list);
        desktop.answers.push_back(Answer::yes);
        Press(Qt::Key_Delete, list);
        EXPECT_EQ(list->model()->rowCount(), 1);
        Press(Qt::Key_Return, &Find<Link_Button>(dialog, "Save"));
    });
    EXPECT_TRUE(world.Show_Form());
    EXPECT_NE(Read("bin/fs9UD.wld").find("|TWO|"), std::string::npos);
}

}  // namespace
}  // namespace norvane::test
