#include "common/controls.h"
#include "common/system_clock.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using std::chrono::milliseconds;

using Timers = test::Test_World;

TEST_F(Timers, A_tick_that_waits_lets_others_run_but_never_itself) {
    Timer slow(desktop.Timers(), milliseconds(100));
    Timer other(desktop.Timers(), milliseconds(30));
    int slow_ticks = 0;
    int other_ticks = 0;
    slow.tick.Connect([&] {
        ++slow_ticks;
        EXPECT_TRUE(desktop.Timers().Is_Ticking());
        desktop.Run_For(milliseconds(1000));
    });
    other.tick.Connect([&] { ++other_ticks; });
    slow.Set_Enabled(true);
    other.Set_Enabled(true);
    desktop.Run_For(milliseconds(100));
    EXPECT_EQ(slow_ticks, 1);
    EXPECT_GE(other_ticks, 30);
}

TEST_F(Timers, A_tick_may_delete_its_own_timer_and_a_failing_one_is_logged_and_stops_nothing) {
    auto carrier = std::make_unique<Timer>(desktop.Timers(), milliseconds(1));
    carrier->tick.Connect([&] { carrier.reset(); });
    carrier->Set_Enabled(true);
    Timer failing(desktop.Timers(), milliseconds(1));
    int ticks = 0;
    failing.tick.Connect([&] {
        ++ticks;
        throw std::runtime_error("tick");
    });
    failing.Set_Enabled(true);
    desktop.Run_For(milliseconds(3));
    EXPECT_EQ(carrier, nullptr);
    EXPECT_EQ(ticks, 3);
    EXPECT_EQ(Take_Errors().size(), 3U);
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Timers, Speed_divides_intervals_and_a_late_timer_does_not_catch_up) {
    Timer_Queue fast(clock, 20);
    Timer timer(fast, milliseconds(500));
    int ticks = 0;
    timer.tick.Connect([&] { ++ticks; });
    timer.Set_Enabled(true);
    clock.Sleep(milliseconds(25));
    fast.Run_Due();
    EXPECT_EQ(ticks, 1);
    clock.Sleep(milliseconds(1000));
    fast.Run_Due();
    EXPECT_EQ(ticks, 2);
    EXPECT_EQ(fast.Next_Due(), clock.Monotonic() + milliseconds(25));
}

TEST_F(Timers, Tick_at_their_interval_until_they_are_disabled_or_nobody_waits) {
    Timer timer(desktop.Timers(), milliseconds(500));
    int ticks = 0;
    timer.tick.Connect([&] { ++ticks; });
    desktop.Run_For(milliseconds(5000));
    EXPECT_EQ(ticks, 0);
    timer.Set_Enabled(true);
    EXPECT_FALSE(desktop.Wait_Until([&] { return ticks == 5; }, milliseconds(2499)));
    EXPECT_TRUE(desktop.Wait_Until([&] { return ticks == 5; }, milliseconds(2499)));
    EXPECT_EQ(clock.Monotonic(), milliseconds(7500));
    timer.Set_Enabled(false);
    desktop.Run_For(milliseconds(5000));
    EXPECT_EQ(ticks, 5);
}

TEST(Controls, The_pilots_hand_reaches_enabled_controls_only) {
    Text_Box box;
    int edits = 0;
    box.edited.Connect([&] { ++edits; });
    box.Enter("A|B\r\nC");
    EXPECT_EQ(box.Text(), "A/B C");
    box.Set_Enabled(false);
    box.Enter("X");
    EXPECT_EQ(box.Text(), "A/B C");
    EXPECT_EQ(edits, 1);
    Link link("On");
    int clicks = 0;
    link.clicked.Connect([&] { ++clicks; });
    link.Click();
    link.Set_Visible(false);
    link.Click();
    EXPECT_EQ(clicks, 1);
}

TEST(Signal, Listeners_come_and_go_while_it_calls_them) {
    Signal<const std::string&> heard;
    std::string calls;
    Connection second;
    heard.Connect([&](const std::string& text) {
        calls += "1" + text;
        second.Disconnect();
        heard.Connect([&](const std::string&) { calls += "new"; });
    });
    second = heard.Connect([&](const std::string&) { calls += "2"; });
    heard.Connect([&](const std::string&) { calls += "3"; });
    EXPECT_TRUE(second.Connected());
    heard.Emit("a");
    EXPECT_EQ(calls, "1a3");
    EXPECT_FALSE(second.Connected());
    heard.Emit("b");
    EXPECT_EQ(calls, "1a31b3new");
}

TEST(Signal, Outlives_neither_its_listeners_connections_nor_a_listener_that_deletes_it) {
    std::string calls;
    auto heard = std::make_unique<Signal<int&>>();
    Connection left;
    {
        Connections of_a_panel;
        of_a_panel.Keep(
            {heard->Connect([&](int& count) { calls += "panel" + std::to_string(count++); }),
             heard->Connect([&](int& count) { calls += "again" + std::to_string(count++); })});
        int count = 7;
        heard->Emit(count);
        EXPECT_EQ(count, 9);
    }
    heard->Connect([&](int&) {
        heard.reset();
        calls += "gone";
    });
    left = heard->Connect([&](int&) { calls += "never"; });
    int count = 0;
    heard->Emit(count);
    EXPECT_EQ(calls, "panel7again8gone");
    EXPECT_FALSE(left.Connected());
    left.Disconnect();
}

/// Each in a process of its own, so that its time zone is nobody else's.
TEST(System_Clock, Describes_zones_with_and_without_daylight_time) {
    const struct {
        const char* name;
        int standard_bias, daylight_bias, daylight_month, standard_month, standard_hour;
    } zones[] = {{"UTC0", 0, 0, 0, 0, 0}, {"NZST-12NZDT,M9.5.0,M4.1.0/3", -720, -60, 9, 4, 3}};
    for (const auto& c : zones) {
        const auto has_zone = [&] {
            ::setenv("TZ", c.name, 1);
            System_Clock system_clock;
            const auto utc = Seconds_Of(*system_clock.Utc_Now()) - std::time(nullptr);
            const Time_Zone zone = system_clock.Zone();
            return std::abs(utc) <= 1 && zone.standard_bias == c.standard_bias &&
                   zone.daylight_bias == c.daylight_bias &&
                   zone.daylight_start.month == c.daylight_month &&
                   zone.standard_start.month == c.standard_month &&
                   zone.standard_start.time == Time_Of_Day{c.standard_hour, 0, 0};
        };
        EXPECT_EXIT(std::_Exit(has_zone() ? 0 : 1), testing::ExitedWithCode(0), "") << c.name;
    }
}

}  // namespace
}  // namespace norvane
