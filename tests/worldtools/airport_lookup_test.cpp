// The airport lookup: what is found while the pilot types, and in which order.

#include <gmock/gmock.h>

#include "common/run_error.h"
#include "support/test_world.h"
#include "worldtools/frm_icao.h"

namespace norvane::test {
namespace {

using testing::ElementsAre;

class Airport_Lookup : public Test_World {
  protected:
    /// What is found for a text, by code.
    std::vector<std::string> Found(std::string_view text) {
        form.txtSearch.Enter(text);
        std::vector<std::string> codes;
        for (const auto& row : form.lvwAirports.Rows())
            codes.push_back(row.front());
        return codes;
    }
    frmICAO form{services, [] { return frmICAO::World_Files{"fs9.wld", "fs9UD.wld"}; }};
};

TEST_F(Airport_Lookup, Finds_codes_before_names_whatever_the_case_and_the_accents) {
    EXPECT_THROW(form.Show_Form(), Run_Error);
    EXPECT_FALSE(form.Is_Open());
    Write("bin/fs9.wld",
          "// world\r\n"
          "1|1|5|ZZZZ|Lonely Field LON\r\n"
          "47,4647|8.5492|1416|LSZH|Z\xFCrich Airport\r\n"
          "broken|line|x|LON9|Broken\r\n"
          "51|-0.5|1083.6|LONX|Longbow|\r\n"
          "2|2|7|LON|Exact\r\n");
    form.Show_Form();
    EXPECT_EQ(form.lblCount.Text(), "4 airports");
    EXPECT_TRUE(form.lvwAirports.Rows().empty());
    form.txtSearch.Enter("lon");
    form.Show_Form();
    EXPECT_EQ(form.txtSearch.Text(), "lon") << "an open one is only brought to the front";
    EXPECT_THAT(Found("o "), ElementsAre()) << "nearly every airport has one";
    EXPECT_THAT(Found("xb"), ElementsAre());
    EXPECT_THAT(Found("on"), ElementsAre("ZZZZ", "LONX", "LON"));
    EXPECT_THAT(Found(" lon"), ElementsAre("LON", "LONX", "ZZZZ"));
    EXPECT_EQ(form.lblCount.Text(), "3 airports");
    EXPECT_THAT(form.lvwAirports.Rows()[1],
                ElementsAre("LONX", "Longbow", "51.0000", "-0.5000", "1,084"));
    for (const auto* text : {"zurich", "Z\xDCRICH", "rich air"})
        EXPECT_THAT(Found(text), ElementsAre("LSZH")) << text;
    form.hypCopy.Click();
    EXPECT_EQ(desktop.copied_text, "LSZH");
    EXPECT_EQ(form.lblCount.Text(), "LSZH copied");
    EXPECT_THAT(Found("none"), ElementsAre());
    EXPECT_EQ(form.lblCount.Text(), "No airport found");
    EXPECT_FALSE(form.hypCopy.Enabled());
    form.hypClose.Click();
    EXPECT_FALSE(form.Is_Open());
    Write("bin/fs9.wld", "1|1|5|NEW1|The file of another day\r\n");
    form.Show_Form();
    EXPECT_THAT(Found("another"), ElementsAre("NEW1"));
    form.Close_Form();
    Write("bin/fs9UD.wld", "1|1|5|OWN1|Another of the pilot's own|3/14/2026\r\n");
    form.Show_Form();
    EXPECT_THAT(Found("another"), ElementsAre("OWN1", "NEW1"));
}

TEST_F(Airport_Lookup, Shows_the_first_500_and_counts_the_others) {
    std::string world;
    for (int i = 0; i < 1200; ++i)
        world += "1|1|5|A" + std::to_string(1000 + i) + "|Field\r\n";
    Write("bin/fs9.wld", world + "1|1|5|FIELD|The best match stands last\r\n");
    form.Show_Form();
    const auto found = Found("field");
    EXPECT_EQ(found.size(), frmICAO::most_rows);
    EXPECT_EQ(found.front(), "FIELD");
    EXPECT_EQ(form.lblCount.Text(), "500 of 1,201 airports shown");
}

}  // namespace
}  // namespace norvane::test
