// Saved flight plans of both layouts, whole, damaged and in every encoding that editors leave.

#include "simdata/flight_plan.h"

#include <gmock/gmock.h>

#include "common/line_reader.h"
#include "common/text.h"
#include "simdata/cls_ini_file.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using namespace std::string_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Flight_Plans : public test::Test_World {
  protected:
    /// "type/level/origin/name/destination/name/route" of a plan file.
    std::string Read(const std::filesystem::path& file) {
        clsIniFile plan(services);
        plan.Set_INI_FilePath(file);
        plan.Get_Flight_Plan();
        return Join({plan.Flight_Type(), plan.FLIGHT_LEVEL(), plan.Flight_Origin_ICAO(),
                     plan.Flight_Origin_Name(), plan.Flight_Destination_ICAO(),
                     plan.Flight_Destination_Name(), plan.FLIGHT_PLAN()},
                    "/");
    }
    std::string Read_Text(const std::string& content) { return Read(Write("x.pln", content)); }
    /// An INI plan of these waypoint lines.
    std::string Read_Waypoints(const std::string& lines) {
        return Read_Text("[FLIGHTPLAN]\nTYPE=VFR\nCRUISING_ALTITUDE=5500\n" + lines);
    }

    const std::filesystem::path plans{std::filesystem::path(NORVANE_SOURCE_DIR) /
                                      "tests/data/plans"};
};

std::string Utf16(const std::string& ascii, bool big) {
    std::string bytes;
    for (const char c : ascii)
        bytes += big ? std::string{'\0', c} : std::string{c, '\0'};
    return bytes;
}

TEST_F(Flight_Plans, Waypoints_In_Both_Layouts_And_Of_Any_Shape) {
    EXPECT_EQ(Read(plans / "kjfk-kbos.pln"),
              "IFR/FL270/KJFK/John F Kennedy Intl/KBOS/Logan Int'l/"
              "KJFK.MERIT.J42.HFD.J42.PUT.KBOS");
    EXPECT_EQ(Read(plans / "phto-phko-hole.pln"),
              "VFR/12500/PHTO/Hilo Intl/UPP/Kona Intl/PHTO.CLUTS.V11.UPP")
        << "the route ends at the hole";
    const std::pair<const char*, const char*> cases[] = {
        // Blank airways and identifiers leave no empty place in the route.
        {"WAYPOINT.0= A ,,,,,   // B,,,,,J1\nWaypoint.1=x, B ,,,,,,, J1 ,,\n"
         "waypoint.2= ,,,,,\nwaypoint.3=\"C,,,,,J2\"\n",
         "A//C//A.B.J1.C.J2"},
        // The first key counts, a comment is no waypoint, the section has an end.
        {"WAYPOINT.0=A,,,,,\nWAYPOINT.0=Z,,,,,\nWAYPOINT.1=// gone\n"
         "WAYPOINT.2=C,,,,,\n[other]\nWAYPOINT.1=B,,,,,\n",
         "A//A//A"},
        {"WAYPOINT.0=A,,,,,J|1\n", "A//A//A.J/1"},
        {"", "////"},
    };
    for (const auto& [lines, route] : cases)
        EXPECT_EQ(Read_Waypoints(lines), "VFR/5500/"s + route);
}

TEST_F(Flight_Plans, Misshapen_Values_End_The_Reading) {
    for (const auto* value : {"A", "A,,,,", "r,A,,,,,", "r,A,,,,,,"}) {
        EXPECT_EQ(Read_Waypoints("WAYPOINT.0=K,,,,,\nWAYPOINT.1="s + value + "\n"),
                  "VFR/5500/K////")
            << value;
    }
    EXPECT_THAT(Take_Errors(), testing::Each(AllOf(HasSubstr("clsIniFile.Get_Flight_Plan()"),
                                                   HasSubstr("WAYPOINT.1"), HasSubstr("x.pln"))));
    for (const auto* altitude : {"", "CRUISING_ALTITUDE=\n", "CRUISING_ALTITUDE=high\n",
                                 "CRUISING_ALTITUDE=1e99\n", "CRUISING_ALTITUDE=5000 // ft\n"}) {
        EXPECT_EQ(Read_Text("[FLIGHTPLAN]\nTYPE=IFR\n"s + altitude +
                            "DEPARTURE_NAME=X\nWAYPOINT.0=K,,,,,\n"),
                  "IFR//////")
            << altitude;
    }
    EXPECT_EQ(Take_Errors().size(), 5U);
    EXPECT_FALSE(desktop.boxes.empty()) << "the pilot asked for the plan and is told";
}

TEST_F(Flight_Plans, Xml_With_And_Without_Lines) {
    const std::string expected =
        "IFR/35000/LFPG/Roissy - A\xE9roport 'Charles de Gaulle'/EIDW/"
        "Dublin O'Connell &amp; Bay/LFPG.ABB.UT225.MID.UN615.STU.EIDW";
    const std::string whole = Read_File(plans / "lfpg-eidw.pln");
    std::string packed;
    for (Line_Reader lines(whole); lines.Next();)
        packed += Trim(lines.Line());
    const std::pair<std::string, std::string> cases[] = {
        {whole, expected},
        {Replace_All(whole, "\n", ""), expected},
        {packed, expected},
        // Case is ignored, the later element counts, an empty one stays whole.
        {"<fptype>IFR</fptype>\n<FPType> VFR </FPType>\r<CRUISINGALT>9|9</x>", "VFR/9/9/////"},
        {"<DepartureName></DepartureName><FPType>VFR</FPType>", "VFR//////"},
        // Blank parts leave no empty place, an id ends at its quote.
        {"<ATCWaypoint id=\"\">\n<ATCWaypoint id=\"A\" x=\"1\">\n<ATCAirway>  </ATCAirway>\n"
         "<ATCWaypoint id=\"B\"/>\n",
         "//////A.B"},
    };
    for (const auto& [content, plan] : cases)
        EXPECT_EQ(Read_Text(content), plan);
}

TEST_F(Flight_Plans, Every_Encoding_Becomes_The_Code_Page) {
    const std::string plan = "<DepartureName>M\xFCnchen</DepartureName>\r\n";
    const std::string utf8 = Replace_All(plan, "\xFC", "\xC3\xBC");
    const std::string named = "///M\xFCnchen///";
    for (const auto& content :
         {plan, utf8, "\xEF\xBB\xBF" + utf8, "\xFF\xFE" + Utf16(plan, false),
          "\xFE\xFF" + Utf16(plan, true), Utf16(plan, false), Utf16(plan, true)})
        EXPECT_EQ(Read_Text(content), named);
    const std::pair<std::string, std::string> cases[] = {
        // Two code page characters that would be one of UTF-8, beside one that is none.
        {"<DepartureName>\xC9\x92 \xFC</DepartureName>", "///\xC9\x92 \xFC///"},
        // Cut within a character.
        {"<DepartureName>\xC3\xBC \xC5\x81</DepartureName>\n<Title>\xE2\x82", "///\xFC L///"},
        {"\xFF\xFE" + Utf16("<FPType>e", false) + "\x01\x03\x3D\xD8\x00\xDE"s +
             Utf16("!</FPType>", false),
         "e?!//////"},
        {"\xFF\xFE" +
             Utf16("[FlightPlan]\r\nType=IFR\r\nCruising_Altitude=35000\r\nWaypoint.0=A,,,,,\r\n",
                   false),
         "IFR/FL350/A//A//A"},
    };
    for (const auto& [content, read] : cases)
        EXPECT_EQ(Read_Text(content), read);
}

TEST_F(Flight_Plans, Missing_Or_Broken_Files_Give_Nothing_And_Long_Ones_Take_No_Time) {
    EXPECT_EQ(Read(directory / "missing.pln"), "//////");
    EXPECT_THAT(error_log.entries, IsEmpty());
    EXPECT_EQ(Read(directory), "//////");
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsIniFile.Get_Flight_Plan()")));
    // So many waypoints that looking each one up from the start would take minutes.
    std::string crowded;
    for (int i = 0; crowded.size() < 1'000'000; ++i)
        crowded += "WAYPOINT." + std::to_string(i) + "=A,,,,,\n";
    EXPECT_TRUE(Read_Waypoints(crowded).starts_with("VFR/5500/A//A//A.A.A."));
}

}  // namespace
}  // namespace norvane
