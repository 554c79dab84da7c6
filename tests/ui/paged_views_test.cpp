// The panels with pages of controls: what the keyboard reaches, and where it leads.

#include <QComboBox>
#include <QContextMenuEvent>

#include "acarspanel/panel_fields.h"
#include "ui/panels/acars_view.h"
#include "ui/panels/settings_view.h"
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
    Panel().Focus_Moved.Emit(Panel().txtDate);
    std::string rounds = Tab_Round() + "\n";
    Panel().hypFP.Set_Enabled(true);
    for (int page = 1; page < 4; ++page) {
        Panel().hypNext.Click();
        rounds += Tab_Round() + "\n";
    }
    // Another airline's fields take the place of these.
    Write_Airline("NEXT", "Stand^X|Y\r\nCaptain^\r\n");
    program->airline.Get_VA_Settings("NEXT");
    Panel().Focus_Moved.Emit(Panel().vaFields[0].cbo);
    Press(Qt::Key_Down);
    EXPECT_EQ(Panel().vaFields[0].cbo.Text(), "X");
    Expect_Look("tabs-acars", rounds + Tab_Round() + "\n");
}

TEST_F(Acars_View_Test, What_is_typed_into_a_box_reaches_the_model_of_its_caption) {
    std::string typed;
    for (const Panel_Field& field : Panel_Fields()) {
        Text_Box* box = field.Find_Box(Panel());
        if (box == nullptr)
            continue;
        if (box == &Panel().txtFlightNumber)
            Panel().hypNext.Click();
        Panel().Focus_Moved.Emit(*box);
        Settle();
        Type("a|b");
        typed += Name(*QApplication::focusWidget()) + " " + box->Text() + "\n";
    }
    Expect_Look("typed", typed);
}

TEST_F(Acars_View_Test, No_page_scrolls_in_the_window_as_it_opens) {
    Panel().lblATCFlight.Set_Visible(true);
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

/// For a pilot with two airlines.
class Settings_View_Test : public Program_World {
  protected:
    void SetUp() override {
        Write("bin/url.cfg", "[NOAA]\r\n[ADDS]\r\n");
        Write("logs/My Trips.txt", "");
        for (const char* airline : {"NORTH", "NORTH WEST"})
            Write_Airline(airline, "");
        Start();
        view.emplace(Settings(), *form, nullptr);
        Open_View(*view);
    }
    ucSettings& Settings() { return program->settings_panel; }

    std::optional<Settings_View> view;
};

TEST_F(Settings_View_Test, Tab_reaches_every_control_of_a_page_by_its_name_and_no_page_scrolls) {
    std::string rounds;
    const auto look = [&](const std::string& first) {
        Tab_To(first);
        rounds += Tab_Round() + "\n";
        Press(Qt::Key_Tab, "\t", Qt::ControlModifier);
    };
    look("Choose Link Bar Background Color");
    EXPECT_EQ(Settings().Shown_Page(), ucSettings::acars);
    Settings().optACARS[ucSettings::take_off_altitude].Click();
    for (const auto option : {ucSettings::vatsim, ucSettings::save_pirep})
        Settings().chkACARS[option].Click();
    Settings().chkACARS[ucSettings::send_pirep].Set_Visible(true);
    look("Default Date");
    for (auto& field : Settings().optFields)
        field.cboType.Choose(1);
    look("Field Name 1");
    Settings().txtPilot[ucSettings::iata].Enter("NV");
    look("Virtual Airline");
    Expect_Look("tabs-settings", rounds);
    Expect_No_Page_To_Scroll(*view);
}

TEST_F(Settings_View_Test, A_page_is_changed_and_saved_with_the_keyboard_alone) {
    Tab_To("Pages of the settings");
    Press(Qt::Key_Right);
    Tab_To("End of Flight");
    // Of entries that begin alike, the one that all letters lead to; a blank among them is one.
    Type("parking brake a");
    EXPECT_EQ(Settings().cboEOF.Selected(), 2);
    Type("x");
    Tab_To("Use FS On Ground Flag");
    EXPECT_FALSE(Find<QComboBox>(*view, "Take Off Altitude").isEnabled());
    Press(Qt::Key_Down);
    EXPECT_TRUE(Settings().optACARS[ucSettings::take_off_altitude].Chosen());
    EXPECT_FALSE(Settings().optACARS[ucSettings::on_ground_flag].Chosen());
    Tab_To("Take Off Altitude");
    Type("35");
    Tab_To("Retrieve VATSIM Flight Information");
    for (const bool wanted : {false, true}) {
        EXPECT_EQ(Caption(*view, "VATSIM PID:").isEnabled(), wanted);
        Press(Qt::Key_Space, " ");
    }
    Tab_To("Save");
    Press(Qt::Key_Return);
    EXPECT_EQ(program->settings.ACARS_EOF(), 2);
    EXPECT_EQ(program->settings.ACARS_TakeOff_Alt(), 35);

    Tab_To("End of Flight");
    Type("e");
    EXPECT_EQ(Find<QComboBox>(*view, "End of Flight").currentText(), "Engine Shutdown");
    Tab_To("Cancel");
    Press(Qt::Key_Space, " ");
    EXPECT_EQ(Find<QComboBox>(*view, "End of Flight").currentIndex(), 2);

    // A list that is filled anew below the keyboard chooses nothing.
    Settings().Choose_Tab(ucSettings::virtual_airline);
    Tab_To("Virtual Airline");
    Type("north w");
    EXPECT_EQ(Settings().cboVA.Text(), "NORTH WEST");
    Write("VA_EAST/server.cfg", "");
    Settings().Refresh_VA_Information();
    EXPECT_EQ(Find<QComboBox>(*view, "Virtual Airline").currentText(), "NORTH WEST");
    EXPECT_EQ(Find<QComboBox>(*view, "Virtual Airline").count(), 3);
}

TEST_F(Settings_View_Test, A_flight_locks_what_is_seen_and_a_single_airline_has_no_frame) {
    for (const bool unlocked : {false, true}) {
        Settings().ACARS_STATE(unlocked);
        EXPECT_EQ(Caption(*view, "Locked while a flight is tracked or stored").isVisible(),
                  !unlocked);
        for (const char* caption : {"Default Date:", "Record Take Off:", "Report Weather From:",
                                    "Virtual Airline:", "Pilot Name:"})
            EXPECT_EQ(Caption(*view, caption).isEnabled(), unlocked) << caption;
    }
    Settings().Choose_Tab(ucSettings::virtual_airline);
    const QLabel& pilot = Caption(*view, "Pilot Name:");
    const int place = pilot.mapTo(&*view, QPoint()).y();
    EXPECT_TRUE(Caption(*view, "Virtual Airline:").isVisible());
    std::filesystem::remove_all(directory / "VA_NORTH");
    Settings().Refresh_VA_Information();
    Settle();
    EXPECT_FALSE(Caption(*view, "Virtual Airline:").isVisible());
    EXPECT_LT(pilot.mapTo(&*view, QPoint()).y(), place);
}

}  // namespace
}  // namespace norvane::test
