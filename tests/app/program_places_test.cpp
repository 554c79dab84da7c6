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

/// The environment as a desktop session has it, put back afterwards.
class Environment_Value {
  public:
    Environment_Value(const char* name, const std::string& value) : m_name(name) {
        if (const char* before = std::getenv(name))
            m_before = before;
        ::setenv(name, value.c_str(), 1);
    }
    ~Environment_Value() {
        if (m_before)
            ::setenv(m_name, m_before->c_str(), 1);
        else
            ::unsetenv(m_name);
    }
    Environment_Value(const Environment_Value&) = delete;
    Environment_Value& operator=(const Environment_Value&) = delete;

  private:
    const char* m_name;
    std::optional<std::string> m_before;
};

using Places = Test_World;

TEST_F(Places, Installed_And_Staged_Programs) {
    const Environment_Value home("HOME", "/home/pilot");
    const Environment_Value config("XDG_CONFIG_HOME", "");
    const Environment_Value data("XDG_DATA_HOME", "relative");
    Write("usr/share/norvane/nv.html", "");
    Write("staged/bin/ac.cfg", "");
    Write("share/norvane/nv.html", "");
    const fs::path installed = directory / "usr/bin";
    const fs::path staged = directory / "staged";

    auto places = Find_Places(installed, {});
    EXPECT_EQ(places.program_directory, "/home/pilot/.local/share/norvane");
    EXPECT_EQ(places.store, "/home/pilot/.config/norvane/settings.sqlite");
    EXPECT_EQ(places.shipped, directory / "usr/share/norvane");
    {
        const Environment_Value elsewhere("XDG_DATA_HOME", "/data");
        EXPECT_EQ(Find_Places(installed, {}).program_directory, "/data/norvane");
        places = Find_Places(installed, {"", "", true});
        EXPECT_EQ(places.program_directory, "/data/norvane/demo");
        EXPECT_EQ(places.store, "/data/norvane/demo/settings.sqlite");
    }
    places = Find_Places(installed, {"/elsewhere", "", false});
    EXPECT_EQ(places.program_directory, "/elsewhere");
    EXPECT_EQ(places.shipped, directory / "usr/share/norvane");

    // A staged directory is complete, whatever stands beside it.
    places = Find_Places(staged, {});
    EXPECT_EQ(places.program_directory, staged);
    EXPECT_EQ(places.shipped, staged);
    EXPECT_EQ(Find_Places(staged, {"", "", true}).program_directory, directory / "demo");
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
    for (const std::string version : {"2", "3"}) {
        Ship("bin/ac.cfg", "jets " + version);
        Ship("bin/airline.cfg", "airlines " + version);
        Ship("bin/fs9.wld", "airports " + version);
        Ship("bin/optfields.cfg", "fields " + version);
        Ship("bin/new.cfg", "new " + version);
        Ship("nv.html", "help " + version);
        Take();
        Take();  // as most starts, which have nothing to bring
        EXPECT_EQ(Have("bin/ac.cfg"), "jets P") << "changed";
        EXPECT_FALSE(fs::exists(home / "bin/fs9.wld")) << "deleted";
        EXPECT_EQ(Have("bin/optfields.cfg"), "the pilot's") << "there before it was shipped";
        EXPECT_EQ(Have("bin/airline.cfg"), "airlines " + version);
        EXPECT_EQ(Have("bin/new.cfg"), "new " + version);
        EXPECT_EQ(Have("nv.html"), "help " + version);
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
