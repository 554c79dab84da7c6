#include <functional>
#include <utility>

#include "acarspanel/panel_world.h"
#include "common/timer_queue.h"

namespace norvane {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;

constexpr std::string_view incomplete =
    "This flight appears to be incomplete.  You will need to manually enter some items in the "
    "Flight Log.\r\n\r\nWould you like to log this flight anyway?";
constexpr std::string_view again =
    "This flight has already been logged.  Would you like to log it again?";

class Panel_Commands : public test::Panel_World {
  protected:
    Panel_Commands() { Begin(); }
    /// Reaches the gate a moment before the destination's weather is asked for; `meanwhile` happens
    /// while the flight waits for it.
    void Park_Awaiting_Weather(const std::function<void()>& meanwhile) {
        Settings().Set_WX_URL("NOAA");
        Panel().txtFlightLevel.Enter("FL350");
        Timer timer(desktop.Timers(), milliseconds(700));
        timer.tick.connect([&] {
            timer.Set_Enabled(false);
            EXPECT_FALSE(Panel().Is_At_Gate());
            EXPECT_FALSE(Panel().hypPause.Enabled());
            EXPECT_TRUE(log.empty());
            Settings().Set_WX_URL("FS");
            meanwhile();
        });
        timer.Set_Enabled(true);
        Park();
        desktop.Run_For(milliseconds(3000));
    }
    void Fly_To_The_Runway() {
        Panel().hypOn.Click();
        Roll();
        Lift_Off();
        Touch_Down();
    }
};

TEST_F(Panel_Commands, On_follows_the_simulator_every_half_second_until_paused) {
    std::vector<bool> states;
    Panel().Active_State.connect([&](bool on) { states.push_back(on); });
    int steps = 0;
    Events().FSTime.connect([&](const std::string&) { ++steps; });
    EXPECT_FALSE(Panel().hypPause.Enabled());
    EXPECT_FALSE(Panel().lblTimeOut.Enabled());
    Panel().hypOn.Click();
    EXPECT_TRUE(Panel().Is_Active());
    EXPECT_FALSE(Panel().hypOn.Enabled());
    EXPECT_TRUE(Panel().lblTimeOut.Enabled());
    desktop.Run_For(milliseconds(2600));
    EXPECT_EQ(steps, 5);
    Panel().hypPause.Click();
    EXPECT_EQ(Panel().hypPause.Caption(), "Resume");
    desktop.Run_For(milliseconds(2600));
    EXPECT_EQ(steps, 5);
    Panel().hypPause.Click();
    EXPECT_EQ(Panel().hypPause.Caption(), "Pause");
    EXPECT_FALSE(Panel().tmrPos.Enabled());
    desktop.Run_For(milliseconds(1100));
    EXPECT_EQ(steps, 7);
    EXPECT_EQ(states, std::vector{true});
    EXPECT_FALSE(desktop.busy);
}

TEST_F(Panel_Commands, A_simulator_that_does_not_answer_is_told_and_leaves_the_panel_idle) {
    program->transport.on_open = [] { return Transport_Opening{2, false}; };
    Panel().hypOn.Click();
    EXPECT_FALSE(Panel().Is_Active());
    EXPECT_TRUE(Panel().hypOn.Enabled());
    const auto errors = Take_Errors();
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_NE(errors[0].find("ucACARS.ACARS_ON()\r\nError Number: 440\r\nError Description: "
                             "Unable to connect to FSUIPC."),
              std::string::npos)
        << errors[0];
    ASSERT_EQ(desktop.boxes.size(), 1U);
    const std::string& words = desktop.boxes[0].text;
    EXPECT_LT(words.find("Unable to connect to FSUIPC."), words.find("127.0.0.1:8338")) << words;
    Take_Boxes();
    program->transport.on_open = nullptr;
    Panel().hypOn.Click();
    EXPECT_TRUE(Panel().Is_Active());
}

TEST_F(Panel_Commands, Logging_an_incomplete_flight_asks_first_even_when_it_is_paused) {
    Panel().hypOn.Click();
    Panel().hypPause.Click();
    Panel().hypLog.Click();
    EXPECT_EQ(log.size(), 0U);
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(desktop.boxes[0].text, incomplete);
    EXPECT_EQ(desktop.boxes[0].title, "Norvane");
    EXPECT_EQ(desktop.boxes[0].icon, Icon::information);
    EXPECT_EQ(desktop.boxes[0].buttons, Buttons::yes_no);
    desktop.answers = {Answer::yes};
    Panel().hypLog.Click();
    EXPECT_EQ(log.size(), 1U);
    EXPECT_FALSE(Panel().Is_Logged());
}

TEST_F(Panel_Commands, A_flight_that_logs_itself_while_the_question_stands_is_logged_once) {
    Settings().Set_OPT_AutoLog(true);
    Fly_To_The_Runway();
    desktop.answers = {Answer::yes, Answer::yes};
    desktop.on_box = [&](const Message_Box&) { Park(); };
    Panel().hypLog.Click();
    EXPECT_TRUE(Panel().Is_Logged());
    EXPECT_EQ(Take_Boxes().size(), 1U);
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(Panel_Commands, At_the_gate_logging_asks_only_before_a_second_time) {
    Settings().Set_OPT_PIREP(true);
    Fly();
    EXPECT_TRUE(Panel().Is_At_Gate());
    EXPECT_FALSE(Panel().Is_Logged());
    EXPECT_TRUE(Is_Stored());
    Panel().hypLog.Click();
    EXPECT_TRUE(Panel().Is_Logged());
    EXPECT_FALSE(Is_Stored());
    EXPECT_EQ(Take_Boxes().size(), 0U);
    EXPECT_TRUE(std::filesystem::exists(Logged(Log_Field::PIREP_FILE_NAME)));
    Panel().hypLog.Click();
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(desktop.boxes[0].text, again);
    EXPECT_EQ(desktop.boxes[0].icon, Icon::question);
    EXPECT_EQ(log.size(), 1U);
    desktop.answers = {Answer::yes};
    Panel().hypLog.Click();
    EXPECT_EQ(log.size(), 2U);
}

TEST_F(Panel_Commands, A_log_that_cannot_save_is_told_and_the_flight_stays_stored) {
    Settings().Set_OPT_AutoLog(true);
    log_saves = false;
    Fly();
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_TRUE(desktop.boxes[0].text.starts_with("This log entry was NOT saved due to the "));
    EXPECT_EQ(desktop.boxes[0].title, "Norvane Log Entry");
    EXPECT_EQ(desktop.boxes[0].icon, Icon::exclamation);
    EXPECT_FALSE(Panel().Is_Logged());
    EXPECT_TRUE(Is_Stored());
    log_saves = true;
    Panel().hypLog.Click();
    EXPECT_TRUE(Panel().Is_Logged());
    EXPECT_EQ(desktop.boxes.size(), 1U);
}

TEST_F(Panel_Commands, Logging_resetting_and_closing_end_the_gate_wait) {
    Settings().Set_OPT_AutoLog(true);
    Fly_To_The_Runway();
    Park_Awaiting_Weather([&] { Panel().hypLog.Click(); });
    EXPECT_EQ(log.size(), 1U);
    EXPECT_TRUE(Panel().Is_Logged());
    EXPECT_FALSE(Panel().Is_Active());

    log.clear();
    Stand();
    Fly_To_The_Runway();
    Park_Awaiting_Weather([&] {
        desktop.answers = {Answer::yes};
        Panel().hypReset.Click();
        Panel().hypOn.Click();
    });
    EXPECT_TRUE(Panel().Is_Active()) << "the old flight's end is not the new one's";
    EXPECT_EQ(log.size(), 0U);
    EXPECT_EQ(Take_Errors().size(), 1U) << "the row went to the .unsaved file";
    EXPECT_FALSE(Panel().Is_At_Gate());
    EXPECT_EQ(Panel().txtFlightLevel.Text(), "");

    Panel().hypReset.Click();
    Stand();
    Fly_To_The_Runway();
    Park_Awaiting_Weather([&] { Panel().Close(ucACARS::Closing::by_pilot); });
    EXPECT_EQ(log.size(), 1U);
    EXPECT_EQ(Take_Boxes().size(), 2U) << "what became of the flight that was reset, nothing else";
    EXPECT_LT(clock.Monotonic(), minutes(2));
}

TEST_F(Panel_Commands, A_second_flight_begins_without_the_first_but_with_what_was_typed_since) {
    Panel().txtPax.Enter("99");
    Panel().chkIFR.Click();
    Fly();
    Panel().txtComments.Enter("typed at the gate, logged with the old flight");
    Panel().hypLog.Click();
    Panel().txtFlightNumber.Enter("NEW1");
    Panel().txtDestination.Enter("KAAA");
    Stand();
    Panel().hypOn.Click();
    EXPECT_TRUE(Panel().Is_Active());
    EXPECT_FALSE(Panel().Is_At_Gate());
    EXPECT_EQ(Panel().lblTimeOut.Text(), "");
    EXPECT_EQ(Panel().lblMaxTaxiOrigin.Text(), "");
    EXPECT_EQ(Panel().txtPax.Text(), "");
    EXPECT_EQ(Panel().txtComments.Text(), "");
    EXPECT_FALSE(Panel().chkIFR.Checked());
    EXPECT_EQ(Panel().txtFlightNumber.Text(), "NEW1");
    EXPECT_EQ(Panel().txtDestination.Text(), "KAAA");
    EXPECT_EQ(Panel().lblDestinationName.Text(), "Alpha Field");
    EXPECT_EQ(program->engine.Form_ICAO_Arrive(), "KAAA");
    EXPECT_EQ(Panel().txtOrigin.Text(), "KAAA");
    Roll();
    EXPECT_EQ(Panel().lblTimeOut.Text(), "1405Z");
    Lift_Off();
    Touch_Down();
    Park();
    Panel().hypLog.Click();
    EXPECT_EQ(log.size(), 2U);
    EXPECT_EQ(Take_Boxes().size(), 0U);
}

TEST_F(Panel_Commands, A_signal_or_a_new_start_keeps_the_row_of_the_flight_it_drops) {
    const auto kept = directory / "logs" / (Settings().FlightLog() + ".unsaved");
    Fly();
    Panel().Close(ucACARS::Closing::by_signal);
    EXPECT_TRUE(std::filesystem::exists(kept));
    EXPECT_FALSE(Is_Stored());
    Kill();
    Stand();
    Begin();
    Fly_To_The_Runway();
    Kill();
    Begin();
    Panel().Drop_Stored_Flight();
    EXPECT_TRUE(std::filesystem::exists(kept.string() + "2"));
    EXPECT_FALSE(Is_Stored());
    EXPECT_FALSE(Panel().Is_Resumable());
    EXPECT_EQ(Panel().lblTimeOff.Text(), "");
    EXPECT_EQ(Take_Boxes().size(), 0U);
    EXPECT_EQ(Take_Errors().size(), 2U);
}

TEST_F(Panel_Commands, Positions_are_reported_every_fifteen_minutes_in_the_air_and_on_request) {
    int reports = 0;
    Events().ACARSMessage.connect([&](Message_Type type, const std::string&) {
        reports += type == Message_Type::position ? 1 : 0;
    });
    Panel().hypOn.Click();
    Roll();
    desktop.Run_For(minutes(20));
    EXPECT_FALSE(Panel().Context_Menu_Opens());
    Lift_Off();
    EXPECT_TRUE(Panel().Context_Menu_Opens());
    desktop.Run_For(minutes(10));
    Panel().hypPause.Click();
    EXPECT_FALSE(Panel().Context_Menu_Opens());
    desktop.Run_For(minutes(30));
    Panel().hypPause.Click();
    desktop.Run_For(minutes(4));
    EXPECT_EQ(reports, 0) << "the pause keeps the minutes that were counted, and adds none";
    desktop.Run_For(minutes(2));
    EXPECT_EQ(reports, 1);
    Panel().mnuPosition.Choose();
    Step();
    EXPECT_EQ(reports, 2);
    Touch_Down();
    EXPECT_FALSE(Panel().tmrPos.Enabled());
}

TEST_F(Panel_Commands, A_command_that_comes_within_a_step_waits_for_its_end) {
    std::string_view moment;
    Panel().hypOn.Click();
    desktop.answers = {Answer::yes};
    Events().FlightOUT.connect([&](const std::string&, int) {
        Panel().hypReset.Click();
        moment = Panel().Is_Active() ? "in the step" : "at once";
    });
    Roll();
    EXPECT_EQ(moment, "in the step");
    EXPECT_FALSE(Panel().Is_Active());
    EXPECT_EQ(Panel().lblTimeOut.Text(), "");
    EXPECT_FALSE(Panel().tmr.Enabled());
    Take_Errors();
}

}  // namespace
}  // namespace norvane
