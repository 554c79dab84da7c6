// Where the programs keep their files when they are staged and when they are installed, and what an
// upgrade brings to the pilot's.

#include "app/program_places.h"

#include <gmock/gmock.h>

#include <cstdlib>

#include "app/shipped_files.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/run_error.h"
#include "support/test_world.h"

namespace norvane::test {

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

using Places = Test_World;

TEST_F(Places, Installed_And_Staged_Programs) {
    ::setenv("HOME", "/home/pilot", 1);
    ::setenv("XDG_CONFIG_HOME", "", 1);
    ::setenv("XDG_DATA_HOME", "relative", 1);
    Write("usr/share/norvane/nv.html", "");
    Write("staged/bin/ac.cfg", "");
    Write("share/norvane/nv.html", "");
    const fs::path installed = directory / "usr/bin";
    const fs::path staged = directory / "staged";
    const auto expect = [&](const fs::path& executable, const Place_Choices& choices,
                            const fs::path& program, const fs::path& settings) {
        const Program_Places places = Find_Places(executable, choices);
        EXPECT_EQ(places.program_directory, program);
        EXPECT_EQ(places.store, settings);
        EXPECT_EQ(places.shipped, executable == staged ? staged : directory / "usr/share/norvane");
    };
    const fs::path own_store = "/home/pilot/.config/norvane/settings.sqlite";
    expect(installed, {}, "/home/pilot/.local/share/norvane", own_store);
    // A staged directory is complete, whatever stands beside it.
    expect(staged, {}, staged, own_store);
    expect(staged, {"", "", true}, directory / "demo", directory / "demo/settings.sqlite");
    ::setenv("XDG_DATA_HOME", "/data", 1);
    expect(installed, {}, "/data/norvane", own_store);
    expect(installed, {"", "", true}, "/data/norvane/demo", "/data/norvane/demo/settings.sqlite");
    expect(installed, {"/else", "", false}, "/else", "/else/settings.sqlite");
    expect(installed, {"/else", "/my/store", true}, "/else", "/my/store");
}

class Shipped_Files : public Test_World {
  protected:
    Shipped_Files() {
        services.program_directory = home;
        Ship("bin/ac.cfg", "jets 1");
        Ship("bin/airline.cfg", "airlines 1");
        Ship("bin/fs9.wld", "airports 1");
        Ship("nv.html", "help 1");
        Ship("scenarios/jet.json", "");
        fs::create_directories(shipped / "VA");
    }
    void Ship(const std::string& name, const std::string& content) {
        Write("shipped/" + name, content);
    }
    void Take() { Take_Shipped_Files(services, shipped); }
    [[nodiscard]] std::string Have(const std::string& name) const { return Read("home/" + name); }

    const fs::path shipped = directory / "shipped";
    const fs::path home = directory / "home";
};

TEST_F(Shipped_Files, An_Upgrade_Leaves_What_The_Pilot_Made_Of_Them) {
    Take();
    EXPECT_EQ(Have("bin/ac.cfg"), "jets 1");
    EXPECT_EQ(Have("nv.html"), "help 1");
    EXPECT_TRUE(fs::is_directory(home / "VA"));
    EXPECT_FALSE(fs::exists(home / "scenarios"));

    Write("home/bin/ac.cfg", "jets P");
    fs::remove(home / "bin/fs9.wld");
    Write("home/bin/optfields.cfg", "the pilot's");
    for (const std::string version : {" 2", " 3"}) {
        for (const auto* name : {"bin/ac.cfg", "bin/airline.cfg", "bin/fs9.wld",
                                 "bin/optfields.cfg", "bin/new.cfg", "nv.html"})
            Ship(name, name + version);
        Take();
        Take();  // as most starts, which have nothing to bring
        EXPECT_EQ(Have("bin/ac.cfg"), "jets P") << "changed";
        EXPECT_FALSE(fs::exists(home / "bin/fs9.wld")) << "deleted";
        EXPECT_EQ(Have("bin/optfields.cfg"), "the pilot's") << "there before it was shipped";
        for (const auto* name : {"bin/airline.cfg", "bin/new.cfg", "nv.html"})
            EXPECT_EQ(Have(name), name + version);
    }
    // What a version before wrote out in capitals is the same file.
    fs::rename(home / "bin/airline.cfg", home / "bin/AIRLINE.CFG");
    Ship("bin/airline.cfg", "airlines 4");
    Take();
    EXPECT_EQ(Have("bin/AIRLINE.CFG"), "airlines 4");
    EXPECT_FALSE(fs::exists(home / "bin/airline.cfg"));
}

TEST_F(Shipped_Files, A_File_That_Cannot_Be_Brought_Comes_With_The_Next_Start) {
    Take();
    Ship("bin/ac.cfg", "jets 2");
    Ship("bin/airline.cfg", "airlines 2");
    Ship("nv.html", "help 2");
    // Nobody can read it, not even root: a link to itself.
    fs::remove(shipped / "bin/ac.cfg");
    fs::create_symlink("ac.cfg", shipped / "bin/ac.cfg");
    try {
        Take();
        ADD_FAILURE() << "no failure";
    } catch (const Run_Error& error) {
        EXPECT_THAT(error.Description(), HasSubstr("ac.cfg"));
    }
    EXPECT_EQ(Have("bin/ac.cfg"), "jets 1");
    EXPECT_EQ(Have("bin/airline.cfg"), "airlines 2");
    fs::remove(shipped / "bin/ac.cfg");
    Ship("bin/ac.cfg", "jets 3");
    // A start that was broken off after a file was replaced and before that was noted.
    Ship("nv.html", "help 3");
    Write("home/nv.html", "help 3");
    Take();
    EXPECT_EQ(Have("bin/ac.cfg"), "jets 3");
    Ship("nv.html", "help 4");
    Take();
    EXPECT_EQ(Have("nv.html"), "help 4");
}

}  // namespace

}  // namespace norvane::test
