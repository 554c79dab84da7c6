// Recorded flights from the command line, from a recording that was flown: taken in once, found,
// shown, exported, and held against what is stored.

#include <nlohmann/json.hpp>

#include "blackbox/flight_store.h"
#include "cli/cli_world.h"
#include "common/file_writer.h"
#include "common/line_reader.h"

namespace norvane::test {
namespace {

namespace fs = std::filesystem;

class Cli_Recordings : public Cli_World {
  protected:
    Cli_Recordings() {
        // The circuit as Norvane would have recorded it.
        const std::string flown = Read_File(NORVANE_SOURCE_DIR "/tests/data/phto-circuit.rec");
        const auto head_end = flown.find('\n') + 1;
        Write_File(file, flown.substr(0, head_end) +
                             "# utc: 2026-11-23T14:05:12.345Z\n# flight: 214\n"
                             "# airport OUT: PHTO\n" +
                             flown.substr(head_end));
    }

    const std::string id = "2026-11-23_1405Z_PHTO-PHTO_214";
    const fs::path file = directory / (id + ".rec");
    const fs::path flights = home / "flights";
};

TEST_F(Cli_Recordings, Take_a_recording_in_once_and_find_it) {
    EXPECT_EQ(Run({"flight", "import", file.string()}).output, id + "\n");
    const auto again = Run({"flight", "import", file.string()});
    EXPECT_EQ(again.status, 1);
    EXPECT_THAT(again.errors, HasSubstr("There is a flight \"" + id + "\" already"));
    EXPECT_EQ(Status("flight import none.rec"), 2);
    const std::string line = Type("flight list").output;
    EXPECT_EQ(line.rfind(id + "\t2026-11-23T14:05:12.345Z\tPHTO\t", 0), 0U) << line;
    EXPECT_EQ(Split(line, '\t').size(), 8U);
    for (const auto& [filter, is_found] : {std::pair{"--from 11/23/2026 --to 2026-11-23", true},
                                           {"--airport phto", true},
                                           {"--to 2026-11-22", false},
                                           {"--airport KBOS", false}}) {
        EXPECT_EQ(Type(std::string("flight list ") + filter).output, is_found ? line : "")
            << filter;
    }
    EXPECT_EQ(Status("flight list --from yesterday"), 1);
    EXPECT_EQ(Status("flight show none"), 1);
    EXPECT_THAT(Type("flight show " + id).output, HasSubstr("From: PHTO\n"));
    EXPECT_THAT(Type("flight explain " + id).output, HasSubstr("OFF 14:05:5"));
    EXPECT_THAT(Type("flight landing " + id).output, HasSubstr("Landing 1: 14:1"));
    const auto json = nlohmann::json::parse(Type("flight show --json " + id).output);
    EXPECT_EQ(json.at("flight_number"), "214");
    EXPECT_FALSE(json.at("landings").empty());
}

TEST_F(Cli_Recordings, Export_to_a_file) {
    EXPECT_EQ(Run({"flight", "import", file.string()}).status, 0);
    const auto kml = directory / "a.kml";
    EXPECT_EQ(Type("flight export " + id + " --format pdf -o " + kml.string()).status, 2);
    EXPECT_FALSE(fs::exists(kml));
    EXPECT_EQ(Type("flight export " + id + " --format kml -o " + kml.string()).status, 0);
    EXPECT_THAT(Read_File(kml), HasSubstr("<gx:Track>"));
}

TEST_F(Cli_Recordings, Hold_what_is_stored_against_the_recordings) {
    EXPECT_EQ(Run({"flight", "import", file.string()}).status, 0);
    EXPECT_EQ(Type("flight verify").output, "");
    EXPECT_EQ(Status("flight verify"), 0);
    {
        Flight_Store store(flights, Store_Use::write);
        Flight_Summary changed = store.Find(id).value();
        changed.flight_number = "215";
        store.Put(changed);
    }
    const auto found = Type("flight verify");
    EXPECT_EQ(found.status, 1);
    EXPECT_EQ(found.output, id + ": flight_number: 215 -> 214\n");
    // What no store tells the recordings do.
    Write_File(flights / "flights.sqlite", "no database");
    EXPECT_THAT(Type("flight show " + id).output, HasSubstr("Flight: 214\n"));
    EXPECT_EQ(Read_File(flights / "flights.sqlite"), "no database");
    Write_File(flights / "torn.rec.gz", "nothing");
    const auto rebuilt = Type("flight rebuild");
    EXPECT_EQ(rebuilt.status, 0);
    EXPECT_THAT(rebuilt.errors, HasSubstr("torn.rec.gz"));
    EXPECT_TRUE(fs::exists(flights / "flights.sqlite.damaged"));
    fs::remove(flights / "torn.rec.gz");
    EXPECT_EQ(Status("flight verify"), 0);
}

TEST_F(Cli_Recordings, Find_the_row_of_a_flight_and_put_into_it_what_is_computed) {
    Start_Simulator();
    ASSERT_EQ(Fly().status, 0);
    const std::string flown = Split(Type("flight list").output, '\t')[0];
    const std::string row = Join(Rows().at(0), "|");
    EXPECT_EQ(Type("flight row " + flown).output, "My Flight Log\t1\t" + row + "\n");
    EXPECT_EQ(Type("log flight 1").output, flown + "\n");
    EXPECT_EQ(Type("flight recompute --apply " + flown).output, "no difference\n");

    const std::string other = "flight recompute " + flown + " --set ACARS_Fuel=1";
    const std::string differences = Type(other).output;
    EXPECT_THAT(differences, HasSubstr("Fuel Out: 9392 lbs -> 4260 kg\n"));
    EXPECT_EQ(Status(other + " --apply"), 1) << "nobody said yes";
    EXPECT_EQ(Join(Rows().at(0), "|"), row);
    EXPECT_EQ(Type("--yes " + other + " --apply").output, differences);
    EXPECT_THAT(Type("log history 1").output, HasSubstr("\tcomputed again, ACARS_Fuel=1\n"));
    EXPECT_EQ(Type(other).output, "no difference\n");

    // None of its key cells is as it was, and it stands in another log, behind another flight.
    EXPECT_EQ(Status("log copy 1 Old"), 0);
    EXPECT_EQ(Status("--yes log delete 1"), 0);
    EXPECT_THAT(Type("flight row " + flown).output, testing::StartsWith("Old\t1\t"));
    EXPECT_EQ(Type("log flight 1 --log Old").output, flown + "\n");
    EXPECT_THAT(Type("--yes flight recompute --apply " + flown).errors,
                HasSubstr("\"Old\", which is not the active log"));
    EXPECT_EQ(Status("log use Old"), 0);
    EXPECT_EQ(Status("--yes flight recompute --apply " + flown), 0);
    EXPECT_THAT(Join(Rows("Old").at(0), "|"), testing::StartsWith(row));
}

}  // namespace
}  // namespace norvane::test
