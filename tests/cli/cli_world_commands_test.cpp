// The commands about the world: the pilot's own locations, and airports by name and by place.

#include <gmock/gmock.h>

#include "cli/cli_world.h"
#include "common/file_writer.h"
#include "common/line_reader.h"

namespace norvane::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

class Cli_World_Commands : public Cli_World {};

TEST_F(Cli_World_Commands, Keep_the_pilots_locations) {
    Write_File(home / "bin/fs9.wld",
               "47.4647|8.5492|1416|LSZH|Z\xFCrich Airport\r\n"
               "-33.9648|18.6017|151|FACT|Cape Town Intl\r\n");
    const auto user_file = home / "bin/fs9UD.wld";
    EXPECT_EQ(Run({"world", "add", "NV01"}).status, 3);
    EXPECT_FALSE(fs::exists(user_file));
    for (const auto& arguments : {std::vector<std::string>{"--lat", "1", "--lon", "1"},
                                  {"--elevation", "3"},
                                  {"--lat", "nan", "--lon", "1", "--elevation", "3"},
                                  {"--lat", "90.1", "--lon", "1", "--elevation", "3"}}) {
        std::vector<std::string> command{"world", "add", "NV01"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        EXPECT_EQ(Run(command).status, 2) << arguments[1];
    }
    const std::vector<std::string> at{"--lat", "-33.97", "--lon", "18.6", "--elevation", "150"};
    const auto add = [&](const std::string& code) {
        std::vector<std::string> command{"world", "add", code};
        command.insert(command.end(), at.begin(), at.end());
        return Run(command);
    };
    EXPECT_EQ(add("A/B").status, 1);
    EXPECT_THAT(add("lszh").output, StartsWith("1\tLSZH\tZürich Airport\t"));
    const auto again = add("LSZH");
    EXPECT_EQ(again.status, 0);
    EXPECT_THAT(again.errors, HasSubstr("in the list already"));
    Start_Simulator();
    const auto here = Run({"world", "add", "NV01"});
    EXPECT_THAT(here.output, StartsWith("3\tNV01\t\t")) << here.errors;
    EXPECT_EQ(Run({"world", "delete", "1"}).status, 1) << "nobody said Yes";
    EXPECT_EQ(Run({"--yes", "world", "delete", "4"}).status, 1);
    EXPECT_EQ(Run({"--yes", "world", "delete", "1"}).status, 0);
    const auto listed = Run({"world", "list"}).output;
    EXPECT_THAT(listed, StartsWith("1\tLSZH\tZürich Airport\t"));
    EXPECT_THAT(listed, HasSubstr("\t-33.97\t18.6\t150\n2\tNV01\t"));
    EXPECT_THAT(Read_File(user_file), Not(MatchesRegex("(.|\n)*\\.[0-9]{7}(.|\n)*")));
    EXPECT_EQ(Read_Lines(user_file).size(), 2U);
}

TEST_F(Cli_World_Commands, Find_airports) {
    Write_File(home / "bin/fs9.wld",
               "47.4647|8.5492|1416|LSZH|Z\xFCrich Airport\r\n"
               "-33.9648|18.6017|151|FACT|Cape Town Intl\r\n");
    EXPECT_EQ(Run({"airport", "find", "ZÜRICH"}).output,
              "LSZH\tZürich Airport\t47.4647\t8.5492\t1416\n");
    EXPECT_EQ(Run({"airport", "nearest", "-33.8", "18.6", "155"}).output,
              "FACT\tCape Town Intl\t10\n");
    const auto too_high = Run({"airport", "nearest", "-33.8", "18.6", "161"});
    EXPECT_EQ(too_high.status, 1);
    EXPECT_EQ(too_high.output, "");
    EXPECT_THAT(too_high.errors, HasSubstr("50 nm"));
    // As near as the main file's: the pilot's own.
    Write_File(home / "bin/fs9UD.wld", "-33.9648|18.6017|151|OWN|Mine\r\n");
    EXPECT_EQ(Run({"airport", "nearest", "-33.8", "18.6", "155"}).output, "OWN\tMine\t10\n");
    EXPECT_THAT(Run({"airport", "find", "own"}).output, StartsWith("OWN\tMine\t"));
    EXPECT_EQ(Run({"airport", "find", "a"}).status, 1) << "of \"Airport\"";
    EXPECT_EQ(Run({"airport", "nearest", "-33.8", "18.6"}).status, 2);
}

}  // namespace
}  // namespace norvane::test
