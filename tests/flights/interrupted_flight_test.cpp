// A flight whose link fails, or whose program is killed, must end as the same row as an unbroken
// one.

#include "flights/flight_world.h"

namespace norvane::test {
namespace {

constexpr std::size_t flight_level_column = 23;

class Interrupted_Flight : public testing::Test {
  protected:
    Interrupted_Flight() {
        Flight_World flight;
        flight.store.Set("Options", "Recordings", "0");
        Begin(flight);
        unbroken = flight.Fly();
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
    std::size_t exchanges = 0;
};

struct Trouble {
    bool is_garbage = false;
    /// With it the exchanges are three times as many: some of them stand for all.
    bool is_recorded = false;
};

/// Every exchange, in turn, is refused or answered with garbage.
class Troubled_Flight : public Interrupted_Flight, public testing::WithParamInterface<Trouble> {};
INSTANTIATE_TEST_SUITE_P(Refused_And_Garbage, Troubled_Flight,
                         testing::Values(Trouble{false, false}, Trouble{true, false},
                                         Trouble{false, true}, Trouble{true, true}));

TEST_P(Troubled_Flight, Comes_out_the_same_whichever_exchange_is_troubled) {
    const bool is_garbage = GetParam().is_garbage;
    const bool is_recorded = GetParam().is_recorded;
    for (std::size_t troubled = 0;; troubled += is_recorded ? 23 : 1) {
        Flight_World flight;
        flight.store.Set("Options", "Recordings", is_recorded ? "200" : "0");
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
        if (!done) {
            EXPECT_GE(troubled, exchanges);
            break;
        }
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

}  // namespace
}  // namespace norvane::test
