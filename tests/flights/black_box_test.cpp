// The black box of a flight: what it recorded gives the logged row again, under other settings
// another one, and nothing that happens to it touches the flight.

#include <algorithm>
#include <random>

#include "app/recompute.h"
#include "flights/flight_world.h"
#include "simhost/recording/replay.h"
#include "simlink/recording.h"

namespace norvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The one packed recording of the program directory; empty when there is another number of them.
std::filesystem::path Recording_Of(const Flight_World& flight) {
    std::vector<std::filesystem::path> files;
    std::error_code failure;
    for (const auto& entry :
         std::filesystem::directory_iterator(flight.directory / "flights", failure)) {
        if (entry.path().extension() == ".gz")
            files.push_back(entry.path());
    }
    return files.size() == 1 ? files[0] : std::filesystem::path();
}

/// Ends the program as a pilot does, so that the recording is packed.
void End(Flight_World& flight) {
    flight.Running().Close(ucACARS::Closing::by_pilot);
}

/// What computing the flight again gives, as "column: logged -> computed".
std::vector<std::string> Recomputed(Flight_World& flight, const Row& logged,
                                    const Setting_Changes& changes = {}) {
    const auto file = Recording_Of(flight);
    if (file.empty())
        return {"no recording"};
    const std::string row = Join(logged, "|");
    const auto computed = Recompute(flight.Running().services, Read_Recording(file), row, changes);
    std::vector<std::string> lines;
    for (const Row_Difference& found : Differences(row, computed.row))
        lines.push_back(found.caption + ": " + found.logged + " -> " + found.computed);
    return computed.row.empty() ? std::vector<std::string>{"no row"} : lines;
}

TEST(Black_Box, Gives_the_logged_row_again_and_under_other_settings_another) {
    Replay circuit(Read_Recording(Data_File("phto-circuit.rec")));
    for (const char* clock : {"0", "1"}) {
        SCOPED_TRACE(clock);
        Flight_World flight(circuit, 0.5);
        flight.store.Set("Options", "Use Time", clock);
        flight.Start().panel.txtComments.Enter("typed");
        const Row row = flight.Fly();
        ASSERT_EQ(row.size(), 53U);
        End(flight);
        EXPECT_THAT(Recomputed(flight, row), IsEmpty());
        EXPECT_THAT(Recording_Of(flight).string(), HasSubstr("_PHTO-PHTO"));
        EXPECT_TRUE(flight.Take_Reports().empty());
        if (*clock == '1')
            continue;
        // The simulator's own recording goes on beyond the gate.
        const auto circuit_moments = Read_Recording(Data_File("phto-circuit.rec"));
        const auto compute = [&](const Setting_Changes& changes) {
            return Recompute(flight.Running().services, circuit_moments, Join(row, "|"), changes)
                .row;
        };
        EXPECT_EQ(compute({}), Join(row, "|"));
        // The engine stops 10 s after the brake is set, in the next minute.
        std::vector<std::string> lines;
        for (const Row_Difference& found :
             Differences(Join(row, "|"), compute({{"ACARS_EOF", "1"}})))
            lines.push_back(found.caption + ": " + found.logged + " -> " + found.computed);
        EXPECT_THAT(
            lines,
            ElementsAre("Time In: 2211Z -> 2212Z", "Block HH:MM: 0:06 -> 0:07",
                        HasSubstr("PHTO 222211Z 06005KT 2SM SKC 20/8 A2997 -> PHTO 222212Z")));
    }
}

TEST(Black_Box, Of_a_flight_that_was_killed_anywhere_gives_its_row_again) {
    std::mt19937 random(14);
    for (int kill = 0; kill < 100; ++kill) {
        SCOPED_TRACE(kill);
        Flight_World flight;
        Program& program = flight.Start();
        const std::size_t at = 1 + random() % 400;
        std::size_t exchange = 0;
        flight.trouble = [&](std::size_t, std::span<std::byte>) -> std::optional<Delivery> {
            ++exchange;
            return std::nullopt;
        };
        program.panel.hypOn.Click();
        flight.desktop.Wait_Until([&] { return exchange >= at * 20 || program.panel.Is_At_Gate(); },
                                  std::chrono::hours(3));
        const bool was_flying = !program.engine.TIME_OFF().empty();
        flight.trouble = {};
        flight.Start();
        const Row row = flight.Fly();
        ASSERT_EQ(row.size(), 53U);
        End(flight);
        if (was_flying) {
            ASSERT_THAT(Recomputed(flight, row), IsEmpty());
        }
        ASSERT_THAT(flight.Take_Reports(), IsEmpty());
    }
}

TEST(Black_Box, That_cannot_be_written_costs_the_flight_nothing) {
    Flight_World untroubled;
    untroubled.Start();
    const Row expected = untroubled.Fly();
    for (const bool from_the_start : {true, false}) {
        SCOPED_TRACE(from_the_start);
        Flight_World flight;
        const auto block = [&] {
            std::filesystem::remove_all(flight.directory / "flights");
            flight.Write("flights", "in the way");
        };
        if (from_the_start)
            block();
        flight.Start();
        flight.Take_Off();
        if (!from_the_start)
            block();
        EXPECT_EQ(flight.Fly(), expected);
        End(flight);
        EXPECT_LE(flight.Take_Reports().size(), 1U);
    }
}

}  // namespace
}  // namespace norvane::test
