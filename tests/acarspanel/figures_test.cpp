#include "acarspanel/panel_world.h"

namespace norvane::test {
namespace {

class Panel_Figures : public Panel_World {
  protected:
    Panel_Figures() { Begin(); }
};

TEST_F(Panel_Figures, A_figure_in_another_unit_than_that_of_the_settings_changes_nothing) {
    Settings().Set_ACARS_Fuel(unit::gallons);
    for (const int code : {0, 1, 2, 3}) {
        const std::string value = "140" + std::to_string(code);
        Events().FlightOUT.Emit(value, code);
        Events().FuelOUT.Emit(value, code);
        Events().WeightOUT.Emit(value, code);
    }
    EXPECT_EQ(Texts(Panel().lblTimeOut, Panel().lblFuelOut, Panel().lblTaxiWeight),
              "1401Z|1402 gal|1400 lbs");
    Settings().Set_ACARS_Time(time_kind::local);
    Events().FlightOUT.Emit("1405", time_kind::local);
    Events().FlightOFF.Emit("", time_kind::local);
    EXPECT_EQ(Texts(Panel().lblTimeOut, Panel().lblTimeOff), "14:05|");
}

TEST_F(Panel_Figures, What_the_pilot_typed_stays_but_labels_and_weather_are_replaced) {
    ucACARS& panel = Panel();
    panel.txtAircraftID.Enter("N999");
    panel.txtPax.Enter("[     ]");
    panel.txtWXOrigin.Enter("CAVOK");
    EXPECT_FALSE(panel.lblATCFlight.Visible());
    for (const char* value : {"first", "second"}) {
        Events().ATCTail.Emit(value);
        Events().PAX.Emit(value);
        Events().WXDep.Emit(value);
        Events().EngSettings.Emit(value);
        Events().ATCFlight.Emit(value);
    }
    EXPECT_TRUE(panel.lblATCFlight.Visible());
    EXPECT_EQ(Texts(panel.txtAircraftID, panel.txtPax, panel.txtWXOrigin, panel.lblNSettings,
                    panel.lblATCFlight),
              "N999|first|second|second|second");
    Events().VS.Emit("-2|10\r\n");
    EXPECT_EQ(panel.lblVS.Text(), "-2/10  ft/min");
}

TEST_F(Panel_Figures, Airports_follow_the_engine_until_the_pilot_names_another) {
    ucACARS& panel = Panel();
    Events().ICAODep.Emit("KAAA", "Alpha Field");
    EXPECT_EQ(Texts(panel.txtOrigin, panel.lblOriginName), "KAAA|Alpha Field");
    EXPECT_EQ(program->engine.Form_ICAO_Depart(), "KAAA");
    Events().ICAODep.Emit("KAAA", "Alpha Renamed");
    EXPECT_EQ(panel.lblOriginName.Text(), "Alpha Renamed");
    panel.txtDestination.Enter("kbbb");
    EXPECT_EQ(program->engine.Form_ICAO_Arrive(), "kbbb");
    Events().ICAOArr.Emit("KAAA", "Alpha Field");
    EXPECT_EQ(Texts(panel.txtDestination, panel.lblDestinationName), "kbbb|Bravo Field");
    // Left, a code stands in capitals; one that nobody knows is marked, as long as it stands.
    const struct {
        const char* typed;
        const char* shown;
        bool is_marked;
    } codes[] = {{" kbbb", "KBBB|Bravo Field", false}, {"kxxx", "KXXX|", true}, {"", "|", false}};
    for (const auto& code : codes) {
        panel.txtDestination.Enter(code.typed);
        EXPECT_EQ(panel.txtDestination.Remark(), "");
        panel.txtDestination.Leave();
        EXPECT_EQ(Texts(panel.txtDestination, panel.lblDestinationName), code.shown);
        EXPECT_EQ(!panel.txtDestination.Remark().empty(), code.is_marked);
        EXPECT_EQ(program->engine.Form_ICAO_Arrive(), panel.txtDestination.Text());
    }
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Panel_Figures, The_entry_gets_the_pilot_the_date_the_rules_and_no_placeholders) {
    ucACARS& panel = Panel();
    Settings().Set_PilotID("P1");
    Settings().Set_PilotName("Ann");
    Settings().Set_PilotEmail("a@b.c");
    panel.txtFlightNumber.Enter("[     ]");
    Log();
    using enum Log_Field;
    EXPECT_EQ(Logged(PILOT_ID) + Logged(PILOT_NAME) + Logged(PILOT_EMAIL), "P1Anna@b.c");
    EXPECT_EQ(Logged(PIREP_FILE_NAME),
              (directory / "reports" / "2026-03-14-1509-26_PIREP.txt").string());
    EXPECT_EQ(Logged(FLIGHT_NUMBER) + Logged(FLIGHT_DATE), "3/14/2026");
    EXPECT_EQ(Logged(IFR_VFR), "VFR");
    EXPECT_FALSE(panel.chkVFR.Checked());
    // From the first click on exactly one is set.
    for (Check_Box* clicked : {&panel.chkIFR, &panel.chkVFR, &panel.chkVFR}) {
        const bool instrument = clicked == &panel.chkIFR || panel.chkVFR.Checked();
        clicked->Click();
        EXPECT_EQ(panel.chkIFR.Checked(), instrument);
        EXPECT_EQ(panel.chkVFR.Checked(), !instrument);
        Log();
        EXPECT_EQ(Logged(Log_Field::IFR_VFR), instrument ? "IFR" : "VFR");
    }
}

TEST_F(Panel_Figures, The_flight_number_reaches_the_engine_when_the_field_is_left) {
    std::vector<std::string> messages;
    Events().ACARSMessage.Connect(
        [&](Message_Type, const std::string& text) { messages.push_back(text); });
    Panel().hypOn.Click();
    for (const char* number : {"XY4711", "[     ]"}) {
        Panel().txtFlightNumber.Enter(number);
        Panel().txtFlightNumber.Leave();
    }
    Roll();
    ASSERT_FALSE(messages.empty());
    EXPECT_THAT(messages.back(), HasSubstr("XY4711"));
}

}  // namespace
}  // namespace norvane::test
