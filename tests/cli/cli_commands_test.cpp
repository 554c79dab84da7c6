// Exit statuses, refusals and failing disks: what scripts around norvane-cli rely on.

#include <chrono>

#include "cli/cli_world.h"
#include "config/sqlite_store.h"
#include "logentry/cls_log_entry.h"

namespace norvane::test {
namespace {

class Cli_Commands : public Cli_World {};

TEST_F(Cli_Commands, Tell_by_their_status_what_went_wrong) {
    for (const auto& [line, status] : {std::pair{"dance", 2},
                                       {"fly --time-scale 0", 2},
                                       {"--version", 0},
                                       {"--map C:\\=/c --map D:\\=/d settings list", 0},
                                       {"--map D:\\ settings list", 2},
                                       {"settings set ACARS_Fuel 3", 1},
                                       {"settings set Wings 2", 1},
                                       {"log rows None", 1},
                                       {"plan missing.pln", 1}})
        EXPECT_EQ(Status(line), status) << line;
    EXPECT_EQ(Run({}).status, 2);
    const auto absent = Type("fly");
    EXPECT_EQ(absent.status, 3);
    EXPECT_THAT(absent.errors, HasSubstr("Unable to connect to FSUIPC."));
    EXPECT_THAT(Error_Log(), HasSubstr("ucACARS.ACARS_ON()"));
}

TEST_F(Cli_Commands, Keep_settings_and_refuse_what_does_not_fit) {
    EXPECT_EQ(Run({"settings", "set", "PilotName", "Zoë Łukasz"}).status, 0);
    EXPECT_EQ(Type("settings get PilotName").output, "Zoë Lukasz\n");
    EXPECT_EQ(Status("settings set OptFields(0) Gate^"), 0);
    EXPECT_EQ(Type("settings get OptFields(0)").output, "Gate^\n");
    // The message says which separator to type; it is not a field of the log, where "|" is none.
    EXPECT_THAT(Type("settings set OptFields(0) Gate").errors, HasSubstr("\"|\""));
    // What a killed save left is swept away by who holds the lock.
    const auto rest = home / "logs/.My Flight Log.txt.aB3dEf";
    Write_File(rest, "x");
    fs::last_write_time(rest, fs::file_time_type::clock::now() - std::chrono::hours(25));
    EXPECT_EQ(Type("settings get ACARS_Fuel").output, "0\n");
    EXPECT_TRUE(fs::exists(rest));
    fs::remove(home / "bin/optfields.cfg");
    fs::create_directories(home / "bin/optfields.cfg");
    const auto unsaved = Type("settings set OptFields(0) Stand^");
    EXPECT_EQ(unsaved.status, 1);
    EXPECT_THAT(unsaved.errors, HasSubstr("OptFields(0) was not saved: "));
    EXPECT_FALSE(fs::exists(rest));
    fs::remove(home / "bin/optfields.cfg");
    const auto date_key = std::to_string(Row_Of(Log_Field::FLIGHT_DATE).store_key);
    Sqlite_Store(home / "settings.sqlite").Set(flight_section, date_key, "3/14/2026");
    EXPECT_EQ(Status("settings set acars_fuel 1"), 1) << "a flight is stored";
    EXPECT_THAT(Type("settings set ACARS_UseTime 1").errors, HasSubstr("fly --new"));
    EXPECT_EQ(Status("settings set PilotID 7"), 0) << "no figure means another";
    Sqlite_Store(home / "settings.sqlite").Delete_Section(flight_section);
    EXPECT_EQ(Status("settings set ACARS_UseTime 1"), 0);
    EXPECT_EQ(Status("fly --time-scale 2"), 2) << "scaled timers, real clock";
}

TEST_F(Cli_Commands, Switch_between_airlines) {
    fs::create_directories(home / "VA_Sky");
    Write_File(home / "VA_Sky" / "server.cfg", "www.sky.example\r\n/pirep.php\r\n\r\n");
    EXPECT_EQ(Status("airline use sky"), 0);
    EXPECT_THAT(Type("airline list").output, HasSubstr("* SKY"));
    EXPECT_THAT(Type("airline show").output,
                HasSubstr("Server: www.sky.example\nPIREP script: /pirep.php\n"));
    EXPECT_EQ(Status("airline use NONE"), 1);
    fs::create_directories(home / "VA_日本");
    EXPECT_THAT(Type("airline use 日本").errors, HasSubstr("Windows-1252"));
    Write_File(home / "VA_Sky" / "pirep.cfg", "Date^d\r\nno mark\r\n");
    EXPECT_THAT(Type("airline show").output, HasSubstr(" = d (Date)\n"));
}

TEST_F(Cli_Commands, Keep_a_second_writer_away_but_let_others_look) {
    Start_Simulator();
    // Found where the settings say: nothing else names the simulator here.
    ASSERT_EQ(Status("settings set Simulator_Address " + sim_address), 0);
    Child_Process flying({NORVANE_CLI, "--home", home, fly[0], fly[1], fly[2]});
    ASSERT_TRUE(flying.Read_Until([](const std::string& output) { return !output.empty(); }));
    const int second = Status("settings set PilotID 7");
    const auto look = Type("settings get ACARS_Date").output;
    EXPECT_EQ(flying.Wait(), 0);
    EXPECT_EQ(second, 4);
    EXPECT_EQ(look, "0\n");
}

TEST_F(Cli_Commands, Look_whatever_state_the_store_is_in) {
    Write_File(home / "bin/fs9.wld", "47.4647|8.5492|1416|LSZH|Zurich\r\n");
    const std::string broken(20000, 'x');
    Write_File(home / "settings.sqlite", broken);
    const Store_Lock flying(home / "settings.sqlite");
    for (const auto* line :
         {"settings list", "settings get PilotID", "log rows", "airport find zurich",
          "plan " NORVANE_SOURCE_DIR "/tests/data/plans/lfpg-eidw.pln"}) {
        const auto result = Type(line);
        EXPECT_EQ(result.status, 0) << line;
        EXPECT_THAT(result.errors, HasSubstr("Not all settings can be read"));
    }
    EXPECT_EQ(Read_File(home / "settings.sqlite"), broken);
    EXPECT_FALSE(fs::exists(home / "settings.sqlite.broken"));
}

}  // namespace
}  // namespace norvane::test
