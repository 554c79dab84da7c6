// Reports cut out of saved pages by each source's rule.

#include <gmock/gmock.h>

#include <algorithm>
#include <map>

#include "net/net_world.h"

namespace norvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string none = "Unable to connect to WX server or ICAO not found";
const std::string no_server = "Unable to connect to WX server";

class Weather : public test::Net_World {
  protected:
    Weather() {
        server->Get(".*", [this](const httplib::Request& in, httplib::Response& out) {
            asked.push_back(in.target);
            out.set_content(pages[in.path], "text/html");
        });
        server.Start();
        Sources_At(server.Host());
    }
    std::string Metar(const std::string& source, const std::string& page) {
        pages["/" + source + "/metar"] = page;
        settings.Set_WX_URL(source);
        return Client().Get_METAR(" kjfk ");
    }
    std::string Both(const std::string& page) {
        pages["/ADDS/both"] = page;
        settings.Set_WX_URL("ADDS");
        return Client().Get_WX("kjfk");
    }

    std::map<std::string, std::string> pages;
    std::vector<std::string> asked;
    test::Web_Server server;
};

TEST_F(Weather, Each_Source_Has_Its_Own_Way_To_Hold_A_Metar) {
    struct Case {
        std::string source;
        std::string page;
        std::string report;
    };
    for (const Case& each : std::vector<Case>{
             {"ADDS", "<html><sPaN class=\"x\"> KJFK 1\n 2 <b>bold</b></span>", "KJFK 1 2"},
             {"ADDS", "KJFK 1\n 2\n", "KJFK 1 2"},
             {"ADDS", "  ", none},
             {"NOAA", "<p>KJFK</p><pre>\n2026 KJFK 1\n 2\r\n</pre>", "KJFK 1 2\r"},
             {"NOAA", "METAR KJFK 1\n", "KJFK 1"},
             {"NOAA", "<h1>KJFK </h1>An ERROR", none},
             {"VATSIM", "<input value=\"metar=KJFK \"1\"\"><p>\">", "KJFK \"1\""},
             {"VATSIM", "KJFK 1\n", "KJFK 1"},
             {"VATSIM", "<p>KJFK 1</p>", none},
             {"ADDS", "KJFK\t1\x1b[2J\x07\x7f\x9d\xe9", "KJFK\t1[2J\xe9"},
             {"OTHER", "a <b> \nc", "a <b> c"},
             {"OTHER", "So sorry", none},
             {"OTHER", "You Entered nothing", none},
             {"OTHER", "No METAR here", none}}) {
        EXPECT_EQ(Metar(each.source, each.page), each.report) << each.source << each.page;
    }
    EXPECT_EQ(asked.front(), "/ADDS/metar?id=KJFK");
}

TEST_F(Weather, A_Page_Without_Its_Marks_Gives_Nothing_And_Is_Reported) {
    for (const auto& [source, page] :
         std::vector<std::pair<std::string, std::string>>{{"NOAA", "<pre>KLAX 1</pre>"},
                                                          {"NOAA", "KLAX 1"},
                                                          {"NOAA", "<pre>KJFK 1"},
                                                          {"VATSIM", "metar=KJFK 1"}}) {
        EXPECT_EQ(Metar(source, page), "") << source << page;
        EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsWinInet.Get_METAR()"))) << page;
    }
    EXPECT_EQ(Metar("ADDS", "<p>KJFK</p>"), "<p>KJFK</p>");
    EXPECT_EQ(Metar("ADDS", "<SPAN>KJFK"), none);
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsWinInet.Strip_HTML()"),
                                           HasSubstr("clsWinInet.Strip_HTML()")));
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Weather, Metar_And_Taf_Together_Keep_Their_Lines) {
    EXPECT_EQ(Both("<PRE>\nKJFK 1\n  TAF 2 </PRE> x"), "\nKJFK 1\n  TAF 2");
    EXPECT_EQ(Both(" KJFK 1\n TAF 2\n"), "KJFK 1\n TAF 2\n");
    EXPECT_EQ(Both("<PRE>Sorry</PRE>"), no_server);
    EXPECT_EQ(Both(""), no_server);
    settings.Set_WX_URL("FS");
    pages["/ADDS/both"] = "KJFK 3";
    EXPECT_EQ(Client().Get_WX("K&J"), "KJFK 3");
    EXPECT_EQ(asked.back(), "/ADDS/both?id=K%26J");

    pages["/NOAA/taf"] = "<pre>TAF KJFK 1\n  2</pre>";
    pages["/VATSIM/metar"] = "KJFK 9";
    for (const auto& [source, metar] :
         std::map<std::string, std::string>{{"NOAA", none}, {"VATSIM", "KJFK 9"}}) {
        pages["/NOAA/metar"] = "no metar";
        settings.Set_WX_URL(source);
        EXPECT_EQ(Client().Get_WX("KJFK"), metar + "\r\n\r\nKJFK 1  2");
    }
    pages["/NOAA/taf"] = "No TAF";
    EXPECT_EQ(Client().Get_WX("KJFK"), "KJFK 9\r\n\r\n" + none);
    pages["/VATSIM/metar"] = "metar=KJFK\x07 9";
    pages["/NOAA/taf"] = "";
    EXPECT_EQ(Client().Get_WX("KJFK"), "") << "two failures are no report";
    EXPECT_EQ(Take_Errors().size(), 2U);
}

TEST_F(Weather, Nothing_Is_Asked_Without_A_Code_Or_A_Source) {
    settings.Set_WX_URL("NOAA");
    EXPECT_EQ(Client().Get_METAR("  "), none);
    for (const char* source : {"NONE", "OTHER"}) {
        settings.Set_WX_URL(source);
        EXPECT_EQ(Client().Get_WX("KJFK"), "");
    }
    settings.Set_WX_URL("NONE");
    EXPECT_EQ(Client().Get_METAR("KJFK"), "");
    EXPECT_THAT(error_log.entries, IsEmpty());
    // "FS" is no section of the file.
    settings.Set_WX_URL("FS");
    EXPECT_EQ(Client().Get_METAR("KJFK"), "");
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("Missing URL")));
    EXPECT_THAT(asked, IsEmpty());
}

}  // namespace
}  // namespace norvane
