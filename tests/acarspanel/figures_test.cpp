#include <functional>

#include "acarspanel/panel_world.h"

namespace norvane {
namespace {

class Panel_Figures : public test::Panel_World {
  protected:
    Panel_Figures() { Begin(); }
    /// Hands what the panel shows to the log.
    void Log() {
        desktop.answers = {Answer::yes};
        Panel().hypLog.Click();
    }
};

TEST_F(Panel_Figures, A_flown_flight_fills_every_field_of_its_row) {
    Panel().txtComments.Enter("two\nlines");
    Panel().txtFlightPlan.Enter("KAAA|KBBB");
    Panel().txtPax.Enter("12");
    Panel().txtCargo.Enter("400");
    Panel().chkIFR.Click();
    Fly();
    Log();
    EXPECT_EQ(
        log.back(),
        "3/14/2026|Test Jet|N123|KAAA|Alpha Field|1405Z|1410Z|6699 lbs|KBBB|Bravo Field|1440Z|"
        "1450Z|4020 lbs|0.8|0:45|2679 lbs|0.5|0:30|1340 lbs|two lines|77|12|400|5000|"
        "KAAA/KBBB|60 nm|90000 lbs|100000 lbs|99000 lbs|98000 lbs|97000 lbs|"
        "E1N1 91 /E1N2 0 /E2N1 92 /E2N2 0|140 kts|-300 ft/min|120 kts|"
        "KAAA 141400Z 00000KT 0SM SKC 0/0 A0000|KBBB 141450Z 00000KT 0SM SKC 0/0 A0000|IFR" +
            std::string(15, '|'));
    EXPECT_EQ(Logged(Log_Field::FUEL_OFF), "6029 lbs");
    EXPECT_EQ(Logged(Log_Field::FUEL_ON), "4689 lbs");
    EXPECT_EQ(Panel().lblMaxTaxiOrigin.Text(), "16 kts");
    EXPECT_EQ(Panel().lblMaxTaxiDestination.Text(), "10 kts");
    EXPECT_EQ(Panel().lblATCFlight.Text(), "Test Air - 77");
    Panel().hypReset.Click();
    Settings().Set_ACARS_Time(time_kind::local);
    Settings().Set_ACARS_Fuel(unit::kilograms);
    Settings().Set_ACARS_Weight(unit::kilograms);
    Stand();
    Fly();
    Log();
    EXPECT_EQ(log.back(),
              "3/14/2026|Test Jet|N123|KAAA|Alpha Field|09:05|09:10|3039 kg|KBBB|Bravo Field|09:40|"
              "09:50|1823 kg|0.8|0:45|1215 kg|0.5|0:30|608 kg||77|||5000||60 nm|40823 kg|45359 kg|"
              "44906 kg|44452 kg|43998 kg|E1N1 91 /E1N2 0 /E2N1 92 /E2N2 0|140 kts|-300 ft/min|"
              "120 kts|KAAA 141400Z 00000KT 0SM SKC 0/0 A0000|KBBB 141450Z 00000KT 0SM SKC 0/0 "
              "A0000|VFR" +
                  std::string(15, '|'));
}

TEST_F(Panel_Figures, A_figure_in_another_unit_than_that_of_the_settings_changes_nothing) {
    Settings().Set_ACARS_Fuel(unit::gallons);
    for (const int code : {0, 1, 2, 3}) {
        const std::string value = "140" + std::to_string(code);
        Events().FlightOUT.emit(value, code);
        Events().FuelOUT.emit(value, code);
        Events().WeightOUT.emit(value, code);
    }
    EXPECT_EQ(Panel().lblTimeOut.Text(), "1401Z");
    EXPECT_EQ(Panel().lblFuelOut.Text(), "1402 gal");
    EXPECT_EQ(Panel().lblTaxiWeight.Text(), "1400 lbs");
}

TEST_F(Panel_Figures, What_the_pilot_typed_stays_but_labels_and_weather_are_replaced) {
    Panel().txtAircraftID.Enter("N999");
    Panel().txtPax.Enter("[     ]");
    Panel().txtWXOrigin.Enter("CAVOK");
    for (const char* value : {"first", "second"}) {
        Events().ATCTail.emit(value);
        Events().PAX.emit(value);
        Events().WXDep.emit(value);
        Events().EngSettings.emit(value);
    }
    EXPECT_EQ(Panel().txtAircraftID.Text(), "N999");
    EXPECT_EQ(Panel().txtPax.Text(), "first");
    EXPECT_EQ(Panel().txtWXOrigin.Text(), "second");
    EXPECT_EQ(Panel().lblNSettings.Text(), "second");
    EXPECT_FALSE(Panel().lblATCFlight.Visible());
    Events().ATCFlight.emit("Test Air - 77");
    EXPECT_TRUE(Panel().lblATCFlight.Visible());
    EXPECT_EQ(Panel().lblATCFlight.Text(), "Test Air - 77");
    Events().VS.emit("-2|10\r\n");
    EXPECT_EQ(Panel().lblVS.Text(), "-2/10  ft/min");
}

TEST_F(Panel_Figures, Airports_follow_the_engine_until_the_pilot_names_another) {
    Events().ICAODep.emit("KAAA", "Alpha Field");
    EXPECT_EQ(Panel().txtOrigin.Text(), "KAAA");
    EXPECT_EQ(Panel().lblOriginName.Text(), "Alpha Field");
    EXPECT_EQ(program->engine.Form_ICAO_Depart(), "KAAA");
    Events().ICAODep.emit("KAAA", "Alpha Renamed");
    EXPECT_EQ(Panel().lblOriginName.Text(), "Alpha Renamed");
    Panel().txtDestination.Enter("kbbb");
    EXPECT_EQ(Panel().lblDestinationName.Text(), "Bravo Field");
    EXPECT_EQ(program->engine.Form_ICAO_Arrive(), "kbbb");
    Events().ICAOArr.emit("KAAA", "Alpha Field");
    EXPECT_EQ(Panel().txtDestination.Text(), "kbbb");
    EXPECT_EQ(Panel().lblDestinationName.Text(), "Bravo Field");
    // Left, a code stands in capitals; one that nobody knows is marked, as long as it stands.
    const auto leave = [&](const char* typed) {
        Panel().txtDestination.Enter(typed);
        EXPECT_EQ(Panel().txtDestination.Remark(), "");
        Panel().txtDestination.Leave();
        EXPECT_EQ(program->engine.Form_ICAO_Arrive(), Panel().txtDestination.Text());
        return Panel().txtDestination.Text() +
               (Panel().txtDestination.Remark().empty() ? "" : " ?");
    };
    EXPECT_EQ(leave("kbbb"), "KBBB");
    EXPECT_EQ(leave("kxxx"), "KXXX ?");
    EXPECT_EQ(leave(""), "");
    EXPECT_TRUE(desktop.boxes.empty());
    EXPECT_EQ(Panel().lblDestinationName.Text(), "");
    EXPECT_EQ(program->engine.Form_ICAO_Arrive(), "");
}

TEST_F(Panel_Figures, The_entry_gets_the_pilot_the_date_the_rules_and_no_placeholders) {
    Settings().Set_PilotID("P1");
    Settings().Set_PilotName("Ann");
    Settings().Set_PilotEmail("a@b.c");
    Panel().txtFlightNumber.Enter("[     ]");
    Log();
    EXPECT_EQ(Logged(Log_Field::PILOT_ID), "P1");
    EXPECT_EQ(Logged(Log_Field::PILOT_NAME), "Ann");
    EXPECT_EQ(Logged(Log_Field::PILOT_EMAIL), "a@b.c");
    EXPECT_EQ(Logged(Log_Field::PIREP_FILE_NAME),
              (directory / "reports" / "2026-03-14-1509-26_PIREP.txt").string());
    EXPECT_EQ(Logged(Log_Field::FLIGHT_NUMBER), "");
    EXPECT_EQ(Logged(Log_Field::FLIGHT_DATE), "3/14/2026");
    EXPECT_EQ(Logged(Log_Field::IFR_VFR), "VFR");
    EXPECT_FALSE(Panel().chkVFR.Checked());
    Panel().chkIFR.Click();
    Log();
    EXPECT_EQ(Logged(Log_Field::IFR_VFR), "IFR");
    Panel().chkVFR.Click();
    EXPECT_FALSE(Panel().chkIFR.Checked());
    Panel().chkVFR.Click();
    EXPECT_TRUE(Panel().chkIFR.Checked());
    EXPECT_FALSE(Panel().chkVFR.Checked());
}

TEST_F(Panel_Figures, The_flight_number_reaches_the_engine_when_the_field_is_left) {
    std::vector<std::string> messages;
    Events().ACARSMessage.connect(
        [&](Message_Type, const std::string& text) { messages.push_back(text); });
    Panel().hypOn.Click();
    Panel().txtFlightNumber.Enter("XY4711");
    Panel().txtFlightNumber.Leave();
    Panel().txtFlightNumber.Enter("[     ]");
    Panel().txtFlightNumber.Leave();
    Roll();
    ASSERT_FALSE(messages.empty());
    EXPECT_NE(messages.back().find("XY4711"), std::string::npos) << messages.back();
}

}  // namespace
}  // namespace norvane
