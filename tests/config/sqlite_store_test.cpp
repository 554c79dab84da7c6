#include "config/sqlite_store.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <map>

#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/run_error.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using testing::HasSubstr;

class Sqlite : public test::Test_World {
  protected:
    /// Runs `action` in a process of its own and returns how that ended.
    static int In_Child(const std::function<void()>& action) {
        const pid_t child = ::fork();
        if (child == 0) {
            action();
            ::_exit(7);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return status;
    }
    std::filesystem::path file = directory / "config" / "settings.sqlite";
};

TEST_F(Sqlite, Values_Are_There_Again_After_Reopening) {
    {
        Sqlite_Store store_file(file);
        EXPECT_EQ(store_file.Find("ACARS", "1"), std::nullopt);
        store_file.Set("ACARS", "1", "old");
        store_file.Set("ACARS", "1", "Z\xFCrich \x80 \x81\x8D");
        store_file.Set("Acars", "1", "");
        store_file.Set("Grid", "Row", "a'b\r\nc");
        store_file.Set("Gone", "1", "x");
        store_file.Delete_Section("Gone");
        store_file.Delete_Section("Never");
    }
    Sqlite_Store again(file);
    EXPECT_EQ(again.Trouble(), "");
    EXPECT_EQ(again.Find("ACARS", "1"), "Z\xFCrich \x80 \x81\x8D");
    EXPECT_EQ(again.Find("Acars", "1"), "");
    EXPECT_EQ(again.Find("Grid", "Row"), "a'b\r\nc");
    EXPECT_EQ(again.Find("Gone", "1"), std::nullopt);
}

TEST_F(Sqlite, Nested_Batches_Are_One_Transaction) {
    Sqlite_Store writer(file);
    Sqlite_Store reader(file);
    {
        Settings_Batch outer(writer);
        writer.Set("ACARS", "1", "a");
        {
            Settings_Batch inner(writer);
            writer.Set("ACARS", "2", "b");
            inner.Commit();
        }
        EXPECT_EQ(reader.Find("ACARS", "2"), std::nullopt);
        EXPECT_EQ(writer.Find("ACARS", "2"), "b");
        outer.Commit();
    }
    EXPECT_EQ(reader.Find("ACARS", "1"), "a");
    EXPECT_EQ(reader.Find("ACARS", "2"), "b");
    EXPECT_THROW(writer.Commit(), Run_Error);
    // A batch given up without a commit of its own keeps what was written.
    {
        const Settings_Batch left(writer);
        writer.Set("ACARS", "3", "c");
    }
    EXPECT_EQ(reader.Find("ACARS", "3"), "c");
}

TEST_F(Sqlite, A_Killed_Process_Loses_Nothing_Committed_And_Nothing_Half_Done) {
    for (int round = 0; round < 20; ++round) {
        const std::string value = std::to_string(round);
        const int status = In_Child([&] {
            Sqlite_Store child(file);
            {
                Settings_Batch batch(child);
                for (int key = 0; key < 22; ++key)
                    child.Set("ACARS", std::to_string(key), value);
                batch.Commit();
            }
            child.Begin();
            child.Set("ACARS", "0", "half");
            ::raise(SIGKILL);
        });
        ASSERT_TRUE(WIFSIGNALED(status));
        Sqlite_Store after(file);
        ASSERT_EQ(after.Trouble(), "");
        for (int key = 0; key < 22; ++key)
            ASSERT_EQ(after.Find("ACARS", std::to_string(key)), value);
    }
}

TEST_F(Sqlite, A_Broken_File_Is_Kept_And_A_New_Store_Begun) {
    Sqlite_Store(file).Set("ACARS", "1", std::string(20000, 'x'));
    const std::string good = Read_File(file);
    std::string scrambled = good;
    std::fill(scrambled.begin() + 100, scrambled.end(), '\x5A');
    const std::vector<std::string> contents{
        "no database\r\n", std::string(4096, '\0'),   good.substr(0, 5000), good.substr(0, 60),
        scrambled,         std::string(10 << 20, 'x')};
    std::vector<std::filesystem::path> kept;
    for (const auto& content : contents) {
        Write_File(file, content);
        Sqlite_Store fresh(file);
        EXPECT_THAT(fresh.Trouble(), HasSubstr("settings.sqlite.broken"));
        EXPECT_EQ(fresh.Find("ACARS", "1"), std::nullopt);
        fresh.Set("ACARS", "1", "new");
        EXPECT_EQ(fresh.Find("ACARS", "1"), "new");
        auto name = file;
        kept.push_back(name += ".broken" + (kept.empty() ? "" : std::to_string(kept.size() + 1)));
    }
    for (std::size_t i = 0; i < contents.size(); ++i)
        EXPECT_EQ(Read_File(kept[i]), contents[i]) << i;
    EXPECT_EQ(Sqlite_Store(file).Find("ACARS", "1"), "new");
    // Who only looks leaves all of it as it is.
    const auto parts = [&] {
        std::map<std::string, std::string> found;
        for (const auto& part : std::filesystem::directory_iterator(file.parent_path()))
            found[part.path().filename().string()] = Read_File(part.path());
        return found;
    };
    for (const auto& content : contents) {
        Write_File(file, content);
        const auto before = parts();
        const Store_Snapshot snapshot = Read_Store(file);
        EXPECT_THAT(snapshot.trouble, HasSubstr("settings.sqlite"));
        EXPECT_EQ(parts(), before);
    }
}

TEST_F(Sqlite, Who_Looks_Sees_What_Is_Committed_And_Leaves_No_Trace) {
    const auto seen = [&](const std::filesystem::path& from) {
        const Store_Snapshot snapshot = Read_Store(from);
        EXPECT_EQ(snapshot.trouble, "");
        return snapshot.values.empty() ? std::string() : snapshot.values.at(0).text;
    };
    EXPECT_EQ(seen(file), "");
    EXPECT_FALSE(std::filesystem::exists(file.parent_path()));
    Write("config/settings.sqlite", "");
    EXPECT_EQ(seen(file), "");
    {
        Sqlite_Store writer(file);
        EXPECT_EQ(writer.Trouble(), "");
        writer.Set("ACARS", "1", "a\x80");
        EXPECT_EQ(seen(file), "a\x80") << "it stands in the log only";
        writer.Begin();
        writer.Set("ACARS", "1", "half");
        EXPECT_EQ(seen(file), "a\x80");
        writer.Commit();
    }
    EXPECT_EQ(seen(file), "half");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(file.parent_path()), {}), 1);
    const auto odd = file.parent_path() / "50%20?a#b.sqlite";
    std::filesystem::copy_file(file, odd);
    EXPECT_EQ(seen(odd), "half");
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(file).permissions(), perms::owner_read | perms::owner_write);
}

TEST_F(Sqlite, A_Log_Of_Rubbish_Does_Not_Touch_The_Database) {
    Sqlite_Store(file).Set("ACARS", "1", "a");
    Write("config/settings.sqlite-wal", std::string(40000, 'x'));
    Write("config/settings.sqlite-shm", std::string(40000, 'x'));
    Sqlite_Store again(file);
    EXPECT_EQ(again.Trouble(), "");
    EXPECT_EQ(again.Find("ACARS", "1"), "a");
}

TEST_F(Sqlite, A_Place_That_Cannot_Be_Written_Is_Named) {
    Write("plain", "text");
    for (const auto& place : {directory / "plain" / "settings.sqlite",
                              std::filesystem::path("/proc/norvane/settings.sqlite"), directory}) {
        try {
            Sqlite_Store store_file(place);
            ADD_FAILURE() << place << " was opened";
        } catch (const std::exception&) {
            EXPECT_THAT(Caught_Error().Description(), HasSubstr(place.parent_path().string()));
        }
    }
    EXPECT_EQ(Read("plain"), "text");
}

TEST_F(Sqlite, A_Backup_Holds_What_Is_Committed) {
    Sqlite_Store live(file);
    for (const auto* value : {"first", "second"}) {
        live.Set("ACARS", "1", value);
        live.Begin();
        live.Set("ACARS", "1", "not yet");
        live.Back_Up();
        live.Commit();
        auto copy = file;
        EXPECT_EQ(Sqlite_Store(copy += ".bak").Find("ACARS", "1"), value);
    }
    EXPECT_EQ(live.Find("ACARS", "1"), "not yet");
}

TEST_F(Sqlite, Another_Process_Cannot_Take_The_Lock_Until_It_Is_Free) {
    {
        const Store_Lock mine(file);
        EXPECT_TRUE(mine.Held());
        EXPECT_FALSE(Store_Lock(file).Held());
        // In a process of its own; the child's copy of our descriptor does not count.
        const int status = In_Child([&] { ::_exit(Store_Lock(file).Held() ? 1 : 0); });
        EXPECT_EQ(WEXITSTATUS(status), 0);
        EXPECT_TRUE(Store_Lock(directory / "other.sqlite").Held());
    }
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const Store_Lock theirs(file);
        static_cast<void>(::write(pipe[1], "x", 1));
        ::pause();
        ::_exit(0);
    }
    char ready = 0;
    ASSERT_EQ(::read(pipe[0], &ready, 1), 1);
    EXPECT_FALSE(Store_Lock(file).Held());
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(Store_Lock(file).Held());
    ::close(pipe[0]);
    ::close(pipe[1]);
}

TEST_F(Sqlite, The_Default_Place_Follows_The_Environment) {
    const std::string home = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "";
    // Norvane's own directory is the pilot's alone; one that he named is left as it is.
    ::setenv("XDG_CONFIG_HOME", directory.c_str(), 1);
    std::filesystem::create_directories(directory / "norvane");
    for (const auto& store_file : {Default_Store_File(), file}) {
        EXPECT_TRUE(Store_Lock(store_file).Held());
        const auto mode = std::filesystem::status(store_file.parent_path()).permissions();
        EXPECT_EQ(mode == std::filesystem::perms::owner_all, store_file == Default_Store_File());
    }
    ::setenv("HOME", "/home/pilot", 1);
    ::setenv("XDG_CONFIG_HOME", "/etc/pilot", 1);
    EXPECT_EQ(Default_Store_File(), "/etc/pilot/norvane/settings.sqlite");
    ::setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_EQ(Default_Store_File(), "/home/pilot/.config/norvane/settings.sqlite");
    ::unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(Default_Store_File(), "/home/pilot/.config/norvane/settings.sqlite");
    ::unsetenv("HOME");
    EXPECT_THROW(static_cast<void>(Default_Store_File()), Run_Error);
    ::setenv("HOME", home.c_str(), 1);
}

}  // namespace
}  // namespace norvane
