// Flights of norvane-cli beside a simulator that are broken off: by SIGKILL, by SIGTERM, by the
// simulator's end.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <csignal>
#include <thread>

#include "cli/cli_world.h"
#include "config/sqlite_store.h"
#include "logentry/cls_log_entry.h"
#include "servers/test_servers.h"

namespace norvane::test {
namespace {

constexpr std::size_t flight_level_column = 23;
constexpr int in_cruise_s = 300;

bool Took_Off(const std::string& output) {
    return output.find("Msg Label: QB ") != std::string::npos;
}

class Cli_Flights : public Cli_World {
  protected:
    /// Keeps the row of an unbroken flight.
    void Fly_Unbroken() {
        Start_Simulator();
        const auto flown = Fly();
        ASSERT_EQ(flown.status, 0) << flown.errors;
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
        rows[0][flight_level_column] = unbroken[flight_level_column];
        EXPECT_EQ(rows[0], unbroken);
    }

    /// Waits until the flight's store has this value.
    void Await_Stored(std::string_view key) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        Sqlite_Store store(home / "settings.sqlite");
        while (store.Get(flight_section, key).empty() && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(milliseconds(1));
        EXPECT_NE(store.Get(flight_section, key), "") << key << " was never stored";
    }
    /// Flies until the step that took off stands in the store, and then not on.
    void Fly_Into_The_Air(const std::vector<std::string>& command) {
        Child_Process process(Command(command));
        ASSERT_TRUE(process.Read_Until(Took_Off)) << process.Errors();
        Await_Stored("47");
        process.Send(SIGTERM);
        EXPECT_EQ(process.Wait(), 1);
        EXPECT_TRUE(Rows().empty());
    }

    std::vector<std::string> unbroken;
};

TEST_F(Cli_Flights, Killed_while_they_are_logged_are_logged_by_the_next_start_without_a_simulator) {
    Fly_Unbroken();
    // Saving waits for ever: nobody reads what it writes first.
    const auto draft = home / "templog.txt";
    const auto pipe = directory / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    fs::create_symlink(pipe, draft);
    Start_Simulator();
    Child_Process first(Command(fly));
    Await_Stored("Logging");
    first.Send(SIGKILL);
    ASSERT_EQ(first.Wait(), 128 + SIGKILL);
    Kill_Simulator();
    // A log that still cannot be written: the row is on the screen at least.
    fs::remove(draft);
    fs::create_directories(draft / "in the way");
    const auto second = Fly();
    EXPECT_EQ(second.status, 1);
    EXPECT_THAT(second.output, HasSubstr(Join(unbroken, "|")));
    fs::remove_all(draft);
    const auto third = Fly();
    EXPECT_EQ(third.status, 0) << third.errors;
    EXPECT_THAT(third.errors, HasSubstr("A finished flight was not logged: KJFK to "));
    EXPECT_EQ(Rows(), (std::vector<std::vector<std::string>>{unbroken}));
    EXPECT_EQ(Fly().status, 3) << "the next flight needs the simulator";
}

TEST_F(Cli_Flights, Go_on_when_the_simulator_comes_back_at_the_same_moment) {
    Fly_Unbroken();
    Start_Simulator();
    Child_Process process(Command(fly));
    ASSERT_TRUE(process.Read_Until(Took_Off)) << process.Errors();
    Kill_Simulator();
    for (int i = 0; i < 200 && process.Errors().find("Interrupted") == std::string::npos; ++i)
        process.Read_Until([](const std::string&) { return false; }, milliseconds(50));
    EXPECT_THAT(process.Errors(), HasSubstr("Norvane has entered pause mode."));
    Start_Simulator(in_cruise_s);
    ASSERT_EQ(process.Wait(), 0) << process.Errors();
    EXPECT_THAT(process.Errors(), HasSubstr("The flight goes on."));
    Expect_Same_Row();
}

TEST_F(Cli_Flights, Are_given_up_in_time_or_ended_by_a_signal_and_resumed_or_dropped) {
    Fly_Unbroken();
    Start_Simulator();
    Child_Process process(Command({"fly", "--time-scale", "1000", "--give-up", "10"}));
    ASSERT_TRUE(process.Read_Until(Took_Off)) << process.Errors();
    Kill_Simulator();
    EXPECT_EQ(process.Wait(), 3);
    EXPECT_TRUE(Rows().empty());
    Start_Simulator(in_cruise_s);
    EXPECT_EQ(Fly().status, 0);
    Expect_Same_Row();
    for (const bool dropped : {false, true}) {
        Start_Anew();
        Start_Simulator();
        Fly_Into_The_Air(fly);
        if (dropped)
            Start_Simulator();
        EXPECT_EQ(dropped ? Status("fly --new --time-scale 1000") : Fly().status, 0);
        Expect_Same_Row();
        EXPECT_EQ(fs::exists(home / "logs" / "My Flight Log.unsaved"), dropped);
    }
}

TEST_F(Cli_Flights, Ended_by_a_signal_at_the_gate_tell_where_the_row_is) {
    ::setenv("no_proxy", "*", 1);
    Raw_Server weather(Hang);
    Start_Simulator();
    ASSERT_EQ(Status("settings set WX_URL NOAA"), 0);
    Write_File(home / "bin/url.cfg", "[NOAA]\r\nURL=" + weather.Host() + "\r\nMETAR=/metar\r\n");
    Child_Process process(Command({"fly", "--time-scale", "1000", "--plan",
                                   NORVANE_SOURCE_DIR "/tests/data/plans/kjfk-kbos.pln"}));
    // At the gate the flight waits for the weather.
    Await_Stored("49");
    process.Send(SIGTERM);
    EXPECT_EQ(process.Wait(), 1);
    const auto kept = home / "logs" / "My Flight Log.unsaved";
    EXPECT_THAT(process.Errors(),
                HasSubstr("the row of the finished flight is kept in " + kept.string()));
    EXPECT_TRUE(Rows().empty() && fs::exists(kept));
}

TEST_F(Cli_Flights, Take_what_they_are_given_when_they_begin_and_leave_a_pirep) {
    for (const std::string name : {"OPT_AutoLog", "OPT_PIREP", "OPT_ACARS_To_FS"})
        ASSERT_EQ(Status("settings set " + name + " True"), 0);
    const auto planned = [&](const std::string& plan) {
        return Split(
            "fly --time-scale 1000 --flight-number NV7 --aircraft B738 --plan " NORVANE_SOURCE_DIR
            "/tests/data/plans/" +
                plan,
            ' ');
    };
    Start_Simulator();
    Fly_Into_The_Air(planned("lfpg-eidw.pln"));
    const auto resumed = Run(planned("kjfk-kbos.pln"));
    ASSERT_EQ(resumed.status, 0) << resumed.errors;
    EXPECT_THAT(resumed.errors, HasSubstr("The flight plan is not read"));
    EXPECT_TRUE(simulator->Read_Until([](const std::string& output) {
        return output.find("Message: BLOCK TIME ") != std::string::npos;
    })) << "before the program ends";
    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0][1] + rows[0][20] + rows[0][3] + rows[0][24],
              "B738NV7LFPGLFPG.ABB.UT225.MID.UN615.STU.EIDW");
    const std::string path(Before(Split(resumed.output, std::string_view("PIREP: ")).at(1), "\n"));
    EXPECT_THAT(Read_File(path), HasSubstr("|" + rows[0][5] + "|"));
}

}  // namespace
}  // namespace norvane::test
