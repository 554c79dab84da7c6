// One flight that touches down more than once: what counts as flying on, what only as a bounce, and
// that the row holds the last landing whenever the program was killed on the way.

#include <algorithm>

#include "common/text.h"
#include "engine_world.h"

namespace norvane::test {

namespace {

constexpr int one_flight = 0;
constexpr int first_landing_counts = 1;
constexpr double high = 400;
/// 20 ft above the runway.
constexpr double low = 40;

/// A sampling step after the first contact, which was at 13:40Z at KBOS; the later ones are at KMID
/// and each a minute after the one before.
struct Sample {
    bool on_ground;
    double altitude_ft = 20;
    double ground_speed_kt = 100;
};
constexpr Sample ground{true};
constexpr Sample taxi{true, 20, 8};
constexpr Sample fast_taxi{true, 20, 40};

std::vector<Sample> Air(std::size_t steps, double altitude_ft) {
    return std::vector<Sample>(steps, Sample{false, altitude_ft});
}

std::vector<Sample> Joined(const std::vector<std::vector<Sample>>& parts) {
    std::vector<Sample> all;
    for (const auto& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

struct Landing_Case {
    std::string title;
    std::int32_t setting;
    std::vector<Sample> samples;
    std::size_t landings;
    /// Number of the sample whose contact counts, from 1; 0: the first one.
    int last;
};

class Touch_And_Go : public Engine_World {
  protected:
    Touch_And_Go() {
        Write("bin/fs9.wld",
              "40.63975|-73.77893|13|KJFK|Kennedy\r\n42.36435|-71.00518|20|KBOS|Boston\r\n"
              "43.5|-71.0|20|KMID|Middle\r\n");
        settings->Set_ACARS_RecordArrival(1);
    }

    void Apply(const Sample& sample, int number) {
        area.Set(Variable::utc_minute, 40 + number);
        area.Set(Variable::on_ground, sample.on_ground ? 1 : 0);
        area.Set(Variable::altitude_ft, sample.altitude_ft);
        area.Set(Variable::ground_speed_kt, sample.ground_speed_kt);
        area.Set(Variable::vertical_speed_fpm, -300 - number);
        area.Set(Variable::indicated_airspeed_kt, 100 + number);
        area.Set(Variable::latitude_deg, 43.5);
        area.Set(Variable::longitude_deg, -71.0);
        area.Set_Tank(3, 700 - number * 10, 2000);
        engine->Refresh();
    }

    /// The whole flight, the program killed behind sample `killed` (from 0; -1: never).
    void Fly_Through(const Landing_Case& flight, int killed) {
        store.Delete_Section("ACARS");
        settings->Set_ACARS_TouchAndGo(flight.setting);
        Replace_Engine();
        Jet_Flight()[moment::parked](area);
        raised.clear();
        ASSERT_TRUE(Start());
        Fly(moment::parked, moment::on + 1);
        for (int i = 0; i < static_cast<int>(flight.samples.size()); ++i) {
            Apply(flight.samples[static_cast<std::size_t>(i)], i + 1);
            if (i == killed) {
                Replace_Engine();
                ASSERT_TRUE(Start(true));
            }
        }
        Fly(moment::on + 1, moment::in);
        area.Set(Variable::parking_brake, 32767);
        engine->Refresh();
    }

    std::string Last(const std::string& name) const {
        for (auto line = raised.rbegin(); line != raised.rend(); ++line) {
            if (line->starts_with(name + " "))
                return line->substr(name.size() + 1);
        }
        return "not raised";
    }

    /// What the row takes from a landing, and what follows from it.
    std::vector<std::string> Landing() const {
        std::vector<std::string> values;
        for (const auto* name :
             {"FlightON", "VS", "IASLanding", "ICAOArr", "FuelON", "WeightON", "FlightTimeHHMM",
              "FuelUsedFlight", "Distance", "MaxTaxiDestination"})
            values.push_back(Last(name));
        return values;
    }

    void Expect_Numbers_In_Order() const {
        int expected = 0;
        for (const std::string& line : raised) {
            const auto at = line.find("Msg No: M");
            if (at == std::string::npos)
                continue;
            EXPECT_EQ(std::stoi(line.substr(at + 9)), ++expected);
        }
    }
};

TEST_F(Touch_And_Go, The_Last_Landing_Counts_And_A_Bounce_Does_Not) {
    const std::vector<Landing_Case> cases{
        {"five steps", one_flight, Joined({Air(5, high), {ground}}), 1, 0},
        {"too low", one_flight, Joined({Air(8, low), {ground}}), 1, 0},
        {"never six in a row", one_flight, Joined({Air(4, high), {ground}, Air(5, high), {ground}}),
         1, 0},
        {"six steps", one_flight, Joined({Air(6, high), {ground}}), 2, 7},
        {"climbing late", one_flight, Joined({Air(7, low), Air(1, 50), {ground}}), 2, 9},
        {"back on the taxiway", one_flight,
         Joined({{taxi, fast_taxi}, Air(6, high), {ground}, Air(3, high), {ground}}), 2, 9},
        {"three landings", one_flight, Joined({Air(6, high), {ground}, Air(7, high), {ground}}), 3,
         15},
        {"the first one, as set", first_landing_counts, Joined({Air(9, high), {ground}}), 1, 0},
    };
    for (const Landing_Case& flight : cases) {
        SCOPED_TRACE(flight.title);
        Fly_Through(flight, -1);
        const auto unbroken = Landing();
        EXPECT_EQ(Last("FlightON"), std::to_string(1340 + flight.last) + " 1");
        EXPECT_EQ(Last("VS"), flight.last == 0 ? "-1,210" : std::to_string(-299 - flight.last));
        EXPECT_EQ(Last("IASLanding"), std::to_string(flight.last == 0 ? 139 : 100 + flight.last));
        EXPECT_EQ(Last("ICAOArr"), flight.last == 0 ? "KBOS Boston" : "KMID Middle");
        EXPECT_EQ(Last("FlightTimeHHMM"), "1:" + std::to_string(23 + flight.last));
        EXPECT_EQ(Last("MaxTaxiDestination"), "21");
        EXPECT_EQ(Count("TouchAndGo"), flight.landings - 1);
        EXPECT_TRUE(Messages(Message_Type::on)
                        .back()
                        .ends_with(flight.last == 0 ? "/POS 42.36000 -71.01000"
                                                    : "/POS 43.50000 -71.00000"));
        for (int killed = -1; killed < static_cast<int>(flight.samples.size()); ++killed) {
            SCOPED_TRACE(killed);
            Fly_Through(flight, killed);
            EXPECT_EQ(Landing(), unbroken);
            EXPECT_EQ(Messages(Message_Type::on).size(), flight.landings);
            EXPECT_EQ(Count("FlightOFF") + Count("FlightAtGate"), 2U);
            Expect_Numbers_In_Order();
        }
    }
}

}  // namespace

}  // namespace norvane::test
