#include "acarspanel/panel_world.h"

namespace norvane::test {
namespace {

constexpr std::string_view interrupted =
    "The connection to Flight Simulator has been interrupted.  Norvane has entered pause mode.  "
    "Please click 'Resume' to continue when you verify that Flight Simulator is running.";

class Panel_Storage : public Panel_World {
  protected:
    Panel_Storage() { Begin(); }
};

TEST_F(Panel_Storage, The_stored_flight_holds_every_figure_of_its_step_and_every_later_entry) {
    using enum Log_Field;
    const auto stored = [this](std::initializer_list<Log_Field> fields) {
        std::vector<std::string> texts;
        for (const Log_Field field : fields)
            texts.push_back(Stored(field));
        return Join(texts, "|");
    };
    Panel().hypOn.Click();
    Roll();
    EXPECT_FALSE(Is_Stored());
    Lift_Off();
    EXPECT_EQ(stored({TIME_OFF, FUEL_OFF, IAS_TAKEOFF, ENG_SETTINGS}),
              "1410Z|6029 lbs|140 kts|E1N1 91 /E1N2 0 /E2N1 92 /E2N2 0");
    Panel().txtComments.Enter("Smooth");
    Panel().txtDate.Enter("");
    Step();
    EXPECT_EQ(stored({COMMENTS, FLIGHT_DATE}), "Smooth|3/14/2026") << "no flight without a date";
    store.Delete_Section(flight_section);
    Step();
    EXPECT_FALSE(Is_Stored()) << "what did not change is not written every half second";
    Panel().chkIFR.Click();
    Touch_Down();
    EXPECT_EQ(stored({IFR_VFR, TIME_ON, WEIGHT_LANDING}), "IFR|1440Z|98000 lbs");
    // The finished flight: with its step, and what is typed at the gate soon after.
    Park();
    EXPECT_EQ(stored({TIME_IN, BLOCK_TIME_HHMM}), "1450Z|0:45");
    Panel().txtComments.Enter("Smooth, on time");
    Pass(seconds(6));
    EXPECT_EQ(Stored(COMMENTS), "Smooth, on time");
}

TEST_F(Panel_Storage, Custom_fields_and_rules_come_back_and_go_into_the_log) {
    Take_Off();
    for (const auto& [key, value] : {std::pair{"043", "B7"}, {"143", "ferry"}, {"243", "gone"}})
        store.Set(flight_section, key, value);
    Write("bin/optfields.cfg", "Gate^\r\nType^Charter|FERRY\r\nOther^A|B\r\n");
    for (const std::string rules : {"IFR", "VFR"}) {
        Store(Log_Field::IFR_VFR, rules);
        Begin();
        EXPECT_TRUE(Panel().Is_Resumable());
        EXPECT_EQ(program->engine.Form_ICAO_Depart(), "KAAA");
        EXPECT_EQ(Panel().chkVFR.Checked(), rules == "VFR");
        Log();
        EXPECT_EQ(Logged(Log_Field::IFR_VFR), rules);
    }
    EXPECT_EQ(program->log_entry.OPTIONAL_FIELDS(0), "B7");
    EXPECT_EQ(program->log_entry.OPTIONAL_FIELDS(1), "FERRY");
    EXPECT_EQ(program->log_entry.OPTIONAL_FIELDS(2), "");
}

TEST_F(Panel_Storage, Closing_stores_a_flight_in_the_air_alone) {
    Panel().hypOn.Click();
    Roll();
    Panel().Close(ucACARS::Closing::by_pilot);
    EXPECT_FALSE(Is_Stored() || Panel().tmr.Enabled());
    Begin();
    EXPECT_FALSE(Panel().Is_Resumable());
    Take_Off();
    Panel().txtComments.Enter("typed after the last step");
    Panel().Close(ucACARS::Closing::by_pilot);
    EXPECT_FALSE(Panel().tmrPos.Enabled());
    EXPECT_EQ(Stored(Log_Field::COMMENTS), "typed after the last step");
    EXPECT_THAT(Take_Boxes(), IsEmpty());
    Begin();
    EXPECT_TRUE(Panel().Is_Resumable());
    EXPECT_EQ(Panel().lblStored.Text(),
              "A flight is stored: KAAA, OFF 1410Z.  \"On\" goes on with it, \"Reset\" gives it "
              "up.");
    Panel().hypOn.Click();
    EXPECT_EQ(Panel().lblStored.Text(), "");
}

TEST_F(Panel_Storage, After_a_touch_and_go_the_last_landing_stands_on_the_panel) {
    store.Set("Options", "Record Arrival", "1");
    Begin();
    Land();
    EXPECT_EQ(Panel().txtDestination.Text(), "KBBB");
    Bounce(std::chrono::milliseconds(2500));
    EXPECT_EQ(Panel().lblTimeOn.Text(), "1440Z") << "may be a bounce yet";
    Step();
    EXPECT_EQ(Texts(Panel().lblTimeOn, Panel().lblFuelOn, Panel().lblLandingWeight, Panel().lblVS,
                    Panel().lblIASLanding, Panel().lblDestinationName, Panel().txtDestination),
              "||||||");
    EXPECT_TRUE(Panel().tmrPos.Enabled());
    EXPECT_EQ(Stored(Log_Field::TIME_ON), "");
    Begin();
    Panel().hypOn.Click();
    EXPECT_EQ(Panel().lblMaxTaxiOrigin.Text(), "16 kts");
    EXPECT_TRUE(Panel().tmrPos.Enabled());
    Touch_Down();
    // The pilot names it: it stays, wherever the flight touches down next.
    Panel().txtDestination.Enter("KBBB");
    Bounce(seconds(4));
    Show({0, 1, 10, 42, 9, 45, 98000, 700});
    EXPECT_EQ(Texts(Panel().txtDestination, Panel().lblTimeOn), "KBBB|1445Z");
    Park();
    Panel().hypLog.Click();
    EXPECT_EQ(Logged(Log_Field::TIME_ON), "1445Z");
    EXPECT_THAT(Take_Boxes(), IsEmpty());
}

TEST_F(Panel_Storage, The_pilot_is_told_of_an_unknown_place_and_of_a_wrong_one) {
    Write("bin/fs9.wld", "");
    Fly();
    EXPECT_THAT(Take_Boxes(), ElementsAre(HasSubstr("No airport is known")));
    Give_Up();
    Land();
    Begin();
    Stand();
    Panel().hypOn.Click();
    Pass(seconds(5));
    EXPECT_FALSE(Panel().Is_At_Gate());
    EXPECT_THAT(Take_Boxes(), testing::Contains(HasSubstr("60 nm from where")));
    Log();
    EXPECT_EQ(Logged(Log_Field::TIME_IN), "");
}

TEST_F(Panel_Storage, A_dropped_link_pauses_stores_and_says_so_once) {
    int told = 0;
    Panel().Interrupted.Connect([&] {
        ++told;
        EXPECT_TRUE(Panel().Is_Paused());
        EXPECT_EQ(store.Depth(), 0) << "what was stored is committed before anybody is told";
    });
    Events().FSClosed.Emit("not while idle");
    Take_Off();
    linked = false;
    Panel().txtComments.Enter("");
    Pass(minutes(2));
    EXPECT_EQ(told, 1);
    EXPECT_EQ(desktop.boxes.at(0).title, "Norvane Interrupted");
    EXPECT_EQ(desktop.boxes.at(0).icon, Icon::exclamation);
    EXPECT_THAT(Take_Boxes(), ElementsAre(interrupted));
    EXPECT_EQ(Panel().hypPause.Caption(), "Resume");
    EXPECT_TRUE(Is_Stored());
    // Resumed too early, it is interrupted again.
    Panel().hypPause.Click();
    Pass(minutes(2));
    EXPECT_EQ(told, 2);
    linked = true;
    Panel().hypPause.Click();
    Step();
    EXPECT_FALSE(Panel().Is_Paused());
}

TEST_F(Panel_Storage, A_store_that_fails_as_the_flight_pauses_is_made_up_later) {
    for (bool* fault : {&store.full, &store.fails_to_commit}) {
        SCOPED_TRACE(fault == &store.full ? "full" : "fails to commit");
        *fault = true;
        Take_Off();
        linked = false;
        Pass(seconds(2));
        // What a failed transaction wrote is gone.
        store.Delete_Section(flight_section);
        ASSERT_TRUE(Panel().Is_Paused());
        *fault = false;
        Pass(seconds(6));
        EXPECT_EQ(Stored(Log_Field::TIME_OFF), "1410Z");
        EXPECT_EQ(store.Get(flight_section, "47"), "1410") << "the engine's part";
        linked = true;
        Give_Up();
    }
}

TEST_F(Panel_Storage, A_network_plan_that_never_came_leaves_the_airports_to_the_engine) {
    Settings().Set_VATSIM_FP(1);
    Panel().txtOrigin.Enter("KXYZ");
    Fly();
    EXPECT_EQ(Texts(Panel().txtOrigin, Panel().txtDestination, Panel().lblDestinationName),
              "KXYZ|KBBB|Bravo Field");
    EXPECT_EQ(Stored(Log_Field::FLIGHT_DESTINATION), "KBBB")
        << "with the step that came to the gate";
    Give_Up();
    Fly();
    EXPECT_EQ(Panel().txtOrigin.Text(), "KAAA");
}

}  // namespace
}  // namespace norvane::test
