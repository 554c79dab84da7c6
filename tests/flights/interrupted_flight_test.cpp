// A flight whose link fails, or whose program is killed, must end as the same row as an unbroken
// one.

#include <stdexcept>

#include "flights/flight_world.h"

namespace norvane::test {
namespace {

using Row = std::vector<std::string>;

constexpr std::size_t flight_level_column = 23;

/// A short hop of which five seconds pass from one sampling step to the next.
class Short_Flight : public Flight_World {
  public:
    explicit Short_Flight(World_Source& world) : Flight_World(world, 5) {
        Write("bin/fs9.wld",
              "40.639801|-73.7789|13|KJFK|Kennedy\r\n"
              "40.777199|-73.872597|21|KLGA|La Guardia\r\n");
    }
    /// The one row of the log after flying to the gate; empty when anything else came out.
    Row Fly() {
        if (!Fly_To_Gate())
            return {};
        Log();
        const auto rows = Rows();
        return rows.size() == 1 ? rows[0] : Row{};
    }
};

class Interrupted_Flight : public testing::Test {
  protected:
    Interrupted_Flight() : world(Scenario_World(Data_File("scenarios/short-jet.json"))) {
        Short_Flight flight(*world);
        flight.Start();
        unbroken = flight.Fly();
        messages = flight.messages;
        exchanges = flight.exchanges;
        EXPECT_EQ(unbroken.size(), 53U);
        EXPECT_GT(exchanges, 500U);
    }

    /// Flies with one exchange answered by `trouble`, for each exchange in turn.
    void Trouble_Every_Exchange(
        const std::function<Delivery(std::span<std::byte>)>& answer_of_trouble,
        std::size_t stride) {
        for (std::size_t troubled = 0; troubled < exchanges; troubled += stride) {
            Short_Flight flight(*world);
            bool done = false;
            flight.trouble = [&](std::size_t number, std::span<std::byte> block) {
                if (number < troubled || done)
                    return std::optional<Delivery>();
                done = true;
                return std::optional(answer_of_trouble(block));
            };
            flight.Start();
            ASSERT_EQ(flight.Fly(), unbroken) << "exchange " << troubled;
            ASSERT_TRUE(done);
            // A failed "On" is reported; nothing else may be.
            for (const auto& report : flight.Take_Reports())
                ASSERT_NE(report.find("ucACARS.ACARS_ON()"), std::string::npos) << report;
        }
    }

    std::unique_ptr<World_Source> world;
    Row unbroken;
    std::vector<std::string> messages;
    std::size_t exchanges = 0;
};

TEST_F(Interrupted_Flight, Comes_out_the_same_whichever_exchange_is_refused) {
    Trouble_Every_Exchange(
        [](std::span<std::byte>) {
            return Delivery{Delivery_Outcome::answered, 0};
        },
        1);
}

TEST_F(Interrupted_Flight, Comes_out_the_same_whichever_exchange_is_answered_with_garbage) {
    Trouble_Every_Exchange(
        [](std::span<std::byte> block) {
            std::uint32_t noise = 12345;
            for (auto& byte : block) {
                noise = noise * 1664525U + 1013904223U;
                byte = static_cast<std::byte>(noise >> 24U);
            }
            return Delivery{Delivery_Outcome::answered, 1};
        },
        1);
}

TEST_F(Interrupted_Flight,
       Comes_out_the_same_when_the_program_is_killed_after_any_step_in_the_air) {
    std::size_t kills = 0;
    for (std::size_t step = 1;; ++step) {
        Short_Flight flight(*world);
        Program& program = flight.Start();
        std::size_t steps = 0;
        bool stop = false;
        flight.on_step = [&] { stop = ++steps == step; };
        program.panel.hypOn.Click();
        flight.desktop.Wait_Until([&] { return stop || program.panel.Is_At_Gate(); },
                                  std::chrono::minutes(180));
        if (program.panel.Is_At_Gate())
            break;
        if (program.engine.TIME_OFF().empty())
            continue;
        ++kills;
        flight.on_step = {};
        flight.Kill();
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
        std::function<void(Short_Flight&)> reach;
        bool is_in_the_log = false;
    };
    const auto draft = [](const Short_Flight& flight) {
        return flight.directory / "templog.txt" / "in the way";
    };
    const std::vector<Moment> moments = {
        {"with auto-log off", [](Short_Flight& flight) { ASSERT_TRUE(flight.Fly_To_Gate()); }},
        {"while it waits for the weather",
         [&](Short_Flight& flight) {
             Program& program = flight.Running();
             program.panel.txtFlightLevel.Enter(unbroken[flight_level_column]);
             program.engine.events.FlightIN.connect([&](const std::string&, int) {
                 program.settings.Set_WX_URL("NOAA");
                 program.panel.weather.tmrWX[1].Set_Enabled(true);
             });
             program.panel.hypOn.Click();
             flight.desktop.Wait_Until([&] { return !program.engine.TIME_IN().empty(); },
                                       std::chrono::minutes(180));
             ASSERT_FALSE(program.panel.Is_At_Gate());
         }},
        {"when the log could not be written",
         [&](Short_Flight& flight) {
             std::filesystem::create_directories(draft(flight));
             ASSERT_TRUE(flight.Fly_To_Gate());
             flight.Log();
             ASSERT_FALSE(flight.Running().panel.Is_Logged());
             std::filesystem::remove_all(flight.directory / "templog.txt");
             flight.Take_Reports();
         }},
        {"behind its row",
         [](Short_Flight& flight) {
             ASSERT_TRUE(flight.Fly_To_Gate());
             flight.Running().log_entry.NewLogEntrySaveOK.connect(
                 [] { throw std::runtime_error("killed"); });
             flight.Log();
             ASSERT_EQ(flight.Take_Reports().size(), 1U);
         },
         true},
    };
    for (const Moment& moment : moments) {
        for (const bool auto_log : {false, true}) {
            SCOPED_TRACE(std::string(moment.name) + (auto_log ? ", logged by itself" : ""));
            Short_Flight flight(*world);
            flight.Start();
            moment.reach(flight);
            flight.Kill();
            ASSERT_FALSE(HasFatalFailure());
            flight.clock.Sleep(std::chrono::hours(1));
            flight.trouble = [](std::size_t, std::span<std::byte>) {
                return std::optional(Delivery{Delivery_Outcome::failed, 0});
            };
            Program& program = flight.Start();
            EXPECT_EQ(program.panel.Is_At_Gate(), !moment.is_in_the_log);
            program.settings.Set_OPT_AutoLog(auto_log);
            flight.desktop.boxes.clear();
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
