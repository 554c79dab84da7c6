// Reports cut out of saved pages by each source's rule.

#include <gmock/gmock.h>

#include "common/text.h"
#include "net/net_world.h"

namespace norvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string no_server = "Unable to connect to WX server";
const std::string none = no_server + " or ICAO not found";

class Weather : public test::Pages_World {
  protected:
    std::string Report_Of(const std::string& source, const std::string& code = "KJFK") {
        settings.Set_WX_URL(source);
        return Client().Get_WX(code);
    }
};

TEST_F(Weather, Each_Source_Has_Its_Own_Way_To_Hold_A_Metar) {
    struct Case {
        std::string source;
        std::string page;
        std::string report;
        std::string fault{};
    };
    for (const Case& each : std::vector<Case>{
             {"ADDS", "<html><sPaN class=\"x\"> KJFK 1\n 2 <b>bold</b></span>", "KJFK 1 2"},
             {"ADDS", "KJFK 1\n 2\n", "KJFK 1 2"},
             {"ADDS", "  ", none},
             {"ADDS", "KJFK\t1\x1b[2J\x07\x7f\x9d\xe9", "KJFK\t1[2J\xe9"},
             {"ADDS", "<p>KJFK</p>", "<p>KJFK</p>", "clsWinInet.Strip_HTML()"},
             {"ADDS", "<SPAN>KJFK", none, "clsWinInet.Strip_HTML()"},
             {"NOAA", "<p>KJFK</p><pre>\n2026 KJFK 1\n 2\r\n</pre>", "KJFK 1 2\r"},
             {"NOAA", "METAR KJFK 1\n", "KJFK 1"},
             {"NOAA", "<h1>KJFK </h1>An ERROR", none},
             {"NOAA", "<pre>KLAX 1</pre>", "", "clsWinInet.Get_METAR()"},
             {"NOAA", "KLAX 1", "", "clsWinInet.Get_METAR()"},
             {"NOAA", "<pre>KJFK 1", "", "clsWinInet.Get_METAR()"},
             {"VATSIM", "<input value=\"metar=KJFK \"1\"\"><p>\">", "KJFK \"1\""},
             {"VATSIM", "KJFK 1\n", "KJFK 1"},
             {"VATSIM", "<p>KJFK 1</p>", none},
             {"VATSIM", "metar=KJFK 1", "", "clsWinInet.Get_METAR()"},
             {"OTHER", "a <b> \nc", "a <b> c"},
             {"OTHER", "So sorry", none},
             {"OTHER", "You Entered nothing", none},
             {"OTHER", "No METAR here", none}}) {
        pages["/" + each.source + "/METAR"] = each.page;
        settings.Set_WX_URL(each.source);
        EXPECT_EQ(Client().Get_METAR(" kjfk "), each.report) << each.source << each.page;
        EXPECT_THAT(Take_Asked(), ElementsAre("/" + each.source + "/METAR?id=KJFK"));
        const auto faults = Take_Errors();
        EXPECT_EQ(faults.size(), each.fault.empty() ? 0U : 1U) << each.page;
        EXPECT_TRUE(Contains(Join(faults, ""), each.fault)) << each.page;
    }
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Weather, Metar_And_Taf_Together_Keep_Their_Lines) {
    for (const auto& [page, report] : std::vector<std::pair<std::string, std::string>>{
             {"<PRE>\nKJFK 1\n  TAF 2 </PRE> x", "\nKJFK 1\n  TAF 2"},
             {" KJFK 1\n TAF 2\n", "KJFK 1\n TAF 2\n"},
             {"<PRE>Sorry</PRE>", no_server},
             {"", no_server},
             {"KJFK 3", "KJFK 3"}}) {
        pages["/ADDS/METAR_TAF"] = page;
        EXPECT_EQ(Report_Of("ADDS"), report);
        EXPECT_EQ(Report_Of("FS", "K&J"), report);
        EXPECT_EQ(Take_Asked().back(), "/ADDS/METAR_TAF?id=K%26J");
    }
    pages["/NOAA/METAR"] = "no metar";
    pages["/NOAA/TAF"] = "<pre>TAF KJFK 1\n  2</pre>";
    pages["/VATSIM/METAR"] = "KJFK 9";
    EXPECT_EQ(Report_Of("NOAA"), none + "\r\n\r\nKJFK 1  2");
    EXPECT_EQ(Report_Of("VATSIM"), "KJFK 9\r\n\r\nKJFK 1  2");
    pages["/NOAA/TAF"] = "No TAF";
    EXPECT_EQ(Report_Of("VATSIM"), "KJFK 9\r\n\r\n" + none);
    EXPECT_TRUE(Holds_Report("KJFK 9\r\n\r\n" + none));
    EXPECT_FALSE(Holds_Report(none) || Holds_Report(no_server + "\r\n \r\n" + none));
    pages["/VATSIM/METAR"] = "metar=KJFK\x07 9";
    pages["/NOAA/TAF"] = "";
    EXPECT_EQ(Report_Of("VATSIM"), "") << "two failures are no report";
    EXPECT_EQ(Take_Errors().size(), 2U);
}

TEST_F(Weather, Nothing_Is_Asked_Without_A_Code_Or_A_Source) {
    EXPECT_EQ(Report_Of("NOAA", "  "), none + "\r\n\r\n" + none);
    EXPECT_EQ(Report_Of("ADDS", "  "), no_server);
    EXPECT_EQ(Report_Of("OTHER"), "");
    EXPECT_EQ(Report_Of("NONE"), "");
    EXPECT_EQ(Client().Get_METAR("KJFK"), "");
    EXPECT_THAT(error_log.entries, IsEmpty());
    // "FS" is no section of the file.
    settings.Set_WX_URL("FS");
    EXPECT_EQ(Client().Get_METAR("KJFK"), "");
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("Missing URL")));
    EXPECT_THAT(Take_Asked(), IsEmpty());
}

}  // namespace
}  // namespace norvane
