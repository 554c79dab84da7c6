#include "common/text.h"

#include <gtest/gtest.h>

#include "common/code_page.h"
#include "common/flight_level.h"
#include "common/great_circle.h"
#include "common/line_reader.h"

namespace norvane {
namespace {

TEST(Texts, Letter_case_covers_the_code_pages_accented_letters) {
    EXPECT_TRUE(Equal_No_Case("Z\xDCRICH \x8A\x9F", "z\xFCrich \x9A\xFF"));
    EXPECT_EQ(Upper("stra\xDF"
                    "e \xF7"),
              "STRA\xDF"
              "E \xF7");
    EXPECT_EQ(Find_No_Case("[Weight_And_Balance]", "BALANCE"), 12U);
    EXPECT_EQ(Find_No_Case("abc", "x"), std::string_view::npos);
}

TEST(Texts, Splitting_keeps_empty_pieces_and_joins_back) {
    const std::string line = "|a||b|";
    EXPECT_EQ(Split(line, '|').size(), 5U);
    EXPECT_EQ(Join(Split(line, '|'), "|"), line);
    EXPECT_EQ(Split("", '|').size(), 1U);
    EXPECT_EQ(Trim("  a b\t "), "a b\t");
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
    Line_Reader empty("");
    EXPECT_FALSE(empty.Next());
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
    EXPECT_EQ(Great_Circle_Nm(kjfk, kjfk), 0);
    EXPECT_NEAR(Great_Circle_Nm({0, 0}, {0, 180}), 10800, 1);
    EXPECT_NEAR(Great_Circle_Nm({0, 179.5}, {0, -179.5}), 60, 0.1);
}

}  // namespace
}  // namespace norvane
