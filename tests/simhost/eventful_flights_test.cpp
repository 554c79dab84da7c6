// Flights with more in them than a landing: what a recorder with 50 samples a second finds of their
// touchdowns, approaches, turns, jumps and of the simulator's time.

#include <gmock/gmock.h>

#include <cmath>

#include "simhost/flight/flight_path.h"
#include "simhost/flight/flight_world.h"
#include "simhost/scenario/scenario.h"
#include "simhost/scenario_files.h"

namespace norvane::test {
namespace {

using enum Variable;

constexpr double sample_s = 0.02;

struct Sample {
    double seconds = 0, exact_ft = 0;
    Offset_Area area;
    [[nodiscard]] double operator[](Variable variable) const { return area.Get(variable); }
    [[nodiscard]] Position Place() const {
        return {area.Get(latitude_deg), area.Get(longitude_deg)};
    }
};

class Eventful_Flight {
  public:
    explicit Eventful_Flight(const std::string& name)
        : file(Test_Scenario(name)),
          scenario(Read_Scenario(file, aircraft_files)),
          world(scenario, aircraft_files) {}
    Sample At(double seconds) {
        Sample sample{.seconds = seconds, .area = {}};
        world.Apply(seconds, sample.area);
        sample.exact_ft =
            Decode_Exact_Altitude(sample.area.Bytes(Offset_Of(altitude_fraction_ft), 8));
        return sample;
    }
    /// The first samples of each stay on the ground (or in the air), the first one excepted. The
    /// simulator's time is to go with the flight's.
    std::vector<Sample> Changes_To(bool ground) {
        std::vector<Sample> changes;
        bool before = true;
        for (int i = 0; i * sample_s < world.Model().Length_S(); ++i) {
            const double seconds = i * sample_s;
            const bool now = world.Model().At(seconds).on_ground;
            if (now != before && now == ground)
                changes.push_back(At(seconds));
            before = now;
        }
        return changes;
    }
    /// The slope of a straight line through the last quarter of a second before a moment.
    double Fitted_Fpm(double contact_s) {
        double sum_tt = 0, sum_th = 0;
        const double middle_s = contact_s - 0.14;
        for (double t = -0.12; t < 0.121; t += sample_s) {
            sum_tt += t * t;
            sum_th += t * At(middle_s + t).exact_ft;
        }
        return sum_th / sum_tt * 60;
    }

    std::filesystem::path file;
    Scenario_Data scenario;
    Flight_World world;
};

TEST(Eventful_Flights, Meet_The_Ground_At_The_Rate_That_Was_Asked_For) {
    double softer_g = 1;
    for (const std::string name : {"touch-and-go", "go-around", "short-jet", "hard-landing"}) {
        Eventful_Flight flight(name);
        const Sample contact = flight.Changes_To(true).front();
        EXPECT_NEAR(flight.Fitted_Fpm(contact.seconds), -flight.scenario.touchdown_fpm, 1) << name;
        EXPECT_NEAR(contact.exact_ft, flight.At(contact.seconds + 0.3).exact_ft, 0.01) << name;
        double highest_g = 0;
        for (double after = 0; after < 0.4; after += sample_s)
            highest_g = std::max(highest_g, flight.At(contact.seconds + after)[g_load]);
        EXPECT_GT(highest_g, softer_g + 0.02) << name << ": a harder touchdown weighs more";
        EXPECT_NEAR(flight.At(contact.seconds - 0.1)[g_load], 1, 0.1) << name;
        EXPECT_NEAR(flight.At(contact.seconds + 0.5)[g_load], 1, 0.3) << name;
        softer_g = highest_g;
    }
    EXPECT_GT(softer_g, 1.8);
}

TEST(Eventful_Flights, Lie_In_The_Air_As_They_Move) {
    Eventful_Flight flight("short-jet");
    const double lift_off_s = flight.Changes_To(false).front().seconds;
    const double touchdown_s = flight.Changes_To(true).front().seconds;
    EXPECT_GT(flight.At(lift_off_s - 0.3)[pitch_deg], 3) << "rotated";
    Sample before = flight.At(lift_off_s + 1);
    for (double seconds = lift_off_s + 2; seconds < touchdown_s; ++seconds) {
        const Sample now = flight.At(seconds);
        const double turned_deg = Half_Turn(now[true_heading_deg] - before[true_heading_deg]);
        // The line turns only; what the wind does to the heading is slower than that.
        if (std::abs(turned_deg) > 0.8) {
            EXPECT_GT(now[bank_deg] * turned_deg, 0) << seconds << ": turns against its bank";
        }
        EXPECT_LE(std::abs(now[bank_deg] - before[bank_deg]), 8) << seconds;
        EXPECT_LE(std::abs(now[pitch_deg] - before[pitch_deg]), 3) << seconds;
        EXPECT_NEAR(now[pitch_deg], 4, 14) << seconds;
        before = now;
    }
}

TEST(Eventful_Flights, Cross_The_Threshold_With_The_Nose_In_The_Wind) {
    Eventful_Flight flight("go-around");
    const Sample contact = flight.Changes_To(true).front();
    const double runway_deg = flight.scenario.arrival.runway->heading_deg;
    const auto crab_deg = [&](double after_s) {
        return Half_Turn(flight.At(contact.seconds + after_s)[true_heading_deg] - runway_deg);
    };
    // 14 kt from 75 degrees right at about 65 kt.
    EXPECT_NEAR(crab_deg(-30), 12, 2.5);
    EXPECT_NEAR(crab_deg(-0.05), 6, 1.5) << "half of it is kept";
    EXPECT_NEAR(crab_deg(2), 0, 0.2) << "the wheels have turned it into its way";
}

TEST(Eventful_Flights, Stand_Still_Hurry_And_Jump_With_The_Simulators_Time) {
    Eventful_Flight flight("held");
    const Pause pause = flight.scenario.pauses.front();
    const Rated_Part part = flight.scenario.rated_parts.front();
    const Sample first = flight.At(pause.at_s + 0.1);
    Sample last = flight.At(pause.at_s + pause.for_s - 0.1);
    EXPECT_TRUE(std::ranges::equal(first.area.Bytes(0, Offset_Area::size),
                                   last.area.Bytes(0, Offset_Area::size)));
    EXPECT_EQ(last[paused], 1);
    EXPECT_EQ(flight.At(pause.at_s + pause.for_s + 0.1)[paused], 0);
    const double faster_from = part.from_s + pause.for_s;
    const double faster_s = (part.until_s - part.from_s) / part.rate;
    EXPECT_EQ(flight.At(faster_from + 1)[simulation_rate], 4);
    EXPECT_EQ(flight.At(faster_from + faster_s + 1)[simulation_rate], 1);
    EXPECT_DOUBLE_EQ(flight.world.Length(), flight.world.Model().Length_S() + pause.for_s +
                                                faster_s - (part.until_s - part.from_s));
    int jumps = 0;
    Sample before = flight.At(0);
    for (double seconds = 0.25; seconds < flight.world.Length(); seconds += 0.25) {
        const Sample now = flight.At(seconds);
        const double moved_nm = Great_Circle_Nm(before.Place(), now.Place());
        const double rate = std::max(now[simulation_rate], before[simulation_rate]);
        jumps += moved_nm > 0.3 ? 1 : 0;
        if (moved_nm <= 0.3) {
            EXPECT_LE(moved_nm, (now[ground_speed_kt] + 8) * rate * 0.25 / 3600) << seconds;
        }
        before = now;
    }
    EXPECT_EQ(jumps, 1);
}

}  // namespace
}  // namespace norvane::test
