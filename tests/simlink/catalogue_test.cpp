#include "simlink/catalogue.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <vector>

#include "common/run_error.h"
#include "common/text.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using enum Variable;

std::vector<std::byte> Bytes_Of(std::int64_t raw, std::size_t size) {
    std::vector<std::byte> bytes(size);
    std::memcpy(bytes.data(), &raw, size);
    return bytes;
}

std::vector<std::byte> Bytes_Of_Real(double raw) {
    return Bytes_Of(std::bit_cast<std::int64_t>(raw), sizeof raw);
}

/// What raw values of any kind mean in a field, and what becomes of values put into it.
std::string Meanings(const Variable_Row& row) {
    constexpr std::string_view raws =
        "0 1 -1 -4 50 100 137 4096 8192 16212 16384 30208 32064 57664 61439 0x0605 0x1080 -1408 "
        "-14464 -256 688128 720895 753664 -655360 0x66f0d 0xC0000000 0xFADE0007 "
        "-9223372036854775808 9223372036854775807 42957189152768000";
    constexpr std::string_view values =
        "0 0.5 1 -1 19.4384617 30 180 359.99 360 400 1000 -1e12 1e12 10.767 1718.999 nan inf";
    std::string told;
    for (const std::string& text : Split(raws, ' ')) {
        const std::int64_t raw = std::stoll(text, nullptr, 0);
        told += fmt::format(
            " {:.8g}", Decode(row.id, row.raw == Raw::real ? Bytes_Of_Real(static_cast<double>(raw))
                                                           : Bytes_Of(raw, row.size)));
    }
    told += " |";
    for (const std::string& text : Split(values, ' ')) {
        const double value = std::stod(text);
        std::vector<std::byte> bytes(row.size);
        Encode(row.id, value, bytes);
        told += fmt::format(" {:.8g}", Decode_Unrounded(row.id, bytes));
        if (row.raw == Raw::real)
            told += fmt::format("/{:.8g}", Decode(row.id, Bytes_Of_Real(value)));
    }
    return told;
}

/// Of the first and the fourth engine, where there are several.
TEST(Catalogue, Fields_Stand_Where_The_Simulator_Puts_Them_And_Mean_What_It_Means) {
    std::string layout;
    for (const Variable_Row& row : All_Variables()) {
        layout += fmt::format("{:04X} {:04X} {:3} {} {}\n", Offset_Of(row.id), Offset_Of(row.id, 4),
                              row.size, row.unit, row.meaning);
        if (row.raw != Raw::text)
            layout += Meanings(row) + "\n";
    }
    for (const Tank_Row& tank : All_Tanks())
        layout += fmt::format("{:04X} {:04X} tank\n", tank.level_offset, tank.capacity_offset);
    test::Expect_As_Looked_At("catalogue.txt", layout);
    EXPECT_THROW((void)Offset_Of(engine_combustion, 0), Run_Error);
    EXPECT_THROW((void)Offset_Of(engine_combustion, 5), Run_Error);
}

}  // namespace
}  // namespace norvane
