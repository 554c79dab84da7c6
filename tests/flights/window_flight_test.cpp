// The main window over a whole flight: what its status bar says, and closing it in the air.

#include <gmock/gmock.h>

#include "app/frm_main.h"
#include "flights/flight_world.h"

namespace norvane::test {
namespace {

class Window_Flight : public testing::Test {
  protected:
    Window_Flight() : world(Scenario_World(Data_File("scenarios/short-jet.json"))) {}

    std::unique_ptr<World_Source> world;
};

TEST_F(Window_Flight, The_status_bar_follows_the_flight) {
    Flight_World flight(*world, 5);
    flight.Start();
    frmMain window(flight.Running());
    std::vector<std::string> acars;
    const Label& status = window.Status(Status_Panel::acars);
    window.barStatus[1].changed.connect([&] { acars.push_back(status.Text()); });
    const Label& simulator = window.Status(Status_Panel::simulator);
    std::size_t steps = 0;
    flight.on_step = [&] {
        ++steps;
        // The window hears of the step's time after this.
        if (steps == 20) {
            EXPECT_THAT(simulator.Text(), testing::MatchesRegex("FS: [0-9][0-9][0-9][0-9]Z"));
            flight.Running().settings.Set_ACARS_Time(0);
        }
        if (steps == 22) {
            EXPECT_THAT(simulator.Text(), testing::MatchesRegex("FS: [0-9][0-9]:[0-9][0-9]"));
        }
    };
    // The link refuses once, which pauses the flight.
    flight.trouble = [&](std::size_t number, std::span<std::byte>) {
        return number == 300 ? std::optional(Delivery{Delivery_Outcome::answered, 0})
                             : std::nullopt;
    };
    ASSERT_TRUE(flight.Fly_To_Gate());
    EXPECT_GT(steps, 22U);
    EXPECT_THAT(acars,
                testing::ElementsAre("ACARS: ON", "ACARS: PAUSED", "ACARS: ON", "ACARS: OFF"));
    EXPECT_EQ(simulator.Text(), "FS:");
}

TEST_F(Window_Flight,
       Closed_again_while_it_asks_about_the_flight_it_ends_once_and_after_the_answer) {
    Flight_World flight(*world, 5);
    const Program& program = flight.Start();
    frmMain window(flight.Running());
    ASSERT_TRUE(flight.Fly_To_Gate());
    int closed = 0;
    window.Closed.connect([&] { ++closed; });
    flight.desktop.boxes.clear();
    flight.desktop.on_box = [&](const Message_Box&) {
        window.Form_Unload(ucACARS::Closing::by_signal);
        EXPECT_EQ(closed, 0);
        EXPECT_TRUE(program.link.Is_Open());
    };
    flight.desktop.answers = {Answer::yes};
    window.mnuFileExit.Choose();
    int questions = 0;
    for (const Message_Box& box : flight.desktop.boxes)
        questions += box.buttons == Buttons::yes_no ? 1 : 0;
    EXPECT_EQ(questions, 1);
    EXPECT_EQ(closed, 1);
    EXPECT_FALSE(program.link.Is_Open());
    EXPECT_EQ(flight.Rows().size(), 1U);
}

TEST_F(Window_Flight, Left_unanswered_the_question_calls_the_closing_off_and_nothing_has_ended) {
    Flight_World flight(*world, 5);
    Program& program = flight.Start();
    frmMain window(program);
    ASSERT_TRUE(flight.Fly_To_Gate());
    // A flight that waits to be logged keeps the settings that its figures were taken with.
    EXPECT_FALSE(program.settings_panel.cboFuel.Enabled());
    int closed = 0;
    window.Closed.connect([&] { ++closed; });
    flight.desktop.answers = {Answer::none};
    window.mnuFileExit.Choose();
    EXPECT_EQ(closed, 0);
    EXPECT_TRUE(program.link.Is_Open());
    EXPECT_TRUE(window.ZTimer.Enabled());
    // "On" asks the same, and flies on; a flight under way closes and is stored.
    flight.desktop.answers = {Answer::yes};
    program.panel.hypOn.Click();
    EXPECT_TRUE(program.panel.Is_Active());
    EXPECT_EQ(flight.Rows().size(), 1U);
    window.mnuFileExit.Choose();
    EXPECT_EQ(closed, 1);
    EXPECT_FALSE(program.link.Is_Open());
}

TEST_F(Window_Flight, Closed_in_a_step_in_the_air_it_ends_after_the_step_and_the_flight_goes_on) {
    Flight_World unbroken(*world, 5);
    unbroken.Start();
    ASSERT_TRUE(unbroken.Fly_To_Gate());
    unbroken.Log();

    Flight_World flight(*world, 5);
    Program* program = &flight.Start();
    std::optional<frmMain> window(std::in_place, *program);
    int closed = 0;
    window->Closed.connect([&] { ++closed; });
    int steps_in_the_air = 0;
    flight.on_step = [&] {
        if (program->engine.TIME_OFF().empty() || ++steps_in_the_air != 30)
            return;
        window->Form_Unload(ucACARS::Closing::by_pilot);
        EXPECT_EQ(closed, 0);
        EXPECT_TRUE(program->link.Is_Open()) << "the step still reads";
    };
    program->panel.hypOn.Click();
    ASSERT_TRUE(flight.desktop.Wait_Until([&] { return closed > 0; }, std::chrono::minutes(60)));
    EXPECT_FALSE(program->link.Is_Open());
    const std::string time_off = program->panel.lblTimeOff.Text();
    EXPECT_NE(time_off, "");

    window.reset();
    program = &flight.Start();
    window.emplace(*program);
    EXPECT_EQ(program->panel.lblTimeOff.Text(), time_off);
    ASSERT_TRUE(flight.Fly_To_Gate());
    flight.Log();
    EXPECT_EQ(flight.Rows(), unbroken.Rows());
    EXPECT_EQ(closed, 1);
}

}  // namespace
}  // namespace norvane::test
