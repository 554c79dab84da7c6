// The main window over a whole flight: what its status bar says, and closing it in the air.

#include "app/frm_main.h"
#include "flights/flight_world.h"

namespace norvane::test {
namespace {

class Window_Flight : public testing::Test {
  protected:
    Window_Flight() {
        window->Closed.Connect([this] { ++closed; });
    }

    Flight_World flight;
    Program& program = flight.Start();
    std::optional<frmMain> window{program};
    int closed = 0;
};

TEST_F(Window_Flight, The_status_bar_follows_the_flight) {
    const Label& status = window->Status(Status_Panel::acars);
    const Label& simulator = window->Status(Status_Panel::simulator);
    std::vector<std::string> acars;
    window->barStatus[1].changed.Connect([&] { acars.push_back(status.Text()); });
    // The link refuses once, which pauses the flight.
    flight.trouble = [&](std::size_t number, std::span<std::byte>) {
        return number == 300 ? std::optional(Delivery{Delivery_Outcome::answered, 0})
                             : std::nullopt;
    };
    ASSERT_TRUE(flight.Fly_To_Gate());
    EXPECT_THAT(acars,
                testing::ElementsAre("ACARS: ON", "ACARS: PAUSED", "ACARS: ON", "ACARS: OFF"));
    EXPECT_EQ(simulator.Text(), "FS:");
}

/// What a signal asks for behind the pilot's question is done, whatever he answers.
TEST(Window_Closed_Twice, Ends_once_and_after_the_answer) {
    for (const Answer answer : {Answer::yes, Answer::none}) {
        Flight_World flight;
        Program& program = flight.Start();
        frmMain window(program);
        ASSERT_TRUE(flight.Fly_To_Gate());
        int closed = 0;
        window.Closed.Connect([&] { ++closed; });
        int questions = 0;
        flight.desktop.on_box = [&](const Message_Box& box) {
            questions += box.buttons == Buttons::yes_no ? 1 : 0;
            window.Form_Unload(ucACARS::Closing::by_signal);
            EXPECT_EQ(closed, 0);
            EXPECT_TRUE(program.link.Is_Open());
        };
        flight.desktop.answers = {answer};
        window.mnuFileExit.Choose();
        EXPECT_EQ(questions, 1);
        EXPECT_EQ(closed, 1);
        EXPECT_FALSE(program.link.Is_Open());
        EXPECT_EQ(flight.Rows().size(), answer == Answer::yes ? 1U : 0U);
        EXPECT_EQ(program.panel.Kept_In().empty(), answer == Answer::yes);
        flight.Take_Reports();
    }
}

TEST_F(Window_Flight, Closed_in_a_step_in_the_air_it_ends_after_the_step_and_the_flight_goes_on) {
    Flight_World unbroken;
    unbroken.Start();
    const Row row = unbroken.Fly();
    int steps_in_the_air = 0;
    flight.on_step = [&] {
        if (closed > 0 || program.engine.TIME_OFF().empty() || ++steps_in_the_air != 30)
            return;
        window->Form_Unload(ucACARS::Closing::by_pilot);
        EXPECT_EQ(closed, 0);
        EXPECT_TRUE(program.link.Is_Open()) << "the step still reads";
    };
    program.panel.hypOn.Click();
    ASSERT_TRUE(flight.desktop.Wait_Until([&] { return closed > 0; }, std::chrono::minutes(60)));
    EXPECT_FALSE(program.link.Is_Open());
    const std::string time_off = program.panel.lblTimeOff.Text();
    EXPECT_NE(time_off, "");

    window.reset();
    flight.Start();
    window.emplace(program);
    EXPECT_EQ(program.panel.lblTimeOff.Text(), time_off);
    EXPECT_EQ(flight.Fly(), row);
    EXPECT_EQ(closed, 1);
}

}  // namespace
}  // namespace norvane::test
