#include "simlink/catalogue.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "common/line_reader.h"
#include "common/run_error.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using enum Variable;

constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
constexpr auto highest = std::numeric_limits<std::int64_t>::max();

std::vector<std::byte> Bytes_Of(std::int64_t raw, std::size_t size) {
    std::vector<std::byte> bytes(size);
    std::memcpy(bytes.data(), &raw, size);
    return bytes;
}

std::vector<std::byte> Bytes_Of_Real(double raw) {
    return Bytes_Of(std::bit_cast<std::int64_t>(raw), sizeof raw);
}

/// Ground speed rounds to whole m/s first, halves to even there; cloud bases to whole feet.
TEST(Catalogue, Raw_Integers_Decode_To_Their_Units) {
    const struct {
        Variable variable;
        std::int64_t raw;
        double decoded;
    } cases[] = {
        {altitude_ft, -4, -13},
        {cloud1_base_hundred_ft, 137, 4},
        {cloud1_cover_eighths, 4096, 1},
        {cloud2_cover_eighths, 61439, 7},
        {dew_point_c, -1408, -6},
        {display_control, -17, -17},
        {engine_manifold_inhg, 30208, 29.5},
        {engine_n1_percent, 16384, 100},
        {engine_n2_percent, 8192, 50},
        {fsuipc_version, 0xFADE0007, 4208852999},
        {fuel_weight_lb_per_gal, 0x0605, 6.01953125},
        {ground_speed_kt, 720895, 21},
        {ground_speed_kt, 688128, 19},
        {ground_speed_kt, -10 * 65536, -19},
        {ground_speed_kt, 753664, 23},
        {indicated_airspeed_kt, 32064, 251},
        {latitude_deg, 10001750LL << 32, 90},
        {longitude_deg, lowest, -180},
        {surface_temperature_c, 0x1080, 17},
        {surface_wind_speed_kt, 8, 8},
        {total_air_temperature_c, -14464, -57},
        {true_airspeed_kt, 57664, 451},
        {true_heading_deg, 0xC0000000, 270},
        {vertical_speed_fpm, -256, -197},
        {visibility_sm, 50, 1},
        {wind_direction_deg, 4096, 23},
        {wind_speed_kt, 7, 7},
        {zero_fuel_weight_lbs, 0x00066f0d, 1647},
    };
    for (const auto& c : cases) {
        const Variable_Row& row = Row_Of(c.variable);
        EXPECT_DOUBLE_EQ(Decode(c.variable, Bytes_Of(c.raw, row.size)), c.decoded)
            << row.meaning << ", raw " << c.raw;
    }
    EXPECT_NEAR(Decode(sea_level_pressure_inhg, Bytes_Of(16212, 2)), 29.920, 0.001);
}

TEST(Catalogue, Floating_Point_Fields_Truncate_And_Survive_What_Is_No_Number) {
    EXPECT_EQ(Decode(total_weight_lbs, Bytes_Of_Real(1718.999)), 1718);
    EXPECT_EQ(Decode(engine_fuel_flow_pph, Bytes_Of_Real(10.767)), 10.767);
    for (const double odd : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(Decode(total_weight_lbs, Bytes_Of_Real(odd)), 0);
        EXPECT_EQ(Decode(engine_propeller_fraction, Bytes_Of_Real(odd)), 0);
    }
}

TEST(Catalogue, Encoding_Limits_Values_To_The_Field) {
    const struct {
        Variable variable;
        double value;
        std::int64_t raw;
    } cases[] = {
        {ground_speed_kt, 19.4384617, 10 * 65536}, {precipitation_type, 1000, 255},
        {magnetic_variation_deg, 400, 32767},      {altitude_ft, 1e12, 0x7FFFFFFF},
        {altitude_ft, -1e12, -0x80000000LL},       {longitude_deg, 180, highest},
        {true_heading_deg, 360, 0xFFFFFFFF},       {utc_minute, 1000, 255},
        {cloud1_base_hundred_ft, 30, 914},         {utc_hour, -1, 0},
        {wind_speed_kt, std::nan(""), 0},
    };
    for (const auto& c : cases) {
        std::vector<std::byte> bytes(Row_Of(c.variable).size);
        Encode(c.variable, c.value, bytes);
        EXPECT_EQ(bytes, Bytes_Of(c.raw, bytes.size()))
            << Row_Of(c.variable).meaning << ", " << c.value;
    }
}

/// Of the first and the fourth engine, where there are several; and what a raw 100 means there.
TEST(Catalogue, Fields_Stand_Where_The_Simulator_Puts_Them) {
    std::string layout;
    for (const Variable_Row& row : All_Variables()) {
        const double hundred = row.raw == Raw::text ? 0 : Decode(row.id, Bytes_Of(100, row.size));
        layout += fmt::format("{:04X} {:04X} {:3} {:.6g} {} {}\n", Offset_Of(row.id),
                              Offset_Of(row.id, 4), row.size, hundred, row.unit, row.meaning);
    }
    for (const Tank_Row& tank : All_Tanks())
        layout += fmt::format("{:04X} {:04X} tank\n", tank.level_offset, tank.capacity_offset);
    EXPECT_EQ(layout, Read_File(test::Data_File("catalogue.txt")));
    EXPECT_THROW((void)Offset_Of(engine_combustion, 0), Run_Error);
    EXPECT_THROW((void)Offset_Of(engine_combustion, 5), Run_Error);
}

}  // namespace
}  // namespace norvane
