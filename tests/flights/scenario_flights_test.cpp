// The scenarios that ship, and a circuit that a real simulator recorded, flown by the whole program
// from the gate to the gate: what the log holds of each, byte for byte. The rows' fuel, weights,
// distances and times were checked against the worlds when they were taken; those of the circuit
// were read out of the recording at 15.0 s (brake released), 41.0 s (lift-off) and 425.5 s (brake
// set), without the engine.

#include <algorithm>

#include "common/line_reader.h"
#include "flights/flight_world.h"
#include "simhost/recording/replay.h"
#include "simlink/recording.h"

namespace norvane::test {
namespace {

TEST(Scenario_Flights, End_as_the_row_that_is_kept_of_each) {
    const struct {
        const char* world;
        const char* fuel_unit;
        const char* weight_unit;
    } flights[] = {{"kjfk-kbos", "0", "0"},      {"egll-lfpg", "1", "1"},
                   {"turboprop", "0", "1"},      {"helicopter", "1", "0"},
                   {"piston-circuit", "0", "0"}, {"phto-circuit", "0", "0"}};
    std::string rows;
    for (const auto& [name, fuel_unit, weight_unit] : flights) {
        SCOPED_TRACE(name);
        std::unique_ptr<World_Source> world;
        if (const auto recorded = Data_File(name + std::string(".rec")); exists(recorded))
            world = std::make_unique<Replay>(Read_Recording(recorded));
        else
            world = Scenario_World(std::filesystem::path(NORVANE_SOURCE_DIR) / "data/scenarios" /
                                   (name + std::string(".json")));
        Flight_World flight(*world, 0.5);
        flight.store.Set("Options", "Report Fuel", fuel_unit);
        flight.store.Set("Options", "Report Weight", weight_unit);
        const ucACARS& panel = flight.Start().panel;
        rows += Join(flight.Fly(), "|");
        for (const Label* taxi : {&panel.lblMaxTaxiOrigin, &panel.lblMaxTaxiDestination})
            rows += "|" + taxi->Text();
        rows += "\n";
        // A touchdown may bounce: each event must still come once.
        for (const auto* label :
             {"Label: QA", "Label: QB", "Label: QC", "Label: QD", "Label: QM"}) {
            EXPECT_EQ(std::count_if(flight.messages.begin(), flight.messages.end(),
                                    [&](const auto& text) { return Contains(text, label); }),
                      1)
                << label;
        }
        EXPECT_TRUE(flight.Take_Reports().empty());
    }
    EXPECT_EQ(rows, Read_File(Data_File("rows.txt")));
}

}  // namespace
}  // namespace norvane::test
