// The one HTTP client against servers that behave, redirect and misbehave.

#include "net/http_client.h"

#include <curl/curl.h>
#include <gmock/gmock.h>

#include <cerrno>
#include <cstdlib>

#include "common/run_error.h"
#include "common/text.h"
#include "net/http_ending.h"
#include "net/http_failure.h"
#include "servers/test_servers.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using test::Raw_Server;
using test::Web_Server;
using testing::UnorderedElementsAre;

constexpr auto post = Http_Verb::post;

/// Counts how often events were let through.
class Watched_Desktop : public test::Scripted_Desktop {
  public:
    using Scripted_Desktop::Scripted_Desktop;
    void Process_Events() override {
        ++rounds;
        if (on_events)
            std::exchange(on_events, nullptr)();
    }
    int rounds = 0;
    std::function<void()> on_events;
};

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
    Http() { ::setenv("no_proxy", "*", 1); }

    std::string Ask(const std::string& host, const std::string& path = "/",
                    Http_Verb verb = Http_Verb::get) {
        return Http_Client(watched, options).Request({verb, host, path, "a=1&"});
    }
    std::string Result(const std::string& host, const std::string& path = "/",
                       Http_Verb verb = Http_Verb::get) {
        return Outcome([&] { return Ask(host, path, verb); });
    }

    Watched_Desktop watched{clock};
    Http_Options options;
};

TEST_F(Http, Requests_Carry_What_Is_Listed_And_Nothing_Else) {
    Raw_Server server([](int socket) {
        test::Send(socket, "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n\0 <\n "s);
    });
    const auto lines = [&] {
        auto all = Split(server.Request(), cr_lf);
        return std::vector<std::string>(all.begin(), all.end());
    };
    EXPECT_EQ(Ask(server.Host(), "metar?ids=A b#x"), "\0 <\n "s);
    EXPECT_EQ(lines().front(), "GET /metar?ids=A+b HTTP/1.1");
    EXPECT_THAT(lines(), UnorderedElementsAre(lines().front(), "Host: " + server.Host(),
                                              "User-Agent: test_net", "Pragma: no-cache", "", ""));
    EXPECT_EQ(Ask(" HTTP://" + server.Host() + "/va/ ", "in.php", post), "\0 <\n "s);
    EXPECT_THAT(lines(), UnorderedElementsAre("POST /va/in.php HTTP/1.1", "Host: " + server.Host(),
                                              "User-Agent: test_net", "Pragma: no-cache",
                                              "Content-Type: application/x-www-form-urlencoded",
                                              "Content-Length: 4", "", "a=1&"));
    EXPECT_EQ(Ask("", "http://" + server.Host() + "/whole"), "\0 <\n "s);
    EXPECT_EQ(lines().front(), "GET /whole HTTP/1.1");
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
    EXPECT_EQ(watched.rounds, 0);
    EXPECT_EQ(missing_url.number, static_cast<int>(0x800401FCU));
    EXPECT_EQ(http_send_request.number, static_cast<int>(0x800401F8U));
}

TEST(Http_Redirect, A_Post_Survives_Only_Where_It_Is_Meant_To) {
    struct Case {
        long status;
        std::string from;
        std::string to;
        char kept;  // P: still a POST, -: refused, .: no redirect
    };
    for (const Case& each :
         std::vector<Case>{{301, "http://va.org/in?a=1", "https://va.org/in?a=1", 'P'},
                           {302, "http://va.org/in", "https://WWW.va.org:443/in", 'P'},
                           {302, "https://www.va.org/in", "https://va.org/in", 'P'},
                           {301, "http://va.org/in", "http://va.org/in/", '-'},
                           {302, "http://va.org/in", "http://va.org/in?b", '-'},
                           {302, "http://va.org/in", "http://va.org:81/in", '-'},
                           {302, "http://va.org/in", "http://m.va.org/in", '-'},
                           {303, "http://va.org/in", "https://va.org/in", '-'},
                           {307, "http://va.org/in", "http://other.org/b", 'P'},
                           {308, "https://va.org/in", "https://other.org/b", 'P'},
                           {308, "https://va.org/in", "http://va.org/in", '-'},
                           {303, "https://va.org/in", "http://va.org/in", '-'},
                           {302, "http://va.org/in", "ftp://va.org/in", '-'},
                           {307, "http://va.org/in", "file:///etc/passwd", '-'},
                           {300, "http://va.org/in", "http://va.org/b", '.'},
                           {304, "http://va.org/in", "http://va.org/b", '.'},
                           {302, "http://va.org/in", "", '.'}}) {
        char kept = '-';
        try {
            const auto next = Next_Hop({post, each.from}, each.status, each.to);
            kept = !next ? '.' : 'P';
            EXPECT_TRUE(!next || next->verb == post);
        } catch (const Run_Error& error) {
            EXPECT_EQ(error.Number(), http_send_request.number);
        }
        EXPECT_EQ(kept, each.kept) << each.status << ' ' << each.from << ' ' << each.to;
    }
    EXPECT_EQ(Next_Hop({Http_Verb::get, "http://a.org/"}, 307, "http://a.org/b#c")->address,
              "http://a.org/b");
}

TEST_F(Http, Redirects_Are_Followed_Five_Times) {
    Web_Server server;
    const auto echo = [](const httplib::Request& in, httplib::Response& out) {
        out.set_content(in.method + " " + in.body, "text/plain");
    };
    server->Get("/end", echo);
    server->Post("/end", echo);
    server->Post("/302", [](const auto&, auto& out) { out.set_redirect("end", 302); });
    server->Post("/307", [](const auto&, auto& out) { out.set_redirect("end", 307); });
    server->Get(R"(/round/(\d))", [](const httplib::Request& in, httplib::Response& out) {
        const int left = std::stoi(in.matches[1].str());
        out.set_redirect(left == 0 ? "/end" : "/round/" + std::to_string(left - 1));
    });
    server.Start();
    EXPECT_EQ(
        Result(server.Host(), "302", post),
        "HttpSendRequest: status 302 sends the form away to http://" + server.Host() + "/end");
    EXPECT_EQ(Result(server.Host(), "307", post), "answered: POST a=1&");
    EXPECT_EQ(Result(server.Host(), "round/4"), "answered: GET ");
    EXPECT_EQ(Result(server.Host(), "round/5"), "HttpSendRequest");
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
    plain.Start();
    safe.Start();
    EXPECT_EQ(Result(host, "/in", post), "InternetConnect") << "unknown issuer";
    options.trusted_certificates = files.certificate;
    EXPECT_EQ(Result(host, "/in", post), "answered: a=1&");
    EXPECT_EQ(Result(plain.Host(), "/in", post), "answered: a=1&");
    EXPECT_EQ(Result("https://" + safe.Host(), "/in", post), "InternetConnect") << "wrong name";
    EXPECT_EQ(Result(host, "/back"), "HttpSendRequest");
}

TEST(Http_Ending, An_Answer_Of_No_Stated_Length_May_End_Without_A_Sign) {
    constexpr bool body = true;
    constexpr bool length = true;
    EXPECT_TRUE(Is_Answered({CURLE_RECV_ERROR, post, body, !length, 0}));
    EXPECT_FALSE(Is_Answered({CURLE_RECV_ERROR, post, !body, !length, 0}));
    EXPECT_FALSE(Is_Answered({CURLE_RECV_ERROR, post, body, length, 0})) << "cut short";
    EXPECT_FALSE(Is_Answered({CURLE_RECV_ERROR, post, body, !length, EPIPE})) << "reset";
    EXPECT_FALSE(Is_Answered({CURLE_SEND_ERROR, post, body, !length, 0}));
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
    std::string nobody;
    {
        Raw_Server gone([](int) {});
        nobody = gone.Host();
    }
    EXPECT_EQ(Result(nobody), "InternetConnect");
    EXPECT_EQ(Result("no-such-host.invalid"), "InternetConnect");
}

TEST_F(Http, The_Thread_Stays_Free_While_A_Server_Hangs_Or_Floods) {
    Raw_Server hanging(test::Hang);
    options.all_within = 200ms;
    EXPECT_EQ(Result(hanging.Host()), "HttpSendRequest");
    EXPECT_GE(std::exchange(watched.rounds, 0), 10);

    const std::string flood(10'000'000, '\xE9');
    Raw_Server flooding([&](int socket) { test::Send(socket, "HTTP/1.1 200 OK\r\n\r\n" + flood); });
    options = {};
    EXPECT_TRUE(Ask(flooding.Host()) == flood);
    EXPECT_GE(watched.rounds, 4);
    options.most_bytes = 1'000'003;
    EXPECT_TRUE(Ask(flooding.Host()) == flood.substr(0, options.most_bytes));
}

TEST_F(Http, A_Request_Within_Another_Does_Not_Keep_It_From_Moving) {
    // It takes the outer connection first, and no other one until that has its answer.
    Raw_Server server(
        [](int socket) { test::Send(socket, "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok"); });
    options.together = std::make_shared<Http_Transfers>();
    options.all_within = 5s;
    std::string inner;
    watched.on_events = [&] { inner = Result(server.Host(), "/inner"); };
    EXPECT_EQ(Ask(server.Host(), "/outer"), "ok");
    EXPECT_EQ(inner, "answered: ok");
}

TEST_F(Http, A_Busy_Client_Refuses_And_A_Cancelled_One_Ends) {
    Raw_Server hanging(test::Hang);
    Http_Client client(watched, options);
    const auto ask = [&] { return client.Request({Http_Verb::get, hanging.Host(), "/", {}}); };
    watched.on_events = [&] {
        EXPECT_EQ(Outcome(ask), "Another request is still running");
        client.Cancel();
    };
    EXPECT_EQ(Outcome(ask), "HttpSendRequest");
    EXPECT_FALSE(client.Is_Busy());
}

}  // namespace
}  // namespace norvane
