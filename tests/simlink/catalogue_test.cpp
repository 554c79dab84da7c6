#include "simlink/catalogue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <set>
#include <vector>

#include "common/run_error.h"

namespace norvane {
namespace {

std::vector<std::byte> Bytes_Of(std::int64_t raw, std::size_t size) {
    std::vector<std::byte> bytes(size);
    std::memcpy(bytes.data(), &raw, size);
    return bytes;
}

std::vector<std::byte> Bytes_Of_Real(double raw) {
    std::vector<std::byte> bytes(sizeof raw);
    std::memcpy(bytes.data(), &raw, sizeof raw);
    return bytes;
}

struct Raw_Case {
    Variable variable;
    std::int64_t raw;
    double decoded;
};

TEST(Catalogue, Raw_Integers_Decode_To_Their_Units) {
    const Raw_Case cases[] = {
        // Ground speed rounds to whole m/s first, halves to even there.
        {Variable::ground_speed_kt, 10 * 65536 + 65535, 21},
        {Variable::ground_speed_kt, 10 * 65536 + 32768, 19},
        {Variable::ground_speed_kt, 11 * 65536 + 32768, 23},
        {Variable::ground_speed_kt, -10 * 65536, -19},
        {Variable::vertical_speed_fpm, 256, 197},
        {Variable::vertical_speed_fpm, -256, -197},
        {Variable::ground_elevation_ft, 100 * 256, 328},
        {Variable::ground_elevation_ft, -3 * 256, -10},
        {Variable::altitude_ft, 10668, 35000},
        {Variable::altitude_ft, -4, -13},
        {Variable::true_airspeed_kt, 450 * 128 + 64, 451},
        {Variable::indicated_airspeed_kt, 250 * 128 + 63, 250},
        // Two bytes with a sign, and two without.
        {Variable::magnetic_variation_deg, 0x10000 - 2366, -13},
        {Variable::magnetic_variation_deg, 1731, 10},
        {Variable::dew_point_c, 0x10000 - 256 * 5 - 128, -6},
        {Variable::surface_temperature_c, 0x102d, 16},
        {Variable::total_air_temperature_c, 0x10000 - 56 * 256, -56},
        {Variable::parking_brake, 0xFFFF, 65535},
        {Variable::surface_wind_direction_deg, 0xFFFF, 360},
        {Variable::wind_direction_deg, 0x2aab, 60},
        {Variable::true_heading_deg, 0xC0000000LL, 270},
        {Variable::latitude_deg, 10001750LL << 32, 90},
        {Variable::latitude_deg, -(10001750LL << 31), -45},
        {Variable::longitude_deg, std::numeric_limits<std::int64_t>::min(), -180},
        {Variable::longitude_deg, 1LL << 62, 90},
        {Variable::engine_n1_percent, 16384, 100},
        {Variable::engine_n2_percent, 8192, 50},
        {Variable::engine_manifold_inhg, 29 * 1024 + 512, 29.5},
        {Variable::fuel_weight_lb_per_gal, 0x0605, 6.01953125},
        {Variable::visibility_sm, 50, 1},
        {Variable::visibility_sm, 149, 1},
        // 130 m are 427 ft, 4 hundreds; 137 m are 449.47 ft, still 4; 138 m are 453 ft, 5.
        {Variable::cloud1_base_hundred_ft, 130, 4},
        {Variable::cloud1_base_hundred_ft, 137, 4},
        {Variable::cloud2_base_hundred_ft, 138, 5},
        {Variable::cloud1_cover_eighths, 65535, 8},
        {Variable::cloud2_cover_eighths, 4096, 1},
        {Variable::zero_fuel_weight_lbs, 0x00066f0d, 1647},
        {Variable::simulator_version, 7, 7},
        {Variable::fsuipc_version, 0xFADE0007LL, 4208852999.0},
        {Variable::display_control, 0x10000 - 17, -17},
    };
    for (const Raw_Case& c : cases) {
        const Variable_Row& row = Row_Of(c.variable);
        EXPECT_DOUBLE_EQ(Decode(c.variable, Bytes_Of(c.raw, row.size)), c.decoded)
            << row.meaning << ", raw " << c.raw;
    }
    EXPECT_NEAR(Decode(Variable::sea_level_pressure_inhg, Bytes_Of(16212, 2)), 29.920, 0.001);
}

TEST(Catalogue, Floating_Point_Fields_Truncate_And_Survive_What_Is_No_Number) {
    EXPECT_EQ(Decode(Variable::total_weight_lbs, Bytes_Of_Real(1718.999)), 1718);
    EXPECT_EQ(Decode(Variable::engine_fuel_flow_pph, Bytes_Of_Real(10.767)), 10.767);
    for (const double odd : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(Decode(Variable::total_weight_lbs, Bytes_Of_Real(odd)), 0);
        EXPECT_EQ(Decode(Variable::engine_propeller_fraction, Bytes_Of_Real(odd)), 0);
    }
}

TEST(Catalogue, What_Is_Encoded_Decodes_To_The_Same) {
    for (const Variable_Row& row : All_Variables()) {
        if (row.raw == Raw::text)
            continue;
        std::vector<std::byte> bytes(row.size);
        std::vector<double> values = {0, 1, 2, 5};
        if (row.raw == Raw::signed_int)
            values.insert(values.end(), {-1, -2});
        for (const double value : values) {
            // Whole m/s and whole metres leave gaps of their own between the values.
            const double gap = row.rounding == Rounding::whole_metres ? knots_per_metre_per_second
                                                                      : std::abs(row.scale);
            Encode(row.id, value, bytes);
            const double allowed = row.rounding == Rounding::whole ? std::max(0.0, gap - 0.5) : gap;
            EXPECT_NEAR(Decode(row.id, bytes), value, allowed) << row.meaning;
        }
    }
}

TEST(Catalogue, Encoding_Limits_Values_To_The_Field) {
    const struct {
        Variable variable;
        double value;
        std::int64_t raw;
    } cases[] = {
        {Variable::utc_hour, -1, 0},
        {Variable::utc_hour, 1000, 255},
        {Variable::magnetic_variation_deg, 400, 32767},
        {Variable::magnetic_variation_deg, -400, -32768},
        {Variable::altitude_ft, 1e12, 0x7FFFFFFF},
        {Variable::altitude_ft, -1e12, -0x80000000LL},
        {Variable::true_heading_deg, 360, 0xFFFFFFFF},
        {Variable::longitude_deg, 180, std::numeric_limits<std::int64_t>::max()},
        {Variable::longitude_deg, -180, std::numeric_limits<std::int64_t>::min()},
        {Variable::latitude_deg, 90, 10001750LL << 32},
        {Variable::wind_speed_kt, std::nan(""), 0},
        {Variable::ground_speed_kt, 19.4384617, 10 * 65536},
        {Variable::cloud1_base_hundred_ft, 30, 914},
    };
    for (const auto& c : cases) {
        std::vector<std::byte> bytes(Row_Of(c.variable).size);
        Encode(c.variable, c.value, bytes);
        EXPECT_EQ(bytes, Bytes_Of(c.raw, bytes.size()))
            << Row_Of(c.variable).meaning << ", " << c.value;
    }
}

TEST(Catalogue, Texts_End_At_Nul_Or_Fill_Their_Field) {
    std::vector<std::byte> field(12);
    Encode_Text("N172NV", field);
    EXPECT_EQ(Decode_Text(field), "N172NV");
    Encode_Text("TWELVE CHARS AND MORE", field);
    EXPECT_EQ(Decode_Text(field), "TWELVE CHARS");
    Encode_Text("", field);
    EXPECT_EQ(Decode_Text(field), "");
    EXPECT_EQ(Row_Of(Variable::aircraft_path).size, 256U);
    EXPECT_EQ(Row_Of(Variable::atc_airline).size, 24U);
}

TEST(Catalogue, Engines_Stand_Where_The_Simulator_Puts_Them) {
    const struct {
        Variable variable;
        std::uint32_t offsets[4];
    } cases[] = {
        {Variable::engine_combustion, {0x0894, 0x092C, 0x09C4, 0x0A5C}},
        {Variable::engine_n2_percent, {0x0896, 0x092E, 0x09C6, 0x0A5E}},
        {Variable::engine_n1_percent, {0x0898, 0x0930, 0x09C8, 0x0A60}},
        {Variable::engine_manifold_inhg, {0x08C0, 0x0958, 0x09F0, 0x0A88}},
        {Variable::engine_fuel_flow_pph, {0x0918, 0x09B0, 0x0A48, 0x0AE0}},
        {Variable::engine_propeller_fraction, {0x2408, 0x2508, 0x2608, 0x2708}},
    };
    for (const auto& c : cases) {
        for (int engine = 1; engine <= most_engines; ++engine)
            EXPECT_EQ(Offset_Of(c.variable, engine), c.offsets[engine - 1]);
        EXPECT_THROW((void)Offset_Of(c.variable, 0), Run_Error);
        EXPECT_THROW((void)Offset_Of(c.variable, 5), Run_Error);
    }
    EXPECT_EQ(Offset_Of(Variable::parking_brake, 3), 0x0BC8U);
}

TEST(Catalogue, No_Two_Fields_Share_A_Byte) {
    std::set<std::uint32_t> taken;
    const auto take = [&](std::uint32_t offset, std::uint32_t size) {
        for (std::uint32_t i = 0; i < size; ++i)
            EXPECT_TRUE(taken.insert(offset + i).second) << std::hex << offset + i;
    };
    for (const Variable_Row& row : All_Variables()) {
        for (int engine = 1; engine <= (row.stride == 0 ? 1 : most_engines); ++engine)
            take(Offset_Of(row.id, engine), row.size);
    }
    for (const Tank_Row& tank : All_Tanks()) {
        take(tank.level_offset, 4);
        take(tank.capacity_offset, 4);
    }
}

TEST(Catalogue, Tanks_Hold_What_Their_Level_Says) {
    EXPECT_DOUBLE_EQ(Tank_Gallons(128 * 65536, 22), 22);
    EXPECT_NEAR(Tank_Gallons(0x1f3ecf, 22), 5.37, 0.005);
    EXPECT_EQ(Tank_Gallons(-1, 22), 0);
    EXPECT_EQ(Tank_Gallons(128 * 65536, -1), 0);
    EXPECT_NEAR(Tank_Gallons(Tank_Raw_Level(1234.5, 5000), 5000), 1234.5, 0.001);
}

TEST(Catalogue, Only_A_Numeric_Fields_Own_Bytes_Are_A_Number) {
    std::vector<std::byte> bytes(12);
    EXPECT_THROW((void)Decode(Variable::atc_identifier, bytes), Run_Error);
    EXPECT_THROW((void)Decode(Variable::altitude_ft, std::span(bytes).first(3)), Run_Error);
    EXPECT_THROW(Encode(Variable::altitude_ft, 1, bytes), Run_Error);
}

}  // namespace
}  // namespace norvane
