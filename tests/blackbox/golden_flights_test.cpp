// Whole flights against what was looked at once: every word, figure and file that is made of one.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "blackbox/derive.h"
#include "blackbox/flight_export.h"
#include "blackbox/flight_json.h"
#include "blackbox/flight_text.h"
#include "blackbox/made_flight.h"
#include "blackbox/sample_flight.h"
#include "simlink/request_block.h"
#include "support/test_world.h"

namespace norvane::test {
namespace {

/// Figures of nine digits, which no compiler computes otherwise.
std::string All_Figures(const Flight_Summary& flight) {
    std::string told = Flight_Text(flight) + "\n" + Evidence_Words(flight) + "\n";
    Flight_Summary none;
    none.id = flight.id;
    for (const Flight_Difference& figure : Differences(none, flight))
        told += fmt::format("{}: {} | {}\n", figure.field, figure.stored, figure.derived);
    return told + "\n" + Export_Flight(flight, Export_Format::csv);
}

TEST(Golden_Flights, What_Is_Told_Of_A_Flight) {
    Flight_Summary flight = Sample_Flight();
    std::string told = All_Figures(flight) + "\n" + Flight_Json(flight) + "\n";
    for (int i = 0; i < 2; ++i) {
        for (const auto format : {Export_Format::kml, Export_Format::gpx, Export_Format::geojson})
            told += "\n" + Export_Flight(flight, format);
        // Once more without times, and without a number in the title.
        flight.began_utc.clear();
        flight.flight_number.clear();
    }
    told += "\n" + Flight_Text(flight) + Flight_Text({}) + Evidence_Words({});
    Expect_As_Looked_At("blackbox/told.txt", told);
}

TEST(Golden_Flights, A_Circuit_That_Was_Flown) {
    Expect_As_Looked_At(
        "blackbox/phto-circuit.txt",
        All_Figures(Derive_Flight("phto", Read_Recording(Data_File("phto-circuit.rec").string()))));
}

/// Taxi, climb in steps, a turn, whatever interrupts a flight, an approach from 600 s on, a
/// touch-and-go at 790 s, a landing with a bounce, the stand.
Made_State Whole_Flight(double seconds) {
    Made_Landing approach;
    approach.slope = 0.001;
    approach.hops = {{45, 300, 60}, {106.5, 3, 1.2}, {109, 0.4, 0.2}};
    approach.values = {{Variable::engine_count, 2},       {Variable::simulation_rate, 1},
                       {Variable::true_heading_deg, 93},  {Variable::pitch_deg, 3},
                       {Variable::bank_deg, -1.5},        {Variable::g_load, 1},
                       {Variable::wind_speed_kt, 20},     {Variable::wind_direction_deg, 330},
                       {Variable::flaps_percent, 50},     {Variable::indicated_airspeed_kt, 110},
                       {Variable::total_weight_lbs, 2300}};
    const auto within = [&](double from, double to) {
        return seconds >= from && seconds < to ? 1 : 0;
    };
    // The world stands still in a pause.
    const double flown_s = seconds < 420 ? seconds : std::max(420.0, seconds - 10);
    Made_State state = approach.At(flown_s - 740);
    auto& values = state.values;
    constexpr auto climb = std::to_array<std::array<double, 2>>(
        {{0, 0}, {80, 0}, {200, 1500}, {290, 1500}, {330, 2300}, {560, 2300}, {600, 2063}});
    for (std::size_t i = 1; i < climb.size() && flown_s < 600; ++i) {
        const auto [to_s, to_ft] = climb.at(i);
        const auto [from_s, from_ft] = climb.at(i - 1);
        if (flown_s < from_s || flown_s >= to_s)
            continue;
        const double share = (flown_s - from_s) / (to_s - from_s);
        state.altitude_ft =
            values[Variable::ground_elevation_ft] + 5 + std::lerp(from_ft, to_ft, share);
        values[Variable::vertical_speed_fpm] = (to_ft - from_ft) / (to_s - from_s) * 60;
        values[Variable::on_ground] = flown_s < 80 ? 1 : 0;
    }
    state.position.latitude += 0.02 * std::sin(std::clamp(flown_s - 200, 0.0, 400.0) / 63.662);
    if (flown_s >= 480)
        state.position.longitude += 0.2;
    if (flown_s >= 470)
        state.position.latitude += 0.001;
    values[Variable::parking_brake] = within(0, 10) + within(910, 930);
    values[Variable::engine_combustion] = within(5, 920);
    values[Variable::ground_speed_kt] =
        std::clamp(seconds - 10, 0.0, 100.0) - std::clamp((seconds - 856) * 3, 0.0, 100.0);
    values[Variable::paused] = within(420, 430);
    values[Variable::slew_mode] = within(465, 470);
    values[Variable::replaying] = within(500, 512);
    values[Variable::simulation_rate] = 1 + within(530, 540);
    values[Variable::g_load] = 1 + 0.4 * within(790.1, 790.5) + within(857.8, 858);
    return state;
}

TEST(Golden_Flights, One_In_Which_Everything_Happens) {
    auto moments = Sample_World(Whole_Flight, {0, 780, 2, 380, 390});
    const auto fast = Sample_World(Whole_Flight, {780.02, 870, 50, 785, 786});
    const auto last = Sample_World(Whole_Flight, {870.5, 930, 2, 890, 892});
    moments.insert(moments.end(), fast.begin(), fast.end());
    moments.insert(moments.end(), last.begin(), last.end());
    // Some of the fuel is burnt, some filled in.
    const Tank_Row& tank = All_Tanks()[0];
    for (const auto& [place, gallons] : {std::pair(0U, 50), {400U, 45}, {700U, 47}, {1500U, 46}}) {
        for (const auto& [offset, value] : {std::pair(tank.capacity_offset, 100),
                                            {tank.level_offset, Tank_Raw_Level(gallons, 100)}}) {
            auto& change = moments.at(place).changes.emplace_back();
            change = {offset, std::vector<std::byte>(4)};
            Store_U32(change.bytes, 0, static_cast<std::uint32_t>(value));
        }
    }
    moments.front().remarks = {"utc: 2026-11-23T23:50:00Z", "aircraft: Made"};
    Expect_As_Looked_At("blackbox/made.txt", All_Figures(Derive_Flight("made", moments)));
}

}  // namespace
}  // namespace norvane::test
