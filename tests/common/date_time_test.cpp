#include "common/date_time.h"

#include <gtest/gtest.h>

namespace norvane {
namespace {

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
    EXPECT_EQ(Iso("4/23/08", "M/d/yyyy"), "2008-04-23 0000");
    EXPECT_EQ(Iso("04-23-2008", "M/d/yyyy"), "2008-04-23 0000");
    EXPECT_EQ(Iso("23.4.2008", "dd.MM.yyyy"), "2008-04-23 0000");
    EXPECT_EQ(Iso("23. 4. 2008.", "d. M. yyyy."), "2008-04-23 0000");
    EXPECT_EQ(Iso("2008-04-23", "M/d/yyyy"), "2008-04-23 0000");
    EXPECT_EQ(Iso("2008-04-23T06:07:08", "dd.MM.yyyy"), "2008-04-23 0607");
    EXPECT_EQ(Iso("1/2/30", "d/M/yyyy"), "1930-02-01 0000");
    EXPECT_EQ(Iso("1/2/29", "d/M/yyyy"), "2029-02-01 0000");
    EXPECT_EQ(Iso("4/23/2008 3:05 PM", "M/d/yyyy"), "2008-04-23 1505");
    EXPECT_EQ(Iso("4/23/2008 12:00:01 AM", "M/d/yyyy"), "2008-04-23 0000");
}

TEST(Dates, What_is_no_date_is_refused) {
    for (const auto* text :
         {"", "hello", "13/13/2008", "2/30/2008", "4/23", "4/23-2008", "4/23/208", "4/23/20081",
          "4/23/2008x", "4/23/2008 25:00", "4/23/2008 13:00 PM", "2008-4", "/4/23/2008"}) {
        EXPECT_EQ(Iso(text, "M/d/yyyy"), "none") << text;
    }
}

TEST(Dates, Patterns_write_what_they_show) {
    const Date date{2008, 4, 3};
    EXPECT_EQ(Format_Date(date, "M/d/yyyy"), "4/3/2008");
    EXPECT_EQ(Format_Date(date, "dd.MM.yyyy"), "03.04.2008");
    EXPECT_EQ(Format_File_Stamp({date, {15, 3, 7}}), "2008-04-03-1503-07");
}

}  // namespace
}  // namespace norvane
