// The computer's UTC clock and the rules of its time zone.

#include "acars/cls_utc.h"
#include "support/test_world.h"

namespace norvane::test {

namespace {

struct Zone_Case {
    std::string title;
    Date_Time now;
    Zone_Rule daylight_start;
    Zone_Rule standard_start;
    int bias;
};

TEST(Utc_Clock, Takes_The_Daylight_Bias_Between_This_Years_Rules) {
    const Zone_Rule second_sunday_of_march{0, 3, 2, 0, 0, {2, 0, 0}};
    const Zone_Rule first_sunday_of_november{0, 11, 1, 0, 0, {2, 0, 0}};
    const Zone_Rule last_sunday_of_october{0, 10, 5, 0, 0, {3, 0, 0}};
    const Zone_Rule third_saturday_of_march{0, 3, 3, 6, 0, {0, 0, 0}};
    const Zone_Rule once{2026, 7, 0, 0, 14, {12, 30, 0}};
    // In 2026 the second Sunday of March is the 8th, the first of November the 1st, the last of
    // October the 25th; the third Saturday of March is the 21st.
    const std::vector<Zone_Case> cases{
        {"before daylight time",
         {{2026, 3, 8}, {1, 59, 59}},
         second_sunday_of_march,
         first_sunday_of_november,
         300},
        {"at its start",
         {{2026, 3, 8}, {2, 0, 0}},
         second_sunday_of_march,
         first_sunday_of_november,
         240},
        {"at its end",
         {{2026, 11, 1}, {2, 0, 0}},
         second_sunday_of_march,
         first_sunday_of_november,
         240},
        {"after its end",
         {{2026, 11, 1}, {2, 0, 1}},
         second_sunday_of_march,
         first_sunday_of_november,
         300},
        {"last Sunday",
         {{2026, 10, 25}, {3, 0, 0}},
         second_sunday_of_march,
         last_sunday_of_october,
         240},
        {"after the last Sunday",
         {{2026, 10, 26}, {0, 0, 0}},
         second_sunday_of_march,
         last_sunday_of_october,
         300},
        {"third Saturday",
         {{2026, 3, 20}, {23, 59, 59}},
         third_saturday_of_march,
         last_sunday_of_october,
         300},
        {"a rule for one year", {{2026, 7, 14}, {12, 30, 0}}, once, last_sunday_of_october, 240},
        {"before a rule for one year",
         {{2026, 7, 14}, {12, 29, 0}},
         once,
         last_sunday_of_october,
         300},
        {"southern summer",
         {{2026, 1, 15}, {12, 0, 0}},
         last_sunday_of_october,
         second_sunday_of_march,
         300},
        {"southern winter",
         {{2026, 12, 15}, {12, 0, 0}},
         last_sunday_of_october,
         second_sunday_of_march,
         300},
        {"no daylight time", {{2026, 7, 1}, {12, 0, 0}}, {}, {}, 300},
    };
    for (const Zone_Case& zone : cases) {
        Virtual_Clock clock;
        clock.start = zone.now;
        clock.zone = {300, -60, zone.standard_start, zone.daylight_start};
        EXPECT_EQ(clsUTC(clock).Bias(), zone.bias) << zone.title;
    }
}

TEST(Utc_Clock, Tells_The_Time_Across_Midnight) {
    Virtual_Clock clock;
    clock.start = {{2026, 3, 14}, {0, 20, 0}};
    clock.zone.standard_bias = -330;
    EXPECT_EQ(clsUTC(clock).GetUTC(), "1850");
    clock.zone.standard_bias = 300;
    EXPECT_EQ(clsUTC(clock).GetUTCZ(), "0520Z");
    clock.start.time = {23, 5, 0};
    EXPECT_EQ(clsUTC(clock).GetUTC(), "0405");
    // The computer's own is right where the rules are not: Lord Howe changes by half an hour.
    clock.utc = Date_Time{{2026, 1, 14}, {12, 5, 0}};
    EXPECT_EQ(clsUTC(clock).GetUTC(), "1205");
}

}  // namespace

}  // namespace norvane::test
