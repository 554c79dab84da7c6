// Where an unattended flight is taken up again, and where it waits.

#include "cli/resume_check.h"

#include "simlink/in_process_transport.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"
#include "support/test_world.h"

namespace norvane::test {
namespace {

class Resume_Check : public Test_World {};

TEST_F(Resume_Check, A_flight_goes_on_near_its_last_position_or_in_the_air_if_it_was) {
    using Case = std::tuple<const char*, bool, double, bool>;
    for (const auto& [phase, on_ground, north, goes_on] : {Case{"2", true, 0.16, true},
                                                           {"2", true, 0.17, false},
                                                           {"2", false, 3, true},
                                                           {"3", true, 0.16, true},
                                                           {"3", true, 0.17, false},
                                                           {"3", false, 3, false},
                                                           {"", true, 3, true}}) {
        store.Set("ACARS", "45", phase);
        store.Set("ACARS", "LastLatitude", "40");
        store.Set("ACARS", "LastLongitude", "-73");
        Offset_Area area;
        area.Set(Variable::latitude_deg, 40 + north);
        area.Set(Variable::longitude_deg, -73);
        area.Set(Variable::on_ground, on_ground ? 1 : 0);
        In_Process_Transport transport(area);
        modFSUIPC link(transport, clock);
        int asked = 0;
        EXPECT_EQ(Await_Stored_Flight_In_The_Simulator(services, link, [&] { return ++asked > 2; }),
                  goes_on)
            << phase << " " << north;
        EXPECT_FALSE(link.Is_Open());
    }
}

}  // namespace
}  // namespace norvane::test
