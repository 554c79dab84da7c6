// Keeping flight logs from the command line: nothing goes that was not meant, and what a report's
// reader needs is printed.

#include "cli/cli_world.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/text.h"

namespace norvane::test {
namespace {

namespace fs = std::filesystem;

class Cli_Logs : public Cli_World {
  protected:
    Cli_Logs() {
        Write_File(log,
                   "1/2/2008|B738||KJFK|Kennedy||||KBOS|Logan||||1.5\r\n"
                   "1/1/2008|C172||||||||||||2\r\n");
    }
    [[nodiscard]] int Status(std::vector<std::string> arguments) const {
        return Run(std::move(arguments)).status;
    }
    /// A row's number in what "log rows" prints, and its first cells.
    [[nodiscard]] std::string Row_Starts(const std::string& name) const {
        std::string starts;
        for (const auto& line : Split(Run({"log", "rows", name}).output, '\n'))
            starts += line.substr(0, 15) + ";";
        return starts;
    }
    const std::string active = "My Flight Log";
    const fs::path log = home / "logs" / "My Flight Log.txt";
};

TEST_F(Cli_Logs, Keep_several_logs) {
    EXPECT_EQ(Status({"log", "new", "Zoë"}), 0);
    EXPECT_EQ(Status({"log", "new", "ZOË"}), 1) << "differs by case only";
    EXPECT_EQ(Status({"log", "new", "a/b"}), 1);
    EXPECT_EQ(Status({"log", "new", "日本"}), 1) << "it could not be told from another";
    EXPECT_EQ(Run({"log", "list"}).output, "* My Flight Log\n  Zoë\n");
    EXPECT_EQ(Status({"--yes", "log", "remove", active}), 1) << "it is the active one";
    EXPECT_EQ(Status({"--yes", "log", "remove", "my flight log"}), 1);
    EXPECT_EQ(Status({"log", "use", "None"}), 1);
    EXPECT_EQ(Status({"log", "use", "Zoë"}), 0);
    EXPECT_EQ(Run({"log", "list"}).output, "  My Flight Log\n* Zoë\n");
    EXPECT_EQ(Status({"log", "remove", active}), 1) << "the question is answered No";
    EXPECT_EQ(Rows().size(), 2U);
    EXPECT_EQ(Status({"--yes", "log", "remove", active}), 0);
    EXPECT_FALSE(fs::exists(log));
}

TEST_F(Cli_Logs, Copy_and_delete_the_row_that_was_meant) {
    const std::string before = Read_File(log);
    EXPECT_EQ(Status({"log", "copy", "2", "Other", "1/1/2008"}), 1) << "another row's date";
    EXPECT_FALSE(fs::exists(home / "logs" / "Other.txt"));
    EXPECT_EQ(Status({"log", "copy", "2", "Other", "1/2/2008"}), 0);
    EXPECT_EQ(Status({"log", "copy", "1", "Other"}), 0);
    EXPECT_EQ(Row_Starts("Other"), "1\t1/1/2008|C172;2\t1/2/2008|B738;;");
    EXPECT_EQ(Status({"log", "copy", "1", active}), 1);
    EXPECT_EQ(Status({"log", "copy", "0", "Other"}), 2);
    EXPECT_EQ(Status({"--yes", "log", "delete", "3"}), 1);
    const auto refused = Run({"--yes", "log", "delete", "1", "1/2/2008"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.errors.find("Row 1 has the date 1/1/2008"), std::string::npos);
    EXPECT_EQ(Status({"log", "delete", "1"}), 1) << "the question is answered No";
    EXPECT_EQ(Read_File(log), before);
    EXPECT_EQ(Status({"--yes", "log", "delete", "1", "2008-01-01"}), 0);
    EXPECT_EQ(Row_Starts(active), "1\t1/2/2008|B738;;");
}

TEST_F(Cli_Logs, Import_a_plan) {
    const auto plan = fs::path(NORVANE_SOURCE_DIR) / "tests/data/plans/lfpg-eidw.pln";
    const std::string before = Read_File(log);
    Write_File(directory / "cut.pln", "<DepartureName>Left</DepartureName>\n<DepartureID>KJ");
    for (const auto* broken : {"none.pln", "cut.pln", "home/ErrorLog.Log"})
        EXPECT_EQ(Status({"log", "import-plan", "1", (directory / broken).string()}), 1);
    EXPECT_EQ(Read_File(log), before);
    const std::vector<std::string> import{"log", "import-plan", "2", plan.string()};
    EXPECT_EQ(Status(import), 0);
    ASSERT_EQ(Rows().size(), 2U);
    EXPECT_EQ(Rows()[1][3], "KJFK");
    EXPECT_EQ(Rows()[1][23], "35000");
    EXPECT_EQ(Rows()[0][23], "") << "another row";
    EXPECT_EQ(Status({"--yes", import[0], import[1], import[2], import[3]}), 0);
    EXPECT_EQ(Rows()[1][3], "LFPG");
}

TEST_F(Cli_Logs, Recover_what_was_kept_beside_a_log) {
    const auto kept = home / "logs" / "Other.unsaved";
    const std::string line(50, '|');
    Write_File(kept, "1/3/2008|A|1" + line + "\r\n1/4/2008|B|2" + line + "\r\n1/5/2008|C|3" + line);
    EXPECT_EQ(Run({"log", "recover"}).output, "1\t" + kept.string() + "\t1/3/2008|A|1" + line +
                                                  "\n2\t" + kept.string() + "\t1/4/2008|B|2" +
                                                  line + "\n3\t" + kept.string() +
                                                  "\t1/5/2008|C|3" + line + "\n");
    EXPECT_EQ(Status({"log", "recover", "4"}), 1);
    EXPECT_EQ(Rows().size(), 2U);
    EXPECT_EQ(Status({"log", "recover", "2"}), 0);
    ASSERT_EQ(Rows().size(), 3U);
    EXPECT_EQ(Rows()[2][0], "1/4/2008");
    EXPECT_EQ(Status({"--yes", "log", "recover"}), 0);
    EXPECT_EQ(Rows().size(), 5U);
    EXPECT_FALSE(fs::exists(kept));
    EXPECT_EQ(Run({"log", "recover"}).output, "");
}

TEST_F(Cli_Logs, Report_and_convert) {
    const std::string before = Read_File(log);
    const auto report = home / "report.html";
    const auto page = [&](std::vector<std::string> command) {
        fs::remove(report);
        const auto result = Run(std::move(command));
        EXPECT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(result.output, report.string() + "\n");
        return Read_File(report);
    };
    const std::string some = page({"log", "report", "--fields", "airport,13"});
    EXPECT_NE(some.find("Kennedy"), std::string::npos);
    EXPECT_NE(some.find("Logan"), std::string::npos);
    EXPECT_NE(some.find("1.5"), std::string::npos);
    EXPECT_EQ(some.find("KJFK"), std::string::npos);
    const auto unknown = Run({"log", "report", "--fields", "Date,Wings"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_NE(unknown.errors.find("Wings"), std::string::npos);
    EXPECT_NE(page({"log", "acars-report", "2"}).find("KJFK"), std::string::npos);
    EXPECT_NE(page({"log", "statistics"}).find("3.5"), std::string::npos);
    EXPECT_NE(page({"hours", "--report"}).find("C172"), std::string::npos);
    EXPECT_EQ(Run({"hours"}).output, "B738\t1.5\nC172\t2.0\nTotal Flight Time: 3.5\n");
    EXPECT_EQ(Read_File(home / "logs" / "My Flight Log.txt"), before);

    const auto data = fs::path(NORVANE_SOURCE_DIR) / "tests/data/conversion";
    const auto converted = home / "convertedlogs" / "Old.txt";
    EXPECT_EQ(Run({"convert", (data / "simulator.log").string(), "Old"}).output,
              converted.string() + "\n");
    EXPECT_EQ(Read_File(converted), Read_File(data / "converted.txt"));
    Write_File(directory / "empty.log", "");
    for (const auto* none : {"none.log", "empty.log"})
        EXPECT_EQ(Status({"convert", (directory / none).string(), "Old"}), 1) << none;
    EXPECT_EQ(Read_File(converted), Read_File(data / "converted.txt"));
}

}  // namespace
}  // namespace norvane::test
