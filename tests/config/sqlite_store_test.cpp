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

TEST_F(Sqlite, Values_Are_There_Again_After_Reopening) {
    {
        Sqlite_Store writer(file);
        for (const auto* value : {"old", "Z\xFCrich \x80 \x81\x8D\r\na'b"})
            writer.Set("ACARS", "1", value);
        writer.Set("Acars", "1", "");
        writer.Set("Gone", "1", "x");
        for (const auto* section : {"Gone", "Never"})
            writer.Delete_Section(section);
    }
    Sqlite_Store again(file);
    EXPECT_EQ(again.Trouble(), "");
    EXPECT_EQ(again.Find("ACARS", "1"), "Z\xFCrich \x80 \x81\x8D\r\na'b");
    EXPECT_EQ(again.Find("Acars", "1"), "");
    EXPECT_EQ(again.Find("Gone", "1"), std::nullopt);
}

TEST_F(Sqlite, Nested_Batches_Are_One_Transaction) {
    Sqlite_Store writer(file);
    Sqlite_Store reader(file);
    {
        // Given up without a commit of its own, it keeps what was written.
        const Settings_Batch outer(writer);
        {
            Settings_Batch inner(writer);
            writer.Set("ACARS", "2", "b");
            inner.Commit();
        }
        EXPECT_EQ(reader.Find("ACARS", "2"), std::nullopt);
        EXPECT_EQ(writer.Find("ACARS", "2"), "b");
    }
    EXPECT_EQ(reader.Find("ACARS", "2"), "b");
    EXPECT_THAT(Failure_Of([&] { writer.Commit(); }), HasSubstr("No batch of settings is open"));
}

TEST_F(Sqlite, A_Killed_Process_Loses_Nothing_Committed_And_Nothing_Half_Done) {
    for (int round = 0; round < 20; ++round) {
        const std::string value = std::to_string(round);
        const int status = In_Child([&] {
            Sqlite_Store child(file);
            child.Begin();
            for (int key = 0; key < 22; ++key)
                child.Set("ACARS", std::to_string(key), value);
            child.Commit();
            child.Begin();
            child.Set("ACARS", "0", "half");
            return ::raise(SIGKILL) == 0;
        });
        ASSERT_TRUE(WIFSIGNALED(status));
        Sqlite_Store after(file);
        ASSERT_EQ(after.Trouble(), "");
        for (int key = 0; key < 22; ++key)
            ASSERT_EQ(after.Find("ACARS", std::to_string(key)), value);
    }
}

TEST_F(Sqlite, A_Full_Disk_Costs_The_Batch_And_Not_The_Store) {
    const auto fill = [this](std::size_t size, const std::string& at_commit) {
        Sqlite_Store live(file);
        live.Set("ACARS", "1", "old");
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{50'000, RLIM_INFINITY};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        live.Begin();
        live.Set("ACARS", "1", "half");
        Failure_Of([&] { live.Set("ACARS", "2", std::string(size, 'x')); });
        const bool told = Failure_Of([&] { live.Commit(); }).starts_with(at_commit);
        limit.rlim_cur = RLIM_INFINITY;
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const bool kept = live.Find("ACARS", "1") == "old";
        live.Set("ACARS", "1", "new");
        return told && kept && Sqlite_Store(file).Find("ACARS", "1") == "new";
    };
    EXPECT_EQ(In_Child([&] { return fill(100'000, "57 "); }), 0);
    // A batch that has outgrown the memory meets it before its commit.
    EXPECT_EQ(In_Child([&] { return fill(4'000'000, "61 "); }), 0);
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
    EXPECT_TRUE(WIFSIGNALED(In_Child([&] {
        const Store_Lock theirs(file);
        return theirs.Held() && ::raise(SIGKILL) == 0;
    })));
    EXPECT_TRUE(Store_Lock(file).Held());
}

TEST_F(Sqlite, The_Default_Place_Follows_The_Environment) {
    const auto place = [](const char* home, const char* config) {
        for (const auto& [name, value] : {std::pair{"HOME", home}, {"XDG_CONFIG_HOME", config}})
            value == nullptr ? ::unsetenv(name) : ::setenv(name, value, 1);
        return Default_Store_File();
    };
    const auto mode = [](const fs::path& store_file) {
        fs::create_directories(store_file.parent_path());
        const Store_Lock lock(store_file);
        return fs::status(store_file.parent_path()).permissions();
    };
    // In a process whose environment is nobody else's.
    EXPECT_EQ(In_Child([&] {
                  const auto* usual = "/home/pilot/.config/norvane/settings.sqlite";
                  return place("/home/pilot", "relative") == usual &&
                         place("/home/pilot", nullptr) == usual &&
                         place("/home/pilot", "/etc/x") == "/etc/x/norvane/settings.sqlite" &&
                         // Its own directory is the pilot's alone; one that he named stays.
                         mode(place("/home/pilot", directory.c_str())) == fs::perms::owner_all &&
                         mode(file) != fs::perms::owner_all &&
                         !Failure_Of([&] { place(nullptr, nullptr); }).empty();
              }),
              0);
}

}  // namespace
}  // namespace norvane
