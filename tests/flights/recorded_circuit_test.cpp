// The circuit that a real simulator recorded, flown by the whole program: what stands in the log
// must be what stands in the recording.

#include <algorithm>

#include "flights/flight_world.h"
#include "simhost/recording/replay.h"
#include "simlink/recording.h"

namespace norvane::test {
namespace {

TEST(Recorded_Circuit, Ends_as_one_row_of_the_recordings_own_figures) {
    Replay world(Read_Recording(Data_File("phto-circuit.rec")));
    Flight_World flight(world, 0.5);
    flight.Start();
    // Times, fuel, weights and the speed at lift-off were read out of the recording at 15.0 s
    // (brake released), 41.0 s (lift-off) and 425.5 s (brake set), without the engine.
    EXPECT_EQ(Join(flight.Fly(), "|"),
              "11/22/2026|Cessna 172P Skyhawk (1982)|N172NV|PHTO|Hilo International "
              "Airport|2205Z|2205Z|66 lbs|PHTO|Hilo International Airport|2211Z|2211Z|60 "
              "lbs|0.1|0:06|6 lbs|0.1|0:06|6 lbs||210|||984||0 nm|1647 lbs|1711 lbs|1711 lbs|1708 "
              "lbs|1708 lbs|E1  RPM - MAN 25\" Hg|54 kts|-118 ft/min|47 kts|PHTO 222204Z 06005KT "
              "2SM SKC 16/6 A2997|PHTO 222211Z 06005KT 2SM SKC 20/8 A2997|VFR" +
                  std::string(15, '|'));
    // The touchdown bounces: each event must still come once.
    for (const auto* label : {"Label: QA", "Label: QB", "Label: QC", "Label: QD", "Label: QM"}) {
        EXPECT_EQ(std::count_if(flight.messages.begin(), flight.messages.end(),
                                [&](const auto& text) { return Contains(text, label); }),
                  1)
            << label;
    }
    EXPECT_TRUE(flight.Take_Reports().empty());
}

}  // namespace
}  // namespace norvane::test
