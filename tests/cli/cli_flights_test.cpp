// Flights of norvane-cli beside a simulator that are broken off: by SIGKILL, by SIGTERM, by the
// simulator's end.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <csignal>
#include <random>
#include <thread>

#include "cli/cli_world.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/text.h"
#include "config/sqlite_store.h"
#include "logentry/cls_log_entry.h"
#include "servers/test_servers.h"

namespace norvane::test {
namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::HasSubstr;

constexpr std::size_t flight_level_column = 23;

bool Has_Message(const std::string& output, const std::string& label) {
    return output.find("Msg Label: " + label + " ") != std::string::npos;
}
bool Took_Off(const std::string& output) {
    return Has_Message(output, "QB");
}

class Cli_Flights : public Cli_World {
  protected:
    /// The row of an unbroken flight, and how long it took from OFF to IN.
    void Fly_Unbroken() {
        Start_Simulator();
        Child_Process process(Command(fly));
        ASSERT_TRUE(process.Read_Until(Took_Off)) << process.Errors();
        const auto off = steady_clock::now();
        process.Read_Until([](const std::string& output) { return Has_Message(output, "QD"); });
        off_to_in = duration_cast<milliseconds>(steady_clock::now() - off);
        ASSERT_EQ(process.Wait(), 0) << process.Errors();
        ASSERT_EQ(Rows().size(), 1U);
        unbroken = Rows()[0];
        Kill_Simulator();
        Start_Anew();
    }

    /// The one row of the log as the unbroken flight has it, but for the flight level, which is not
    /// stored with a flight in progress.
    void Expect_Same_Row() {
        auto rows = Rows();
        ASSERT_EQ(rows.size(), 1U);
        ASSERT_EQ(rows[0].size(), 53U);
        rows[0][flight_level_column] = unbroken[flight_level_column];
        EXPECT_EQ(rows[0], unbroken);
    }

    /// Waits until the step that took off stands in the store: what a kill within that step loses
    /// is not in the air yet.
    void Await_Stored_Take_Off() { Await_Stored("47"); }
    void Await_Stored(std::string_view key) {
        const auto end = steady_clock::now() + std::chrono::seconds(30);
        Sqlite_Store store(home / "settings.sqlite");
        while (store.Get(flight_section, key).empty() && steady_clock::now() < end)
            std::this_thread::sleep_for(milliseconds(1));
    }

    std::vector<std::string> unbroken;
    milliseconds off_to_in{0};
};

TEST_F(Cli_Flights, Killed_at_random_moments_in_the_air_end_as_the_same_row) {
    Fly_Unbroken();
    std::mt19937 random(20261122);
    int killed_in_flight = 0;
    for (int tries = 0; killed_in_flight < 8; ++tries) {
        ASSERT_LT(tries, 200);
        Start_Simulator();
        Child_Process first(Command(fly));
        ASSERT_TRUE(first.Read_Until(Took_Off)) << first.Errors();
        Await_Stored_Take_Off();
        std::uniform_int_distribution<std::int64_t> moment(0, off_to_in.count() * 1000);
        const std::chrono::microseconds wait(moment(random));
        std::this_thread::sleep_for(wait);
        first.Send(SIGKILL);
        if (first.Wait() == 128 + SIGKILL && Rows().empty()) {
            ++killed_in_flight;
            const auto second = Fly();
            ASSERT_EQ(second.status, 0) << second.errors;
            EXPECT_NE(second.errors.find(": KJFK"), std::string::npos);
        } else {
            // This flight was faster than the one the window was measured on.
            off_to_in = std::max(milliseconds(1), duration_cast<milliseconds>(wait));
        }
        Expect_Same_Row();
        EXPECT_EQ(Error_Log(), "");
        ASSERT_FALSE(HasFailure()) << "flight " << tries;
        Kill_Simulator();
        Start_Anew();
    }
}

TEST_F(Cli_Flights, Killed_while_they_are_logged_are_logged_by_the_next_start_without_a_simulator) {
    Fly_Unbroken();
    // Saving waits for ever: nobody reads what it writes first.
    const auto draft = home / "templog.txt";
    const auto pipe = directory / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::filesystem::create_symlink(pipe, draft);
    Start_Simulator();
    Child_Process first(Command(fly));
    Await_Stored("Logging");
    first.Send(SIGKILL);
    ASSERT_EQ(first.Wait(), 128 + SIGKILL);
    EXPECT_TRUE(Rows().empty());
    Kill_Simulator();
    // A log that still cannot be written: the row is on the screen at least.
    std::filesystem::remove(draft);
    std::filesystem::create_directories(draft / "in the way");
    const auto second = Fly();
    EXPECT_EQ(second.status, 1);
    EXPECT_NE(second.output.find(Join(unbroken, "|")), std::string::npos) << second.output;
    std::filesystem::remove_all(draft);
    const auto third = Fly();
    EXPECT_EQ(third.status, 0) << third.errors;
    EXPECT_NE(third.errors.find("A finished flight was not logged: KJFK to "), std::string::npos);
    EXPECT_EQ(Rows(), (std::vector<std::vector<std::string>>{unbroken}));
    EXPECT_EQ(Fly().status, 3) << "the next flight needs the simulator";
    EXPECT_EQ(Rows().size(), 1U);
}

TEST_F(Cli_Flights, Go_on_when_the_simulator_comes_back_at_the_same_moment) {
    Fly_Unbroken();
    constexpr int in_cruise_s = 300;
    Start_Simulator();
    Child_Process process(Command(fly));
    ASSERT_TRUE(process.Read_Until(Took_Off)) << process.Errors();
    Kill_Simulator();
    const bool told = [&] {
        for (int i = 0; i < 200 && process.Errors().find("Interrupted") == std::string::npos; ++i)
            process.Read_Until([](const std::string&) { return false; }, milliseconds(50));
        return process.Errors().find(
                   "Norvane Interrupted: The connection to Flight Simulator has been interrupted.  "
                   "Norvane has entered pause mode.  Please click 'Resume' to continue when you "
                   "verify that Flight Simulator is running.") != std::string::npos;
    }();
    EXPECT_TRUE(told) << process.Errors();
    Start_Simulator(in_cruise_s);
    ASSERT_EQ(process.Wait(), 0) << process.Errors();
    EXPECT_NE(process.Errors().find("The flight goes on."), std::string::npos);
    Expect_Same_Row();
}

TEST_F(Cli_Flights, Are_given_up_in_time_and_resumed_later) {
    Fly_Unbroken();
    Start_Simulator();
    Child_Process process(Command({"fly", "--time-scale", "1000", "--give-up", "10"}));
    ASSERT_TRUE(process.Read_Until(Took_Off)) << process.Errors();
    Kill_Simulator();
    EXPECT_EQ(process.Wait(), 3);
    EXPECT_TRUE(Rows().empty());
    Start_Simulator(300);
    EXPECT_EQ(Fly().status, 0);
    Expect_Same_Row();
}

TEST_F(Cli_Flights, Ended_by_a_signal_are_stored_and_resumed_or_dropped) {
    Fly_Unbroken();
    Start_Simulator();
    for (const bool dropped : {false, true}) {
        Child_Process process(Command(fly));
        ASSERT_TRUE(process.Read_Until(Took_Off)) << process.Errors();
        Await_Stored_Take_Off();
        process.Send(SIGTERM);
        EXPECT_EQ(process.Wait(), 1);
        EXPECT_TRUE(Rows().empty());
        if (!dropped) {
            EXPECT_EQ(Fly().status, 0);
            Expect_Same_Row();
        } else {
            Kill_Simulator();
            Start_Simulator();
            EXPECT_EQ(Run({"fly", "--new", "--time-scale", "1000"}).status, 0);
            Expect_Same_Row();
            EXPECT_TRUE(std::filesystem::exists(home / "logs" / "My Flight Log.unsaved"));
        }
        Kill_Simulator();
        Start_Anew();
        Start_Simulator();
    }
}

TEST_F(Cli_Flights, Ended_by_a_signal_at_the_gate_tell_where_the_row_is) {
    ::setenv("no_proxy", "*", 1);
    Raw_Server weather(Hang);
    Start_Simulator();
    for (const bool auto_log : {false, true}) {
        ASSERT_EQ(Run({"settings", "set", "WX_URL", "NOAA"}).status, 0);
        ASSERT_EQ(Run({"settings", "set", "OPT_AutoLog", auto_log ? "True" : "False"}).status, 0);
        Write_File(home / "bin/url.cfg",
                   "[NOAA]\r\nURL=" + weather.Host() + "\r\nMETAR=/metar\r\n");
        const auto plan = std::filesystem::path(NORVANE_SOURCE_DIR) / "tests/data/plans";
        Child_Process process(
            Command({"fly", "--time-scale", "1000", "--plan", (plan / "kjfk-kbos.pln").string()}));
        // At the gate the flight waits for the weather.
        Await_Stored("49");
        process.Send(SIGTERM);
        EXPECT_EQ(process.Wait(), 1);
        const auto kept = home / "logs" / "My Flight Log.unsaved";
        EXPECT_THAT(
            process.Errors(),
            HasSubstr(auto_log ? "Ended by a signal; the flight is in the log."
                               : "the row of the finished flight is kept in " + kept.string()));
        EXPECT_EQ(Rows().size(), auto_log ? 1U : 0U);
        EXPECT_EQ(std::filesystem::exists(kept), !auto_log);
        Kill_Simulator();
        Start_Anew();
        Start_Simulator();
    }
}

TEST_F(Cli_Flights, Are_logged_once_with_auto_log_too_and_leave_a_pirep) {
    for (const auto* name : {"OPT_AutoLog", "OPT_PIREP", "OPT_ACARS_To_FS"})
        ASSERT_EQ(Run({"settings", "set", name, "True"}).status, 0);
    Start_Simulator();
    const auto result =
        Run({"fly", "--time-scale", "1000", "--flight-number", "NV 7", "--aircraft", "B738"});
    ASSERT_EQ(result.status, 0) << result.errors;
    for (const auto* shown : {"Message: IN ", "Message: BLOCK TIME "})
        EXPECT_TRUE(Simulator_Shows(shown)) << "before the program ends: " << shown;
    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0][1], "B738");
    EXPECT_EQ(rows[0][20], "NV 7");
    const auto mark = result.output.find("PIREP: ");
    ASSERT_NE(mark, std::string::npos);
    const std::string path(Before(result.output.substr(mark + 7), "\n"));
    const std::string line = Read_File(path);
    EXPECT_EQ(Split(line, '|').size(), 52U);
    EXPECT_NE(line.find("|" + rows[0][5] + "|"), std::string::npos);
}

TEST_F(Cli_Flights, Take_a_plan_when_they_begin_and_never_when_resumed) {
    const auto plans = std::filesystem::path(NORVANE_SOURCE_DIR) / "tests/data/plans";
    const auto planned = [&](const std::string& plan) {
        return std::vector<std::string>{"fly", "--time-scale", "1000", "--plan",
                                        (plans / plan).string()};
    };
    EXPECT_EQ(Run(planned("missing.pln")).status, 2);
    Start_Simulator();
    Child_Process process(Command(planned("lfpg-eidw.pln")));
    ASSERT_TRUE(process.Read_Until(Took_Off)) << process.Errors();
    Await_Stored_Take_Off();
    process.Send(SIGTERM);
    EXPECT_EQ(process.Wait(), 1);
    const auto resumed = Run(planned("kjfk-kbos.pln"));
    ASSERT_EQ(resumed.status, 0) << resumed.errors;
    EXPECT_NE(resumed.errors.find("The flight plan is not read"), std::string::npos);
    const auto row = Join(Rows().at(0), "|");
    EXPECT_NE(row.find("|LFPG.ABB.UT225.MID.UN615.STU.EIDW|"), std::string::npos) << row;
    EXPECT_NE(row.find("|LFPG|"), std::string::npos) << row;
}

}  // namespace
}  // namespace norvane::test
