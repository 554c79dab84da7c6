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

using namespace std::chrono_literals;
using test::Child_Process;

class Window_Process : public testing::Test {
  protected:
    Window_Process() {
        std::string name = testing::TempDir() + "norvane-window-XXXXXX";
        home = ::mkdtemp(name.data());
        // The toolkit remarks on its absence where nobody is logged in.
        ::setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
    }
    ~Window_Process() override { std::filesystem::remove_all(home); }

    [[nodiscard]] std::vector<std::string> Command(std::vector<std::string> arguments = {}) const {
        arguments.insert(arguments.begin(),
                         {NORVANE_WINDOW_PROGRAM, "-platform", "offscreen", "--home", home});
        return arguments;
    }
    static bool Comes(const std::function<bool()>& condition) {
        for (int tries = 0; tries < 1200; ++tries) {
            if (condition())
                return true;
            std::this_thread::sleep_for(100ms);
        }
        return false;
    }
    [[nodiscard]] std::filesystem::path Store() const { return home / "settings.sqlite"; }
    /// A program holds the store.
    [[nodiscard]] bool Is_Held() const {
        return std::filesystem::exists(Store()) && !Store_Lock(Store()).Held();
    }
    [[nodiscard]] bool Is_Stored() const {
        return std::filesystem::exists(Store()) &&
               Sqlite_Store(Store()).Find(flight_section, "1").has_value();
    }
    [[nodiscard]] std::string Content(const std::filesystem::path& relative) const {
        return std::filesystem::exists(home / relative) ? Read_File(home / relative)
                                                        : std::string();
    }
    [[nodiscard]] bool Is_Logged() const {
        return Content("logs/My Flight Log.txt").find('|') != std::string::npos;
    }

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

    Child_Process third(Command());
    ASSERT_TRUE(Comes([&] { return Is_Held(); }));
    third.Send(SIGTERM);
    EXPECT_EQ(third.Wait(), 0);
}

TEST_F(Window_Process, A_Demonstration_Ends_In_The_Log) {
    Child_Process window(Command({"--demo", "--time-scale", "400"}));
    EXPECT_TRUE(Comes([&] { return Is_Logged(); })) << window.Errors();
    window.Send(SIGTERM);
    EXPECT_EQ(window.Wait(), 0) << window.Errors();
    EXPECT_FALSE(Is_Stored());
    EXPECT_EQ(Content("ErrorLog.Log"), "");
}

TEST_F(Window_Process, A_Flight_In_The_Air_Outlives_Kills_And_Windows_That_Do_Not_Resume_It) {
    Child_Process killed(Command({"--demo", "--time-scale", "100"}));
    ASSERT_TRUE(Comes([&] { return Is_Stored(); }));
    killed.Send(SIGKILL);
    EXPECT_EQ(killed.Wait(), 128 + SIGKILL);
    Child_Process idle(Command());
    ASSERT_TRUE(Comes([&] { return Is_Held(); }));
    idle.Send(SIGTERM);
    EXPECT_EQ(idle.Wait(), 0);
    EXPECT_TRUE(Is_Stored());
    EXPECT_FALSE(Is_Logged());
}

}  // namespace
}  // namespace norvane
