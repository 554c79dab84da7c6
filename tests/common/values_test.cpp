// Texts, figures, dates and distances as they are read and written.

#include "common/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

#include "common/code_page.h"
#include "common/date_time.h"
#include "common/flight_level.h"
#include "common/great_circle.h"
#include "common/line_reader.h"
#include "common/number.h"

namespace norvane {
namespace {

TEST(Texts, Letter_case_covers_the_code_pages_accented_letters) {
    EXPECT_TRUE(Equal_No_Case("Z\xDCRICH \x8A\x9F", "z\xFCrich \x9A\xFF"));
    EXPECT_EQ(Upper("stra\xDF"
                    "e \xF7"),
              "STRA\xDF"
              "E \xF7");
    EXPECT_EQ(Find_No_Case("[Weight_And_Balance]", "BALANCE"), 12U);
}

TEST(Texts, Nothing_that_would_break_a_log_line_enters_a_field) {
    EXPECT_EQ(Clean_Field("a|b", Field_Lines::one), "a/b");
    EXPECT_EQ(Clean_Field("a\r\nb\nc\rd", Field_Lines::one), "a b c d");
    EXPECT_EQ(Clean_Field("a\nb\rc\r\nd", Field_Lines::many), "a\r\nb\r\nc\r\nd");
    EXPECT_EQ(Clean_Field("\n\r", Field_Lines::many), "\r\n\r\n");
}

TEST(Code_Page, Every_byte_comes_back_from_utf8) {
    std::string all;
    for (int byte = 1; byte < 256; ++byte)
        all += static_cast<char>(byte);
    EXPECT_EQ(From_Utf8(To_Utf8(all)), all);
}

TEST(Code_Page, What_the_page_lacks_becomes_its_nearest_letter) {
    EXPECT_EQ(From_Utf8("Łódź Čeština İğ Ștefan"),
              "L\xF3"
              "dz Ce\x9Atina Ig Stefan");
    EXPECT_EQ(From_Utf8("a\xCC\x81"), "a");
    EXPECT_EQ(From_Utf8("漢€"), "?\x80");
    // What is no UTF-8 stays byte for byte: cut short, overlong, half a pair, beyond the last.
    for (const std::string broken :
         {"bad \xE9 end \xF0\x9F", "\xC0\xAF", "\xE0\x80\xAF", "\xF0\x80\x80\xAF", "\xED\xA0\x80",
          "\xED\xBF\xBF", "\xF4\x90\x80\x80"})
        EXPECT_EQ(From_Utf8(broken), broken);
    // What stands behind the text is none of it.
    EXPECT_EQ(From_Utf8(std::string_view("\xC3\xA9").substr(0, 1)), "\xC3");
}

TEST(Lines, Every_kind_of_line_end_counts_once) {
    const std::string content =
        "\xEF\xBB\xBF"
        "a\r\nb\rc\n\nd\r\r\ne";
    std::vector<std::string> lines;
    for (Line_Reader reader(content); reader.Next();)
        lines.emplace_back(reader.Line());
    EXPECT_EQ(Join(lines, ","), "a,b,c,,d,,e");
}

TEST(Flight_Levels, Follow_the_altitudes_digits) {
    const std::pair<double, const char*> cases[] = {
        {999, "999"},     {0, "0"},         {-50, "-50"},     {9500, "9500"},   {1000, "1000"},
        {12500, "12500"}, {17900, "17900"}, {18000, "FL180"}, {34500, "FL345"}, {35000, "FL350"},
        {35500, "FL355"}, {35050, "FL350"}, {35150, "FL352"}, {9960, "10000"},  {17960, "FL180"},
        {9949, "9900"},   {20000, "FL200"}, {10000, "10000"}};
    for (const auto& [feet, text] : cases)
        EXPECT_EQ(Format_FlightLevel(feet), text) << feet;
}

TEST(Great_Circle, Measures_known_distances) {
    const Position kjfk{40.639751, -73.778925};
    const Position kbos{42.362944, -71.006389};
    EXPECT_NEAR(Great_Circle_Nm(kjfk, kbos), 162, 1);
    EXPECT_NEAR(Great_Circle_Nm({0, 0}, {0, 180}), 10800, 1);
    EXPECT_NEAR(Great_Circle_Nm({0, 179.5}, {0, -179.5}), 60, 0.1);
}

TEST(Numbers, Formatted_figures_round_the_decimal_value_not_its_binary_neighbour) {
    const std::tuple<double, int, const char*> cases[] = {{0.35, 1, "0.4"},
                                                          {1.005, 2, "1.01"},
                                                          {2.5, 0, "3"},
                                                          {-2.5, 0, "-3"},
                                                          {99.96, 1, "100.0"},
                                                          {-0.04, 1, "0.0"},
                                                          {40.639751, 5, "40.63975"},
                                                          {1e-9, 5, "0.00000"},
                                                          {123456789012.0, 0, "123456789012"},
                                                          {std::nan(""), 1, "0.0"}};
    for (const auto& [value, places, text] : cases)
        EXPECT_EQ(Format_Fixed(value, places), text) << value;
}

TEST(Numbers, Whole_ones_are_rounded_padded_and_grouped) {
    EXPECT_EQ(Round_Half_Even(10.5) + Round_Half_Even(11.5), 22);
    EXPECT_EQ(Whole(10.5), 11);
    EXPECT_EQ(Whole(1e300), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(Format_Whole(5, 2) + Format_Whole(100, 2), "05100");
    EXPECT_EQ(Format_Grouped(-1234567) + Format_Grouped(999), "-1,234,567999");
}

TEST(Numbers, The_systems_own_numbers_know_only_the_point) {
    EXPECT_EQ(*Parse_Number(" 12.5 ") + *Parse_Number("-.5") + *Parse_Number("+7"), 19);
    for (const auto* text : {"", "12,5", "12x", "nan", "inf", "-", "1 2", "."})
        EXPECT_EQ(Parse_Number(text), std::nullopt) << text;
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
    EXPECT_EQ(Parse_Pilot_Number("1.5 123", english), std::nullopt);
    EXPECT_EQ(Format_Pilot(1234.56, 1, german), "1.234,6");
    EXPECT_EQ(Format_Pilot(1234.56, 1, Regional{"", '.', '\0'}), "1234.6");
}

TEST(Numbers, Exact_texts_read_back_as_the_same_double) {
    const double latitude = 40.639751434326172;
    EXPECT_EQ(Parse_Number(Format_Exact(latitude)), latitude);
    EXPECT_EQ(Format_Significant(1000.0 / 180), "5.55555555555556");
}

std::string Iso(std::string_view text, std::string_view pattern) {
    const auto moment = Parse_Date_Time(text, pattern);
    return moment ? Format_Iso_Date(moment->date) + " " + Format_Hhmm(moment->time) : "none";
}

TEST(Dates, Day_numbers_walk_through_leap_years_and_back) {
    EXPECT_EQ(Day_Number({1970, 1, 1}), 0);
    EXPECT_EQ(Day_Number({2000, 3, 1}), 11017);
    for (std::int64_t day = -700000; day < 800000; day += 97) {
        const Date date = Date_Of_Day_Number(day);
        ASSERT_TRUE(Is_Valid(date)) << day;
        ASSERT_EQ(Day_Number(date), day);
    }
    EXPECT_EQ(Weekday({2026, 11, 22}), 0);
    EXPECT_EQ(Date_Time_Of_Seconds(-1), (Date_Time{{1969, 12, 31}, {23, 59, 59}}));
}

TEST(Dates, Texts_match_the_pattern_in_any_of_its_spellings_or_iso) {
    for (const auto& [text, pattern] : {std::pair{"4/23/08", "M/d/yyyy"},
                                        {"04-23-2008", "M/d/yyyy"},
                                        {"23. 4. 2008.", "d. M. yyyy."},
                                        {"2008-04-23", "M/d/yyyy"},
                                        {"4/23/2008 12:00:01 AM", "M/d/yyyy"}})
        EXPECT_EQ(Iso(text, pattern), "2008-04-23 0000") << text;
    EXPECT_EQ(Iso("2008-04-23T06:07:08", "dd.MM.yyyy"), "2008-04-23 0607");
    EXPECT_EQ(Iso("1/2/30", "d/M/yyyy") + Iso("1/2/29", "d/M/yyyy"),
              "1930-02-01 00002029-02-01 0000");
    EXPECT_EQ(Iso("4/23/2008 3:05 PM", "M/d/yyyy"), "2008-04-23 1505");
}

TEST(Dates, What_is_no_date_is_refused) {
    for (const auto* text :
         {"", "hello", "13/13/2008", "2/30/2008", "4/23", "4/23-2008", "4/23/208", "4/23/20081",
          "4/23/2008x", "4/23/2008 25:00", "4/23/2008 13:00 PM", "2008-4", "/4/23/2008"})
        EXPECT_EQ(Iso(text, "M/d/yyyy"), "none") << text;
}

TEST(Dates, Patterns_write_what_they_show) {
    const Date date{2008, 4, 3};
    EXPECT_EQ(Format_Date(date, "M/d/yyyy"), "4/3/2008");
    EXPECT_EQ(Format_Date(date, "dd.MM.yyyy"), "03.04.2008");
    EXPECT_EQ(Format_File_Stamp({date, {15, 3, 7}}), "2008-04-03-1503-07");
}

}  // namespace
}  // namespace norvane
