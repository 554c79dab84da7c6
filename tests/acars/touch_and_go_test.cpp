// One flight that touches down more than once: what counts as flying on, what only as a bounce, and
// that the row holds the last landing whenever the program was killed on the way.

#include <fmt/format.h>

#include <cmath>

#include "common/text.h"
#include "engine_world.h"

namespace norvane::test {
namespace {

using enum Variable;

constexpr int one_flight = 0;
constexpr int first_landing_counts = 1;

class Touch_And_Go : public Engine_World {
  protected:
    Touch_And_Go() {
        Write("bin/fs9.wld",
              "40.63975|-73.77893|13|KJFK|Kennedy\r\n42.36435|-71.00518|20|KBOS|Boston\r\n"
              "43.5|-71.0|20|KMID|Middle\r\n");
        settings.Set_ACARS_RecordArrival(1);
    }

    /// A step after the first contact, which was at 13:40Z at KBOS; the later ones are at KMID and
    /// each a minute after the one before: high, above or below what counts as flying (25 ft), on
    /// the ground, taxiing slowly or fast.
    void Step(char what, int number) {
        Put(utc_minute, 40 + number, on_ground, what == 'g' || what == 's' || what == 'f' ? 1 : 0);
        area.Set(altitude_ft, what == 'h' ? 400 : what == 'a' ? 46 : what == 'b' ? 43 : 20);
        Put(ground_speed_kt,
            what == 's'   ? 8
            : what == 'f' ? 40
                          : 100,
            vertical_speed_fpm, -300 - number, indicated_airspeed_kt, 100 + number, latitude_deg,
            43.5, longitude_deg, -71.0);
        area.Set_Tank(3, 700 - number * 10, 2000);
        engine->Refresh();
    }

    /// The whole flight, the program killed behind step `killed` (from 0; -1: never).
    void Fly_Through(const std::string& steps, int killed) {
        Begin_Anew();
        Fly_To(moment::on + 1);
        for (int i = 0; i < static_cast<int>(steps.size()); ++i) {
            Step(steps[static_cast<std::size_t>(i)], i + 1);
            if (i == killed) {
                Replace_Engine();
                ASSERT_TRUE(Start(true));
            }
        }
        Fly(moment::on + 1, moment::in);
        Set(parking_brake, 32767);
    }

    /// What the row takes from a landing, as it was raised last.
    std::string Landing() const {
        std::string values;
        for (const std::string name :
             {"FlightON", "VS", "IASLanding", "ICAOArr", "FuelON", "FlightTimeHHMM",
              "MaxTaxiDestination", "MaxTaxiOrigin", "FlightLevel"})
            values += All(name).back() + ", ";
        return values;
    }
};

TEST_F(Touch_And_Go, The_Last_Landing_Counts_And_A_Bounce_Does_Not) {
    struct Landing_Case {
        std::int32_t setting;
        std::string steps;
        std::size_t landings;
        /// Number of the step whose contact counts, from 1; 0: the first one.
        int last;
    };
    for (const auto& [setting, steps, landings, last] :
         std::vector<Landing_Case>{{one_flight, "hhhhhg", 1, 0},
                                   {one_flight, "bbbbbbbbg", 1, 0},
                                   {one_flight, "hhhhghhhhhg", 1, 0},
                                   {one_flight, "hhhhhhg", 2, 7},
                                   {one_flight, "bbbbbbbag", 2, 9},
                                   {one_flight, "sfhhhhhhghhhg", 2, 9},
                                   {one_flight, "hhhhhhghhhhhhhg", 3, 15},
                                   {first_landing_counts, "hhhhhhhhhg", 1, 0}}) {
        settings.Set_ACARS_TouchAndGo(setting);
        const std::string landing =
            last == 0 ? "1340 1, -1,210, 139, KBOS Boston, 9450 0, 1:23, 21, 17, FL370, "
                      : fmt::format("{} 1, -{}, {}, KMID Middle, {} 0, 1:{}, 21, 17, FL370, ",
                                    1340 + last, 299 + last, 100 + last,
                                    std::lround((1400 - last * 10) * 6.75), 23 + last);
        for (int killed = -1; killed < static_cast<int>(steps.size()); ++killed) {
            SCOPED_TRACE(fmt::format("{} killed behind {}", steps, killed));
            Fly_Through(steps, killed);
            EXPECT_EQ(Landing(), landing);
            EXPECT_EQ(Messages(Message_Type::on).size(), landings);
            EXPECT_TRUE(
                Messages(Message_Type::on)
                    .back()
                    .ends_with(last == 0 ? "/POS 42.36000 -71.01000" : "/POS 43.50000 -71.00000"));
            EXPECT_EQ(Count("FlightOFF") + Count("FlightAtGate"), 2U);
            EXPECT_EQ(Count("TouchAndGo"), landings - 1);
            EXPECT_TRUE(Contains(Messages(Message_Type::times).back(),
                                 fmt::format("Msg No: M{:02}A", 8 + landings)));
        }
    }
}

}  // namespace
}  // namespace norvane::test
