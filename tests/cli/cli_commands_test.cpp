// What scripts around norvane-cli rely on: exit statuses, refusals, failing disks, and that nothing
// goes of logs and locations that was not meant.

#include "cli/cli_world.h"
#include "config/sqlite_store.h"
#include "logentry/cls_log_entry.h"

namespace norvane::test {
namespace {

using testing::MatchesRegex;
using testing::StartsWith;

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
    fs::remove(home / "bin/optfields.cfg");
    fs::create_directories(home / "bin/optfields.cfg");
    const auto unsaved = Type("settings set OptFields(0) Stand^");
    EXPECT_EQ(unsaved.status, 1);
    EXPECT_THAT(unsaved.errors, HasSubstr("OptFields(0) was not saved: "));
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

class Cli_Logs : public Cli_World {
  protected:
    Cli_Logs() { Write_File(log, content); }
    /// Row numbers and types of aircraft in what "log rows" prints.
    [[nodiscard]] std::string Rows_Of(const std::string& name) const {
        std::string rows;
        for (const auto& line : Split(Run({"log", "rows", name}).output, '\n'))
            rows += line.empty() ? "" : line.substr(0, 2) + Split(line, '|').at(1) + ";";
        return rows;
    }

    const std::string content =
        "1/2/2008|B738||KJFK|Kennedy||||KBOS|Logan||||1.5\r\n"
        "1/1/2008|C172||||||||||||2\r\n";
    const std::string active = "My Flight Log";
    const fs::path log = home / "logs" / "My Flight Log.txt";
};

TEST_F(Cli_Logs, Keep_several_logs) {
    EXPECT_EQ(Status("log new Zoë"), 0);
    EXPECT_EQ(Status("log new a/b"), 1);
    EXPECT_EQ(Type("log list").output, "* My Flight Log\n  Zoë\n");
    EXPECT_EQ(Run({"--yes", "log", "remove", active}).status, 1) << "it is the active one";
    EXPECT_EQ(Status("log use Zoë"), 0);
    EXPECT_EQ(Type("log list").output, "  My Flight Log\n* Zoë\n");
    EXPECT_EQ(Run({"log", "remove", active}).status, 1) << "the question is answered No";
    EXPECT_TRUE(fs::exists(log));
    EXPECT_EQ(Run({"--yes", "log", "remove", active}).status, 0);
    EXPECT_FALSE(fs::exists(log));
}

TEST_F(Cli_Logs, Copy_and_delete_the_row_that_was_meant) {
    for (const auto& [line, status] : {std::pair{"log copy 2 Other 1/1/2008", 1},
                                       {"log copy 3 Other", 1},
                                       {"log copy 0 Other", 2},
                                       {"log delete 1", 1},
                                       {"--yes log delete 3", 1}})
        EXPECT_EQ(Status(line), status) << line;
    EXPECT_THAT(Type("--yes log delete 1 1/2/2008").errors,
                HasSubstr("Row 1 has the date 1/1/2008"));
    EXPECT_FALSE(fs::exists(home / "logs" / "Other.txt"));
    EXPECT_EQ(Read_File(log), content);
    EXPECT_EQ(Status("log copy 2 Other 1/2/2008"), 0);
    EXPECT_EQ(Status("log copy 1 Other"), 0);
    EXPECT_EQ(Rows_Of("Other"), "1\tC172;2\tB738;");
    EXPECT_EQ(Status("--yes log delete 1 2008-01-01"), 0);
    EXPECT_EQ(Rows_Of(active), "1\tB738;");
}

TEST_F(Cli_Logs, Import_a_plan) {
    const auto plan = NORVANE_SOURCE_DIR "/tests/data/plans/lfpg-eidw.pln";
    EXPECT_EQ(Run({"log", "import-plan", "2", plan}).status, 0);
    EXPECT_EQ(Rows().at(1).at(3) + Rows().at(1).at(23), "KJFK35000");
    EXPECT_EQ(Run({"--yes", "log", "import-plan", "2", plan}).status, 0);
    EXPECT_EQ(Rows().at(1).at(3), "LFPG");
}

TEST_F(Cli_Logs, Tell_what_was_corrected_and_take_it_back) {
    EXPECT_EQ(Type("log history 1").output, "");
    EXPECT_THAT(Type("--yes log undo 2").errors, HasSubstr("Row 2 has no correction"));
    const auto plan = NORVANE_SOURCE_DIR "/tests/data/plans/lfpg-eidw.pln";
    EXPECT_EQ(Run({"--yes", "log", "import-plan", "2", plan}).status, 0);
    const std::string corrected = Read_File(log);
    const auto listed = Split(Type("log history 2").output, '\n');
    ASSERT_GT(listed.size(), 3U);
    EXPECT_THAT(listed[0], testing::EndsWith("\tOrigin\tKJFK\tLFPG\t"));
    EXPECT_EQ(Status("log undo 2"), 1) << "the question is answered No";
    EXPECT_EQ(Read_File(log), corrected);
    // The last field is the one that is empty behind the last line's end.
    for (std::size_t i = 1; i < listed.size(); ++i)
        EXPECT_EQ(Status("--yes log undo 2 1/2/2008"), 0) << i;
    EXPECT_EQ(Status("--yes log undo 2"), 1);
    EXPECT_EQ(Rows().at(1).at(3) + Rows().at(1).at(23), "KJFK");
    EXPECT_EQ(Status("log copy 2 Other"), 0);
    const auto copied = Type("log history 1 --log Other");
    EXPECT_EQ(copied.output, Type("log history 2").output);
    EXPECT_THAT(copied.output, HasSubstr("\tOrigin\tLFPG\tKJFK\ttaken back\n"));
    EXPECT_EQ(Status("log history 2 --log Other"), 1);
}

TEST_F(Cli_Logs, Recover_what_was_kept_beside_a_log) {
    const auto kept = home / "logs" / "Other.unsaved";
    const std::string bars(50, '|');
    const std::vector<std::string> lines{"1/3/2008|A|1" + bars, "1/4/2008|B|2" + bars,
                                         "|U|3" + bars};
    Write_File(kept, Join(lines, "\r\n"));
    EXPECT_THAT(Type("log recover").output,
                HasSubstr("2\t" + kept.string() + "\t" + lines[1] + "\n3\t"));
    EXPECT_THAT(Type("log recover 4").errors, HasSubstr("There is no unsaved row 4"));
    EXPECT_EQ(Read_File(log), content);
    const auto twice = Type("log recover 2 2");
    EXPECT_EQ(twice.output, "") << "nothing is listed";
    EXPECT_THAT(twice.errors, HasSubstr("log: 1.  Rows replaced: 0.  Rows already there: 1."));
    EXPECT_EQ(Rows_Of(active), "1\tC172;2\tB738;3\tB;");
    const auto all = Type("--yes log recover");
    EXPECT_EQ(all.status, 0);
    EXPECT_THAT(all.errors, HasSubstr("Without a date, and so not shown at the next start: row 5"));
    EXPECT_EQ(Rows().size(), 5U);
    EXPECT_FALSE(fs::exists(kept));
    EXPECT_EQ(Type("log recover").output, "");
}

TEST_F(Cli_Logs, Report_and_convert) {
    const auto report = home / "report.html";
    const auto page = [&](std::string_view line) {
        fs::remove(report);
        const auto result = Type(line);
        EXPECT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(result.output, report.string() + "\n");
        return Read_File(report);
    };
    const std::string some = page("log report --fields airport,13");
    for (const auto* shown : {"Kennedy", "Logan", "1.5"})
        EXPECT_THAT(some, HasSubstr(shown));
    EXPECT_THAT(some, testing::Not(HasSubstr("KJFK")));
    EXPECT_THAT(page("log acars-report 2"), HasSubstr("KJFK"));
    EXPECT_THAT(page("log statistics"), HasSubstr("3.5"));
    EXPECT_THAT(page("hours --report"), HasSubstr("C172"));
    EXPECT_EQ(Type("hours").output, "B738\t1.5\nC172\t2.0\nTotal Flight Time: 3.5\n");
    EXPECT_EQ(Type("convert " NORVANE_SOURCE_DIR "/tests/data/conversion/simulator.log Old").output,
              (home / "convertedlogs/Old.txt\n").string());
}

class Cli_World_Commands : public Cli_World {
  protected:
    Cli_World_Commands() {
        Write_File(home / "bin/fs9.wld",
                   "47.4647|8.5492|1416|LSZH|Z\xFCrich Airport\r\n"
                   "-33.9648|18.6017|151|FACT|Cape Town Intl\r\n");
    }
    const fs::path user_file = home / "bin/fs9UD.wld";
};

TEST_F(Cli_World_Commands, Keep_the_pilots_locations) {
    EXPECT_EQ(Status("world add NV01"), 3);
    EXPECT_EQ(Status("world add NV01 --lat 90.1 --lon 1 --elevation 3"), 2);
    EXPECT_FALSE(fs::exists(user_file));
    const std::string at = " --lat -33.97 --lon 18.6 --elevation 150";
    EXPECT_EQ(Status("world add A/B" + at), 1);
    EXPECT_THAT(Type("world add lszh" + at).output, StartsWith("1\tLSZH\tZürich Airport\t"));
    EXPECT_THAT(Type("world add LSZH" + at).errors, HasSubstr("in the list already"));
    Start_Simulator();
    EXPECT_THAT(Type("world add NV01").output, StartsWith("3\tNV01\t\t"));
    EXPECT_EQ(Status("world delete 1"), 1) << "nobody said Yes";
    EXPECT_EQ(Status("--yes world delete 1"), 0);
    EXPECT_THAT(
        Type("world list").output,
        MatchesRegex("1\tLSZH\tZürich Airport\t[^\n]*\t-33.97\t18.6\t150\n2\tNV01\t[^\n]*\n"));
}

TEST_F(Cli_World_Commands, Find_airports) {
    EXPECT_EQ(Type("airport find ZÜRICH").output, "LSZH\tZürich Airport\t47.4647\t8.5492\t1416\n");
    EXPECT_EQ(Type("airport nearest -33.8 18.6 155").output, "FACT\tCape Town Intl\t10\n");
    const auto too_high = Type("airport nearest -33.8 18.6 161");
    EXPECT_EQ(too_high.status, 1);
    EXPECT_THAT(too_high.errors, HasSubstr("50 nm"));
    EXPECT_EQ(Status("airport nearest -33.8 18.6"), 2);
}

}  // namespace
}  // namespace norvane::test
