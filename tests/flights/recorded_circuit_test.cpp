// The circuit that a real simulator recorded, flown by the whole program: what stands in the log
// must be what stands in the recording.

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "flights/flight_world.h"

namespace norvane::test {
namespace {

std::size_t Count(const std::vector<std::string>& messages, const std::string& part) {
    return static_cast<std::size_t>(std::count_if(
        messages.begin(), messages.end(),
        [&](const std::string& message) { return message.find(part) != std::string::npos; }));
}

/// What the recording shows at a moment, read without the engine.
class Recorded_Moments {
  public:
    explicit Recorded_Moments(World_Source& world) : m_world(world) {}

    std::string Time(double seconds) {
        m_world.Apply(seconds, m_area);
        return fmt::format("{:02.0f}{:02.0f}Z", m_area.Get(Variable::utc_hour),
                           m_area.Get(Variable::utc_minute));
    }
    std::string Weight(double seconds) {
        m_world.Apply(seconds, m_area);
        return fmt::format("{:.0f} lbs", std::trunc(m_area.Get(Variable::total_weight_lbs)));
    }
    std::string Fuel(double seconds) {
        return fmt::format("{:.0f} lbs", std::round(Gallons(seconds)) *
                                             m_area.Get(Variable::fuel_weight_lb_per_gal));
    }
    std::string Speed(double seconds) {
        m_world.Apply(seconds, m_area);
        return fmt::format("{:.0f} kts", m_area.Get(Variable::indicated_airspeed_kt));
    }

  private:
    double Gallons(double seconds) {
        m_world.Apply(seconds, m_area);
        double gallons = 0;
        for (const Tank_Row& tank : All_Tanks())
            gallons += Integer(tank.level_offset) / 65536. / 128 * Integer(tank.capacity_offset);
        return gallons;
    }
    double Integer(std::uint32_t offset) {
        double value = 0;
        for (std::size_t i = 4; i-- > 0;)
            value = value * 256 + std::to_integer<int>(m_area.Bytes(offset, 4)[i]);
        return value;
    }

    World_Source& m_world;
    Offset_Area m_area;
};

/// Moments just after the events, in seconds of the recording; the log may lag by a step.
constexpr double brake_released = 15.0;
constexpr double brake_set = 425.5;

TEST(Recorded_Circuit, Ends_as_one_row_of_the_recordings_own_figures) {
    const auto world = Recorded_World("phto-circuit.rec");
    Flight_World flight(*world);
    flight.Start();
    ASSERT_TRUE(flight.Fly_To_Gate());
    flight.Log();

    // The touchdown bounces: each event must still come once.
    for (const auto* label : {"Label: QA", "Label: QB", "Label: QC", "Label: QD", "Label: QM"})
        EXPECT_EQ(Count(flight.messages, label), 1U) << label;
    const auto rows = flight.Rows();
    ASSERT_EQ(rows.size(), 1U);
    const auto& row = rows[0];
    ASSERT_EQ(row.size(), 53U);
    EXPECT_EQ(row[0], "11/22/2026");
    EXPECT_EQ(row[1], "Cessna 172P Skyhawk (1982)");
    EXPECT_EQ(row[2], "N172NV");
    EXPECT_EQ(row[3], "PHTO");
    EXPECT_EQ(row[4], "Hilo International Airport");
    EXPECT_EQ(row[8], "PHTO");

    Recorded_Moments recorded(*world);
    EXPECT_EQ(row[5], recorded.Time(brake_released));
    EXPECT_EQ(row[11], recorded.Time(brake_set));
    EXPECT_EQ(row[7], recorded.Fuel(brake_released));
    EXPECT_EQ(row[12], recorded.Fuel(brake_set));
    EXPECT_EQ(row[27], recorded.Weight(brake_released));
    EXPECT_EQ(row[30], recorded.Weight(brake_set));
    EXPECT_EQ(row[32], recorded.Speed(41.0)) << "lift-off";
    EXPECT_EQ(row[13], "0.1");
    EXPECT_EQ(row[14], "0:06");
    EXPECT_EQ(row[25], "0 nm");
    EXPECT_EQ(row[37], "VFR");
    EXPECT_TRUE(flight.Take_Reports().empty());
}

}  // namespace
}  // namespace norvane::test
