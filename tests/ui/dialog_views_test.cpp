// The windows of the PIREP editor, the lookups, the logs, the about box and the airline's answer,
// as the pilot's keys and mouse find them.

#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>

#include "app/frm_about.h"
#include "ui/controls/bind.h"
#include "ui/controls/link_button.h"
#include "ui/dialogs/about_dialogs.h"
#include "ui/dialogs/field_list.h"
#include "ui/dialogs/log_dialogs.h"
#include "ui/dialogs/pirep_view.h"
#include "ui/dialogs/response_view.h"
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
    EXPECT_TRUE(seen->rect().contains(QRect(last->mapTo(seen, QPoint()), last->size())));
    Type("7", last);
    EXPECT_EQ(form_of_report.Rows()[count - 1]->txtField.Text(), "7");
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

TEST_F(Dialog_Views, A_list_completes_what_is_typed_and_lets_go_of_it_again) {
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

TEST_F(Dialog_Views, Fields_are_chosen_with_the_keyboard_and_taken_by_OK_alone) {
    frmReport chooser;
    Draw(chooser, qt_desktop, owner);
    std::vector<Report_Field> fields{{"Date", 0}, {"Aircraft Type", 1}, {"Route", 24}};
    const auto choose = [&fields, &chooser](Link& end) {
        return [&fields, &chooser, &end](QDialog& dialog) {
            auto& list = dynamic_cast<Field_List&>(*dialog.focusWidget());
            ASSERT_EQ(list.topLevelItemCount(), static_cast<int>(fields.size()));
            Press(Qt::Key_F10, {}, Qt::ShiftModifier);
            ASSERT_TRUE(list.Menu().isVisible());
            list.Menu().actions().at(1)->trigger();
            list.Menu().close();
            EXPECT_EQ(list.topLevelItem(2)->checkState(0), Qt::Unchecked);
            Press(Qt::Key_Down, &list);
            Press(Qt::Key_Space, " ");
            EXPECT_TRUE(chooser.lvwFields[1].box.Checked());
            Press(Qt::Key_Return, &Find<QAbstractButton>(dialog, end.Caption()));
        };
    };
    When_Open(choose(chooser.hypCancel));
    EXPECT_FALSE(chooser.Get_Selections(fields));
    EXPECT_TRUE(fields[0].included && fields[1].included && fields[2].included);

    When_Open(choose(chooser.hypOK));
    EXPECT_TRUE(chooser.Get_Selections(fields));
    EXPECT_TRUE(!fields[0].included && fields[1].included && !fields[2].included);

    When_Open([](QDialog& dialog) { Press(Qt::Key_Escape, &dialog); });
    EXPECT_FALSE(chooser.Get_Selections(fields));
    EXPECT_EQ(opened, 3);
    EXPECT_FALSE(chooser.Is_Open());
}

class Response_View_Test : public Test_World {
  protected:
    /// What the viewer shows of an answer.
    std::string Shown(const std::string& answer) {
        Write("sr", answer);
        response.Show_Response();
        QApplication::processEvents();
        return From_Q(Page().toPlainText());
    }
    QTextBrowser& Page() { return *view.findChild<QTextBrowser*>(); }
    /// What stands below the page.
    std::string Note() { return From_Q(view.findChild<QLabel*>()->text()); }

    frmResponse response{services};
    Response_View view{response, nullptr};
};

TEST_F(Response_View_Test, The_disk_is_not_asked_for_what_a_page_names) {
    QImage red(200, 200, QImage::Format_RGB32);
    red.fill(Qt::red);
    const std::string picture = (directory / "red.png").string();
    ASSERT_TRUE(red.save(QString::fromStdString(picture), "PNG"));
    Write("red.css", "body { background-color: red }");
    EXPECT_EQ(Shown("<html><head><style>@import \"" + directory.string() +
                    "/red.css\";</style></head><body background=\"" + picture + "\"><img src=\"" +
                    picture + "\"><img src=\"file://" + picture +
                    "\"><p style=\"background-image:url(" + picture + ")\">Accepted</p></body>"),
              "Accepted");
    const QImage drawn = view.grab().toImage();
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x)
            ASSERT_NE(drawn.pixel(x, y), red.pixel(0, 0)) << x << ", " << y;
    }
}

TEST_F(Response_View_Test, Pages_are_drawn_and_texts_and_hostile_pages_are_shown_as_texts) {
    EXPECT_EQ(Shown("Caf\xe9 <ops@example.org>\r\n2 < 3\r\n"),
              "Caf\xe9 <ops@example.org>\r\n2 < 3\r\n");
    EXPECT_EQ(Shown("<!DOCTYPE html>\n<title>x</title><p>Caf\xc3\xa9 &amp; bar"), "Caf\xe9 & bar");
    std::string long_page = "<html>";
    while (long_page.size() < 10'000'000)
        long_page += "<p>Flight <b>accepted</b></p>";
    EXPECT_EQ(Shown(long_page).substr(0, 15), "Flight accepted");
    EXPECT_NE(Note().find(QLocale(QLocale::English).toString(long_page.size()).toStdString()),
              std::string::npos);
    EXPECT_EQ(Shown("<p style=\"line-height:9999\">x").size(), 1U);
    EXPECT_LT(Page().document()->size().height(), 1000) << "the height passed";
    EXPECT_EQ(Note(), "");
}

TEST_F(Response_View_Test, Closing_the_window_is_the_link_and_a_failed_post_closes_it_alone) {
    response.Contact_Server();
    EXPECT_TRUE(view.isVisible());
    EXPECT_FALSE(view.isModal());
    response.Close();
    EXPECT_FALSE(view.isVisible());
    EXPECT_EQ(Read("cs"), "Contacting Server ...\r\n");
    response.Contact_Server();
    view.close();
    EXPECT_FALSE(view.isVisible());
    EXPECT_FALSE(response.Is_Open());
    EXPECT_FALSE(std::filesystem::exists(directory / "cs"));
}

}  // namespace
}  // namespace norvane::test
