// norvane as a pilot starts it: a process with a window (that nobody sees), a program directory and
// a store of its own.

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <thread>

#include "common/line_reader.h"
#include "config/sqlite_store.h"
#include "logentry/cls_log_entry.h"
#include "support/child_process.h"

namespace norvane {
namespace {

using test::Child_Process;

class Window_Process : public testing::Test {
  protected:
    Window_Process() {
        std::string name = testing::TempDir() + "norvane-window-XXXXXX";
        home = ::mkdtemp(name.data());
        // The toolkit remarks on its absence where nobody is logged in.
        ::setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
    }
    void TearDown() override { std::filesystem::remove_all(home); }

    [[nodiscard]] std::vector<std::string> Command(std::vector<std::string> arguments = {}) const {
        arguments.insert(arguments.begin(),
                         {NORVANE_WINDOW_PROGRAM, "-platform", "offscreen", "--home", home});
        return arguments;
    }
    static bool Comes(const std::function<bool()>& condition) {
        for (int tries = 0; tries < 1200 && !condition(); ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        return condition();
    }
    /// A program holds the store.
    [[nodiscard]] bool Is_Held() const { return Exists(store) && !Store_Lock(home / store).Held(); }
    [[nodiscard]] bool Is_Stored() const {
        return Exists(store) && Sqlite_Store(home / store).Find(flight_section, "1").has_value();
    }
    [[nodiscard]] bool Is_Logged() const {
        const auto* log = "logs/My Flight Log.txt";
        return Exists(log) && Read_File(home / log).find('|') != std::string::npos;
    }
    [[nodiscard]] bool Exists(const char* relative) const {
        return std::filesystem::exists(home / relative);
    }
    /// Starts one, which must hold the store, and ends it as the system asks a program to.
    void Start_And_End() {
        Child_Process window(Command());
        ASSERT_TRUE(Comes([&] { return Is_Held(); }));
        window.Send(SIGTERM);
        EXPECT_EQ(window.Wait(), 0);
    }

    const char* const store = "settings.sqlite";
    std::filesystem::path home;
};

TEST_F(Window_Process, A_Second_One_Ends_Silently_And_A_Killed_One_Leaves_No_Lock) {
    Child_Process first(Command());
    ASSERT_TRUE(Comes([&] { return Is_Held(); }));
    Child_Process second(Command());
    EXPECT_EQ(second.Wait(), 0);
    EXPECT_EQ(second.Output() + second.Errors(), "");
    first.Send(SIGKILL);
    EXPECT_EQ(first.Wait(), 128 + SIGKILL);
    Start_And_End();
}

TEST_F(Window_Process, A_Flight_In_The_Air_Outlives_Kills_And_Windows_That_Do_Not_Resume_It) {
    Child_Process killed(Command({"--demo", "--time-scale", "100"}));
    ASSERT_TRUE(Comes([&] { return Is_Stored(); }));
    killed.Send(SIGKILL);
    EXPECT_EQ(killed.Wait(), 128 + SIGKILL);
    Start_And_End();
    EXPECT_TRUE(Is_Stored());
    EXPECT_FALSE(Is_Logged());
}

}  // namespace
}  // namespace norvane
