#include "config/sqlite_store.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <map>

#include "common/line_reader.h"
#include "common/run_error.h"
#include "support/test_world.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class Sqlite : public test::Test_World {
  protected:
    /// Runs `action` in a process of its own and returns how that ended: with 0 when it is true.
    static int In_Child(const std::function<bool()>& action) {
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(action() ? 0 : 7);
        int status = 0;
        ::waitpid(child, &status, 0);
        return status;
    }
    /// The error that `action` raises: "61 why"; empty without one.
    static std::string Failure_Of(const std::function<void()>& action) {
        try {
            action();
            return {};
        } catch (const std::exception&) {
            return std::to_string(Caught_Error().Number()) + " " + Caught_Error().Description();
        }
    }
    fs::path file = directory / "config" / "settings.sqlite";
};

TEST_F(Sqlite, A_Batch_Is_Kept_As_One_And_Found_Again) {
    {
        Sqlite_Store writer(file);
        Sqlite_Store reader(file);
        for (const auto* value : {"old", "Z\xFCrich \x80 \x81\x8D\r\na'b"})
            writer.Set("ACARS", "1", value);
        writer.Set("Gone", "1", "x");
        for (const auto* section : {"Gone", "Never"})
            writer.Delete_Section(section);
        // Given up without a commit of its own, it keeps what was written.
        const Settings_Batch outer(writer);
        {
            Settings_Batch inner(writer);
            writer.Set("Acars", "1", "");
            inner.Commit();
        }
        EXPECT_EQ(reader.Find("Acars", "1"), std::nullopt);
        EXPECT_EQ(writer.Find("Acars", "1"), "");
    }
    Sqlite_Store again(file);
    EXPECT_EQ(again.Trouble(), "");
    EXPECT_EQ(again.Find("ACARS", "1"), "Z\xFCrich \x80 \x81\x8D\r\na'b");
    EXPECT_EQ(again.Find("Acars", "1"), "");
    EXPECT_EQ(again.Find("Gone", "1"), std::nullopt);
    EXPECT_THAT(Failure_Of([&] { again.Commit(); }), HasSubstr("No batch of settings is open"));
}

TEST_F(Sqlite, A_Full_Disk_Costs_The_Batch_And_Not_The_Store) {
    const auto fill = [this] {
        Sqlite_Store live(file);
        live.Set("ACARS", "1", "old");
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{50'000, RLIM_INFINITY};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        live.Begin();
        live.Set("ACARS", "1", "half");
        // A batch that has outgrown the memory meets it before its commit.
        Failure_Of([&] { live.Set("ACARS", "2", std::string(4'000'000, 'x')); });
        const bool told = Failure_Of([&] { live.Commit(); }).starts_with("61 ");
        limit.rlim_cur = RLIM_INFINITY;
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const bool kept = live.Find("ACARS", "1") == "old";
        live.Set("ACARS", "1", "new");
        return told && kept && Sqlite_Store(file).Find("ACARS", "1") == "new";
    };
    EXPECT_EQ(In_Child(fill), 0);
}

TEST_F(Sqlite, A_Broken_File_Is_Kept_And_A_New_Store_Begun) {
    Sqlite_Store(file).Set("ACARS", "1", std::string(20000, 'x'));
    const std::string good = Read_File(file);
    const std::vector<std::string> contents{
        "no database\r\n", std::string(10 << 20, 'x'), good.substr(0, 5000), good.substr(0, 60),
        std::string(good).replace(100, std::string::npos, good.size() - 100, 'Z'),
        // Found by looking through all of the file only.
        std::string(good).replace(2 * 4096, 4096, 4096, '\0')};
    std::map<std::string, std::string> expected;
    for (const auto& content : contents) {
        Write(file, content);
        Sqlite_Store fresh(file);
        EXPECT_THAT(fresh.Trouble(), HasSubstr("settings.sqlite.broken"));
        EXPECT_EQ(fresh.Find("ACARS", "1"), std::nullopt);
        fresh.Set("ACARS", "1", "new");
        const auto number = expected.empty() ? "" : std::to_string(expected.size() + 1);
        expected["settings.sqlite.broken" + number] = content;
    }
    EXPECT_EQ(Sqlite_Store(file).Find("ACARS", "1"), "new");
    // Who only looks leaves all of it as it is.
    for (const auto& content : contents) {
        expected["settings.sqlite"] = content;
        Write(file, content);
        EXPECT_THAT(Read_Store(file).trouble, HasSubstr("settings.sqlite"));
        std::map<std::string, std::string> found;
        for (const auto& part : fs::directory_iterator(file.parent_path()))
            found[part.path().filename().string()] = Read_File(part.path());
        EXPECT_TRUE(found == expected);
    }
}

TEST_F(Sqlite, Who_Looks_Sees_What_Is_Committed_And_Leaves_No_Trace) {
    const auto seen = [&](const fs::path& from) {
        Store_Snapshot snapshot = Read_Store(from);
        for (const auto& [section, key, text] : snapshot.values)
            snapshot.trouble += section + key + text;
        return snapshot.trouble;
    };
    const auto copy = directory / "config/settings.sqlite.bak";
    EXPECT_EQ(seen(file), "");
    EXPECT_FALSE(fs::exists(file.parent_path()));
    Write("config/settings.sqlite", "");
    EXPECT_EQ(seen(file), "");
    {
        Sqlite_Store writer(file);
        EXPECT_EQ(writer.Trouble(), "");
        writer.Set("ACARS", "1", "a\x80");
        writer.Back_Up();
        writer.Begin();
        writer.Set("ACARS", "1", "half");
        // Nor is it in a backup, in place of the older one.
        writer.Back_Up();
        EXPECT_EQ(seen(file), "ACARS1a\x80");
        EXPECT_EQ(seen(copy), seen(file));
        writer.Commit();
    }
    EXPECT_EQ(seen(file) + seen(copy), "ACARS1halfACARS1a\x80");
    EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), {}), 2);
    const auto odd = file.parent_path() / "50%20?a#b.sqlite";
    fs::copy_file(file, odd);
    EXPECT_EQ(seen(odd), "ACARS1half");
    for (const auto& own : {file, copy})
        EXPECT_EQ(fs::status(own).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    // A log of rubbish does not touch the database.
    for (const auto* part : {"config/settings.sqlite-wal", "config/settings.sqlite-shm"})
        Write(part, std::string(40000, 'x'));
    EXPECT_EQ(Sqlite_Store(file).Find("ACARS", "1"), "half");
}

TEST_F(Sqlite, A_Place_That_Cannot_Be_Written_Is_Named) {
    Write("plain", "text");
    Sqlite_Store(file).Set("ACARS", "1", "a");
    for (const auto& place : {file.parent_path(), directory})
        fs::permissions(place, fs::perms::all);
    fs::permissions(file, fs::perms{0444});
    for (const auto& [place, words] :
         {std::pair<fs::path, std::string>{directory / "plain" / "x", directory / "plain"},
          {"/proc/norvane/x", "/proc/norvane"},
          {directory, directory.parent_path()},
          {file, "70 " + file.string() + ": the settings store can only be read"}}) {
        const auto is_named = [&place = place, &words = words] {
            // For root, whom no mode binds.
            return (::geteuid() != 0 || ::seteuid(65534) == 0) &&
                   Failure_Of([&] { Sqlite_Store{place}; }).find(words) != std::string::npos;
        };
        EXPECT_EQ(In_Child(is_named), 0) << place;
    }
    EXPECT_EQ(Read("plain"), "text");
}

TEST_F(Sqlite, Another_Process_Cannot_Take_The_Lock_Until_It_Is_Free) {
    {
        const Store_Lock mine(file);
        EXPECT_TRUE(mine.Held());
        EXPECT_EQ(In_Child([&] { return !Store_Lock(file).Held(); }), 0);
        EXPECT_TRUE(Store_Lock(directory / "other.sqlite").Held());
    }
    EXPECT_TRUE(Store_Lock(file).Held());
}

TEST_F(Sqlite, The_Default_Place_Follows_The_Environment) {
    ::setenv("HOME", "/home/pilot", 1);
    ::setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_EQ(Default_Store_File(), "/home/pilot/.config/norvane/settings.sqlite");
    ::setenv("XDG_CONFIG_HOME", directory.c_str(), 1);
    // Its own directory is the pilot's alone; one that he named stays.
    for (const auto& [store_file, alone] : {std::pair{Default_Store_File(), true}, {file, false}}) {
        fs::create_directories(store_file.parent_path());
        const Store_Lock lock(store_file);
        EXPECT_EQ(fs::status(store_file.parent_path()).permissions() == fs::perms::owner_all,
                  alone);
    }
}

}  // namespace
}  // namespace norvane
