// The windows of the PIREP editor, the lookups and the about box, as the pilot's keys and mouse
// find them.

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QTimer>

#include "acars/cls_utc.h"
#include "app/frm_about.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "config/frm_airline.h"
#include "logentry/frm_response.h"
#include "simlink/in_process_transport.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"
#include "support/test_world.h"
#include "ui/about_dialogs.h"
#include "ui/link_button.h"
#include "ui/pirep_view.h"
#include "ui/qt_desktop.h"
#include "ui/qt_text.h"
#include "ui/row_list_view.h"
#include "ui/world_dialogs.h"
#include "worldtools/frm_fs_world.h"

namespace norvane {
namespace {

class Dialog_Views : public test::Test_World {
  protected:
    static void Press(QWidget* widget, int key, const QString& text = {},
                      Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        ASSERT_NE(widget, nullptr);
        QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
        QApplication::sendEvent(widget, &event);
    }
    static void Type(QWidget* widget, const QString& letters) {
        for (const QChar letter : letters)
            Press(widget, letter.toUpper().unicode(), letter);
    }
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
    /// What the pilot does in the dialog that opens next. One that he leaves open is closed.
    void When_Open(const std::function<void(QDialog& dialog)>& act) {
        QTimer::singleShot(0, &owner, [this, act] {
            auto* dialog = dynamic_cast<QDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            ++opened;
            QApplication::processEvents();
            Expect_Names(*dialog);
            const QPointer<QDialog> open(dialog);
            act(*dialog);
            QTimer::singleShot(0, &owner, [open] {
                if (open)
                    open->reject();
            });
        });
    }

    clsAppSettings settings{services};
    clsVASettings airline{services};
    Window_Clock qt_clock;
    Qt_Desktop qt_desktop{qt_clock, 1};
    QObject owner;
    int opened = 0;
};

TEST_F(Dialog_Views, The_rows_of_a_PIREP_follow_the_keyboard_and_go_with_the_file) {
    constexpr int count = 14;
    std::string fields;
    std::string line;
    for (int i = 0; i < count; ++i) {
        fields += (i == 3 ? "" : "Crew & Pax " + std::to_string(i)) + "^f\r\n";
        line += std::to_string(100 + i) + "|";
    }
    Write("VA_X/server.cfg", "127.0.0.1\r\n/in\r\n");
    Write("VA_X/pirep.cfg", fields);
    airline.Get_VA_Settings("X");
    Take_Errors();  // a form that does not fit the fixed values is reported
    frmResponse response(services);
    frmPIREP form{{services, settings, airline, response, {}}};
    Pirep_View view(form, nullptr);
    EXPECT_FALSE(view.isVisible());
    form.Show_Form();
    QApplication::processEvents();
    const auto fields_shown = [&view] { return view.findChildren<QLineEdit*>(); };
    const auto bar = view.findChild<QScrollBar*>();
    EXPECT_TRUE(fields_shown().empty());

    desktop.chosen_files.push_back(Write("reports/my.txt", line + "\r\n"));
    Press(view.focusWidget(), Qt::Key_Return);  // the first link has the keyboard
    ASSERT_EQ(fields_shown().size(), count);
    Expect_Names(view);
    EXPECT_TRUE(bar->isVisible());
    fields_shown()[0]->setFocus();
    for (int i = 0; i < count; ++i)
        Press(view.focusWidget(), Qt::Key_Down);
    QLineEdit* last = fields_shown()[count - 1];
    ASSERT_EQ(view.focusWidget(), last);
    EXPECT_EQ(bar->value(), form.Scroll_Range());
    QWidget* seen = last->parentWidget()->parentWidget();
    const auto is_seen = [seen](QWidget* field) {
        return seen->rect().contains(QRect(field->mapTo(seen, QPoint()), field->size()));
    };
    EXPECT_TRUE(is_seen(last));
    EXPECT_FALSE(is_seen(fields_shown()[2]));
    QApplication::processEvents();
    Type(last, "7");
    EXPECT_EQ(form.Rows()[count - 1]->txtField.Text(), "7");
    // The program comes back from another window: what the pilot scrolled to stays.
    bar->setValue(0);
    QFocusEvent back(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(last, &back);
    EXPECT_EQ(form.Scroll(), 0);

    desktop.answers = {Answer::yes};
    form.hypPIREP[frmPIREP::remove].Click();
    EXPECT_TRUE(fields_shown().empty());
    EXPECT_FALSE(bar->isVisible());
    Press(&view, Qt::Key_Escape);
    EXPECT_FALSE(form.Is_Open());
    EXPECT_FALSE(view.isVisible());
}

TEST_F(Dialog_Views, A_row_is_chosen_by_keys_and_taken_by_Enter_or_a_double_click) {
    Row_List model({"Airline", "IATA"});
    model.Set_Rows({{"Alpha", "ZZ"}, {"Beta", "ZU"}, {"Zulu", "XX"}});
    model.Select(1);
    int chosen = 0;
    int activated = 0;
    model.edited.connect([&chosen] { ++chosen; });
    model.activated.connect([&activated] { ++activated; });
    QDialog window;
    auto* list = new Row_List_View(model, "Airlines", {}, &window);
    list->resize(300, 200);
    window.show();
    QApplication::processEvents();
    // A list that opens does not choose, nor does one that gets the keyboard.
    EXPECT_EQ(model.Selected(), 1);
    EXPECT_EQ(list->currentIndex().row(), 1);
    model.Set_Rows({{"Alpha", "ZZ"}, {"Beta", "ZU"}, {"Zulu", "XX"}});
    list->clearFocus();
    list->setFocus();
    EXPECT_EQ(model.Selected(), -1);
    Press(list, Qt::Key_Return);
    EXPECT_EQ(chosen + activated, 0);

    Press(list, Qt::Key_Down);
    EXPECT_EQ(model.Selected(), 0);
    Press(list, Qt::Key_Down);
    EXPECT_EQ(model.Selected(), 1);
    Press(list, Qt::Key_Return);
    EXPECT_EQ(activated, 1);
    Double_Click(*list, 0);
    EXPECT_EQ(model.Selected(), 0);
    EXPECT_EQ(activated, 2);
    // The click was on a code; letters are those of names.
    Type(list, "zu");
    EXPECT_EQ(model.Selected(), 2);
    model.Remove_Row(2);
    EXPECT_EQ(list->currentIndex().row(), 1);
    EXPECT_EQ(list->model()->rowCount(), 2);
    EXPECT_EQ(activated, 2);
}

TEST_F(Dialog_Views, Airports_are_found_while_the_pilot_types_and_copied_by_keys) {
    Write("bin/fs9.wld",
          "19.7|-155|38|PHTO|Hilo|\r\n21.3|-157.9|13|PHNL|Honolulu|\r\n1|2|3|KXYZ|Other|\r\n");
    frmICAO form(services, [] { return frmICAO::World_Files{"fs9.wld", "fs9UD.wld"}; });
    Airport_View view(form, nullptr);
    form.Show_Form();
    QApplication::processEvents();
    auto* search = dynamic_cast<QLineEdit*>(view.focusWidget());
    ASSERT_NE(search, nullptr);
    Type(search, "ph");
    ASSERT_EQ(form.lvwAirports.Rows().size(), 2U);
    Expect_Names(view);
    Press(search, Qt::Key_Down);
    auto* list = dynamic_cast<Row_List_View*>(view.focusWidget());
    ASSERT_NE(list, nullptr);
    Press(list, Qt::Key_Return);
    EXPECT_EQ(desktop.copied_text, form.lvwAirports.Rows()[0][0]);
    Press(list, Qt::Key_Down);
    Press(list, Qt::Key_C, "c", Qt::ControlModifier);
    EXPECT_EQ(desktop.copied_text, form.lvwAirports.Rows()[1][0]);
    view.close();
    EXPECT_FALSE(form.Is_Open());
    form.Show_Form();
    EXPECT_EQ(view.focusWidget(), search);
    EXPECT_EQ(list->model()->rowCount(), 0);
}

TEST_F(Dialog_Views, Modal_dialogs_are_left_by_their_links_and_by_Escape) {
    Write("bin/airline.cfg", "Alpha|AA|AAA\r\nBeta|BB|BBB\r\nZulu|ZZ|ZZZ\r\n");
    frmAirline lookup(services);
    Draw(lookup, qt_desktop, owner);
    std::string iata;
    std::string icao;
    When_Open([](QDialog& dialog) {
        Type(dialog.focusWidget(), "be");
        Press(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_TRUE(lookup.LookUp_Airline(iata, icao));
    EXPECT_EQ(icao, "BBB");
    When_Open([](QDialog& dialog) {
        Type(dialog.focusWidget(), "z");
        Press(&dialog, Qt::Key_Escape);
    });
    EXPECT_FALSE(lookup.LookUp_Airline(iata, icao));

    // The keyboard goes back to the window that had it, which is not the dialog's owner.
    QWidget main;
    QDialog editor(&main);
    main.show();
    editor.show();
    editor.activateWindow();
    QApplication::processEvents();
    qt_desktop.Set_Window(&main);
    frmAbout about;
    Draw(about, qt_desktop, owner);
    When_Open([](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<Row_List_View*>()->model()->rowCount(),
                  static_cast<int>(frmAbout::Licensed_Parts().size()));
        Press(dialog.focusWidget(), Qt::Key_Return);
    });
    about.Show_Form();
    QApplication::processEvents();
    EXPECT_EQ(QApplication::activeWindow(), &editor);
    EXPECT_EQ(opened, 3);
}

TEST_F(Dialog_Views, Locations_are_added_and_deleted_from_the_keyboard) {
    Write("bin/fs9.wld", "51.4|-0.4|83|EGLL|London Heathrow\r\n");
    Offset_Area area;
    In_Process_Transport transport(area);
    modFSUIPC link(transport, clock);
    const clsUTC utc(clock);
    frmFSWorld form({services, link, settings, airline, utc});
    Draw(form, qt_desktop, owner);
    When_Open([&](QDialog& dialog) {
        QWidget* code = dialog.focusWidget();
        auto* list = dialog.findChild<Row_List_View*>();
        for (const char* text : {"one", "two"}) {
            code->setFocus();
            dynamic_cast<QLineEdit&>(*code).selectAll();
            Type(code, text);
            Press(code, Qt::Key_Return);
        }
        ASSERT_EQ(form.lvwWorld.Rows().size(), 2U);
        EXPECT_EQ(form.lvwWorld.Rows()[1][0], "TWO");
        Press(list, Qt::Key_Down);
        desktop.answers.push_back(Answer::yes);
        Press(list, Qt::Key_Delete);
        ASSERT_EQ(form.lvwWorld.Rows().size(), 1U);
        EXPECT_EQ(list->model()->rowCount(), 1);
        for (Link_Button* button : dialog.findChildren<Link_Button*>()) {
            if (button->text() == "Save")
                Press(button, Qt::Key_Return);
        }
    });
    EXPECT_TRUE(form.Show_Form());
    EXPECT_NE(Read("bin/fs9UD.wld").find("|TWO|"), std::string::npos);
    EXPECT_EQ(opened, 1);
}

}  // namespace
}  // namespace norvane
