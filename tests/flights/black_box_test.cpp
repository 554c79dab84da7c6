// The black box of a flight: what it recorded gives the logged row again, under other settings
// another one, and nothing that happens to it touches the flight.

#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <random>
#include <regex>

#include <sqlite3.h>
#include "app/recompute.h"

#include "blackbox/derive.h"
#include "blackbox/flight_export.h"
#include "blackbox/flight_json.h"
#include "blackbox/flight_library.h"
#include "blackbox/flight_text.h"
#include "common/file_writer.h"
#include "common/gzip_reader.h"
#include "common/version.h"
#include "flights/flight_world.h"
#include "simhost/recording/replay.h"
#include "simhost/scenario/scenario.h"
#include "simlink/offset_area.h"
#include "simlink/recorded_block.h"
#include "simlink/recording.h"

namespace norvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The one packed recording of the program directory; empty when there is another number of them.
std::filesystem::path Recording_Of(const Flight_World& flight) {
    std::vector<std::filesystem::path> files;
    std::error_code failure;
    for (const auto& entry :
         std::filesystem::directory_iterator(flight.directory / "flights", failure)) {
        if (entry.path().extension() == ".gz")
            files.push_back(entry.path());
    }
    return files.size() == 1 ? files[0] : std::filesystem::path();
}

/// Ends the program as a pilot does, so that the recording is packed.
void End(Flight_World& flight) {
    flight.Running().Close(ucACARS::Closing::by_pilot);
}

/// What computing the flight again gives, as "column: logged -> computed".
std::vector<std::string> Recomputed(Flight_World& flight, const Row& logged,
                                    const Setting_Changes& changes = {}) {
    const auto file = Recording_Of(flight);
    if (file.empty())
        return {"no recording"};
    const std::string row = Join(logged, "|");
    const auto computed = Recompute(flight.Running().services, Read_Recording(file), row, changes);
    std::vector<std::string> lines;
    for (const Row_Difference& found : Differences(row, computed.row))
        lines.push_back(found.caption + ": " + found.logged + " -> " + found.computed);
    return computed.row.empty() ? std::vector<std::string>{"no row"} : lines;
}

TEST(Black_Box, Gives_the_logged_row_again_and_under_other_settings_another) {
    Replay circuit(Read_Recording(Data_File("phto-circuit.rec")));
    for (const char* clock : {"0", "1"}) {
        SCOPED_TRACE(clock);
        Flight_World flight(circuit, 0.5);
        flight.store.Set("Options", "Use Time", clock);
        flight.Start().panel.txtComments.Enter("typed");
        const Row row = flight.Fly();
        ASSERT_EQ(row.size(), 53U);
        End(flight);
        EXPECT_THAT(Recomputed(flight, row), IsEmpty());
        EXPECT_THAT(Recording_Of(flight).string(), HasSubstr("_PHTO-PHTO"));
        EXPECT_TRUE(flight.Take_Reports().empty());
        if (*clock == '1')
            continue;
        // The simulator's own recording goes on beyond the gate.
        const auto circuit_moments = Read_Recording(Data_File("phto-circuit.rec"));
        const auto compute = [&](const Setting_Changes& changes) {
            return Recompute(flight.Running().services, circuit_moments, Join(row, "|"), changes)
                .row;
        };
        EXPECT_EQ(compute({}), Join(row, "|"));
        // The engine stops 10 s after the brake is set, in the next minute.
        std::vector<std::string> lines;
        for (const Row_Difference& found :
             Differences(Join(row, "|"), compute({{"ACARS_EOF", "1"}})))
            lines.push_back(found.caption + ": " + found.logged + " -> " + found.computed);
        EXPECT_THAT(
            lines,
            ElementsAre("Time In: 2211Z -> 2212Z", "Block HH:MM: 0:06 -> 0:07",
                        HasSubstr("PHTO 222211Z 06005KT 2SM SKC 20/8 A2997 -> PHTO 222212Z")));
    }
}

/// Of a flight that is paused, killed and taken up: line by line, then what is made of it.
TEST(Black_Box, Records_what_it_always_recorded) {
    Flight_World flight(Short_Hop(), 1);
    flight.Start();
    flight.Take_Off();
    for (int click = 0; click < 2; ++click) {
        flight.Running().panel.hypPause.Click();
        flight.desktop.Run_For(std::chrono::seconds(7));
    }
    flight.Kill();
    flight.desktop.Run_For(std::chrono::minutes(1));
    flight.Start();
    EXPECT_EQ(flight.Fly().size(), 53U);
    End(flight);
    const auto file = Recording_Of(flight);
    std::string told;
    for (Gzip_Reader lines(file); lines.Next();)
        told += std::string(lines.Line()) + "\n";
    const Flight_Summary derived = Derive_Flight(Recording_Id(file), Read_Recording(file));
    told += Flight_Json(derived) + Flight_Text(derived) + Evidence_Words(derived);
    const auto stored = Flight_Store(file.parent_path(), Store_Use::look).Find(Recording_Id(file));
    for (const Flight_Difference& found : Differences(*stored, derived))
        ADD_FAILURE() << found.field << ": " << found.stored << " -> " << found.derived;
    told = std::regex_replace(told, std::regex("3E00:[0-9a-f]+"), "3E00:...");
    Expect_As_Looked_At("blackbox/recorded.txt", Replace_All(told, version, "VERSION"));
}

/// Scenarios as a recorder would see them, 50 times a second near the ground or always twice.
TEST(Black_Box, Tells_of_scenarios_with_all_kinds_of_landings_what_it_always_told) {
    std::string told;
    for (const char* name : {"touch-and-go", "go-around", "hard-landing", "held"}) {
        const auto world = Load_Scenario(Data_File(std::string("scenarios/") + name + ".json"),
                                         NORVANE_SOURCE_DIR "/data/simulator");
        for (const bool is_fast : {true, false}) {
            std::vector<Recorded_Moment> moments;
            Offset_Area area;
            Recorded_Image image;
            bool is_near = false;
            for (int i = 0; i * 0.02 < world->Length(); ++i) {
                const double seconds = i * 0.02;
                const bool is_step = i % 25 == 0;
                if (!is_step && !is_near)
                    continue;
                world->Apply(seconds, area);
                is_near =
                    is_fast && area.Get(Variable::ground_speed_kt) > 30 &&
                    area.Get(Variable::altitude_ft) - area.Get(Variable::ground_elevation_ft) < 100;
                Recorded_Moment& moment = moments.emplace_back();
                moment.seconds = seconds;
                for (const Recorded_Field& field : Recorded_Fields()) {
                    const auto bytes = area.Bytes(field.offset, field.size);
                    image.Take({field.offset, {bytes.begin(), bytes.end()}}, moment.changes);
                }
                if (!is_step)
                    moment.remarks.emplace_back("fast");
            }
            moments.front().remarks.emplace_back("utc: 2026-11-23T23:50:00Z");
            const Flight_Summary flight = Derive_Flight(name, moments);
            told += Flight_Text(flight) + Evidence_Words(flight) + Flight_Json(flight) +
                    Export_Flight(flight, Export_Format::csv);
        }
    }
    Expect_As_Looked_At("blackbox/scenarios.txt", told);
}

TEST(Black_Box, Of_a_flight_that_was_killed_anywhere_gives_its_row_again) {
    std::mt19937 random(14);
    for (int kill = 0; kill < 100; ++kill) {
        SCOPED_TRACE(kill);
        Flight_World flight;
        Program& program = flight.Start();
        const std::size_t at = 1 + random() % 400;
        std::size_t exchange = 0;
        flight.trouble = [&](std::size_t, std::span<std::byte>) -> std::optional<Delivery> {
            ++exchange;
            return std::nullopt;
        };
        program.panel.hypOn.Click();
        flight.desktop.Wait_Until([&] { return exchange >= at * 20 || program.panel.Is_At_Gate(); },
                                  std::chrono::hours(3));
        const bool was_flying = !program.engine.TIME_OFF().empty();
        flight.trouble = {};
        flight.Start();
        const Row row = flight.Fly();
        ASSERT_EQ(row.size(), 53U);
        End(flight);
        if (was_flying) {
            ASSERT_THAT(Recomputed(flight, row), IsEmpty());
        }
        ASSERT_THAT(flight.Take_Reports(), IsEmpty());
    }
}

/// No file grows beyond so many bytes.
void Limit_Files(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

TEST(Black_Box, In_trouble_costs_the_flight_nothing_and_is_told_of_once) {
    namespace fs = std::filesystem;
    Flight_World untroubled;
    untroubled.Start();
    const Row expected = untroubled.Fly();
    const auto block = [](Flight_World& flight) {
        fs::remove_all(flight.directory / "flights");
        flight.Write("flights", "in the way");
    };
    std::unique_ptr<Sqlite_Database> lock;
    const struct {
        const char* what;
        bool from_the_start;
        std::function<void(Flight_World&)> begin;
        std::size_t reports;
    } cases[] = {
        {"blocked", true, block, 1},
        {"blocked in flight", false, block, 1},
        {"deleted", false,
         [](Flight_World& flight) { fs::remove_all(flight.directory / "flights"); }, 1},
        {"full", false,
         [](Flight_World& flight) {
             for (const auto& entry : fs::directory_iterator(flight.directory / "flights"))
                 Limit_Files(entry.file_size() + 100);
         },
         1},
        {"damaged store", false,
         [](Flight_World& flight) { flight.Write("flights/flights.sqlite", "no database"); }, 1},
        {"locked store", false,
         [&](Flight_World& flight) {
             const auto file = flight.directory / "flights/flights.sqlite";
             lock = std::make_unique<Sqlite_Database>(file,
                                                      SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
             lock->Execute("BEGIN EXCLUSIVE");
         },
         1},
        {"deleted store", false,
         [](Flight_World& flight) { fs::remove(flight.directory / "flights/flights.sqlite"); }, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Flight_World flight;
        if (c.from_the_start)
            c.begin(flight);
        flight.Start();
        flight.Take_Off();
        if (!c.from_the_start)
            c.begin(flight);
        const bool at_gate = flight.Fly_To_Gate();
        Limit_Files(RLIM_INFINITY);
        EXPECT_TRUE(at_gate);
        flight.Log();
        EXPECT_THAT(flight.Rows(), ElementsAre(expected));
        End(flight);
        EXPECT_EQ(flight.Take_Reports().size(), c.reports);
        lock.reset();
        // What was recorded of it is packed by the next start, whole lines only.
        flight.Start();
        if (std::string(c.what).starts_with("blocked"))
            continue;
        EXPECT_THAT(flight.Take_Reports(), IsEmpty());
        std::vector<std::string> faults;
        Flight_Library library(flight.directory / "flights", Store_Use::write, Derive_Flight,
                               [&](const std::string& fault) { faults.push_back(fault); });
        EXPECT_EQ(library.Rebuild(), std::string(c.what) == "deleted" ? 0U : 1U);
        EXPECT_EQ(library.List({}).size(), library.Rebuild());
        EXPECT_TRUE(library.Verify().empty());
        EXPECT_THAT(faults, IsEmpty());
    }
}

TEST(Black_Box, That_is_killed_with_its_program_has_all_but_two_seconds_and_the_row) {
    Flight_World flight(Short_Hop(), 0.5);
    flight.Start();
    const auto plain = [&] {
        std::filesystem::path file;
        for (const auto& entry :
             std::filesystem::directory_iterator(flight.directory / "flights")) {
            if (entry.path().extension() == ".rec")
                file = entry.path();
        }
        return file;
    };
    flight.Running().panel.hypOn.Click();
    const auto start = flight.desktop.Now();
    for (int look = 0; look < 40; ++look) {
        flight.desktop.Run_For(std::chrono::milliseconds(7'370));
        const double now_s = std::chrono::duration<double>(flight.desktop.Now() - start).count();
        ASSERT_GE(Read_Recording(plain()).back().seconds, now_s - 2);
    }
    const Row row = flight.Fly();
    ASSERT_EQ(row.size(), 53U);
    ASSERT_FALSE(plain().empty()) << "it is not packed yet";
    // The pilot keeps one recording from now on; what is known of the others stays.
    flight.Running().settings.Set_OPT_Recordings(1);
    flight.Running().settings.Save_Settings();
    const auto flights = flight.directory / "flights";
    Pack_Recording(Data_File("phto-circuit.rec"), flights / "2020-01-01_0000Z.rec.gz");
    Write_File(flights / "2020-01-02_0000Z.rec.gz", "damaged");
    flight.Start();
    EXPECT_TRUE(plain().empty());
    EXPECT_THAT(flight.Take_Reports(), ElementsAre(HasSubstr("2020-01-02_0000Z.rec.gz")));
    EXPECT_TRUE(std::filesystem::exists(flights / "2020-01-02_0000Z.rec.gz.damaged"));
    EXPECT_EQ(List_Recordings(flights).size(), 1U);
    const auto stored = Flight_Store(flights, Store_Use::look).List();
    ASSERT_EQ(stored.size(), 2U);
    EXPECT_EQ(stored[0].id, "2020-01-01_0000Z");
    EXPECT_EQ(stored[1].logged_row, Join(row, "|"));
}

}  // namespace
}  // namespace norvane::test
