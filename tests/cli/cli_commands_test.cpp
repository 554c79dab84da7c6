// What scripts around norvane-cli rely on: exit statuses, refusals, failing disks, and that nothing
// goes of logs and locations that was not meant.

#include <fmt/format.h>

#include <regex>

#include "cli/cli_world.h"
#include "common/code_page.h"
#include "config/sqlite_store.h"
#include "logentry/cls_log_entry.h"

namespace norvane::test {
namespace {

using testing::StartsWith;

class Cli_Commands : public Cli_World {};

/// A pilot's evening at the command line, line by line: "$" is a command, ">" a file that the pilot
/// writes, "?" one that the pilot looks at. What each prints and how it ends was looked at.
TEST_F(Cli_Commands, Say_what_they_always_said) {
    const std::string data = NORVANE_SOURCE_DIR "/tests/data/";
    const auto with = [](std::string text,
                         const std::vector<std::pair<std::string, std::string>>& names) {
        for (const auto& [from, to] : names)
            text = Replace_All(text, from, to);
        return text;
    };
    const std::regex today("\\d+/\\d+/20[2-9]\\d|20[2-9]\\d{5}   Norvane");
    std::string told;
    for (const std::string& line : Read_Lines(data + "cli/session.txt")) {
        const std::string rest = line.substr(2);
        std::string answer;
        if (line[0] == '>') {
            const auto blank = rest.find(' ', rest.find('.'));
            fs::create_directories((home / rest.substr(0, blank)).parent_path());
            Write_File(home / rest.substr(0, blank),
                       From_Utf8(with(rest.substr(blank + 1), {{"\\r\\n", "\r\n"}})));
        } else if (line[0] == '?') {
            answer = To_Utf8(Read_File(home / rest)) + "\n";
        } else {
            std::vector<std::string> words = Split(rest, ' ');
            for (std::string& word : words)
                word = with(word, {{"My_Flight_Log", "My Flight Log"}, {"DATA/", data}});
            const auto result = Run(words);
            answer = fmt::format("{}{}{}= {}\n", result.output, result.errors.empty() ? "" : "! ",
                                 result.errors, result.status);
        }
        told += line + "\n" +
                std::regex_replace(with(answer, {{directory.string(), "DIR"}, {data, "DATA/"}}),
                                   today, "TODAY");
    }
    Expect_As_Looked_At("cli/told.txt", told);
    EXPECT_EQ(Run({}).status, 2);
    EXPECT_THAT(Error_Log(), HasSubstr("ucACARS.ACARS_ON()"));
}

TEST_F(Cli_Commands, Keep_settings_and_refuse_what_does_not_fit) {
    EXPECT_EQ(Status("settings set OptFields(0) Gate^"), 0);
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
    const std::string content =
        "1/2/2008|B738||KJFK|Kennedy||||KBOS|Logan||||1.5\r\n"
        "1/1/2008|C172||||||||||||2\r\n";
    const fs::path log = home / "logs" / "My Flight Log.txt";
};

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

TEST_F(Cli_Commands, Keep_a_location_where_the_aircraft_stands) {
    Start_Simulator();
    EXPECT_THAT(Type("world add NV01").output, StartsWith("1\tNV01\t\t"));
}

}  // namespace
}  // namespace norvane::test
