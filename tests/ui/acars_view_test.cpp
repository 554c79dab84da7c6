#include "ui/panels/acars_view.h"

#include <QContextMenuEvent>

#include "ui/controls/value_label.h"
#include "ui/ui_world.h"

namespace norvane::test {
namespace {

class Acars_View_Test : public Program_World {
  protected:
    void SetUp() override {
        Write("bin/optfields.cfg", "Gate^\r\nType^Charter|Ferry\r\n");
        Write_Airline("TEST", "1^\r\n2^\r\n3^A|B\r\n4^\r\n5^\r\n6^\r\n");
        Start();
        program->airline.Get_VA_Settings("TEST");
        view.emplace(Panel(), *form, nullptr);
        Open_View(*view);
    }
    ucACARS& Panel() { return program->panel; }

    std::optional<Acars_View> view;
};

TEST_F(Acars_View_Test, Tab_reaches_every_input_of_a_page_in_reading_order) {
    const std::string links = ", On, Log Flight, Reset, ACARS Report";
    Panel().Focus_Moved.Emit(Panel().txtDate);
    EXPECT_EQ(Tab_Round(),
              "Date, Aircraft Type, Aircraft ID, Origin, Destination" + links + ", ==>");
    Panel().hypFP.Set_Enabled(true);
    Panel().hypNext.Click();
    EXPECT_EQ(Tab_Round(),
              "Flight Number, Pax, Cargo, Flight Level, IFR, VFR, WX - Origin, WX - Destination, "
              "Flight Plan:, Flight Plan, Comments" +
                  links + ", <==, ==>");
    Panel().hypNext.Click();
    EXPECT_EQ(Tab_Round(), "Gate, Type" + links + ", <==, ==>");
    Panel().hypNext.Click();
    EXPECT_EQ(Tab_Round(), "1, 2, 3, 4, 5, 6" + links + ", <==");
    // Another airline's fields take the place of these.
    Write_Airline("NEXT", "Stand^X|Y\r\nCaptain^\r\n");
    program->airline.Get_VA_Settings("NEXT");
    Panel().Focus_Moved.Emit(Panel().vaFields[0].cbo);
    Press(Qt::Key_Down);
    EXPECT_EQ(Panel().vaFields[0].cbo.Text(), "X");
    EXPECT_EQ(Tab_Round(), "Stand, Captain" + links + ", <==");
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
        {&Panel().txtComments, "Comments"}};
    for (const auto& [box, caption] : boxes) {
        if (box == &Panel().txtFlightNumber)
            Panel().hypNext.Click();
        Panel().Focus_Moved.Emit(*box);
        Settle();
        EXPECT_EQ(Name(*QApplication::focusWidget()), caption);
        Type("a|b");
        EXPECT_EQ(box->Text(), "a/b") << caption;
    }
}

TEST_F(Acars_View_Test, No_page_scrolls_in_the_window_as_it_opens_and_no_figure_moves_another) {
    const auto places = [this] {
        std::vector<QRect> rects;
        for (const Value_Label* figure : view->findChildren<Value_Label*>())
            rects.emplace_back(figure->mapTo(&*view, QPoint()), figure->size());
        return rects;
    };
    const auto empty = places();
    Panel().lblATCFlight.Set_Visible(true);
    for (Label* label : {&Panel().lblATCFlight, &Panel().lblOriginName, &Panel().lblZFW})
        label->Set_Text(std::string(200, 'W'));
    Settle();
    EXPECT_EQ(places(), empty);
    Expect_No_Page_To_Scroll(*view);
    // The word of a stored flight stands above the headings.
    Panel().lblStored.Set_Text("Stored");
    Panel().lblStored.Set_Visible(true);
    Settle();
    const auto left = [this](const QLabel& label) {
        return label.mapTo(&*view, label.contentsRect().topLeft()).x() + label.margin();
    };
    EXPECT_EQ(left(Caption(*view, "Stored")), left(Caption(*view, "Times")));
}

TEST_F(Acars_View_Test, The_title_asks_for_a_position_report_in_the_air_only) {
    QWidget* title = QApplication::focusWidget()->parentWidget();
    auto* menu = view->findChild<QMenu*>();
    int asked = 0;
    Panel().mnuPosition.chosen.Connect([&] { ++asked; });
    for (const bool in_the_air : {false, true}) {
        Panel().tmrPos.Set_Enabled(in_the_air);
        const QPoint place(5, 5);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, title->mapToGlobal(place));
        QApplication::sendEvent(title, &event);
        EXPECT_EQ(menu->isVisible(), in_the_air);
        menu->close();
    }
    Press(Qt::Key_F10, {}, Qt::ShiftModifier);
    menu->actions().constFirst()->trigger();
    EXPECT_EQ(asked, 1);
    menu->close();
}

}  // namespace
}  // namespace norvane::test
