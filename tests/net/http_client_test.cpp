// The one HTTP client against servers that behave, redirect and misbehave.

#include "net/http_client.h"

#include <gmock/gmock.h>
#include <time.h>

#include <cstdlib>

#include "common/run_error.h"
#include "common/text.h"
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

/// Counts how often events were let through, and what the thread computed in between at most.
class Watched_Desktop : public test::Scripted_Desktop {
  public:
    using Scripted_Desktop::Scripted_Desktop;
    void Process_Events() override {
        const auto now = Computed();
        longest = std::max(longest, now - m_last);
        m_last = now;
        ++rounds;
        if (on_events)
            std::exchange(on_events, nullptr)();
    }
    int rounds = 0;
    std::chrono::nanoseconds longest{0};
    std::function<void()> on_events;

  private:
    static std::chrono::nanoseconds Computed() {
        timespec spent{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent);
        return std::chrono::seconds(spent.tv_sec) + std::chrono::nanoseconds(spent.tv_nsec);
    }
    std::chrono::nanoseconds m_last = Computed();
};

class Http : public test::Test_World {
  protected:
    Http() { ::setenv("no_proxy", "*", 1); }

    std::string Ask(const std::string& host, const std::string& path = "/",
                    Http_Verb verb = Http_Verb::get) {
        return Http_Client(watched, options).Request({verb, host, path, "a=1&"});
    }
    /// The text of the failure that the request ends in.
    std::string Failure(const std::string& host, const std::string& path = "/",
                        Http_Verb verb = Http_Verb::get) {
        try {
            return "answered: " + Ask(host, path, verb);
        } catch (const Run_Error& error) {
            return error.Description();
        }
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
        EXPECT_EQ(Failure(host, path), text) << host << path;
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
    for (const int status : {301, 302, 303, 307, 308}) {
        server->Post("/" + std::to_string(status),
                     [status](const auto&, auto& out) { out.set_redirect("end", status); });
    }
    server->Get(R"(/round/(\d))", [](const httplib::Request& in, httplib::Response& out) {
        const int left = std::stoi(in.matches[1].str());
        out.set_redirect(left == 0 ? "/end" : "/round/" + std::to_string(left - 1));
    });
    server.Start();
    for (const int status : {301, 302, 303}) {
        const std::string name = std::to_string(status);
        EXPECT_EQ(Failure(server.Host(), name, post), "HttpSendRequest: status " + name +
                                                          " sends the form away to http://" +
                                                          server.Host() + "/end");
    }
    for (const int status : {307, 308})
        EXPECT_EQ(Ask(server.Host(), std::to_string(status), post), "POST a=1&") << status;
    EXPECT_EQ(Ask(server.Host(), "round/4"), "GET ");
    EXPECT_EQ(Failure(server.Host(), "round/5"), "HttpSendRequest");
}

TEST_F(Http, Certificates_Are_Verified_And_Never_Left_For_Plain_Text) {
    const test::Test_Certificate files(directory);
    Web_Server plain;
    Web_Server safe(
        std::make_unique<httplib::SSLServer>(files.certificate.c_str(), files.key.c_str()));
    safe->Post("/in", [](const auto& in, auto& out) { out.set_content(in.body, "text/plain"); });
    safe->Get("/back", [&](const auto&, auto& out) {
        out.set_redirect("http://" + plain.Host() + "/secret");
    });
    plain->Post("/in", [&](const auto&, auto& out) {
        out.set_redirect("https://" + safe.Host("localhost") + "/in", 308);
    });
    plain.Start();
    safe.Start();
    const std::string host = "https://" + safe.Host("localhost");
    EXPECT_EQ(Failure(host, "/in", post), "InternetConnect") << "unknown issuer";
    options.trusted_certificates = files.certificate;
    EXPECT_EQ(Ask(host, "/in", post), "a=1&");
    EXPECT_EQ(Ask(plain.Host(), "/in", post), "a=1&");
    EXPECT_EQ(Failure("https://" + safe.Host(), "/in", post), "InternetConnect") << "wrong name";
    EXPECT_EQ(Failure(host, "/back"), "HttpSendRequest");
}

TEST_F(Http, What_Came_After_The_Status_Line_Is_The_Answer_Unless_It_Broke_Off) {
    options.all_within = 300ms;
    const auto closed = [](int) {};
    const std::string broken = "HttpSendRequest: the answer broke off";
    struct Case {
        std::string sent;
        void (*then)(int);
        std::string result;
        std::string of_post;
    };
    const std::string promised = "HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n";
    for (const Case& each : std::vector<Case>{
             {"", test::Hang, "HttpSendRequest", {}},
             {"", test::Reset, "HttpSendRequest", {}},
             {"garbage\r\n\r\n", test::Hang, "HttpSendRequest", {}},
             {"HTTP/1.1 100 Continue\r\n\r\n", test::Hang, "HttpSendRequest", {}},
             {promised + "half", test::Hang, "answered: half", {}},
             {promised + "half", closed, "answered: half", {}},
             {promised, closed, "answered: ", broken},
             {promised, test::Hang, "answered: ", {}},
             {promised + "half", test::Reset, broken, {}},
             {"HTTP/1.1 200 OK\r\n", test::Reset, broken, {}},
             {"HTTP/1.1 200 OK\r\nX: ", test::Hang, "answered: ", {}},
             {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\npart\r\nzz\r\n",
              test::Hang,
              broken,
              {}},
             {"HTTP/1.1 500 Broken\r\nContent-Length: 4\r\n\r\npage",
              test::Hang,
              "answered: page",
              {}}}) {
        Raw_Server server([&](int socket) {
            test::Send(socket, each.sent);
            each.then(socket);
        });
        EXPECT_EQ(Failure(server.Host()), each.result) << each.sent;
        EXPECT_EQ(Failure(server.Host(), "/", post),
                  each.of_post.empty() ? each.result : each.of_post)
            << each.sent;
    }
    std::string nobody;
    {
        Raw_Server gone([](int) {});
        nobody = gone.Host();
    }
    EXPECT_EQ(Failure(nobody), "InternetConnect");
    EXPECT_EQ(Failure("no-such-host.invalid"), "InternetConnect");
}

TEST_F(Http, The_Thread_Stays_Free_While_A_Server_Hangs_Or_Floods) {
    Raw_Server hanging(test::Hang);
    options.all_within = 200ms;
    EXPECT_EQ(Failure(hanging.Host()), "HttpSendRequest");
    EXPECT_GE(watched.rounds, 10);

    const std::string flood(10'000'000, '\xE9');
    Raw_Server flooding([&](int socket) { test::Send(socket, "HTTP/1.1 200 OK\r\n\r\n" + flood); });
    options = {};
    EXPECT_TRUE(Ask(flooding.Host()) == flood);
    EXPECT_LT(watched.longest, 50ms);
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
    watched.on_events = [&] { inner = Failure(server.Host(), "/inner"); };
    EXPECT_EQ(Ask(server.Host(), "/outer"), "ok");
    EXPECT_EQ(inner, "answered: ok");
}

TEST_F(Http, A_Busy_Client_Refuses_And_A_Cancelled_One_Ends) {
    Raw_Server hanging(test::Hang);
    Http_Client client(watched, options);
    std::string second;
    watched.on_events = [&] {
        try {
            second = client.Request({Http_Verb::get, hanging.Host(), "/", {}});
        } catch (const Run_Error& error) {
            second = error.Description();
        }
        client.Cancel();
    };
    try {
        ADD_FAILURE() << client.Request({Http_Verb::get, hanging.Host(), "/", {}});
    } catch (const Run_Error& error) {
        EXPECT_EQ(error.Description(), "HttpSendRequest");
    }
    EXPECT_EQ(second, "Another request is still running");
    EXPECT_FALSE(client.Is_Busy());
}

}  // namespace
}  // namespace norvane
