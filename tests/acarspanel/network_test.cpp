// The weather of both ends, and plans from files and from the online network.

#include "acarspanel/network_world.h"

namespace norvane::test {
namespace {

class Panel_Network : public Network_World {
  protected:
    Panel_Network() {
        Begin();
        Settings().Set_WX_URL("NOAA");
        Set_Page("/wx/KAAA", "KAAA 141200Z CAVOK");
        Set_Page("/wx/KBBB", "KBBB 141200Z RA");
    }
    /// The plan comes from the network, the weather from the simulator.
    void Take_Plans_Of(const std::string& pilot) {
        Settings().Set_VATSIM_FP(1);
        Settings().Set_WX_URL("FS");
        Settings().Set_VATSIM_PID(pilot);
    }
    /// A line of the network's data as it was in the days of text.
    static std::string Network_Line(const std::string& id, const std::string& departure) {
        return "BAW1:" + id + ":Name:PILOT::::::B744:480:" + departure + ":37000:KBBB:::::::0:I" +
               std::string(9, ':') + "DCT J1 DCT\r\n";
    }
    void Read_Plan() {
        desktop.chosen_files = {
            Write("plans/one.pln",
                  "[FLIGHTPLAN]\r\nTYPE=IFR\r\nCRUISING_ALTITUDE=35000\r\n"
                  "DEPARTURE_NAME=Alpha_Plan\r\nDESTINATION_NAME=Bravo_Plan\r\n"
                  "WAYPOINT.0=KAAA, A, x, x, x,\r\nWAYPOINT.1=BOS, V, x, x, x, J1\r\n"
                  "WAYPOINT.2=KBBB, A, x, x, x,\r\n")};
        Panel().hypFP.Click();
    }
};

TEST_F(Panel_Network, A_flight_logs_itself_with_the_weather_of_both_ends) {
    Settings().Set_OPT_AutoLog(true);
    Panel().txtFlightLevel.Enter("FL350");
    Fly();
    EXPECT_FALSE(Panel().Is_At_Gate());
    EXPECT_TRUE(Panel().hypFP.Enabled());
    EXPECT_EQ(desktop.Waiting_For(), "Waiting for the weather at the destination ...");
    Pass(seconds(2));
    EXPECT_TRUE(Panel().Is_Logged());
    EXPECT_EQ(desktop.Waiting_For(), "");
    EXPECT_FALSE(Panel().hypFP.Enabled());
    EXPECT_EQ(Logged(Log_Field::WX_ORIGIN), "KAAA 141200Z CAVOK");
    EXPECT_EQ(Logged(Log_Field::WX_DESTINATION), "KBBB 141200Z RA");
    EXPECT_THAT(Take_Asked(), ElementsAre("/wx/KAAA", "/wx/KBBB"));

    Settings().Set_WX_URL("NONE");
    Fly();
    EXPECT_TRUE(Panel().Is_Logged());
    EXPECT_THAT(Take_Asked(), IsEmpty());
    // The gate is reached within the request that it waits for.
    Settings().Set_WX_URL("NOAA");
    Settings().Set_ACARS_RecordArrival(1);
    Stand();
    Panel().hypOn.Click();
    Panel().txtFlightLevel.Enter("FL350");
    Panel().txtWXOrigin.Enter("mine");
    Land();
    While_Next_Request_Runs([&] {
        Park();
        EXPECT_FALSE(Panel().Is_At_Gate());
    });
    Pass(seconds(2));
    EXPECT_EQ(log.size(), 3U);
    EXPECT_EQ(Logged(Log_Field::WX_DESTINATION), "KBBB 141200Z RA");
    EXPECT_LT(clock.Monotonic(), minutes(1));
}

TEST_F(Panel_Network, The_gate_does_not_wait_for_the_weather_for_ever) {
    Settings().Set_OPT_AutoLog(true);
    Panel().txtFlightLevel.Enter("FL350");
    Panel().txtWXOrigin.Enter("mine");
    Fly();
    While_Next_Request_Runs([&] {
        const auto wait = [&](int span_s) {
            clock.Advance_To(clock.Monotonic() + seconds(span_s));
            desktop.Process_Events();
        };
        wait(9'990);
        EXPECT_FALSE(Panel().Is_At_Gate());
        wait(10);
        EXPECT_TRUE(Panel().Is_Logged());
    });
    Pass(seconds(2));
    EXPECT_EQ(log.size(), 1U);
    EXPECT_THAT(Take_Errors(), SizeIs(1)) << "the request was given up";
}

TEST_F(Panel_Network, Closing_while_the_gate_waits_for_the_weather_does_what_is_answered_once) {
    Settings().Set_OPT_AutoLog(false);
    Panel().txtFlightLevel.Enter("FL350");
    Panel().txtWXOrigin.Enter("mine");
    int closed = 0;
    Panel().Closed.Connect([&] { ++closed; });
    Fly();
    While_Next_Request_Runs([&] {
        desktop.answers = {Answer::none, Answer::no};
        Panel().Close(ucACARS::Closing::by_pilot);
        EXPECT_EQ(closed, 0);
        Panel().Close(ucACARS::Closing::by_pilot);
        EXPECT_EQ(closed, 1);
    });
    Pass(seconds(2));
    EXPECT_THAT(Read("logs/My Flight Log.unsaved"), HasSubstr("|KAAA|"));
    EXPECT_FALSE(std::filesystem::exists(directory / "logs/My Flight Log.unsaved2"));
    EXPECT_THAT(Take_Boxes().back(), HasSubstr("The row of this flight is kept in "));
    EXPECT_THAT(log, IsEmpty());
    Take_Errors();
}

TEST_F(Panel_Network, An_answer_for_a_flight_that_is_over_changes_nothing) {
    Panel().hypOn.Click();
    While_Next_Request_Runs([&] {
        Panel().hypReset.Click();
        EXPECT_FALSE(Panel().weather.tmrWX[0].Enabled());
        Set_Page("/wx/KAAA", "KAAA 141300Z FG");
        Panel().hypOn.Click();
    });
    Pass(seconds(1));
    EXPECT_EQ(Panel().txtWXOrigin.Text(), "");
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsWinInet.Get_METAR()")));
    Pass(seconds(2));
    EXPECT_EQ(Panel().txtWXOrigin.Text(), "KAAA 141300Z FG");
    // Another code, and the answer is not of that airport.
    Roll();
    Events().ICAOArr.Emit("KBBB", "Bravo Field");
    While_Next_Request_Runs([&] { Panel().txtDestination.Enter("KCCC"); });
    Pass(seconds(2));
    EXPECT_EQ(Panel().txtWXDestination.Text(), "");
    Panel().txtDestination.Enter("");
    Lift_Off();
    Touch_Down();
    Park();
    Panel().hypLog.Click();
    EXPECT_TRUE(Panel().Is_Logged());
    Pass(seconds(5));
    EXPECT_EQ(Panel().txtWXDestination.Text(), "") << "the log has none either";
}

TEST_F(Panel_Network, A_plan_fills_the_panel_and_has_the_arrivals_weather_fetched_at_landing) {
    ucACARS& panel = Panel();
    EXPECT_FALSE(panel.hypFP.Enabled());
    panel.hypOn.Click();
    panel.txtDestination.Enter("KXXX");
    panel.txtFlightPlan.Enter("typed");
    Read_Plan();
    EXPECT_EQ(desktop.file_choices.at(0).title, "Get FS Flight Plan ");
    EXPECT_EQ(desktop.file_choices[0].filter, "MSFS Flight Plans (*.pln)|*.pln");
    EXPECT_EQ(store.Get("Flight Plan", "Directory"), (directory / "plans/").string());
    EXPECT_EQ(Texts(panel.txtFlightPlan, panel.txtFlightLevel, panel.txtDestination,
                    panel.lblDestinationName),
              "KAAA.BOS.J1.KBBB|FL350|KBBB|Bravo Plan");
    EXPECT_EQ(program->engine.Form_ICAO_Arrive(), "KBBB");
    EXPECT_TRUE(panel.chkIFR.Checked() && !panel.chkVFR.Checked());
    panel.hypFP.Click();
    EXPECT_EQ(desktop.file_choices.at(1).directory, directory / "plans/");
    EXPECT_EQ(store.Get("Flight Plan", "Directory", "absent"), "");
    EXPECT_EQ(panel.txtDestination.Text(), "KBBB") << "no file, no change";
    Pass(seconds(2));
    EXPECT_EQ(panel.txtWXDestination.Text(), "KBBB 141200Z RA");

    Roll();
    Lift_Off();
    Set_Page("/wx/KBBB", "KBBB 141500Z SN");
    Touch_Down();
    Pass(seconds(2));
    EXPECT_EQ(panel.txtWXDestination.Text(), "KBBB 141500Z SN");
    Write("bin/url.cfg", "[NOAA]\r\nURL=127.0.0.1:1\r\nMETAR=/wx/\r\n");
    panel.weather.tmrWX[1].Set_Enabled(true);
    Pass(seconds(2));
    EXPECT_EQ(panel.txtWXDestination.Text(), "KBBB 141500Z SN") << "no report came";
    Take_Errors();
}

TEST_F(Panel_Network, A_resumed_flight_has_fetched_weather_renewed_at_landing_and_typed_kept) {
    for (const bool is_typed : {false, true}) {
        Set_Page("/wx/KBBB", "KBBB 141200Z RA");
        Stand();
        Panel().hypOn.Click();
        Read_Plan();
        Pass(seconds(2));
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
        Pass(seconds(2));
        EXPECT_EQ(Panel().txtWXDestination.Text(), is_typed ? "typed" : "KBBB 141500Z SN");
        Give_Up();
    }
}

TEST_F(Panel_Network, The_networks_plan_is_looked_for_until_it_is_there_and_then_no_more) {
    Take_Plans_Of("");
    Panel().hypOn.Click();
    Pass(seconds(11));
    EXPECT_FALSE(Panel().network_plan.tmrVATSIM.Enabled()) << "nobody to look for";
    EXPECT_THAT(Take_Boxes(), ElementsAre(HasSubstr("no VATSIM PID")));
    Panel().hypReset.Click();
    Take_Plans_Of("812");
    Set_Page("/data", "other line\r\n" + Network_Line("9", "KXXX"));
    Panel().hypOn.Click();
    Pass(seconds(21));
    EXPECT_THAT(Take_Asked(), ElementsAre("/data", "/data"));
    Panel().hypPause.Click();
    Pass(seconds(21));
    EXPECT_THAT(Take_Asked(), IsEmpty());
    Panel().hypPause.Click();
    Roll();
    Lift_Off();
    Set_Page("/data", Network_Line("812", "KAAA"));
    Pass(seconds(21));
    EXPECT_THAT(Take_Asked(), ElementsAre("/data"));
    EXPECT_TRUE(Panel().lblATCFlight.Visible() && Panel().chkIFR.Checked());
    EXPECT_EQ(Texts(Panel().lblATCFlight, Panel().txtAircraftType, Panel().lblOriginName,
                    Panel().txtDestination, Panel().txtFlightLevel, Panel().txtFlightPlan),
              "BAW1|B744|Alpha Field|KBBB|37000|DCT J1 DCT");

    Begin();
    Take_Plans_Of("812");
    Panel().hypOn.Click();
    Pass(seconds(21));
    EXPECT_THAT(Take_Asked(), IsEmpty()) << "the flight has its plan";
    EXPECT_EQ(Panel().lblATCFlight.Text(), "BAW1");
    Give_Up();
    Stand();
    Panel().hypOn.Click();
    Pass(seconds(11));
    EXPECT_THAT(Take_Asked(), ElementsAre("/data")) << "another flight has not";
}

TEST_F(Panel_Network, A_network_that_fails_is_asked_less_and_less_until_it_answers) {
    Take_Plans_Of("812");
    const auto asked_within = [&](int span_s) {
        Pass(seconds(span_s));
        return Take_Asked().size();
    };
    Set_Page("/data", "<html>Too many requests</html>");
    Panel().hypOn.Click();
    EXPECT_EQ(asked_within(71), 3U) << "after 10, 30 and 70 seconds";
    EXPECT_THAT(Take_Errors(), SizeIs(3));
    EXPECT_EQ(asked_within(4000), 13U) << "after 80, 160, 320 and every 320";
    Panel().hypReset.Click();
    Panel().hypOn.Click();
    EXPECT_EQ(asked_within(11), 1U) << "another flight";
    Take_Errors();
    Set_Page("/data", "nobody\r\n");
    EXPECT_EQ(asked_within(20), 1U);
    EXPECT_EQ(asked_within(50), 5U) << "an answer";
    Set_Page("/data", "<html>Too many requests</html>");
    EXPECT_EQ(asked_within(30), 2U) << "at first it is asked again soon";
    Take_Errors();
}

TEST_F(Panel_Network, A_networks_line_cut_short_is_applied_as_far_as_it_goes) {
    Take_Plans_Of("812");
    Set_Page("/data", "BAW1:812::::::::B744::KAAA:37000:KBBB:x\r\n");
    Panel().hypOn.Click();
    While_Next_Request_Runs([&] { Panel().hypReset.Click(); });
    Pass(seconds(11));
    EXPECT_EQ(Panel().txtOrigin.Text(), "") << "the flight is gone";
    EXPECT_THAT(Take_Errors(), IsEmpty()) << "who no longer waits has not failed";
    Panel().hypOn.Click();
    Pass(seconds(11));
    EXPECT_EQ(Texts(Panel().txtDestination, Panel().txtFlightLevel), "KBBB|");
    EXPECT_FALSE(Panel().network_plan.tmrVATSIM.Enabled());
    EXPECT_THAT(Take_Errors(), ElementsAre(AllOf(HasSubstr("ucACARS.Read_VATSIM_Data()"),
                                                 HasSubstr("Error Number: 9\r\n"))));
    EXPECT_THAT(Take_Boxes(), ElementsAre(HasSubstr("only a part of your flight plan")));
}

}  // namespace
}  // namespace norvane::test
