// The commands about the world: the pilot's own locations, and airports by name and by place.

#include "cli/cli_world.h"

namespace norvane::test {
namespace {

using testing::MatchesRegex;
using testing::StartsWith;

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
    for (const std::string place :
         {"--lat 1 --lon 1", "--elevation 3", "--lat nan --lon 1 --elevation 3",
          "--lat 90.1 --lon 1 --elevation 3"})
        EXPECT_EQ(Status("world add NV01 " + place), 2) << place;
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
    // As near as the main file's: the pilot's own.
    Write_File(user_file, "-33.9648|18.6017|151|OWN|Mine\r\n");
    EXPECT_EQ(Type("airport nearest -33.8 18.6 155").output, "OWN\tMine\t10\n");
    EXPECT_EQ(Status("airport nearest -33.8 18.6"), 2);
}

}  // namespace
}  // namespace norvane::test
