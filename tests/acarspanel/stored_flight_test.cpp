#include <gmock/gmock.h>

#include <functional>

#include "acarspanel/panel_world.h"

namespace norvane {
namespace {

constexpr std::string_view interrupted =
    "The connection to Flight Simulator has been interrupted.  Norvane has entered pause mode.  "
    "Please click 'Resume' to continue when you verify that Flight Simulator is running.";

class Panel_Storage : public test::Panel_World {
  protected:
    Panel_Storage() { Begin(); }
    void Take_Off() {
        Panel().hypOn.Click();
        Roll();
        Lift_Off();
    }
};

TEST_F(Panel_Storage, The_stored_flight_holds_every_figure_of_its_step_and_every_later_entry) {
    Panel().hypOn.Click();
    Roll();
    EXPECT_FALSE(Is_Stored());
    Lift_Off();
    EXPECT_EQ(Stored(Log_Field::TIME_OFF), "1410Z");
    EXPECT_EQ(Stored(Log_Field::FUEL_OFF), Panel().lblFuelOff.Text());
    EXPECT_EQ(Stored(Log_Field::IAS_TAKEOFF), "140 kts");
    EXPECT_EQ(Stored(Log_Field::ENG_SETTINGS), Panel().lblNSettings.Text());
    Panel().txtComments.Enter("Smooth");
    Panel().txtDate.Enter("");
    Step();
    EXPECT_EQ(Stored(Log_Field::COMMENTS), "Smooth");
    EXPECT_EQ(Stored(Log_Field::FLIGHT_DATE), "3/14/2026") << "no flight is stored without a date";
    store.Delete_Section(flight_section);
    Step();
    EXPECT_FALSE(Is_Stored()) << "what did not change is not written every half second";
    Panel().chkIFR.Click();
    Touch_Down();
    EXPECT_EQ(Stored(Log_Field::IFR_VFR), "IFR");
    EXPECT_EQ(Stored(Log_Field::TIME_ON), "1440Z");
    EXPECT_EQ(Stored(Log_Field::WEIGHT_LANDING), "98000 lbs");
    // The finished flight: with its step, and what is typed at the gate soon after.
    Park();
    EXPECT_EQ(Stored(Log_Field::TIME_IN), "1450Z");
    EXPECT_EQ(Stored(Log_Field::BLOCK_TIME_HHMM), "0:45");
    Panel().txtComments.Enter("Smooth, on time");
    desktop.Run_For(std::chrono::seconds(6));
    EXPECT_EQ(Stored(Log_Field::COMMENTS), "Smooth, on time");
}

TEST_F(Panel_Storage, Every_stored_field_comes_back_and_goes_into_the_log) {
    for (const Log_Field_Row& row : All_Log_Fields()) {
        if (row.store_key != 0)
            store.Set(flight_section, std::to_string(row.store_key), row.name);
    }
    store.Set(flight_section, std::to_string(Row_Of(Log_Field::IFR_VFR).store_key), "IFR");
    store.Set(flight_section, std::to_string(Row_Of(Log_Field::TIME_IN).store_key), "");
    store.Set(flight_section, "043", "B7");
    store.Set(flight_section, "143", "ferry");
    store.Set(flight_section, "243", "gone");
    Write("bin/optfields.cfg", "Gate^\r\nType^Charter|FERRY\r\nOther^A|B\r\n");
    Kill();
    Begin();
    EXPECT_TRUE(Panel().Is_Resumable());
    EXPECT_FALSE(Panel().Is_Active());
    EXPECT_EQ(program->engine.Form_ICAO_Arrive(), "FLIGHT_DESTINATION");
    desktop.answers = {Answer::yes};
    Panel().hypLog.Click();
    for (const Log_Field_Row& row : All_Log_Fields()) {
        if (row.store_key != 0 && row.id != Log_Field::IFR_VFR && row.id != Log_Field::TIME_IN) {
            EXPECT_EQ(Logged(row.id), row.name);
        }
    }
    EXPECT_EQ(Logged(Log_Field::IFR_VFR), "IFR");
    EXPECT_EQ(program->entry.OPTIONAL_FIELDS(0), "B7");
    EXPECT_EQ(program->entry.OPTIONAL_FIELDS(1), "FERRY");
    EXPECT_EQ(program->entry.OPTIONAL_FIELDS(2), "");
    store.Set(flight_section, std::to_string(Row_Of(Log_Field::IFR_VFR).store_key), "VFR");
    Kill();
    Begin();
    EXPECT_TRUE(Panel().chkVFR.Checked());
}

TEST_F(Panel_Storage, Closing_stores_a_flight_in_the_air_alone) {
    Panel().hypOn.Click();
    Roll();
    Panel().Close(ucACARS::Closing::by_pilot);
    EXPECT_FALSE(Is_Stored());
    EXPECT_FALSE(Panel().tmr.Enabled());
    Kill();
    Stand();
    Begin();
    EXPECT_FALSE(Panel().Is_Resumable());
    Take_Off();
    Panel().txtComments.Enter("typed after the last step");
    Panel().Close(ucACARS::Closing::by_pilot);
    EXPECT_FALSE(Panel().tmrPos.Enabled());
    EXPECT_EQ(Stored(Log_Field::COMMENTS), "typed after the last step");
    EXPECT_EQ(Take_Boxes().size(), 0U);
    Kill();
    Begin();
    EXPECT_TRUE(Panel().Is_Resumable());
}

TEST_F(Panel_Storage, After_a_touch_and_go_the_last_landing_stands_on_the_panel) {
    store.Set("Options", "Record Arrival", "1");
    Kill();
    Begin();
    Write("bin/fs9.wld",
          "40.0|-73.0|10|KAAA|Alpha\r\n41.0|-73.0|10|KBBB|Bravo\r\n"
          "42.0|-73.0|10|KCCC|Charlie\r\n");
    Take_Off();
    Touch_Down();
    EXPECT_EQ(Panel().txtDestination.Text(), "KBBB");
    EXPECT_EQ(Panel().lblMaxTaxiOrigin.Text(), "16 kts");
    area.Set(Variable::on_ground, 0);
    area.Set(Variable::altitude_ft, 400);
    desktop.Run_For(std::chrono::milliseconds(2500));
    EXPECT_EQ(Panel().lblTimeOn.Text(), "1440Z") << "may be a bounce yet";
    Step();
    const std::vector<Label*> open{&Panel().lblTimeOn,        &Panel().lblFuelOn,
                                   &Panel().lblLandingWeight, &Panel().lblVS,
                                   &Panel().lblIASLanding,    &Panel().lblDestinationName};
    for (const Label* label : open)
        EXPECT_EQ(label->Text(), "");
    EXPECT_EQ(Panel().txtDestination.Text(), "");
    EXPECT_TRUE(Panel().tmrPos.Enabled());
    EXPECT_EQ(Stored(Log_Field::TIME_ON), "");
    Kill();
    Begin();
    Panel().hypOn.Click();
    EXPECT_EQ(Panel().lblMaxTaxiOrigin.Text(), "16 kts");
    EXPECT_TRUE(Panel().tmrPos.Enabled());
    Touch_Down();
    EXPECT_EQ(Panel().txtDestination.Text(), "KBBB");
    // The pilot names it: it stays, wherever the flight touches down next.
    Panel().txtDestination.Enter("KBBB");
    area.Set(Variable::on_ground, 0);
    area.Set(Variable::altitude_ft, 400);
    desktop.Run_For(std::chrono::seconds(4));
    EXPECT_EQ(Panel().txtDestination.Text(), "KBBB");
    area.Set(Variable::latitude_deg, 42);
    Set_Minute(45);
    area.Set(Variable::on_ground, 1);
    Step();
    EXPECT_EQ(Panel().txtDestination.Text(), "KBBB");
    EXPECT_EQ(Stored(Log_Field::TIME_ON), "1445Z");
    Park();
    Panel().hypLog.Click();
    EXPECT_EQ(Logged(Log_Field::TIME_ON), "1445Z");
    EXPECT_EQ(Logged(Log_Field::FLIGHT_DISTANCE), "120 nm");
    EXPECT_THAT(Take_Boxes(), testing::IsEmpty());
}

TEST_F(Panel_Storage, The_pilot_is_told_of_an_unknown_place_and_of_a_wrong_one) {
    Write("bin/fs9.wld", "");
    Fly();
    EXPECT_THAT(Take_Boxes(), testing::ElementsAre(testing::HasSubstr("No airport is known")));
    Give_Up();
    Stand();
    Take_Off();
    Touch_Down();
    Kill();
    Stand();
    Begin();
    Panel().hypOn.Click();
    desktop.Run_For(std::chrono::seconds(5));
    EXPECT_FALSE(Panel().Is_At_Gate());
    EXPECT_THAT(Take_Boxes(), testing::Contains(testing::HasSubstr("60 nm from where")));
    desktop.answers = {Answer::yes};
    Panel().hypLog.Click();
    EXPECT_EQ(Logged(Log_Field::TIME_IN), "");
}

TEST_F(Panel_Storage, A_dropped_link_pauses_stores_and_says_so_once) {
    int told = 0;
    Panel().Interrupted.connect([&] {
        ++told;
        EXPECT_TRUE(Panel().Is_Paused());
        EXPECT_EQ(store.Depth(), 0) << "what was stored is committed before anybody is told";
    });
    Events().FSClosed.emit("not while idle");
    Take_Off();
    linked = false;
    Panel().txtComments.Enter("");
    desktop.Run_For(std::chrono::minutes(2));
    EXPECT_EQ(told, 1);
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(desktop.boxes[0].text, interrupted);
    EXPECT_EQ(desktop.boxes[0].title, "Norvane Interrupted");
    EXPECT_EQ(desktop.boxes[0].icon, Icon::exclamation);
    EXPECT_EQ(Panel().hypPause.Caption(), "Resume");
    EXPECT_TRUE(Is_Stored());
    // Resumed too early, it is interrupted again.
    Panel().hypPause.Click();
    desktop.Run_For(std::chrono::minutes(2));
    EXPECT_EQ(told, 2);
    linked = true;
    Panel().hypPause.Click();
    Step();
    EXPECT_FALSE(Panel().Is_Paused());
}

TEST_F(Panel_Storage, A_store_that_fails_as_the_flight_pauses_is_made_up_later) {
    for (const bool is_interrupted : {false, true}) {
        for (bool* fault : {&store.full, &store.fails_to_commit}) {
            SCOPED_TRACE(is_interrupted);
            SCOPED_TRACE(fault == &store.full ? "full" : "fails to commit");
            Stand();
            Panel().hypOn.Click();
            Roll();
            *fault = true;
            Lift_Off();
            if (is_interrupted) {
                linked = false;
                desktop.Run_For(std::chrono::seconds(2));
            } else {
                Panel().hypPause.Click();
            }
            // What a failed transaction wrote is gone.
            store.Delete_Section(flight_section);
            ASSERT_TRUE(Panel().Is_Paused());
            *fault = false;
            desktop.Run_For(std::chrono::seconds(6));
            EXPECT_EQ(Stored(Log_Field::TIME_OFF), "1410Z");
            EXPECT_EQ(store.Get(flight_section, "47"), "1410") << "the engine's part";
            linked = true;
            Give_Up();
        }
    }
}

TEST_F(Panel_Storage, A_network_plan_that_never_came_leaves_the_airports_to_the_engine) {
    Settings().Set_VATSIM_FP(1);
    Panel().txtOrigin.Enter("KXYZ");
    Fly();
    EXPECT_EQ(Panel().txtOrigin.Text(), "KXYZ");
    EXPECT_EQ(Panel().txtDestination.Text(), "KBBB");
    EXPECT_EQ(Panel().lblDestinationName.Text(), "Bravo Field");
    EXPECT_EQ(Stored(Log_Field::FLIGHT_DESTINATION), "KBBB")
        << "with the step that came to the gate";
    Give_Up();
    Stand();
    Fly();
    EXPECT_EQ(Panel().txtOrigin.Text(), "KAAA");
}

}  // namespace
}  // namespace norvane
