// What is put into the outbox, servers that do with it whatever servers do, and programs that end
// at any moment.

#include "deliveries/outbox.h"

#include <gmock/gmock.h>
#include <sqlite3.h>

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <thread>

#include "deliveries/delivery_rules.h"
#include "servers/test_servers.h"
#include "support/test_world.h"

namespace norvane::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Outbox_World : public Test_World {
  protected:
    Outbox_World() {
        ::setenv("no_proxy", "*", 1);
        const auto serve = [this](const httplib::Request& in, httplib::Response& out) {
            const std::lock_guard guard(m_lock);
            m_came.push_back(in.method + " " + in.body);
            out.status = status;
            if (!retry_after.empty())
                out.set_header("Retry-After", retry_after);
            out.set_content("<p>so</p>", "text/html");
        };
        server->Post(".*", serve);
        server->Put(".*", serve);
        server.Start();
        http.all_within = milliseconds(400);
        Start();
    }
    /// As a program does that starts anew.
    void Start() {
        outbox.reset();
        outbox.emplace(services, http, [] { return 0.0; });
        outbox->Begin();
    }
    Airline_Delivery To(const std::string& host, const std::string& body,
                        const std::string& flight = "1") {
        Airline_Delivery delivery;
        delivery.airline = "X";
        delivery.flight = flight;
        delivery.address = "http://" + host + "/in";
        delivery.body = body;
        return delivery;
    }
    std::int64_t Put(const std::string& host, const std::string& body,
                     const std::string& flight = "1") {
        return outbox->Put(To(host, body, flight));
    }
    /// Until nothing moves any more.
    void Settle() {
        for (int turn = 0; turn < 3000 && outbox->Is_Active(); ++turn) {
            desktop.Run_For(milliseconds(10));
            std::this_thread::sleep_for(milliseconds(1));
        }
        desktop.Run_For(milliseconds(20));
    }
    void Pass(seconds span) {
        desktop.Run_For(span);
        Settle();
    }
    std::vector<std::string> Came() {
        const std::lock_guard guard(m_lock);
        return std::exchange(m_came, {});
    }
    std::string State(std::int64_t id) { return std::string(Name_Of(outbox->Find(id)->state)); }

    std::atomic<int> status = 200;
    std::string retry_after;
    Http_Options http;
    std::optional<Outbox> outbox;

  private:
    std::mutex m_lock;
    std::vector<std::string> m_came;

  protected:
    Web_Server server;
};

TEST_F(Outbox_World, A_flights_deliveries_leave_in_order_and_what_was_taken_is_kept_for_a_month) {
    Airline_Delivery put = To(server.Host(), "two");
    put.method = "PUT";
    put.headers = {"Content-Type: application/json"};
    const auto first = Put(server.Host(), "one");
    const auto second = outbox->Put(put);
    EXPECT_EQ(State(first), "waiting") << "stored before it leaves";
    EXPECT_EQ(outbox->Waiting(), 2U);
    Settle();
    EXPECT_THAT(Came(), ElementsAre("POST one", "PUT two"));
    EXPECT_EQ(outbox->Waiting(), 0U);
    EXPECT_EQ(outbox->Find(second)->answer, "<p>so</p>");
    EXPECT_EQ(Outcome_Words(*outbox->Find(second)), "status 200: so");
    EXPECT_TRUE(desktop.boxes.empty());
    clock.start.date.month = 4;
    clock.start.date.day = 12;
    Start();
    EXPECT_EQ(State(first), "delivered");
    clock.start.date.day = 14;
    Start();
    EXPECT_FALSE(outbox->Find(first));
    EXPECT_THAT(Came(), IsEmpty());
}

TEST_F(Outbox_World, Each_answer_and_each_silence_has_its_meaning) {
    struct Case {
        int status;
        std::string retry_after;
        std::string state;
    };
    std::int64_t id = 0;
    for (const Case& each : std::vector<Case>{{204, "", "delivered"},
                                              {404, "", "refused"},
                                              {500, "", "refused"},
                                              {503, "", "refused"},
                                              {303, "", "uncertain"},
                                              {408, "", "waiting"},
                                              {425, "", "waiting"},
                                              {429, "", "waiting"},
                                              {503, "Sun, 15 Mar 2026 15:09:26 GMT", "waiting"}}) {
        status = each.status;
        retry_after = each.retry_after;
        id = Put(server.Host(), "x", std::to_string(each.status) + each.retry_after);
        Settle();
        EXPECT_EQ(State(id), each.state) << each.status << each.retry_after;
    }
    EXPECT_EQ(outbox->Find(id)->next_s - outbox->Find(id)->changed_s, 24 * 3600);
    Raw_Server silent(Hang);
    Raw_Server resetting(Reset);
    Raw_Server cut(
        [](int socket) { Send(socket, "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nok"); });
    for (const auto& [host, state] :
         std::vector<std::pair<std::string, std::string>>{{silent.Host(), "uncertain"},
                                                          {resetting.Host(), "uncertain"},
                                                          {cut.Host(), "uncertain"},
                                                          {"127.0.0.1:1", "waiting"},
                                                          {"no-such-host.invalid", "waiting"}}) {
        id = Put(host, "x", host);
        Airline_Delivery again = To(host, "x", host + "again");
        again.is_idempotent = true;
        const auto repeatable = outbox->Put(again);
        Settle();
        EXPECT_EQ(State(id), state) << host;
        EXPECT_EQ(State(repeatable), "waiting") << host;
    }
    Take_Errors();
    desktop.boxes.clear();
}

TEST_F(Outbox_World, What_waits_is_tried_with_growing_pauses_and_said_once) {
    const auto id = Put("127.0.0.1:1", "x");
    Settle();
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("is waiting: no answer: InternetConnect")));
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_THAT(desktop.boxes[0].text,
                HasSubstr("PIREP for the airline X at 127.0.0.1:1 could not"));
    EXPECT_FALSE(desktop.boxes[0].topic.empty());
    for (const auto& [before, attempts] : std::vector<std::pair<int, int>>{
             {8, 1}, {3, 2}, {18, 2}, {4, 3}, {1700, 8}, {1700, 9}, {1700, 10}}) {
        Pass(seconds(before));
        EXPECT_EQ(outbox->Find(id)->attempts, attempts);
    }
    EXPECT_EQ(Pause_After(100, 1), minutes(30));
    EXPECT_EQ(Pause_After(1, 1), seconds(15));
    EXPECT_EQ(desktop.boxes.size(), 1U);
    Start();
    Settle();
    EXPECT_EQ(outbox->Find(id)->attempts, 11) << "at every start";
}

TEST_F(Outbox_World,
       A_server_that_answers_again_is_asked_for_the_rest_unless_it_asked_for_a_pause) {
    status = 429;
    Put(server.Host(), "a1", "a");
    Put(server.Host(), "a2", "a");
    Settle();
    retry_after = "100";
    Put(server.Host(), "b", "b");
    Settle();
    status = 200;
    Came();
    outbox->Put(To(server.Host(), "c", "c"));
    Settle();
    EXPECT_THAT(Came(), testing::UnorderedElementsAre("POST c", "POST a1", "POST a2"));
    outbox->Send_All();
    Start();
    Settle();
    EXPECT_THAT(Came(), IsEmpty()) << "it asked for a pause, whoever starts";
    Pass(seconds(101));
    EXPECT_THAT(Came(), ElementsAre("POST b"));
    Take_Errors();
}

TEST_F(Outbox_World, A_server_that_hangs_holds_up_its_own_flight_alone) {
    Raw_Server hanging(Hang);
    Put(hanging.Host(), "hangs", "1");
    Put(server.Host(), "behind", "1");
    Put(server.Host(), "beside", "2");
    for (int turn = 0; turn < 40; ++turn) {
        desktop.Run_For(milliseconds(10));
        std::this_thread::sleep_for(milliseconds(1));
    }
    EXPECT_THAT(Came(), ElementsAre("POST beside"));
    Settle();
    EXPECT_THAT(Came(), ElementsAre("POST behind"));
    Take_Errors();
}

TEST_F(Outbox_World, A_program_that_is_ended_sends_nothing_twice) {
    Raw_Server hanging(Hang);
    const auto doubtful = Put(hanging.Host(), "x", "1");
    Airline_Delivery again = To(hanging.Host(), "y", "2");
    again.is_idempotent = true;
    const auto repeatable = outbox->Put(again);
    // Killed while both were sent: nothing but the file tells.
    {
        Delivery_Store file(directory, Delivery_Store::Use::look);
        EXPECT_EQ(file.List().size(), 2U);
    }
    outbox.reset();
    {
        Delivery_Store file(directory, Delivery_Store::Use::write);
        for (Airline_Delivery& each : file.List()) {
            each.state = Delivery_State::sending;
            file.Update(each);
        }
    }
    Start();
    EXPECT_EQ(State(doubtful), "uncertain");
    EXPECT_EQ(State(repeatable), "waiting");
    Settle();
    EXPECT_EQ(desktop.boxes.size(), 2U);
    EXPECT_EQ(outbox->Find(doubtful)->attempts, 0);
    // Closed in the middle, and told so at once.
    const auto closed = Put(hanging.Host(), "z", "3");
    for (int turn = 0; turn < 20; ++turn) {
        desktop.Run_For(milliseconds(10));
        std::this_thread::sleep_for(milliseconds(2));
    }
    const auto behind = Put(server.Host(), "behind", "3");
    outbox->Close();
    EXPECT_EQ(State(closed), "uncertain");
    EXPECT_EQ(State(behind), "waiting");
    Start();
    Settle();
    EXPECT_THAT(Came(), ElementsAre("POST behind"));
    Take_Errors();
}

TEST_F(Outbox_World, The_pilot_sends_gives_up_and_is_refused_what_is_over) {
    status = 404;
    const auto refused = Put(server.Host(), "x");
    Settle();
    status = 200;
    EXPECT_TRUE(outbox->Send_Now(refused));
    Settle();
    EXPECT_EQ(State(refused), "delivered");
    EXPECT_FALSE(outbox->Send_Now(refused) || outbox->Give_Up(refused));
    const auto waiting = Put("127.0.0.1:1", "x");
    const auto behind = Put(server.Host(), "behind");
    Settle();
    EXPECT_EQ(State(behind), "waiting");
    EXPECT_TRUE(outbox->Send_Now(behind));
    Settle();
    EXPECT_EQ(State(behind), "delivered");
    EXPECT_TRUE(outbox->Give_Up(waiting));
    EXPECT_THAT(desktop.withdrawn, testing::Contains("delivery " + std::to_string(waiting)));
    EXPECT_EQ(outbox->Waiting(), 0U);
    EXPECT_FALSE(outbox->Send_Now(waiting) || outbox->Send_Now(99));
    Take_Errors();
}

TEST_F(Outbox_World, Two_programs_of_one_directory_do_not_both_send) {
    const auto id = Put(server.Host(), "x");
    Outbox second(services, http, [] { return 0.0; });
    second.Begin();
    EXPECT_EQ(second.Waiting(), 0U);
    second.Put(To(server.Host(), "y"));
    EXPECT_FALSE(second.Is_Active());
    Settle();
    EXPECT_EQ(State(id), "delivered");
    EXPECT_THAT(Came(), ElementsAre("POST x"));
}

TEST_F(Outbox_World, A_broken_file_is_kept_and_a_full_disk_sends_nothing) {
    Write("deliveries.sqlite", "no database at all, but long enough to be looked at as one");
    Start();
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("deliveries.sqlite.broken")));
    EXPECT_TRUE(std::filesystem::exists(directory / "deliveries.sqlite.broken"));
    const auto id = Put(server.Host(), "x");
    {
        Sqlite_Database other(directory / "deliveries.sqlite", SQLITE_OPEN_READWRITE);
        other.Execute(
            "CREATE TRIGGER full BEFORE UPDATE ON deliveries BEGIN "
            "SELECT RAISE(FAIL, 'full'); END");
        Settle();
        EXPECT_THAT(Came(), IsEmpty()) << "what cannot be noted is not begun";
        EXPECT_EQ(outbox->Waiting(), 1U);
        other.Execute("DROP TRIGGER full");
    }
    Pass(seconds(11));
    EXPECT_EQ(State(id), "delivered");
    Take_Errors();
}

}  // namespace
}  // namespace norvane::test
