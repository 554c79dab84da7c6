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

}  // namespace
}  // namespace norvane::test
