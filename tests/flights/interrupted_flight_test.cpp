// A flight whose link fails, or whose program is killed, must end as the same row as an unbroken
// one.

#include <stdexcept>

#include "flights/flight_world.h"

namespace norvane::test {
namespace {

constexpr std::size_t flight_level_column = 23;

class Interrupted_Flight : public testing::Test {
  protected:
    Interrupted_Flight() {
        Flight_World flight;
        Begin(flight);
        unbroken = flight.Fly();
        messages = flight.messages;
        exchanges = flight.exchanges;
        EXPECT_EQ(unbroken.size(), 53U);
        EXPECT_GT(exchanges, 500U);
    }
    /// Starts the program, and types what the simulator does not tell.
    static Program& Begin(Flight_World& flight) {
        Program& program = flight.Start();
        ucACARS& panel = program.panel;
        for (Text_Box* box : {&panel.txtComments, &panel.txtFlightPlan, &panel.txtPax,
                              &panel.txtCargo, &panel.optFields[0].txt})
            box->Enter("typed");
        panel.optFields[1].cbo.Choose(1);
        panel.chkIFR.Click();
        return program;
    }

    Row unbroken;
    std::vector<std::string> messages;
    std::size_t exchanges = 0;
};

/// Whether every exchange, in turn, is refused or answered with garbage.
class Troubled_Flight : public Interrupted_Flight, public testing::WithParamInterface<bool> {};
INSTANTIATE_TEST_SUITE_P(Refused_And_Garbage, Troubled_Flight, testing::Bool());

TEST_P(Troubled_Flight, Comes_out_the_same_whichever_exchange_is_troubled) {
    const bool is_garbage = GetParam();
    for (std::size_t troubled = 0; troubled < exchanges; ++troubled) {
        Flight_World flight;
        bool done = false;
        flight.trouble = [&](std::size_t exchange, std::span<std::byte> block) {
            if (exchange < troubled || done)
                return std::optional<Delivery>();
            done = true;
            std::uint32_t noise = 12345;
            for (auto& byte : is_garbage ? block : std::span<std::byte>()) {
                noise = noise * 1664525U + 1013904223U;
                byte = static_cast<std::byte>(noise >> 24U);
            }
            return std::optional(Delivery{Delivery_Outcome::answered, is_garbage ? 1U : 0U});
        };
        Begin(flight);
        ASSERT_EQ(flight.Fly(), unbroken) << "exchange " << troubled;
        ASSERT_TRUE(done);
        // A failed "On" is reported; nothing else may be.
        ASSERT_THAT(flight.Take_Reports(), testing::Each(testing::HasSubstr("ucACARS.ACARS_ON()")));
    }
}

TEST_F(Interrupted_Flight,
       Comes_out_the_same_when_the_program_is_killed_after_any_step_in_the_air) {
    std::size_t kills = 0;
    for (std::size_t step = 1;; ++step) {
        Flight_World flight;
        Program& program = Begin(flight);
        std::size_t steps = 0;
        bool stop = false;
        flight.on_step = [&] { stop = ++steps == step; };
        program.panel.hypOn.Click();
        flight.desktop.Wait_Until([&] { return stop || program.panel.Is_At_Gate(); },
                                  std::chrono::hours(3));
        if (program.panel.Is_At_Gate())
            break;
        if (program.engine.TIME_OFF().empty())
            continue;
        ++kills;
        flight.on_step = {};
        flight.Start();
        Row row = flight.Fly();
        ASSERT_EQ(row.size(), 53U) << "step " << step;
        row[flight_level_column] = unbroken[flight_level_column];
        ASSERT_EQ(row, unbroken) << "step " << step;
        ASSERT_TRUE(flight.Take_Reports().empty());
    }
    EXPECT_GT(kills, 30U);
}

/// Everything after the gate's step is between the program and its files: whatever it is doing when
/// it is killed, the flight ends in the log once, as it was, without the simulator and without a
/// message.
TEST_F(Interrupted_Flight,
       Comes_out_the_same_when_the_program_is_killed_at_any_moment_at_the_gate) {
    struct Moment {
        std::string_view name;
        std::function<void(Flight_World&)> reach;
        bool is_in_the_log = false;
    };
    const std::vector<Moment> moments = {
        {"with auto-log off", [](Flight_World& flight) { ASSERT_TRUE(flight.Fly_To_Gate()); }},
        {"while it waits for the weather",
         [&](Flight_World& flight) {
             Program& program = flight.Running();
             program.panel.txtFlightLevel.Enter(unbroken[flight_level_column]);
             program.engine.events.FlightIN.Connect([&](const std::string&, int) {
                 program.settings.Set_WX_URL("NOAA");
                 program.panel.weather.tmrWX[1].Set_Enabled(true);
             });
             program.panel.hypOn.Click();
             flight.desktop.Wait_Until([&] { return !program.engine.TIME_IN().empty(); },
                                       std::chrono::hours(3));
             ASSERT_FALSE(program.panel.Is_At_Gate());
         }},
        {"when the log could not be written",
         [&](Flight_World& flight) {
             const auto draft = flight.directory / "templog.txt";
             std::filesystem::create_directories(draft / "in the way");
             ASSERT_TRUE(flight.Fly_To_Gate());
             flight.Log();
             ASSERT_FALSE(flight.Running().panel.Is_Logged());
             std::filesystem::remove_all(draft);
             flight.Take_Reports();
         }},
        {"behind its row",
         [](Flight_World& flight) {
             ASSERT_TRUE(flight.Fly_To_Gate());
             // Heard after the log, which has the row by then.
             flight.Running().log_entry.NewLogEntrySave.Connect(
                 [] { throw std::runtime_error("killed"); });
             flight.Log();
             ASSERT_EQ(flight.Take_Reports().size(), 1U);
         },
         true},
    };
    for (const Moment& moment : moments) {
        for (const bool auto_log : {false, true}) {
            SCOPED_TRACE(std::string(moment.name) + (auto_log ? ", logged by itself" : ""));
            Flight_World flight;
            Begin(flight);
            moment.reach(flight);
            ASSERT_FALSE(HasFatalFailure());
            flight.clock.Sleep(std::chrono::hours(1));
            flight.linked = false;
            Program& program = flight.Start();
            EXPECT_EQ(program.panel.Is_At_Gate(), !moment.is_in_the_log);
            program.settings.Set_OPT_AutoLog(auto_log);
            flight.desktop.answers = {Answer::yes};
            program.panel.Settle_Stored_Flight();
            EXPECT_EQ(flight.desktop.answers.empty(), !auto_log && !moment.is_in_the_log);
            EXPECT_EQ(flight.Rows(), (std::vector<Row>{unbroken}));
            EXPECT_EQ(flight.messages, messages);
            EXPECT_FALSE(flight.Start().panel.Is_Tracked_Or_Stored());
            EXPECT_TRUE(flight.Take_Reports().empty());
        }
    }
}

}  // namespace
}  // namespace norvane::test
