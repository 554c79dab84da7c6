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
    heard.connect([&](const std::string& text) {
        calls += "1" + text;
        second.disconnect();
        heard.connect([&](const std::string&) { calls += "new"; });
    });
    second = heard.connect([&](const std::string&) { calls += "2"; });
    heard.connect([&](const std::string&) { calls += "3"; });
    EXPECT_TRUE(second.connected());
    heard.emit("a");
    EXPECT_EQ(calls, "1a3");
    EXPECT_FALSE(second.connected());
    heard.emit("b");
    EXPECT_EQ(calls, "1a31b3new");
}

TEST(Signal, Outlives_neither_its_listeners_connections_nor_a_listener_that_deletes_it) {
    std::string calls;
    auto heard = std::make_unique<Signal<int&>>();
    Connection left;
    {
        Connections of_a_panel;
        of_a_panel.Keep(
            {heard->connect([&](int& count) { calls += "panel" + std::to_string(count++); }),
             heard->connect([&](int& count) { calls += "again" + std::to_string(count++); })});
        int count = 7;
        heard->emit(count);
        EXPECT_EQ(count, 9);
    }
    heard->connect([&](int&) {
        heard.reset();
        calls += "gone";
    });
    left = heard->connect([&](int&) { calls += "never"; });
    int count = 0;
    heard->emit(count);
    EXPECT_EQ(calls, "panel7again8gone");
    EXPECT_FALSE(left.connected());
    left.disconnect();
}

TEST(Signal, A_listener_that_fails_ends_that_emission_alone) {
    Signal<> heard;
    int calls = 0;
    heard.connect([&] {
        if (++calls == 1)
            throw std::runtime_error("first");
    });
    EXPECT_THROW(heard.emit(), std::runtime_error);
    heard.emit();
    EXPECT_EQ(calls, 2);
}

}  // namespace
}  // namespace norvane
