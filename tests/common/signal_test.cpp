// What listeners may do while a signal calls them: the panels' rules lean on each of these.

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "common/signal.h"

namespace norvane {
namespace {

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

TEST(Signal, A_listener_that_fails_ends_that_emission_alone) {
    Signal<> heard;
    int calls = 0;
    heard.Connect([&] {
        if (++calls == 1)
            throw std::runtime_error("first");
    });
    EXPECT_THROW(heard.Emit(), std::runtime_error);
    heard.Emit();
    EXPECT_EQ(calls, 2);
}

}  // namespace
}  // namespace norvane
