// The five scenarios that ship, flown from the gate to the gate with figures a pilot would believe.

#include <cmath>

#include "common/great_circle.h"
#include "flights/flight_world.h"

namespace norvane::test {
namespace {

constexpr double kilograms_per_pound = 0.45359237;

struct Shipped_Flight {
    const char* scenario;
    std::string origin;
    std::string destination;
    bool jet;
    bool piston;
    bool fuel_in_kg;
    bool weight_in_kg;
};

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

/// Fuel is burnt, and weights fall by it, but for the rounding of gallons.
void Expect_Plausible_Fuel(const Row& row, const Shipped_Flight& expected) {
    const double fuel_out = Figure(row[7]);
    const double fuel_in = Figure(row[12]);
    EXPECT_EQ(row[7].substr(row[7].find(' ')), expected.fuel_in_kg ? " kg" : " lbs");
    EXPECT_LT(fuel_in, fuel_out);
    // Kilograms used come from pounds used, not from the two figures in kilograms.
    EXPECT_NEAR(Figure(row[15]), fuel_out - fuel_in, 1);
    EXPECT_LE(Figure(row[18]), Figure(row[15]));
    EXPECT_GT(Minutes(row[14]), Minutes(row[17]));
    const double weight_out = Figure(row[27]);
    const double weight_in = Figure(row[30]);
    const double as_weight = (expected.weight_in_kg ? kilograms_per_pound : 1) /
                             (expected.fuel_in_kg ? kilograms_per_pound : 1);
    EXPECT_NEAR(weight_out - weight_in, (fuel_out - fuel_in) * as_weight, 8);
    EXPECT_NEAR(weight_out - Figure(row[26]), fuel_out * as_weight, 8);
    EXPECT_GE(weight_out, Figure(row[28]));
    EXPECT_GE(Figure(row[28]), Figure(row[29]));
    EXPECT_GE(Figure(row[29]), weight_in);
}

TEST(Scenario_Flights, End_at_the_gate_with_plausible_figures) {
    const std::vector<Shipped_Flight> flights = {
        {"kjfk-kbos.json", "KJFK", "KBOS", true, false, false, false},
        {"egll-lfpg.json", "EGLL", "LFPG", true, false, true, true},
        {"turboprop.json", "EGPD", "EGPB", false, false, false, true},
        {"piston-circuit.json", "KHYA", "KHYA", false, true, false, false},
        {"helicopter.json", "KBOS", "KACK", false, false, true, false}};
    for (const Shipped_Flight& expected : flights) {
        SCOPED_TRACE(expected.scenario);
        const auto world = Scenario_World(std::filesystem::path(NORVANE_SOURCE_DIR) / "data" /
                                          "scenarios" / expected.scenario);
        Flight_World flight(*world, 0.5);
        flight.store.Set("Options", "Report Fuel", expected.fuel_in_kg ? "1" : "0");
        flight.store.Set("Options", "Report Weight", expected.weight_in_kg ? "1" : "0");
        flight.Start();
        const Row row = flight.Fly();
        ASSERT_EQ(row.size(), 53U);

        EXPECT_EQ(row[3], expected.origin);
        EXPECT_EQ(row[8], expected.destination);
        Expect_Plausible_Fuel(row, expected);
        EXPECT_NEAR(Figure(row[25]),
                    Great_Circle_Nm(Place(*world, 0), Place(*world, world->Length())), 1);

        const ucACARS& panel = flight.Running().panel;
        EXPECT_EQ(panel.lblMaxTaxiOrigin.Text().empty(), !expected.jet);
        EXPECT_EQ(panel.lblMaxTaxiDestination.Text().empty(), !expected.jet);
        const std::string& engines = row[31];
        EXPECT_EQ(Contains(engines, "N1 "), !expected.piston && !engines.empty());
        EXPECT_EQ(Contains(engines, " RPM - MAN "), expected.piston);
        EXPECT_LT(Figure(row[33]), 0) << "touched down upwards";
        EXPECT_GT(Figure(row[33]), -600);
        EXPECT_TRUE(Contains(row[35], expected.origin + " "));
        EXPECT_TRUE(flight.Take_Reports().empty());
    }
}

}  // namespace
}  // namespace norvane::test
