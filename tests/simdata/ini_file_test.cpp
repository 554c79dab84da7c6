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

TEST_F(Ini_File, Model_And_Revolutions_Do_Not_Need_A_Payload) {
    Point_At(
        "[General]\nATC_Model=C172 // a\n[PISTON_ENGINE]\nmax_rated_rpm = 2700 //rpm\n"
        "[WEIGHT_AND_BALANCE]\nstation_load.0=170,1\n");
    ini.Get_Configuration_Info();
    EXPECT_EQ(ini.ATC_Model(), "C172");
    EXPECT_EQ(ini.Max_RPM(), "2700");
    EXPECT_EQ(ini.PAX() + ini.Baggage_Cargo(), "");
}

TEST_F(Ini_File, Stations_That_Count_Their_People) {
    EXPECT_EQ(Payload("// aclOAder\r\n"
                      "station_load.0=\"340.0, 1, 2, crew (2 persons)\"\r\n"
                      "station_load.1=1700,1,2,First (10 ppl)\r\n"
                      "station_load.2=1700,1,2,Rear (8 PER)\r\n"
                      "station_load.3=1700,1,2,\"many\" (some people)\r\n"
                      "station_load.4=500.5,1,2,Front cargo\r\n"
                      "station_load.5=700.6,1,2,Aft cargo (no limit)\r\n"
                      "Station_Load.6=1,1,2,Lower cargo in another case\r\n"
                      "station_load.7=heavy,1,2,More cargo\r\n"),
              "20/1201");
    // A marker counts behind either sign of a comment, a station behind none.
    EXPECT_EQ(Payload("; ACLOADER\r\nstation_load.0=7,cargo\r\n;station_load.1=8,cargo"), "/7");
    EXPECT_EQ(Payload("// ACLOADER and LYONSMARK\r\npax_weight=5\r\ncargo_weight=6"), "/");
}

TEST_F(Ini_File, Stations_With_Marks_In_The_Wrong_Order_End_The_Figures) {
    EXPECT_EQ(Payload("//ACLOADER\r\nstation_load.0=1,Pilot (1 person)\r\n"), "/");
    EXPECT_EQ(Payload("//ACLOADER\r\nstation_load.0 5, =1 cargo\r\n"), "/");
    EXPECT_EQ(Payload("//ACLOADER\r\nstation_load.0=99999999999,cargo\r\n"), "/");
    EXPECT_THAT(Take_Errors(), testing::Each(HasSubstr("clsIniFile.Do_ACLoader()")));
    EXPECT_TRUE(desktop.boxes.empty());
    // Before the first station marks stand as they like.
    EXPECT_EQ(Payload("//ACLOADER, cargo = 5\r\nstation_load.0=7,cargo\r\n"), "/7");
    EXPECT_EQ(Payload("//ACLOADER\r\nstation_load.0=7 without comma, no cargo\r\n"
                      "station_load.1=8 cargo without comma\r\n"),
              "/");
}

TEST_F(Ini_File, Weights_That_Stand_In_Keys_Of_Their_Own) {
    EXPECT_EQ(Payload("LyonsMark=1\r\nPAX_Weight=12.50 // lbs\r\ncargo_weight=1200"), "12.50/1200");
    EXPECT_EQ(Payload("LYONSMARK\r\nPAX_WEIGHT=none\r\nCARGO_WEIGHT=170,"), "/170,");
}

TEST_F(Ini_File, Passengers_By_Their_Weight) {
    const std::string stations =
        "//Weight Psgr Sect OA\r\nstation_load.0=400,1,PSGR sect A\r\n"
        "station_load.1=600,1,PSGR cargo\r\nstation_load.2=300,Cargo\r\n"
        "station_load.3=20,baggage\r\nstation_load.4=170,crew\r\n";
    EXPECT_EQ(Payload(stations), "5.55555555555556/320");
    EXPECT_EQ(Payload(stations, "DH8A"), "5.71428571428571/320");
    EXPECT_EQ(Payload(stations, "B777"), "4.16666666666667/320");
    EXPECT_EQ(Payload(stations, "C172"), "/320");
    EXPECT_EQ(Payload("// weight psgr sect oa\r\nstation_load.0=0,PSGR\r\n"), "/");
    EXPECT_EQ(Payload("//weight psgr sect oa\r\nstation_load.0=900,PSGR\r\n"), "5/");
}

TEST_F(Ini_File, Stations_That_Are_Passengers) {
    EXPECT_EQ(Payload("//Passenger location and weight\r\n"
                      "station_load.0=170,1,passenger 1\r\nstation_load.1=0,1,passenger 2\r\n"
                      "station_load.2=17x,1,passenger 3\r\nstation_load.3=0.4,passenger 4\r\n"
                      "station_load.4=180.2,1,Passenger 5\r\nstation_load.5=250,1,CARGO\r\n"
                      "station_load.6=0,cargo for a passenger\r\n"),
              "2/250");
}

TEST_F(Ini_File, Seats_By_Their_Numbers) {
    EXPECT_EQ(Payload("//Weight /Long. Tal. Vert.\r\n"
                      "station_load.0=170,1\r\nstation_load.2=170,1\r\n"
                      "STATION_LOAD.3=170,1\r\nstation_load.4=0,1\r\nstation_load.5=no,1\r\n"
                      "station_load.6=0.5, 1 // child\r\nstation_load.7=170\r\n"
                      "station_load.52=\"170,1\"\r\nstation_load.53=170,1\r\n"),
              "3/");
}

TEST_F(Ini_File, Broken_Aircraft_Files_Give_Less_But_Never_Crash) {
    std::string bytes;
    for (unsigned i = 0; i < 50000; ++i)
        bytes += static_cast<char>(i * i >> 3U);
    for (const auto& content : {""s, "[WEIGHT_AND_BAL"s, bytes, std::string(10 << 20, 'x'),
                                "[WEIGHT_AND_BALANCE]\n" + std::string(10 << 20, '='),
                                "[WEIGHT_AND_BALANCE]\nACLOADER " + std::string(10 << 20, 'P')}) {
        Point_At(content);
        ini.Get_Configuration_Info();
        EXPECT_EQ(ini.PAX() + ini.Baggage_Cargo() + ini.ATC_Model(), "");
    }
    EXPECT_EQ(Payload("weight /long. tal. vert." + std::string(40000, '\n') +
                      std::string(40000, 'x') + "\r\nstation_load.3=1,"),
              "1/");
}

}  // namespace
}  // namespace norvane
