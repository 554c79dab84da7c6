// The one HTTP client against servers that behave, redirect and misbehave.

#include "net/http_client.h"

#include <atomic>
#include <cstdlib>

#include "common/run_error.h"
#include "net/http_failure.h"
#include "servers/test_servers.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using test::Raw_Server;
using test::Web_Server;

constexpr auto post = Http_Verb::post;

/// The answer of a request, or the text of the failure that it ends in.
std::string Outcome(const std::function<std::string()>& request) {
    try {
        return "answered: " + request();
    } catch (const Run_Error& error) {
        return error.Description();
    }
}

class Http : public test::Test_World {
  protected:
    Http() {
        ::setenv("no_proxy", "*", 1);
        m_events.tick.Connect([this] {
            ++rounds;
            if (on_events)
                std::exchange(on_events, nullptr)();
        });
        m_events.Set_Enabled(true);
    }
    std::string Result(const std::string& host, const std::string& path = "/",
                       Http_Verb verb = Http_Verb::get) {
        return Outcome([&] {
            return Http_Client(desktop, options).Request({verb, host, path, "a=1&"});
        });
    }

    Http_Options options;
    /// How often events were let through; and what happens, once, in one of them.
    int rounds = 0;
    std::function<void()> on_events;

  private:
    Timer m_events{desktop.Timers(), 0ms};
};

TEST_F(Http, Requests_Carry_What_Is_Listed_And_Nothing_Else) {
    Raw_Server server([](int socket) {
        test::Send(socket, "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n\0 <\n "s);
    });
    const std::string head =
        " HTTP/1.1\r\nHost: " + server.Host() + "\r\nUser-Agent: test_net\r\nPragma: no-cache\r\n";
    EXPECT_EQ(Result(server.Host(), "metar?ids=A b#x"), "answered: \0 <\n "s);
    EXPECT_EQ(server.Request(), "GET /metar?ids=A+b" + head + "\r\n");
    Result(" HTTP://" + server.Host() + "/va/ ", "in.php", post);
    EXPECT_EQ(server.Request(), "POST /va/in.php" + head +
                                    "Content-Type: application/x-www-form-urlencoded\r\n"
                                    "Content-Length: 4\r\n\r\na=1&");
    Result("", "http://" + server.Host() + "/whole");
    EXPECT_EQ(server.Request(), "GET /whole" + head + "\r\n");
}

TEST_F(Http, Addresses_That_Are_None_Fail_Before_The_Network) {
    for (const auto& [host, path, text] : std::vector<std::array<std::string, 3>>{
             {"", "/x", "Missing URL"},
             {"host", " ", "Missing URL"},
             {"https://", "/x", "Missing URL"},
             {"a host", "/x", "HttpOpenRequest"},
             {"host:port", "/x", "HttpOpenRequest"},
             {"me:secret@host", "/x", "HttpOpenRequest"},
             {"host", "/x\r\nHost: other", "HttpOpenRequest"}}) {
        EXPECT_EQ(Result(host, path), text) << host << path;
    }
    EXPECT_EQ(rounds, 0);
}

TEST(Http_Redirect, A_Post_Survives_Only_Where_It_Is_Meant_To) {
    const std::string here = "http://va.org/in";
    const std::string safe = "https://va.org/in";
    const auto next = [](long status, const std::string& from, const std::string& to) {
        const auto hop = Next_Hop({post, from}, status, to);
        EXPECT_TRUE(!hop || hop->verb == post);
        return hop ? hop->address : "no redirect";
    };
    const std::string whole = "https://WWW.va.org:443/in";
    EXPECT_EQ(next(301, here + "?a=1", safe + "?a=1"), safe + "?a=1");
    EXPECT_EQ(next(302, here, whole), whole);
    EXPECT_EQ(next(302, "https://www.va.org/in", safe + "#c"), safe);
    EXPECT_EQ(next(307, here, "http://other.org/b"), "http://other.org/b");
    EXPECT_EQ(next(308, safe, "https://other.org/b"), "https://other.org/b");
    for (const long status : {300, 304})
        EXPECT_EQ(next(status, here, safe), "no redirect");
    EXPECT_EQ(next(302, here, ""), "no redirect");
    const auto refused = [&](long status, const std::string& from, const std::string& to) {
        return Outcome([&] { return next(status, from, to); }).starts_with("HttpSendRequest");
    };
    for (const char* to : {"http://va.org/in/", "http://va.org/in?b", "http://va.org:81/in",
                           "http://m.va.org/in", "ftp://va.org/in"})
        EXPECT_TRUE(refused(302, here, to)) << to;
    EXPECT_TRUE(refused(303, here, safe));
    EXPECT_TRUE(refused(308, safe, here));
    EXPECT_TRUE(refused(307, here, "file:///etc/passwd"));
}

TEST_F(Http, Certificates_Are_Verified_And_Never_Left_For_Plain_Text) {
    const test::Test_Certificate files(directory);
    Web_Server plain;
    Web_Server safe(
        std::make_unique<httplib::SSLServer>(files.certificate.c_str(), files.key.c_str()));
    const std::string host = "https://" + safe.Host("localhost");
    safe->Post("/in", [](const auto& in, auto& out) { out.set_content(in.body, "text/plain"); });
    safe->Get("/back", [&](const auto&, auto& out) {
        out.set_redirect("http://" + plain.Host() + "/secret");
    });
    plain->Post("/in", [&](const auto&, auto& out) { out.set_redirect(host + "/in", 308); });
    std::atomic<int> rounds_asked = 0;
    plain->Get("/round", [&](const auto&, auto& out) {
        ++rounds_asked;
        out.set_redirect("/round");
    });
    plain.Start();
    safe.Start();
    EXPECT_EQ(Result(host, "/in", post), "InternetConnect") << "unknown issuer";
    options.trusted_certificates = files.certificate;
    EXPECT_EQ(Result(host, "/in", post), "answered: a=1&");
    EXPECT_EQ(Result(plain.Host(), "/in", post), "answered: a=1&");
    EXPECT_EQ(Result("https://" + safe.Host(), "/in", post), "InternetConnect") << "wrong name";
    EXPECT_EQ(Result(host, "/back"), "HttpSendRequest");
    EXPECT_EQ(Result(plain.Host(), "/round"), "HttpSendRequest");
    EXPECT_EQ(rounds_asked, 6) << "five redirects";
}

TEST_F(Http, What_Came_After_The_Status_Line_Is_The_Answer_Unless_It_Broke_Off) {
    options.all_within = 300ms;
    const auto closed = [](int) {};
    const std::string broken = "HttpSendRequest: the answer broke off";
    const std::string okay = "HTTP/1.1 200 OK\r\n";
    const std::string promised = okay + "Content-Length: 99\r\n\r\n";
    const std::string pieces = okay + "Transfer-Encoding: chunked\r\n\r\n4\r\npart\r\nzz\r\n";
    struct Case {
        std::string sent;
        void (*then)(int);
        std::string result;
        std::string of_post = result;
    };
    for (const Case& each : std::vector<Case>{
             {"", test::Hang, "HttpSendRequest"},
             {"", test::Reset, "HttpSendRequest"},
             {"garbage\r\n\r\n", test::Hang, "HttpSendRequest"},
             {"HTTP/1.1 100 Continue\r\n\r\n", test::Hang, "HttpSendRequest"},
             {promised + "half", test::Hang, "answered: half"},
             {promised + "half", closed, "answered: half"},
             {promised, closed, "answered: ", broken},
             {promised, test::Hang, "answered: "},
             {promised + "half", test::Reset, broken},
             {okay, test::Reset, broken},
             {okay + "\r\nhalf", test::Reset, broken},
             {okay + "X: ", test::Hang, "answered: "},
             {pieces, test::Hang, broken},
             {"HTTP/1.1 500 Broken\r\nContent-Length: 4\r\n\r\npage", closed, "answered: page"}}) {
        Raw_Server server([&](int socket) {
            test::Send(socket, each.sent);
            each.then(socket);
        });
        EXPECT_EQ(Result(server.Host()), each.result) << each.sent;
        EXPECT_EQ(Result(server.Host(), "/", post), each.of_post) << each.sent;
    }
    EXPECT_EQ(Result("127.0.0.1:1"), "InternetConnect");
    EXPECT_EQ(Result("no-such-host.invalid"), "InternetConnect");
}

TEST_F(Http, The_Thread_Stays_Free_While_A_Server_Hangs_Or_Floods) {
    Raw_Server hanging(test::Hang);
    options.all_within = 200ms;
    EXPECT_EQ(Result(hanging.Host()), "HttpSendRequest");
    EXPECT_GE(rounds, 10);
    EXPECT_LT(std::exchange(rounds, 0), 1000) << "it waits in between";

    std::string flood;
    flood.resize(10'000'000, '\xE9');
    Raw_Server flooding([&](int socket) { test::Send(socket, "HTTP/1.1 200 OK\r\n\r\n" + flood); });
    options = {};
    EXPECT_TRUE(Result(flooding.Host()) == "answered: " + flood);
    EXPECT_GE(rounds, 4);
    options.most_bytes = 1'000'003;
    EXPECT_TRUE(Result(flooding.Host()) == "answered: " + flood.substr(0, options.most_bytes));
}

TEST_F(Http, A_Request_Within_Another_Does_Not_Keep_It_From_Moving) {
    // It takes the outer connection first, and no other one until that has its answer.
    Raw_Server server(
        [](int socket) { test::Send(socket, "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok"); });
    options.together = std::make_shared<Http_Transfers>();
    options.all_within = 5s;
    std::string inner;
    on_events = [&] { inner = Result(server.Host(), "/inner"); };
    EXPECT_EQ(Result(server.Host(), "/outer"), "answered: ok");
    EXPECT_EQ(inner, "answered: ok");
    Http_Client client(desktop, options);
    const auto ask = [&] { return client.Request({Http_Verb::get, server.Host(), "/", {}}); };
    on_events = [&] {
        EXPECT_EQ(Outcome(ask), "Another request is still running");
        client.Cancel();
    };
    EXPECT_EQ(Outcome(ask), "HttpSendRequest");
}

}  // namespace
}  // namespace norvane
