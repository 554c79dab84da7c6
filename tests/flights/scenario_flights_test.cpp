// The five scenarios that ship, flown from the gate to the gate with figures a pilot would believe.

#include <cmath>

#include "common/great_circle.h"
#include "flights/flight_world.h"

namespace norvane::test {
namespace {

struct Shipped_Flight {
    const char* scenario;
    const char* origin;
    const char* destination;
    bool jet;
    bool piston;
    const char* fuel_setting;    // "Report Fuel": 0 lbs, 1 kg
    const char* weight_setting;  // "Report Weight"
    const char* unit;

    friend std::ostream& operator<<(std::ostream& out, const Shipped_Flight& flight) {
        return out << flight.scenario;
    }
};

constexpr double kilograms_per_pound = 0.45359237;

class Scenario_Flights : public testing::TestWithParam<Shipped_Flight> {};

/// The number at the start of a text such as "1234 lbs".
double Figure(const std::string& text) {
    return Parse_Number(Before(text, " ")).value_or(NAN);
}

/// Where the aircraft stands at a moment of the world.
Position Place(World_Source& world, double seconds) {
    Offset_Area area;
    world.Apply(seconds, area);
    return {area.Get(Variable::latitude_deg), area.Get(Variable::longitude_deg)};
}

int Minutes(const std::string& hours_and_minutes) {
    const auto parts = Split(hours_and_minutes, ':');
    return Parse_Int32(parts.at(0)).value() * 60 + Parse_Int32(parts.at(1)).value();
}

TEST_P(Scenario_Flights, End_at_the_gate_with_plausible_figures) {
    const Shipped_Flight& expected = GetParam();
    const auto world = Scenario_World(std::filesystem::path(NORVANE_SOURCE_DIR) / "data" /
                                      "scenarios" / expected.scenario);
    Flight_World flight(*world);
    flight.store.Set("Options", "Report Fuel", expected.fuel_setting);
    flight.store.Set("Options", "Report Weight", expected.weight_setting);
    flight.Start();
    ASSERT_TRUE(flight.Fly_To_Gate());
    flight.Log();
    const auto rows = flight.Rows();
    ASSERT_EQ(rows.size(), 1U);
    const auto& row = rows[0];

    EXPECT_EQ(row[3], expected.origin);
    EXPECT_EQ(row[8], expected.destination);
    const double fuel_out = Figure(row[7]);
    const double fuel_in = Figure(row[12]);
    EXPECT_EQ(row[7].substr(row[7].find(' ')), expected.unit);
    EXPECT_LT(fuel_in, fuel_out);
    // Kilograms used come from pounds used, not from the two figures in kilograms.
    EXPECT_NEAR(Figure(row[15]), fuel_out - fuel_in, 1);
    EXPECT_LE(Figure(row[18]), Figure(row[15]));
    EXPECT_GT(Minutes(row[14]), Minutes(row[17]));

    const double from_stand_to_stand =
        Great_Circle_Nm(Place(*world, 0), Place(*world, world->Length()));
    EXPECT_NEAR(Figure(row[25]), from_stand_to_stand, 1);

    // Weights fall by the fuel burnt, but for the rounding of gallons.
    const double weight_out = Figure(row[27]);
    const double weight_in = Figure(row[30]);
    const double fuel_unit = expected.fuel_setting == std::string("1") ? kilograms_per_pound : 1;
    const double weight_unit =
        expected.weight_setting == std::string("1") ? kilograms_per_pound : 1;
    const double as_weight = weight_unit / fuel_unit;
    EXPECT_NEAR(weight_out - weight_in, (fuel_out - fuel_in) * as_weight, 8);
    EXPECT_NEAR(weight_out - Figure(row[26]), fuel_out * as_weight, 8);
    EXPECT_GE(weight_out, Figure(row[28]));
    EXPECT_GE(Figure(row[28]), Figure(row[29]));
    EXPECT_GE(Figure(row[29]), weight_in);

    ucACARS& panel = flight.Running().panel;
    EXPECT_EQ(panel.lblMaxTaxiOrigin.Text().empty(), !expected.jet);
    EXPECT_EQ(panel.lblMaxTaxiDestination.Text().empty(), !expected.jet);
    const std::string& engines = row[31];
    EXPECT_EQ(Contains(engines, "N1 "), !expected.piston && !engines.empty());
    EXPECT_EQ(Contains(engines, " RPM - MAN "), expected.piston);
    EXPECT_LT(Figure(row[33]), 0) << "touched down upwards";
    EXPECT_GT(Figure(row[33]), -600);
    EXPECT_NE(row[35].find(std::string(expected.origin) + " "), std::string::npos);
    EXPECT_TRUE(flight.Take_Reports().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Shipped, Scenario_Flights,
    testing::Values(
        Shipped_Flight{"kjfk-kbos.json", "KJFK", "KBOS", true, false, "0", "0", " lbs"},
        Shipped_Flight{"egll-lfpg.json", "EGLL", "LFPG", true, false, "1", "1", " kg"},
        Shipped_Flight{"turboprop.json", "EGPD", "EGPB", false, false, "0", "1", " lbs"},
        Shipped_Flight{"piston-circuit.json", "KHYA", "KHYA", false, true, "0", "0", " lbs"},
        Shipped_Flight{"helicopter.json", "KBOS", "KACK", false, false, "1", "0", " kg"}),
    [](const auto& instance) {
        return std::string(instance.param.origin) + "_" + instance.param.destination;
    });

}  // namespace
}  // namespace norvane::test
