#include "simdata/cls_ini_file.h"

#include <gmock/gmock.h>

#include "support/test_world.h"

namespace norvane {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;

class Ini_File : public test::Test_World {
  protected:
    void Point_At(const std::string& content) { ini.Set_INI_FilePath(Write("x.cfg", content)); }
    /// "PAX/cargo" of an aircraft file with these lines of the loading section.
    std::string Payload(const std::string& lines, const std::string& model = "A320") {
        Point_At("[GENERAL]\r\natc_model=" + model +
                 " // type\r\n[Weight_And_Balance]\r\nempty_weight=1000\r\n" + lines +
                 "\r\n[after]\r\nstation_load.1=9999,CARGO\r\n");
        ini.Get_Configuration_Info();
        return ini.PAX() + "/" + ini.Baggage_Cargo();
    }

    /// A marker and, behind it, a key for each of these stations.
    static std::string Stations(const std::string& marker, const std::vector<std::string>& values) {
        std::string lines = marker + "\r\n";
        for (std::size_t i = 0; i < values.size(); ++i)
            lines += "station_load." + std::to_string(i) + "=" + values[i] + "\r\n";
        return lines;
    }

    clsIniFile ini{services};
};

TEST_F(Ini_File, Values_Lose_Their_Comment_On_Request) {
    Point_At("[a]\nk= value  // why\nurl=http://host/x\nlong=" + std::string(252, 'x') +
             " // cut\nonly=// nothing\n");
    EXPECT_EQ(ini.Get_String("A", "K", true), "value");
    EXPECT_EQ(ini.Get_String("A", "K", false), "value  // why");
    EXPECT_EQ(ini.Get_String("A", "url", false), "http://host/x");
    EXPECT_EQ(ini.Get_String("A", "long", true), std::string(252, 'x') + " /");
    EXPECT_EQ(ini.Get_String("A", "only", true), "");
    EXPECT_EQ(ini.GetSectEntries("a").substr(0, 17), "k= value  // why\0"s);
    // Nothing is cached: an edit is seen by the next read.
    Write("x.cfg", "[a]\nk=new\n");
    EXPECT_EQ(ini.Get_String("A", "K", true), "new");
    ini.Set_INI_FilePath("  " + (directory / "x.cfg").string() + " ");
    EXPECT_EQ(ini.Get_String("A", "K", true), "new");
}

TEST_F(Ini_File, A_Missing_File_Is_Empty_And_An_Unreadable_One_Reported) {
    ini.Set_INI_FilePath(directory / "missing.cfg");
    EXPECT_EQ(ini.Get_String("a", "k", false), "");
    EXPECT_EQ(ini.GetSectEntries("a"), "\0"s);
    ini.Get_Configuration_Info();
    ini.Get_URLs("a");
    EXPECT_TRUE(error_log.entries.empty());
    ini.Set_INI_FilePath(directory);
    EXPECT_EQ(ini.Get_String("a", "k", false), "");
    EXPECT_EQ(ini.GetSectEntries("a"), "");
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsIniFile.Get_String()"),
                                           HasSubstr("clsIniFile.GetSectEntries()")));
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Ini_File, Addresses_Of_A_Source_Are_Read_Whole) {
    Point_At("[ADDS]\nurl=host//x\nmetar=/m?ids=\nTaf=/t\ndata=/d\n[NOAA]\nMETAR_TAF=/mt\n");
    ini.Get_URLs("adds");
    EXPECT_EQ(ini.URL(), "host//x");
    EXPECT_EQ(ini.URL_METAR() + ini.URL_TAF() + ini.URL_Data(), "/m?ids=/t/d");
    EXPECT_EQ(ini.URL_METAR_TAF(), "");
    ini.Get_URLs("NOAA");
    EXPECT_EQ(ini.URL() + ini.URL_METAR(), "") << "the source before leaves nothing";
    EXPECT_EQ(ini.URL_METAR_TAF(), "/mt");
    ini.Get_URLs("");
    EXPECT_EQ(ini.URL_METAR_TAF(), "");
}

TEST_F(Ini_File, Payloads_Of_Every_Kind_Of_Station) {
    const std::pair<std::string, const char*> cases[] = {
        // People that are counted, and cargo. A marker counts behind either sign of a comment, a
        // station behind none; before the first station marks stand as they like.
        {Stations("// aclOAder", {"\"340.0, 1, 2, crew (2 persons)\"", "1700,1,2,First (10 ppl)",
                                  "1700,1,2,Rear (8 PER)", "1700,1,2,\"many\" (some people)",
                                  "500.5,1,2,Front cargo", "700.6,1,2,Aft cargo (no limit)",
                                  "heavy,1,2,More cargo"}) +
             "Station_Load.6=1,1,2,Lower cargo in another case\r\n",
         "20/1201"},
        {Stations("; ACLOADER, cargo = 5", {"7,cargo"}) + ";station_load.1=8,cargo", "/7"},
        {Stations("//ACLOADER", {"7 without comma, no cargo", "8 cargo without comma"}), "/"},
        // Weights that stand in keys of their own.
        {"LyonsMark=1\r\nPAX_Weight=12.50 // lbs\r\ncargo_weight=1200", "12.50/1200"},
        {"LYONSMARK\r\nPAX_WEIGHT=none\r\nCARGO_WEIGHT=170,", "/170,"},
        {"// ACLOADER and LYONSMARK\r\npax_weight=5\r\ncargo_weight=6", "/"},
        // Passengers by their weight.
        {Stations("// weight psgr sect oa", {"0,PSGR"}), "/"},
        {Stations("//weight psgr sect oa", {"900,PSGR"}), "5/"},
        // Stations that are passengers.
        {Stations("//Passenger location and weight",
                  {"170,1,passenger 1", "0,1,passenger 2", "17x,1,passenger 3", "0.4,passenger 4",
                   "180.2,1,Passenger 5", "250,1,CARGO", "0,cargo for a passenger"}),
         "2/250"},
        // Seats by their numbers.
        {Stations("//Weight /Long. Tal. Vert.",
                  {"170,1", "170", "170,1", "0,1", "no,1", "0.5, 1 // child"}) +
             "STATION_LOAD.9=170,1\r\nstation_load.52=\"170,1\"\r\nstation_load.53=170,1\r\n",
         "3/"},
        {"weight /long. tal. vert." + std::string(40000, '\n') + std::string(40000, 'x') +
             "\r\nstation_load.3=1,",
         "1/"},
    };
    for (const auto& [lines, payload] : cases)
        EXPECT_EQ(Payload(lines), payload) << lines.substr(0, 200);
    const std::string stations =
        Stations("//Weight Psgr Sect OA",
                 {"400,1,PSGR sect A", "600,1,PSGR cargo", "300,Cargo", "20,baggage", "170,crew"});
    EXPECT_EQ(Payload(stations), "5.55555555555556/320");
    EXPECT_EQ(Payload(stations, "DH8A"), "5.71428571428571/320");
    EXPECT_EQ(Payload(stations, "B777"), "4.16666666666667/320");
    EXPECT_EQ(Payload(stations, "C172"), "/320");
    Point_At("[General]\nATC_Model=C172 // a\n[PISTON_ENGINE]\nmax_rated_rpm = 2700 //rpm\n");
    ini.Get_Configuration_Info();
    EXPECT_EQ(ini.ATC_Model() + ini.Max_RPM() + ini.PAX() + ini.Baggage_Cargo(), "C1722700")
        << "without a payload";
}

}  // namespace
}  // namespace norvane
