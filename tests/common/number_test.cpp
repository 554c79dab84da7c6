#include "common/number.h"

#include <gtest/gtest.h>

#include <limits>

namespace norvane {
namespace {

TEST(Numbers, Formatted_figures_round_the_decimal_value_not_its_binary_neighbour) {
    EXPECT_EQ(Format_Fixed(0.35, 1), "0.4");
    EXPECT_EQ(Format_Fixed(0.05, 1), "0.1");
    EXPECT_EQ(Format_Fixed(1.005, 2), "1.01");
    EXPECT_EQ(Format_Fixed(2.5, 0), "3");
    EXPECT_EQ(Format_Fixed(-2.5, 0), "-3");
    EXPECT_EQ(Format_Fixed(99.96, 1), "100.0");
    EXPECT_EQ(Format_Fixed(0.04, 1), "0.0");
    EXPECT_EQ(Format_Fixed(-0.04, 1), "0.0");
    EXPECT_EQ(Format_Fixed(40.639751, 5), "40.63975");
    EXPECT_EQ(Format_Fixed(1e-9, 5), "0.00000");
    EXPECT_EQ(Format_Fixed(123456789012.0, 0), "123456789012");
    EXPECT_EQ(Format_Fixed(std::numeric_limits<double>::quiet_NaN(), 1), "0.0");
}

TEST(Numbers, Conversions_to_whole_numbers_round_halves_to_even) {
    EXPECT_EQ(Round_Half_Even(10.5), 10);
    EXPECT_EQ(Round_Half_Even(11.5), 12);
    EXPECT_EQ(Whole(10.5), 11);
    EXPECT_EQ(Whole(1e300), std::numeric_limits<std::int32_t>::max());
}

TEST(Numbers, Padding_sets_a_minimum_of_digits_only) {
    EXPECT_EQ(Format_Whole(5, 2), "05");
    EXPECT_EQ(Format_Whole(100, 2), "100");
    EXPECT_EQ(Format_Grouped(-1234567), "-1,234,567");
    EXPECT_EQ(Format_Grouped(999), "999");
}

TEST(Numbers, The_systems_own_numbers_know_only_the_point) {
    EXPECT_EQ(Parse_Number(" 12.5 "), 12.5);
    EXPECT_EQ(Parse_Number("-.5"), -.5);
    EXPECT_EQ(Parse_Number("+7"), 7);
    for (const auto* text : {"", "12,5", "12x", "nan", "inf", "-", "1 2", "."}) {
        EXPECT_EQ(Parse_Number(text), std::nullopt) << text;
    }
    EXPECT_EQ(Parse_Int32("2147483648"), std::nullopt);
    EXPECT_EQ(Parse_Int32("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(Parse_Int32("1.0"), std::nullopt);
}

TEST(Numbers, Grouping_counts_only_before_exactly_three_digits) {
    const Regional english{"M/d/yyyy", '.', ','};
    const Regional german{"dd.MM.yyyy", ',', '.'};
    struct Case {
        const char* text;
        std::optional<double> in_english;
        std::optional<double> in_german;
    };
    const Case cases[] = {
        {"1,234", 1234, 1.234}, {"1.234", 1.234, 1234},     {"1,5", 1.5, 1.5},
        {"1.5", 1.5, 1.5},      {"1,234.5", 1234.5, {}},    {"1.234,5", {}, 1234.5},
        {"12,34,567", {}, {}},  {"1:15", {}, {}},           {"-1,234", -1234, -1.234},
        {"1234", 1234, 1234},   {"1,234,567", 1234567, {}}, {".5", .5, .5},
        {"0.5", .5, .5},        {",234", .234, .234},
    };
    for (const auto& [text, in_english, in_german] : cases) {
        EXPECT_EQ(Parse_Pilot_Number(text, english), in_english) << text;
        EXPECT_EQ(Parse_Pilot_Number(text, german), in_german) << text;
    }
    // Blanks and apostrophes group in every country, whole numbers too.
    for (const auto* text : {"1234,5", "1 234,5", "1\xA0\x32\x33\x34,5", "1'234.5"})
        EXPECT_EQ(Parse_Pilot_Number(text, german), 1234.5) << text;
    EXPECT_EQ(Parse_Pilot_Number("-1 234", english), -1234);
    EXPECT_EQ(Parse_Pilot_Number("1 15", english), std::nullopt);
    EXPECT_EQ(Parse_Pilot_Number("1.5 123", english), std::nullopt);
    EXPECT_EQ(Format_Pilot(1234.56, 1, german), "1.234,6");
    EXPECT_EQ(Format_Pilot(1234.56, 1, Regional{"", '.', '\0'}), "1234.6");
}

TEST(Numbers, Exact_texts_read_back_as_the_same_double) {
    const double latitude = 40.639751434326172;
    EXPECT_EQ(Parse_Number(Format_Exact(latitude)), latitude);
    EXPECT_EQ(Format_Significant(1000.0 / 180), "5.55555555555556");
}

}  // namespace
}  // namespace norvane
