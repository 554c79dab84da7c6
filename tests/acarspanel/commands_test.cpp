#include <functional>

#include "acarspanel/panel_world.h"
#include "common/timer_queue.h"

namespace norvane::test {
namespace {

using std::chrono::milliseconds;

class Panel_Commands : public Panel_World {
  protected:
    Panel_Commands() { Begin(); }
};

TEST_F(Panel_Commands, On_follows_the_simulator_every_half_second_until_paused) {
    int steps = 0;
    Events().FSTime.Connect([&](const std::string&) { ++steps; });
    EXPECT_FALSE(Panel().hypPause.Enabled() || Panel().lblTimeOut.Enabled());
    EXPECT_TRUE(Panel().lblOriginName.Enabled()) << "the pilot's codes have a name before, too";
    Panel().hypOn.Click();
    EXPECT_TRUE(Panel().Is_Active() && Panel().lblTimeOut.Enabled());
    EXPECT_FALSE(Panel().hypOn.Enabled() || Panel().tmrPos.Enabled());
    for (const auto& [caption, counted] : {std::pair("Resume", 5), {"Pause", 5}, {"Resume", 10}}) {
        Pass(milliseconds(2600));
        EXPECT_EQ(steps, counted);
        Panel().hypPause.Click();
        EXPECT_EQ(Panel().hypPause.Caption(), caption);
        EXPECT_FALSE(Panel().tmrPos.Enabled());
    }
    EXPECT_FALSE(desktop.busy);
}

TEST_F(Panel_Commands, A_simulator_that_does_not_answer_is_told_and_leaves_the_panel_idle) {
    transport.on_open = [] { return Transport_Opening{2, false}; };
    Panel().hypOn.Click();
    EXPECT_FALSE(Panel().Is_Active());
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("ucACARS.ACARS_ON()\r\nError Number: 440\r\n"
                                                     "Error Description: Unable to connect to "
                                                     "FSUIPC.")));
    EXPECT_THAT(Take_Boxes(), ElementsAre(AllOf(HasSubstr("Unable to connect to FSUIPC."),
                                                HasSubstr("127.0.0.1:8338"))));
    transport.on_open = nullptr;
    Panel().hypOn.Click();
    EXPECT_TRUE(Panel().Is_Active());
}

TEST_F(Panel_Commands, Logging_asks_about_an_incomplete_flight_and_before_a_second_time) {
    constexpr std::string_view incomplete =
        "This flight appears to be incomplete.  You will need to manually enter some items in the "
        "Flight Log.\r\n\r\nWould you like to log this flight anyway?";
    constexpr std::string_view again =
        "This flight has already been logged.  Would you like to log it again?";
    Settings().Set_OPT_PIREP(true);
    Panel().hypOn.Click();
    Panel().hypPause.Click();
    for (const auto& [question, logged] : {std::pair(incomplete, 0U), {again, 2U}}) {
        Click(Panel().hypLog, {Answer::none});
        EXPECT_EQ(log.size(), logged);
        Log();
        EXPECT_EQ(log.size(), logged + 1);
        EXPECT_EQ(Panel().Is_Logged(), question == again);
        EXPECT_EQ(desktop.boxes.at(0).icon, question == again ? Icon::question : Icon::information);
        EXPECT_THAT(Take_Boxes(), ElementsAre(question, question));
        Give_Up();
        Fly();
        EXPECT_TRUE(Panel().Is_At_Gate() && Is_Stored());
        Panel().hypLog.Click();
        EXPECT_FALSE(Is_Stored());
        EXPECT_THAT(Take_Boxes(), IsEmpty());
        EXPECT_TRUE(std::filesystem::exists(Logged(Log_Field::PIREP_FILE_NAME)));
    }
}

TEST_F(Panel_Commands, A_flight_that_logs_itself_while_the_question_stands_is_logged_once) {
    Settings().Set_OPT_AutoLog(true);
    Land();
    desktop.on_box = [&](const Message_Box&) { Park(); };
    Click(Panel().hypLog, {Answer::yes, Answer::yes});
    EXPECT_TRUE(Panel().Is_Logged());
    EXPECT_THAT(Take_Boxes(), SizeIs(1));
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(Panel_Commands, Logging_resetting_and_closing_end_the_gate_wait) {
    struct Case {
        std::function<void()> meanwhile;
        std::size_t logged;
        std::size_t boxes;
        bool new_flight;
    };
    const std::vector<Case> cases = {
        {[this] { Panel().hypLog.Click(); }, 1, 0, false},
        // What became of the flight is told; the old flight's end is not the new one's.
        {[this] {
             Click(Panel().hypReset, {Answer::yes});
             Panel().hypOn.Click();
         },
         0, 2, true},
        {[this] { Panel().Close(ucACARS::Closing::by_pilot); }, 1, 0, false},
    };
    Settings().Set_OPT_AutoLog(true);
    for (const Case& one : cases) {
        log.clear();
        Land();
        Settings().Set_WX_URL("NOAA");
        Panel().txtFlightLevel.Enter("FL350");
        // A moment before the destination's weather is asked for.
        Timer timer(desktop.Timers(), milliseconds(700));
        timer.tick.Connect([&] {
            timer.Set_Enabled(false);
            EXPECT_FALSE(Panel().Is_At_Gate() || Panel().hypPause.Enabled());
            EXPECT_THAT(log, IsEmpty());
            Settings().Set_WX_URL("FS");
            one.meanwhile();
        });
        timer.Set_Enabled(true);
        Park();
        Pass(seconds(3));
        EXPECT_EQ(log.size(), one.logged);
        EXPECT_EQ(Panel().Is_Logged(), one.logged == 1);
        EXPECT_EQ(Panel().Is_Active(), one.new_flight);
        EXPECT_EQ(Panel().txtFlightLevel.Text(), one.new_flight ? "" : "FL350");
        EXPECT_THAT(Take_Boxes(), SizeIs(one.boxes));
        Take_Errors();
        Panel().hypReset.Click();
    }
    EXPECT_LT(clock.Monotonic(), minutes(2));
}

TEST_F(Panel_Commands, A_second_flight_begins_without_the_first_but_with_what_was_typed_since) {
    ucACARS& panel = Panel();
    panel.txtPax.Enter("99");
    panel.chkIFR.Click();
    Fly();
    panel.txtComments.Enter("typed at the gate, logged with the old flight");
    panel.hypLog.Click();
    panel.txtFlightNumber.Enter("NEW1");
    panel.txtDestination.Enter("KAAA");
    Stand();
    panel.hypOn.Click();
    EXPECT_FALSE(panel.Is_At_Gate() || panel.chkIFR.Checked());
    EXPECT_EQ(Texts(panel.lblTimeOut, panel.lblMaxTaxiOrigin, panel.txtPax, panel.txtComments),
              "|||");
    EXPECT_EQ(Texts(panel.txtFlightNumber, panel.txtDestination, panel.lblDestinationName),
              "NEW1|KAAA|Alpha Field");
    EXPECT_EQ(program->engine.Form_ICAO_Arrive(), "KAAA");
    Fly();
    EXPECT_EQ(panel.lblTimeOut.Text(), "1405Z");
    panel.hypLog.Click();
    EXPECT_EQ(log.size(), 2U);
    EXPECT_THAT(Take_Boxes(), IsEmpty());
}

TEST_F(Panel_Commands, Positions_are_reported_every_fifteen_minutes_in_the_air_and_on_request) {
    int reports = 0;
    Events().ACARSMessage.Connect([&](Message_Type type, const std::string&) {
        reports += type == Message_Type::position ? 1 : 0;
    });
    const auto expect_after = [&](int span_min, int expected) {
        Pass(minutes(span_min));
        EXPECT_EQ(reports, expected);
        EXPECT_EQ(Panel().Context_Menu_Opens(), Panel().tmrPos.Enabled());
    };
    Panel().hypOn.Click();
    Roll();
    expect_after(20, 0);
    Lift_Off();
    expect_after(10, 0);
    Panel().hypPause.Click();
    expect_after(30, 0);
    // The pause keeps the minutes that were counted.
    Panel().hypPause.Click();
    expect_after(4, 0);
    expect_after(2, 1);
    expect_after(13, 1);
    expect_after(3, 2);
    Panel().mnuPosition.Choose();
    expect_after(1, 3);
    Touch_Down();
    EXPECT_FALSE(Panel().tmrPos.Enabled());
}

TEST_F(Panel_Commands, A_command_that_comes_within_a_step_waits_for_its_end) {
    std::string_view moment;
    Panel().hypOn.Click();
    Events().FlightOUT.Connect([&](const std::string&, int) {
        Panel().hypReset.Click();
        moment = Panel().Is_Active() ? "in the step" : "at once";
    });
    desktop.answers = {Answer::yes};
    Roll();
    EXPECT_EQ(moment, "in the step");
    EXPECT_FALSE(Panel().Is_Active() || Panel().tmr.Enabled());
    EXPECT_EQ(Panel().lblTimeOut.Text(), "");
    Take_Errors();
}

}  // namespace
}  // namespace norvane::test
