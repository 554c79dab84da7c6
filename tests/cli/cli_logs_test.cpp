// Keeping flight logs from the command line: nothing goes that was not meant, and what a report's
// reader needs is printed.

#include "cli/cli_world.h"

namespace norvane::test {
namespace {

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
    EXPECT_EQ(Status("log use None"), 1);
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
    Write_File(directory / "cut.pln", "<DepartureName>Left</DepartureName>\n<DepartureID>KJ");
    EXPECT_EQ(Run({"log", "import-plan", "1", directory / "cut.pln"}).status, 1);
    EXPECT_EQ(Read_File(log), content);
    EXPECT_EQ(Run({"log", "import-plan", "2", plan}).status, 0);
    EXPECT_EQ(Rows().at(1).at(3) + Rows().at(1).at(23), "KJFK35000");
    EXPECT_EQ(Run({"--yes", "log", "import-plan", "2", plan}).status, 0);
    EXPECT_EQ(Rows().at(1).at(3), "LFPG");
}

TEST_F(Cli_Logs, Recover_what_was_kept_beside_a_log) {
    const auto kept = home / "logs" / "Other.unsaved";
    const std::string bars(50, '|');
    const std::vector<std::string> lines{"1/3/2008|A|1" + bars, "1/4/2008|B|2" + bars,
                                         "|U|3" + bars};
    Write_File(kept, Join(lines, "\r\n"));
    std::string listed;
    for (std::size_t i = 0; i < lines.size(); ++i)
        listed += std::to_string(i + 1) + "\t" + kept.string() + "\t" + lines[i] + "\n";
    EXPECT_EQ(Type("log recover").output, listed);
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
    EXPECT_EQ(Read_File(log), content);

    const fs::path data = NORVANE_SOURCE_DIR "/tests/data/conversion";
    const auto converted = home / "convertedlogs" / "Old.txt";
    EXPECT_EQ(Run({"convert", data / "simulator.log", "Old"}).output, converted.string() + "\n");
    EXPECT_EQ(Read_File(converted), Read_File(data / "converted.txt"));
}

}  // namespace
}  // namespace norvane::test
