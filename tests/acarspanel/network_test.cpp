// The weather of both ends, and plans from files and from the online network.

#include <gmock/gmock.h>

#include "acarspanel/network_world.h"

namespace norvane {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Panel_Network : public test::Network_World {
  protected:
    Panel_Network() {
        Begin();
        Settings().Set_WX_URL("NOAA");
        Set_Page("/wx/KAAA", "KAAA 141200Z CAVOK");
        Set_Page("/wx/KBBB", "KBBB 141200Z RA");
    }
    void Fly_To_The_Runway() {
        Panel().hypOn.Click();
        Roll();
        Lift_Off();
        Touch_Down();
    }
    /// A line of the network's data as it was in the days of text.
    static std::string Network_Line(const std::string& id, const std::string& departure) {
        return "BAW1:" + id + ":Name:PILOT::::::B744:480:" + departure + ":37000:KBBB:::::::0:I" +
               std::string(9, ':') + "DCT J1 DCT";
    }
    std::filesystem::path Plan(const std::string& level) {
        return Write("plans/one.pln",
                     "[FLIGHTPLAN]\r\nTYPE=IFR\r\nCRUISING_ALTITUDE=" + level +
                         "\r\nDEPARTURE_NAME=Alpha_Plan\r\nDESTINATION_NAME=Bravo_Plan\r\n"
                         "WAYPOINT.0=KAAA, A, x, x, x,\r\nWAYPOINT.1=BOS, V, x, x, x, J1\r\n"
                         "WAYPOINT.2=KBBB, A, x, x, x,\r\n");
    }
};

TEST_F(Panel_Network, A_flight_logs_itself_with_the_weather_of_both_ends) {
    Settings().Set_OPT_AutoLog(true);
    Panel().txtFlightLevel.Enter("FL350");
    Panel().txtOrigin.Enter("KAAA");
    Fly();
    EXPECT_FALSE(Panel().Is_At_Gate());
    EXPECT_TRUE(Panel().hypFP.Enabled());
    EXPECT_EQ(desktop.Waiting_For(), "Waiting for the weather at the destination ...");
    Pass(2);
    EXPECT_TRUE(Panel().Is_Logged());
    EXPECT_EQ(desktop.Waiting_For(), "");
    EXPECT_FALSE(Panel().hypFP.Enabled());
    EXPECT_EQ(Logged(Log_Field::WX_ORIGIN), "KAAA 141200Z CAVOK");
    EXPECT_EQ(Logged(Log_Field::WX_DESTINATION), "KBBB 141200Z RA");
    EXPECT_THAT(Take_Asked(), ElementsAre("/wx/KAAA", "/wx/KBBB"));

    Settings().Set_WX_URL("NONE");
    Stand();
    Fly();
    EXPECT_TRUE(Panel().Is_Logged());
    EXPECT_THAT(Take_Asked(), IsEmpty());
}

TEST_F(Panel_Network, A_gate_reached_within_the_request_that_it_waits_for_is_left_again) {
    Settings().Set_OPT_AutoLog(true);
    Settings().Set_ACARS_RecordArrival(1);
    Panel().txtFlightLevel.Enter("FL350");
    Fly_To_The_Runway();
    While_Next_Request_Runs([&] {
        Park();
        EXPECT_FALSE(Panel().Is_At_Gate());
    });
    Pass(2);
    EXPECT_TRUE(Has_Happened());
    EXPECT_EQ(log.size(), 1U);
    EXPECT_EQ(Logged(Log_Field::WX_DESTINATION), "KBBB 141200Z RA");
    EXPECT_LT(clock.Monotonic(), std::chrono::minutes(1));
}

TEST_F(Panel_Network, The_gate_does_not_wait_for_the_weather_for_ever) {
    Settings().Set_OPT_AutoLog(true);
    Panel().txtFlightLevel.Enter("FL350");
    Panel().txtWXOrigin.Enter("mine");
    Fly();
    While_Next_Request_Runs([&] {
        clock.Advance_To(clock.Monotonic() + std::chrono::seconds(9'990));
        desktop.Process_Events();
        EXPECT_FALSE(Panel().Is_At_Gate());
        clock.Advance_To(clock.Monotonic() + std::chrono::seconds(10));
        desktop.Process_Events();
        EXPECT_TRUE(Panel().Is_Logged());
    });
    Pass(2);
    EXPECT_TRUE(Has_Happened());
    EXPECT_EQ(log.size(), 1U);
    EXPECT_EQ(Take_Errors().size(), 1U) << "the request was given up";
}

TEST_F(Panel_Network, An_answer_for_a_flight_that_is_over_changes_nothing) {
    Panel().hypOn.Click();
    While_Next_Request_Runs([&] {
        Panel().hypReset.Click();
        EXPECT_FALSE(Panel().weather.tmrWX[0].Enabled());
        Set_Page("/wx/KAAA", "KAAA 141300Z FG");
        Panel().hypOn.Click();
    });
    Pass(1);
    EXPECT_TRUE(Has_Happened());
    EXPECT_EQ(Panel().txtWXOrigin.Text(), "");
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsWinInet.Get_METAR()")));
    Pass(2);
    EXPECT_EQ(Panel().txtWXOrigin.Text(), "KAAA 141300Z FG");

    Roll();
    Lift_Off();
    Touch_Down();
    Park();
    Panel().hypLog.Click();
    EXPECT_TRUE(Panel().Is_Logged());
    Pass(5);
    EXPECT_EQ(Panel().txtWXDestination.Text(), "") << "the log has none either";
}

TEST_F(Panel_Network, What_the_pilot_typed_is_neither_asked_for_nor_replaced) {
    Panel().txtWXOrigin.Enter("mine");
    Panel().hypOn.Click();
    Pass(2);
    EXPECT_THAT(Take_Asked(), IsEmpty());
    Settings().Set_ACARS_RecordArrival(1);
    Roll();
    Lift_Off();
    Touch_Down();
    While_Next_Request_Runs([&] { Panel().txtWXDestination.Enter("typed"); });
    Pass(2);
    EXPECT_TRUE(Has_Happened());
    EXPECT_EQ(Panel().txtWXOrigin.Text(), "mine");
    EXPECT_EQ(Panel().txtWXDestination.Text(), "typed");
}

TEST_F(Panel_Network, A_plan_fills_the_panel_and_has_the_arrivals_weather_fetched_at_landing) {
    EXPECT_FALSE(Panel().hypFP.Enabled());
    Panel().hypOn.Click();
    Panel().txtDestination.Enter("KXXX");
    Panel().txtFlightPlan.Enter("typed");
    desktop.chosen_files = {Plan("35000"), {}};
    Panel().hypFP.Click();
    ASSERT_EQ(desktop.file_choices.size(), 1U);
    EXPECT_EQ(desktop.file_choices[0].title, "Get FS Flight Plan ");
    EXPECT_EQ(desktop.file_choices[0].filter, "MSFS Flight Plans (*.pln)|*.pln");
    EXPECT_EQ(store.Get("Flight Plan", "Directory"), (directory / "plans/").string());
    EXPECT_EQ(Panel().txtFlightPlan.Text(), "KAAA.BOS.J1.KBBB");
    EXPECT_EQ(Panel().txtFlightLevel.Text(), "FL350");
    EXPECT_EQ(Panel().txtDestination.Text(), "KBBB");
    EXPECT_EQ(Panel().lblDestinationName.Text(), "Bravo Plan");
    EXPECT_EQ(program->engine.Form_ICAO_Arrive(), "KBBB");
    EXPECT_TRUE(Panel().chkIFR.Checked() && !Panel().chkVFR.Checked());
    Panel().hypFP.Click();
    EXPECT_EQ(desktop.file_choices[1].directory, directory / "plans/");
    EXPECT_EQ(store.Get("Flight Plan", "Directory", "absent"), "");
    EXPECT_EQ(Panel().txtDestination.Text(), "KBBB") << "no file, no change";
    Pass(2);
    EXPECT_EQ(Panel().txtWXDestination.Text(), "KBBB 141200Z RA");

    Roll();
    Lift_Off();
    Set_Page("/wx/KBBB", "KBBB 141500Z SN");
    Touch_Down();
    Pass(2);
    EXPECT_EQ(Panel().txtWXDestination.Text(), "KBBB 141500Z SN");
}

TEST_F(Panel_Network, A_resumed_flight_has_fetched_weather_renewed_at_landing_and_typed_kept) {
    for (const bool is_typed : {false, true}) {
        Stand();
        Panel().hypOn.Click();
        desktop.chosen_files = {Plan("35000")};
        Panel().hypFP.Click();
        Pass(2);
        if (is_typed)
            Panel().txtWXDestination.Enter("typed");
        Roll();
        Lift_Off();
        Panel().Close(ucACARS::Closing::by_pilot);
        Begin();
        Settings().Set_WX_URL("NOAA");
        EXPECT_EQ(Panel().txtWXDestination.Text(), is_typed ? "typed" : "KBBB 141200Z RA");
        Panel().hypOn.Click();
        Set_Page("/wx/KBBB", "KBBB 141500Z SN");
        Touch_Down();
        Pass(2);
        EXPECT_EQ(Panel().txtWXDestination.Text(), is_typed ? "typed" : "KBBB 141500Z SN");
        Give_Up();
        Set_Page("/wx/KBBB", "KBBB 141200Z RA");
    }
}

TEST_F(Panel_Network, The_networks_plan_is_looked_for_until_it_is_there_and_then_no_more) {
    Settings().Set_VATSIM_FP(1);
    Settings().Set_WX_URL("FS");
    Panel().hypOn.Click();
    Pass(11);
    EXPECT_FALSE(Panel().network_plan.tmrVATSIM.Enabled()) << "nobody to look for";
    EXPECT_THAT(Take_Boxes(), ElementsAre(HasSubstr("no VATSIM PID")));
    Panel().hypReset.Click();
    Settings().Set_VATSIM_PID("812");
    Set_Page("/data", "other line\r\n" + Network_Line("9", "KXXX") + "\r\n");
    Panel().hypOn.Click();
    Pass(21);
    EXPECT_THAT(Take_Asked(), ElementsAre("/data", "/data"));
    Panel().hypPause.Click();
    Pass(21);
    EXPECT_THAT(Take_Asked(), IsEmpty());
    Panel().hypPause.Click();
    Roll();
    Lift_Off();
    Set_Page("/data", Network_Line("812", "KAAA") + "\r\n");
    Pass(21);
    EXPECT_THAT(Take_Asked(), ElementsAre("/data"));
    EXPECT_EQ(Panel().lblATCFlight.Text(), "BAW1");
    EXPECT_TRUE(Panel().lblATCFlight.Visible());
    EXPECT_EQ(Panel().txtAircraftType.Text(), "B744");
    EXPECT_EQ(Panel().lblOriginName.Text(), "Alpha Field");
    EXPECT_EQ(Panel().txtDestination.Text(), "KBBB");
    EXPECT_EQ(Panel().txtFlightLevel.Text(), "37000");
    EXPECT_EQ(Panel().txtFlightPlan.Text(), "DCT J1 DCT");
    EXPECT_TRUE(Panel().chkIFR.Checked());

    Kill();
    Begin();
    Settings().Set_VATSIM_FP(1);
    Settings().Set_VATSIM_PID("812");
    Panel().hypOn.Click();
    Pass(21);
    EXPECT_THAT(Take_Asked(), IsEmpty()) << "the flight has its plan";
    EXPECT_EQ(Panel().lblATCFlight.Text(), "BAW1");
    Give_Up();
    Stand();
    Panel().hypOn.Click();
    Pass(11);
    EXPECT_THAT(Take_Asked(), ElementsAre("/data")) << "another flight has not";
}

TEST_F(Panel_Network, A_network_that_fails_is_asked_less_and_less_until_it_answers) {
    Settings().Set_VATSIM_FP(1);
    Settings().Set_WX_URL("FS");
    Settings().Set_VATSIM_PID("812");
    const auto asked_within = [&](int seconds) {
        Pass(seconds);
        return Take_Asked().size();
    };
    Set_Page("/data", "<html>Too many requests</html>");
    Panel().hypOn.Click();
    EXPECT_EQ(asked_within(71), 3U) << "after 10, 30 and 70 seconds";
    EXPECT_EQ(Take_Errors().size(), 3U);
    EXPECT_EQ(asked_within(4000), 13U) << "after 80, 160, 320 and every 320";
    Take_Errors();
    Panel().hypReset.Click();
    Panel().hypOn.Click();
    EXPECT_EQ(asked_within(11), 1U) << "another flight";
    Take_Errors();
    Set_Page("/data", "nobody\r\n");
    EXPECT_EQ(asked_within(20), 1U);
    EXPECT_EQ(asked_within(50), 5U) << "an answer";
}

TEST_F(Panel_Network, A_networks_line_cut_short_is_applied_as_far_as_it_goes) {
    Settings().Set_VATSIM_FP(1);
    Settings().Set_WX_URL("FS");
    Settings().Set_VATSIM_PID("812");
    Set_Page("/data", "BAW1:812::::::::B744::KAAA:37000:KBBB:x\r\n");
    Panel().hypOn.Click();
    While_Next_Request_Runs([&] { Panel().hypReset.Click(); });
    Pass(11);
    EXPECT_TRUE(Has_Happened());
    EXPECT_EQ(Panel().txtOrigin.Text(), "") << "the flight is gone";
    EXPECT_THAT(Take_Errors(), IsEmpty()) << "who no longer waits has not failed";
    Panel().hypOn.Click();
    Pass(11);
    EXPECT_EQ(Panel().txtDestination.Text(), "KBBB");
    EXPECT_EQ(Panel().txtFlightLevel.Text(), "");
    EXPECT_FALSE(Panel().network_plan.tmrVATSIM.Enabled());
    EXPECT_THAT(Take_Errors(), ElementsAre(AllOf(HasSubstr("ucACARS.Read_VATSIM_Data()"),
                                                 HasSubstr("Error Number: 9\r\n"))));
    EXPECT_THAT(Take_Boxes(), ElementsAre(HasSubstr("only a part of your flight plan")));
}

}  // namespace
}  // namespace norvane
