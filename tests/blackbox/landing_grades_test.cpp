#include "blackbox/landing_grades.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_world.h"

namespace norvane {
namespace {

using Landing_Tables = test::Test_World;

TEST(Landing_Grades, The_Shipped_Table_Is_The_One_That_Counts_Without_Any) {
    const auto shipped =
        Read_Landing_Grades(std::string(NORVANE_SOURCE_DIR) + "/data/bin/landing.cfg");
    for (const double rate : {0.0, 60.0, -100.0, -100.5, -300.0, -399.0, -600.0, -2000.0})
        EXPECT_EQ(shipped.Word_For(rate), Default_Landing_Grades().Word_For(rate)) << rate;
    EXPECT_EQ(shipped.Word_For(-100), "very smooth");
    EXPECT_EQ(shipped.Word_For(-100.5), "smooth");
    EXPECT_EQ(shipped.Word_For(-2000), "very hard");
}

TEST_F(Landing_Tables, An_Airline_Has_Its_Own_And_The_Pilot_The_Other) {
    EXPECT_EQ(Find_Landing_Grades(services, "SKY").Word_For(-150), "smooth");
    Write("bin/landing.cfg", "; mine\n\n50|fine\n 400 | so so \n");
    Write("VA_SKY/Landing.CFG", "MORE|any\r\n");
    EXPECT_EQ(Find_Landing_Grades(services, "SKY").Word_For(-5000), "any");
    EXPECT_EQ(Find_Landing_Grades(services, "DEFAULT").Word_For(-150), "so so");
    EXPECT_EQ(Find_Landing_Grades(services, "DEFAULT").Word_For(-401), "");
}

TEST_F(Landing_Tables, A_Faulty_One_Is_Told_By_File_And_Line_And_Does_Not_Count) {
    const struct {
        const char* content;
        const char* fault;
    } cases[] = {
        {"100|a\n200\n", "line 2: no \"LIMIT|WORD\""},
        {"; a\n100|a|b\n", "line 2: no \"LIMIT|WORD\""},
        {"100| \n", "line 1: no word"},
        {"200|a\n200|b\n", "line 2: the limit is not above"},
        {"more|a\n200|b\n", "line 2: the limit is not above"},
        {"-100|a\n", "line 1: the limit is neither"},
        {"soft|a\n", "line 1: the limit is neither"},
        {"; nothing\n", "no grade"},
        {"", "no grade"},
    };
    for (const auto& c : cases) {
        Write("bin/landing.cfg", c.content);
        EXPECT_EQ(Find_Landing_Grades(services, "SKY").Word_For(-150), "smooth") << c.content;
        const auto errors = Take_Errors();
        ASSERT_EQ(errors.size(), 1U) << c.content;
        EXPECT_THAT(errors[0], testing::HasSubstr("landing.cfg, line ")) << c.content;
        EXPECT_THAT(errors[0], testing::HasSubstr(c.fault)) << c.content;
    }
}

}  // namespace
}  // namespace norvane
