// Texts, figures, dates and distances as they are read and written.

#include "common/text.h"

#include <fmt/format.h>
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
#include "support/test_world.h"

namespace norvane {
namespace {

TEST(Texts, Letter_case_covers_the_code_pages_accented_letters) {
    EXPECT_TRUE(Equal_No_Case("Z\xDCRICH \x8A\x9F", "z\xFCrich \x9A\xFF"));
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

TEST(Great_Circle, Measures_known_distances) {
    const Position kjfk{40.639751, -73.778925};
    const Position kbos{42.362944, -71.006389};
    EXPECT_NEAR(Great_Circle_Nm(kjfk, kbos), 162, 1);
    EXPECT_NEAR(Great_Circle_Nm({0, 0}, {0, 180}), 10800, 1);
    EXPECT_NEAR(Great_Circle_Nm({0, 179.5}, {0, -179.5}), 60, 0.1);
}

/// Each byte of the code page, and each letter beyond it that is written as its nearest one.
std::string Letters() {
    std::string told;
    for (int byte = 0x80; byte < 0x100; ++byte) {
        const std::string letter(1, static_cast<char>(byte));
        told += fmt::format("{:02X} {} {} {}\n", byte, To_Utf8(letter), To_Utf8(Lower(letter)),
                            To_Utf8(Upper(letter)));
    }
    for (unsigned code = 0x100; code < 0x2300; ++code) {
        std::string text;
        if (code < 0x800)
            text = {static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 0x3F))};
        else
            text = {static_cast<char>(0xE0 | code >> 12),
                    static_cast<char>(0x80 | (code >> 6 & 0x3F)),
                    static_cast<char>(0x80 | (code & 0x3F))};
        if (const std::string nearest = From_Utf8(text); nearest != "?")
            told += fmt::format("{:04X} {} {}\n", code, text, To_Utf8(nearest));
    }
    return told;
}

std::string Figures() {
    std::string told;
    for (const std::string& value_text :
         Split("0.0 0.5 -0.5 1.5 2.5 -2.5 10.5 0.35 1.005 -0.04 0.449999 9.995 -9.995 99.5 99.96 "
               "999.95 1000.0 40.639751 -1234567.891 3e9 1e-9 5.55555555555555556 "
               "40.639751434326172 123456.5 1e15 nan",
               ' ')) {
        const double value = std::stod(value_text);
        told += Format_Exact(value) + ":";
        for (int decimals = 0; decimals < 6; ++decimals)
            told += " " + Format_Fixed(value, decimals) + " " + Format_Fixed(value, decimals, 3);
        told +=
            fmt::format(" | {} | {} | {} | {} {} {} | {}\n", Format_Whole(value, 4),
                        Format_Grouped(value), Format_Significant(value), Round_Half_Even(value),
                        Round_Half_Up(value), Round_Half_Up(value, 1), Whole(value));
    }
    for (const std::string& feet_text :
         Split("-50 0 999 1000 9500 9949 9960 10000 12500 17900 17949 17950 17960 18000 20000 "
               "34500 35000 35050 35150 35500",
               ' '))
        told += fmt::format("{} ft {}\n", feet_text, Format_FlightLevel(std::stod(feet_text)));
    for (const int year : {1, 1600, 1899, 1900, 1970, 2000, 2023, 2024, 2100, 9999}) {
        for (int month = 1; month <= 12; ++month) {
            const Date date{year, month, Days_In_Month(year, month)};
            told += fmt::format("{} {} {} {} {} {}\n", Format_Iso_Date(date),
                                Format_Date(date, "M/d/yyyy"), Format_Date(date, "dd.MM.yyyy"),
                                Day_Number(date), Weekday(date), Seconds_Of({date, {23, 58, 57}}));
            EXPECT_TRUE(Is_Valid(date) && !Is_Valid({year, month, date.day + 1}));
        }
    }
    return told;
}

/// What is read out of a text, by the system's own rules and by two countries'.
std::string Readings() {
    const Regional english{"M/d/yyyy", '.', ','};
    const Regional german{"dd.MM.yyyy", ',', '.'};
    const auto text_of = [](const auto& number) {
        return number ? Format_Exact(*number) : std::string("-");
    };
    std::string told;
    for (const std::string& text : Split(Read_File(test::Data_File("numbers.txt")), '\n')) {
        const auto whole = Parse_Int32(text);
        told += fmt::format("{} | {} | {} | {} | {}\n", text, text_of(Parse_Number(text)),
                            whole ? std::to_string(*whole) : "-",
                            text_of(Parse_Pilot_Number(text, english)),
                            text_of(Parse_Pilot_Number(text, german)));
    }
    for (const std::string& text : Split(Read_File(test::Data_File("dates.txt")), '\n')) {
        told += text;
        for (const char* pattern : {"M/d/yyyy", "dd.MM.yyyy", "yyyy-MM-dd"}) {
            const auto moment = Parse_Date_Time(text, pattern);
            told += moment ? " | " + Format_File_Stamp(*moment) : " | -";
        }
        told += '\n';
    }
    for (const double value : {0.0, 1234.56, -0.05, 1234567.0})
        told += Format_Pilot(value, 1, english) + " " + Format_Pilot(value, 1, german) + " " +
                Format_Pilot(value, 2, Regional{"", '.', '\0'}) + "\n";
    return told;
}

TEST(Values, Are_written_as_they_always_were) {
    test::Expect_As_Looked_At("letters.txt", Letters());
    test::Expect_As_Looked_At("figures.txt", Figures());
    test::Expect_As_Looked_At("readings.txt", Readings());
}

TEST(Dates, Day_numbers_walk_through_leap_years_and_back) {
    for (std::int64_t day = -700000; day < 800000; day += 97) {
        const Date date = Date_Of_Day_Number(day);
        ASSERT_TRUE(Is_Valid(date)) << day;
        ASSERT_EQ(Day_Number(date), day);
    }
    for (const Date wrong : {Date{0, 1, 1}, {10000, 1, 1}, {1, 0, 1}, {1, 13, 1}, {1, 1, 0}})
        EXPECT_FALSE(Is_Valid(wrong));
    EXPECT_TRUE(Is_Valid({1, 1, 1}) && Is_Valid({9999, 12, 31}));
    EXPECT_EQ(Date_Time_Of_Seconds(-1), (Date_Time{{1969, 12, 31}, {23, 59, 59}}));
}

}  // namespace
}  // namespace norvane
