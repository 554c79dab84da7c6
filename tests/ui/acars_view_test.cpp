#include "ui/acars_view.h"

#include <QAbstractButton>
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QScrollArea>
#include <optional>
#include <string>
#include <vector>

#include "app/frm_main.h"
#include "app/program.h"
#include "simlink/in_process_transport.h"
#include "simlink/offset_area.h"
#include "support/test_world.h"
#include "ui/qt_text.h"
#include "ui/value_label.h"

namespace norvane {
namespace {

using Names = std::vector<std::string>;

/// The panel of a program, as wide and high as the window leaves it when it opens.
class Acars_View_Test : public test::Test_World {
  protected:
    static constexpr QSize opening_size{920, 420};

    void SetUp() override {
        Write("bin/fs9.wld", "40.0|-73.0|10|KAAA|Alpha Field\r\n");
        Write("bin/optfields.cfg", "Gate^\r\nType^Charter|Ferry\r\n");
        std::string form;
        for (int i = 0; i < 41; ++i)
            form += "Label^name\r\n";
        Write("VA_TEST/server.cfg", "www.example.org\r\n/pirep\r\n\r\n");
        Write("VA_TEST/pirep.cfg", form);
        Write("VA_TEST/vafields.cfg", "1^\r\n2^\r\n3^A|B\r\n4^\r\n5^\r\n6^\r\n");
        program.emplace(services, transport);
        program->airline.Get_VA_Settings("TEST");
        program->panel.VA_Change();
        window.emplace(*program);
        view.emplace(program->panel, *window, nullptr);
        view->resize(opening_size);
        view->show();
        view->activateWindow();
        QApplication::processEvents();
    }

    void Press(int key, const QString& text = {}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(QApplication::focusWidget(), &press);
    }
    /// What the Tab key passes from the focus until it is there again.
    Names Tab_Round() {
        Names names;
        const QWidget* first = QApplication::focusWidget();
        do {
            names.push_back(Name(*QApplication::focusWidget()));
            Press(Qt::Key_Tab);
        } while (QApplication::focusWidget() != first && names.size() < 50);
        return names;
    }
    static std::string Name(const QWidget& widget) {
        const auto* button = qobject_cast<const QAbstractButton*>(&widget);
        const QString name = widget.accessibleName();
        return (name.isEmpty() && button != nullptr ? button->text() : name).toStdString();
    }
    ucACARS& Panel() { return program->panel; }

    Offset_Area area;
    In_Process_Transport transport{area};
    std::optional<Program> program;
    std::optional<frmMain> window;
    std::optional<Acars_View> view;
};

TEST_F(Acars_View_Test, Tab_reaches_every_input_of_a_page_in_reading_order) {
    Panel().Focus_Moved.emit(Panel().txtDate);
    EXPECT_EQ(Tab_Round(), (Names{"Date", "Aircraft Type", "Aircraft ID", "Origin", "Destination",
                                  "On", "Log Flight", "Reset", "ACARS Report", "==>"}));
    Panel().hypFP.Set_Enabled(true);
    Panel().hypNext.Click();
    EXPECT_EQ(Tab_Round(),
              (Names{"Flight Number", "Pax", "Cargo", "Flight Level", "IFR", "VFR", "WX - Origin",
                     "WX - Destination", "Flight Plan:", "Flight Plan", "Comments", "On",
                     "Log Flight", "Reset", "ACARS Report", "<==", "==>"}));
    Panel().hypNext.Click();
    EXPECT_EQ(Tab_Round(),
              (Names{"Gate", "Type", "On", "Log Flight", "Reset", "ACARS Report", "<==", "==>"}));
    Panel().hypNext.Click();
    EXPECT_EQ(Tab_Round(), (Names{"1", "2", "3", "4", "5", "6", "On", "Log Flight", "Reset",
                                  "ACARS Report", "<=="}));
}

TEST_F(Acars_View_Test, What_is_typed_into_a_box_reaches_the_model_of_its_caption) {
    const std::vector<std::pair<Text_Box*, std::string>> boxes{
        {&Panel().txtDate, "Date"},
        {&Panel().txtAircraftType, "Aircraft Type"},
        {&Panel().txtAircraftID, "Aircraft ID"},
        {&Panel().txtOrigin, "Origin"},
        {&Panel().txtDestination, "Destination"},
        {&Panel().txtFlightNumber, "Flight Number"},
        {&Panel().txtPax, "Pax"},
        {&Panel().txtCargo, "Cargo"},
        {&Panel().txtFlightLevel, "Flight Level"},
        {&Panel().txtWXOrigin, "WX - Origin"},
        {&Panel().txtWXDestination, "WX - Destination"},
        {&Panel().txtFlightPlan, "Flight Plan"},
        {&Panel().txtComments, "Comments"},
    };
    for (const auto& [box, caption] : boxes) {
        if (box == &Panel().txtFlightNumber)
            Panel().hypNext.Click();
        Panel().Focus_Moved.emit(*box);
        QApplication::processEvents();
        EXPECT_EQ(Name(*QApplication::focusWidget()), caption);
        Press(Qt::Key_A, "a");
        Press(Qt::Key_Bar, "|");
        Press(Qt::Key_B, "b");
        EXPECT_EQ(box->Text(), "a/b") << caption;
    }
}

TEST_F(Acars_View_Test, Fields_of_another_airline_take_the_place_of_the_old_ones) {
    while (Panel().hypNext.Enabled())
        Panel().hypNext.Click();
    Write("VA_NEXT/server.cfg", Read("VA_TEST/server.cfg"));
    Write("VA_NEXT/pirep.cfg", Read("VA_TEST/pirep.cfg"));
    Write("VA_NEXT/vafields.cfg", "Stand^X|Y\r\nCaptain^\r\n");
    program->airline.Get_VA_Settings("NEXT");
    Panel().VA_Change();
    Panel().Focus_Moved.emit(Panel().vaFields[0].cbo);
    Press(Qt::Key_Down);
    EXPECT_EQ(Panel().vaFields[0].cbo.Text(), "X");
    EXPECT_EQ(Tab_Round(),
              (Names{"Stand", "Captain", "On", "Log Flight", "Reset", "ACARS Report", "<=="}));
}

TEST_F(Acars_View_Test, No_page_scrolls_in_the_window_as_it_opens_and_no_figure_moves_another) {
    const auto places = [this] {
        std::vector<QRect> rects;
        for (const Value_Label* figure : view->findChildren<Value_Label*>())
            rects.push_back({figure->mapTo(&*view, QPoint()), figure->size()});
        return rects;
    };
    const auto empty = places();
    Panel().lblATCFlight.Set_Visible(true);
    Panel().lblATCFlight.Set_Text(std::string(200, 'W'));
    Panel().lblOriginName.Set_Text(std::string(200, 'W'));
    Panel().lblZFW.Set_Text(std::string(200, 'W'));
    QApplication::processEvents();
    EXPECT_EQ(places(), empty);
    for (const QScrollArea* page : view->findChildren<QScrollArea*>()) {
        const QSize least = page->widget()->minimumSizeHint();
        const QSize room = view->findChild<QStackedWidget*>()->size();
        EXPECT_LE(least.width(), room.width());
        EXPECT_LE(least.height(), room.height());
    }
}

TEST_F(Acars_View_Test, The_title_asks_for_a_position_report_in_the_air_only) {
    QWidget* title = QApplication::focusWidget()->parentWidget();
    auto* menu = view->findChild<QMenu*>();
    const auto ask = [&] {
        const QPoint place(5, 5);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, title->mapToGlobal(place));
        QApplication::sendEvent(title, &event);
    };
    ask();
    EXPECT_FALSE(menu->isVisible());
    Panel().tmrPos.Set_Enabled(true);
    ask();
    ASSERT_TRUE(menu->isVisible());
    int asked = 0;
    Panel().mnuPosition.chosen.connect([&] { ++asked; });
    menu->actions().constFirst()->trigger();
    EXPECT_EQ(asked, 1);
    menu->close();
}

}  // namespace
}  // namespace norvane
