// Who flies and from where: configuration files by simulator, identities, the nearest airport.

#include <fmt/format.h>

#include <tuple>

#include "acars/airports.h"
#include "common/text.h"
#include "engine_world.h"

namespace norvane::test {
namespace {

using enum Variable;

class Identification : public Engine_World {
  protected:
    static constexpr std::string_view configuration =
        "; title\r\n[fltsim.0]\r\nsim=738\r\nTitle = Nordic 738 "
        "\r\n[General]\r\natc_model=B738\r\n";

    void Use_Aircraft(const std::string& simulator, const std::string& aircraft_file) {
        area.Set_Text(simulator_directory, simulator);
        area.Set_Text(aircraft_path, aircraft_file);
    }
};

TEST_F(Identification, Finds_The_Configuration_By_Simulator_And_Without_Regard_To_Case) {
    settings.Set_ACARS_ATCModel(true);
    const std::string root = directory.string();
    Write("sim/Aircraft/b738/Aircraft.CFG", configuration);
    Write("share/SimObjects/Airplanes/b738/aircraft.cfg", configuration);
    // A simulator on a system of its own names its own drives.
    services.path_mappings = {{"C:", directory / "sim"}};
    const std::string whole = root + "\\Sim\\Aircraft\\b738\\b738.air";
    for (const auto& [version, simulator, file, type] :
         std::vector<std::tuple<std::uint16_t, std::string, std::string, std::string>>{
             {7, root + "\\SIM\\", "AIRCRAFT\\B738\\b738.air", "B738"},
             // FSX gives the whole path; later ones share its layout.
             {8, "C:\\elsewhere\\", whole, "B738"},
             {9, "C:\\elsewhere\\", whole, "B738"},
             {12, "C:\\", "c:\\Aircraft\\b738\\x.air", "B738"},
             // On a network share, only the aircraft's folder name counts.
             {12, "\\\\" + root.substr(1) + "\\share\\", "D:\\SimObjects\\b738\\x.air", "B738"},
             {12, root + "\\nowhere\\", "D:\\nothing\\x.air", "Jet 738"}}) {
        area.Set_Simulator_Version(version);
        Use_Aircraft(simulator, file);
        Begin_Anew();
        ASSERT_TRUE(Start());
        EXPECT_EQ(Once("ATCType"), type) << file;
        EXPECT_EQ(Once("FSVersion"), version == 7 ? "FS2004" : "FSX");
        EXPECT_EQ(engine->FS_Path(), simulator);
    }
}

TEST_F(Identification, In_The_Oldest_Simulator_Takes_The_Title_And_No_Identity) {
    area.Set_Simulator_Version(2);
    Write("bin/fs2002.wld", "40.6|-73.8|13|KJFK|Kennedy\r\n");
    Write("sim/Aircraft/b738/aircraft.cfg", configuration);
    Use_Aircraft(directory.string() + "/sim/", "Aircraft\\b738\\b738.air");
    ASSERT_TRUE(Start());
    EXPECT_EQ(Once("FSVersion"), "FS2000");
    EXPECT_EQ(Once("ATCType"), "Nordic 738");
    EXPECT_EQ(Once("ICAODep"), "KJFK Kennedy");
    EXPECT_EQ(Count("ATCTail") + Count("ATCFlight") + Count("AirlineFlight"), 0U);
    EXPECT_EQ(engine->World() + " " + engine->WorldUD(), "fs2002.wld fs2002UD.wld");
}

TEST_F(Identification, Takes_Airline_And_Flight_Number_Once) {
    settings.Set_Airline_IATA("NV");
    settings.Set_Airline_IATAPrefix(true);
    area.Set_Text(atc_airline, "Nor|vane");
    for (const std::size_t starts : {1U, 2U}) {
        ASSERT_TRUE(Start());
        EXPECT_EQ(All("ATCFlight").at(0), "Nor/vane - NV101");
        EXPECT_EQ(Once("AirlineFlight"), "NV101");
        EXPECT_EQ(Count("ATCTail"), starts);
    }
    engine->Reset();
    raised.clear();
    area.Set_Text(atc_flight_number, "");
    ASSERT_TRUE(Start());
    EXPECT_EQ(Count("ATCFlight"), 0U);
    EXPECT_EQ(Once("AirlineFlight"), "");
}

TEST_F(Identification, Looks_For_The_Nearest_Airport) {
    const std::string near = "40.64|-73.78|13|KJFK|Kennedy\n";
    const std::string same = "40.64|-73.78|13|KXXX|Twin\n";
    const std::string hill = "40.60|-73.78|99|KHIL|Hill\n";
    struct Airport_Case {
        std::string main_file;
        std::string user_file;  // empty: none
        std::string found;      // code and name
        std::string fault{};
    };
    for (const Airport_Case& airport : std::vector<Airport_Case>{
             {"40.2|-73.78|13|AAAA|Far\n" + near, "", "KJFK Kennedy"},
             {near + same, "", "KJFK Kennedy"},
             // The user's as near replaces it.
             {near, same + "40.2|-73.78|13|AAAA|Far\n", "KXXX Twin"},
             // 9 ft are near enough; 10 are not, but it serves its place.
             {"40.64|-73.78|22|KJFK|Kennedy\n" + hill, "", "KJFK Kennedy"},
             {"40.64|-73.78|23|KJFK|Kennedy\n", "", "KJFK Kennedy"},
             // One at the elevation is better 49 nm away, not 51.
             {"40.64|-73.78|23|KHIL|Hill\n41.46|-73.78|13|KJFK|Kennedy\n", "", "KJFK Kennedy"},
             {"41.49|-73.78|13|KJFK|Kennedy\n" + hill, "", "KHIL Hill"},
             {hill + "40.64|-73.78|23|KJFK|Kennedy\n", "40.64|-73.78|55|MINE|Mine\n", "MINE Mine"},
             // One of another elevation is one within 5 nm only.
             {"40.73|-73.78|99|KHIL|Hill\n", "", " "},
             {"40.64|-73.78|13|KJFK|Kennedy // old\n", "", " "},
             {"40,64|-73,78|13|KJFK|Kennedy\n", "", "KJFK Kennedy"},
             {"40.6|286.2|13|EAST|East\n", "", "EAST East"},
             {"", "", " "},
             // The first of bad lines is reported.
             {"40.64|-73.78|13|KJFK\nx|-73.78|13|BADX|Bad\n" + near, "|||\n", "KJFK Kennedy",
              "line 1: fewer than five fields"},
             {std::string("\0\xFF|\x01|||\r|||", 10), near, "KJFK Kennedy",
              "line 1: latitude, longitude or elevation is not a number"}}) {
        SCOPED_TRACE(airport.main_file + airport.user_file);
        Write("bin/fs9.wld", airport.main_file);
        std::filesystem::remove(directory / "bin/fs9UD.wld");
        if (!airport.user_file.empty())
            Write("bin/fs9UD.wld", airport.user_file);
        Replace_Engine();
        raised.clear();
        ASSERT_TRUE(Start());
        EXPECT_EQ(Once("ICAODep"), airport.found);
        EXPECT_EQ(Count("No_Airport"), airport.found == " " ? 1U : 0U);
        const auto reports = Take_Errors();
        EXPECT_EQ(reports.size(), airport.fault.empty() ? 0U : 1U);
        EXPECT_TRUE(Contains(Join(reports, ""), airport.fault));
    }
}

TEST_F(Identification, Reads_A_Changed_World_File_Again_And_Reports_A_Missing_One) {
    ASSERT_TRUE(Start());
    Write("bin/fs9.wld", "1|1|1|KBOSX|Other\n2|2|2|kbos|Boston\n40.64|-73.78|13|KNEW|New");
    ASSERT_TRUE(Start());
    EXPECT_EQ(engine->Departure_ICAO(), "KNEW");
    EXPECT_EQ(Get_Airport_Name(services, "KBOS") + Get_Airport_Name(services, "knew"), "BostonNew");
    EXPECT_EQ(Get_Airport_Name(services, "EGLL") + Get_Airport_Name(services, ""), "");
    std::filesystem::remove(directory / "bin/fs9.wld");
    ASSERT_TRUE(Start());
    EXPECT_EQ(engine->Departure_ICAO(), "");
    EXPECT_EQ(Take_Errors().size(), 1U);
    EXPECT_EQ(Get_Airport_Name(services, "KJFK"), "");
    EXPECT_TRUE(Contains(Take_Errors().at(0), "modFunctions.Get_Airport_Name()"));
}

TEST_F(Identification, Looks_The_Arrival_Up_Once) {
    // As recorded on the runway, it stays though the gate is nearer to another one.
    for (const auto& [recorded, arrival] : {std::pair{0, "KGAT"}, {1, "KBOS"}, {7, "KGAT"}}) {
        Write("bin/fs9.wld",
              "40.6|-73.8|13|KJFK|Kennedy\n42.36|-71.01|20|KBOS|Boston\n"
              "42.5|-71.0|20|KGAT|Gate\n");
        settings.Set_ACARS_RecordArrival(recorded);
        Begin_Anew();
        Fly_To(moment::in);
        area.Set(latitude_deg, 42.5);
        Set(parking_brake, 1);
        EXPECT_EQ(Once("ICAOArr").substr(0, 4), arrival);
    }
}

TEST_F(Identification, Lets_Events_Through_During_A_Lookup_But_No_Second_Step) {
    Write("bin/optimize", "");
    std::string world;
    for (int i = 0; i < 1000; ++i)
        world += fmt::format("{}|-73.78|13|A{:03}|Place\n", 42.0 + i / 1000.0, i);
    Write("bin/fs9.wld", world);
    settings.Get_Settings();
    Timer tick(desktop.Timers(), std::chrono::milliseconds(0));
    tick.tick.Connect([&] {
        EXPECT_TRUE(engine->Is_Stepping());
        engine->Refresh();
        engine->Send_Message(Message_Type::comment, "typed meanwhile");
        EXPECT_TRUE(Messages(Message_Type::comment).empty());
    });
    tick.Set_Enabled(true);
    ASSERT_TRUE(Start());
    tick.Set_Enabled(false);
    EXPECT_EQ(Count("FSTime"), 0U);
    // What came meanwhile was done after the start.
    EXPECT_EQ(Messages(Message_Type::comment).size(), 4U);
}

}  // namespace
}  // namespace norvane::test
