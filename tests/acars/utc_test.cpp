// The computer's UTC clock and the rules of its time zone.

#include "acars/cls_utc.h"
#include "support/test_world.h"

namespace norvane::test {
namespace {

TEST(Utc_Clock, Takes_The_Daylight_Bias_Between_This_Years_Rules) {
    const Zone_Rule march{0, 3, 2, 0, 0, {2, 0, 0}};           // second Sunday, the 8th in 2026
    const Zone_Rule third_saturday{0, 3, 3, 6, 0, {0, 0, 0}};  // the 21st
    const Zone_Rule november{0, 11, 1, 0, 0, {2, 0, 0}};       // first Sunday, the 1st
    const Zone_Rule october{0, 10, 5, 0, 0, {3, 0, 0}};        // last Sunday, the 25th
    const Zone_Rule once{2026, 7, 0, 0, 14, {12, 30, 0}};
    struct Zone_Case {
        Date_Time now;
        Zone_Rule daylight_start;
        Zone_Rule standard_start;
        int bias;
    };
    for (const auto& [now, daylight, standard, bias] :
         std::vector<Zone_Case>{{{{2026, 3, 8}, {1, 59, 59}}, march, november, 300},
                                {{{2026, 3, 8}, {2, 0, 0}}, march, november, 240},
                                {{{2026, 10, 25}, {3, 0, 0}}, march, october, 240},
                                {{{2026, 10, 25}, {3, 0, 1}}, march, october, 300},
                                {{{2026, 3, 20}, {23, 59, 59}}, third_saturday, october, 300},
                                {{{2026, 3, 21}, {0, 0, 0}}, third_saturday, october, 240},
                                {{{2026, 7, 14}, {12, 30, 0}}, once, october, 240},
                                {{{2026, 7, 14}, {12, 29, 0}}, once, october, 300},
                                // A southern zone is never within.
                                {{{2026, 1, 15}, {12, 0, 0}}, october, march, 300},
                                {{{2026, 12, 15}, {12, 0, 0}}, october, march, 300},
                                {{{2026, 7, 1}, {12, 0, 0}}, {}, november, 300},
                                {{{2026, 7, 1}, {12, 0, 0}}, march, {}, 300}}) {
        Virtual_Clock clock;
        clock.start = now;
        clock.zone = {300, -60, standard, daylight};
        EXPECT_EQ(clsUTC(clock).Bias(), bias) << now.date.month << " " << now.time.second;
    }
}

TEST(Utc_Clock, Takes_The_Computers_Own_Where_The_Rules_Are_Not_Right) {
    Virtual_Clock clock;
    clock.start = {{2026, 3, 14}, {0, 20, 0}};
    clock.zone.standard_bias = -330;
    EXPECT_EQ(clsUTC(clock).GetUTCZ(), "1850Z");
    // Lord Howe changes by half an hour.
    clock.utc = Date_Time{{2026, 1, 14}, {12, 5, 0}};
    EXPECT_EQ(clsUTC(clock).GetUTC(), "1205");
}

}  // namespace
}  // namespace norvane::test
