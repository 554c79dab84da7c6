// What norvane-cli asks and tells the network: weather, network plans, PIREPs, and the reports of a
// whole flight, with servers that answer, break off and hang.

#include <gmock/gmock.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <thread>

#include "cli/cli_world.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/text.h"
#include "servers/test_servers.h"
#include "simlink/link_server.h"
#include "simlink/offset_area.h"

namespace norvane::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::HasSubstr;
using testing::StartsWith;

/// A place where nobody listens any longer.
std::string Dead_Host() {
    return Raw_Server([](int) {}).Host();
}

class Cli_Network : public Cli_World {
  protected:
    Cli_Network() { ::setenv("no_proxy", "*", 1); }

    void Write(const std::string& relative, const std::string& content) const {
        std::filesystem::create_directories((home / relative).parent_path());
        Write_File(home / relative, content);
    }
    void Sources_At(const std::string& host) const {
        Write("bin/url.cfg", "[NOAA]\r\nURL=" + host +
                                 "\r\nMETAR=/metar?id=\r\nTAF=/taf?id=\r\n[VATSIM]\r\nURL=" + host +
                                 "\r\nDATA=/data\r\n");
    }
    /// The default airline, with a field "f1" to "f41" for each value that every PIREP has.
    void Airline_At(const std::string& host) const {
        Write("VA/server.cfg", host + "\r\n/pirep.php\r\n/acars.php\r\n");
        std::string fields;
        for (int i = 1; i <= 41; ++i)
            fields += "Label^f" + std::to_string(i) + "\r\n";
        Write("VA/pirep.cfg", fields);
    }
    void Set(const std::string& name, const std::string& value) const {
        EXPECT_EQ(Run({"settings", "set", name, value}).status, 0) << name;
    }
    void Report_Flights() const {
        for (const auto* name : {"OPT_PIREP", "OPT_PIREP_SEND", "OPT_AutoLog"})
            Set(name, "True");
        Set("PilotID", "P&1");
    }
    [[nodiscard]] std::string Reason(const std::vector<std::string>& command) const {
        const auto failed = Run(command);
        EXPECT_EQ(failed.status, 1) << failed.errors;
        EXPECT_EQ(failed.output, "");
        return failed.errors;
    }
};

TEST_F(Cli_Network, Weather_is_printed_or_the_reason_why_there_is_none) {
    Web_Server server;
    server->Get("/metar", [](const httplib::Request& request, httplib::Response& response) {
        const bool known = request.get_param_value("id") == "KSEA";
        response.set_content(known ? "KSEA 23\xB0\n" : "Sorry", "text/plain");
    });
    server->Get("/taf", [](const httplib::Request& request, httplib::Response& response) {
        const bool known = request.get_param_value("id") == "KBFI";
        response.set_content(known ? "TAF KBFI 1\n  2\n" : "no TAF", "text/plain");
    });
    server.Start();
    Sources_At(server.Host());
    Set("WX_URL", "NOAA");
    EXPECT_EQ(Run({"metar", "ksea"}).output, "KSEA 23°\n");
    EXPECT_EQ(Run({"wx", "KSEA"}).output,
              "KSEA 23°\n\nUnable to connect to WX server or ICAO not found\n");
    const auto half = Run({"wx", "KBFI"});
    EXPECT_EQ(half.status, 0);
    EXPECT_THAT(half.output, HasSubstr("KBFI 1  2\n"));
    for (const auto* command : {"metar", "wx"}) {
        EXPECT_EQ(Reason({command, "KXXX"}), "Unable to connect to WX server or ICAO not found\n");
    }
    EXPECT_THAT(Error_Log(), HasSubstr("ICAO not found"));
    Sources_At(Dead_Host());
    for (const auto* command : {"metar", "wx"}) {
        EXPECT_THAT(Reason({command, "KSEA"}),
                    HasSubstr("NOAA: InternetConnect: the server is unknown, cannot be reached"));
    }
    EXPECT_THAT(Error_Log(), HasSubstr("clsWinInet.Get_METAR()"));
    Set("WX_URL", "NONE");
    EXPECT_THAT(Reason({"wx", "KSEA"}), HasSubstr("source NONE"));
}

TEST_F(Cli_Network, A_network_plan_is_printed_value_by_value) {
    std::string data = "X:1\r\nBAW\xC9:812345";
    for (int place = 2; place <= 31; ++place)
        data += ":" + (place == 21 ? std::string("I") : "v" + std::to_string(place));
    data += "\r\nCUT:77:B738\r\n";
    Raw_Server server([&](int socket) {
        Send(socket, "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(data.size()) +
                         "\r\n\r\n" + data);
    });
    Sources_At(server.Host());
    const auto found = Run({"vatsim", "812345"});
    EXPECT_EQ(found.status, 0) << found.errors;
    EXPECT_EQ(found.output,
              "Callsign: BAWÉ\nAircraft: v9\nOrigin_ICAO: v11\nDestination_ICAO: v13\n"
              "Altitude: v12\nFlight_Type: IFR\nRoute: v30\n");
    EXPECT_THAT(Reason({"vatsim", "4711"}), HasSubstr("no flight plan of pilot 4711"));
    EXPECT_THAT(Reason({"vatsim", "77"}), HasSubstr("ends too early: CUT:77:B738"));
    Sources_At(Dead_Host());
    EXPECT_THAT(Reason({"vatsim", "77"}), HasSubstr("InternetConnect"));
}

TEST_F(Cli_Network, A_pirep_file_is_sent_again_or_the_reason_told) {
    const auto file = directory / "one.txt";
    Write_File(file, "7|J\xF6rg|a@b|4/23/2008|B738\r\nsecond|line\r\n");
    const std::vector<std::string> send{"pirep", "send", file.string()};
    EXPECT_THAT(Reason(send), HasSubstr("VA/server.cfg names no server with a PIREP script"));
    std::atomic<bool> broken = false;
    Raw_Server server([&](int socket) {
        if (broken)
            Reset(socket);
        else
            Send(socket,
                 "HTTP/1.1 500 Sorry\r\nContent-Length: 18\r\n\r\nThanks J\xF6rg\x1B[2J\x90\a\r");
    });
    Airline_At(server.Host());
    const auto sent = Run(send);
    EXPECT_EQ(sent.status, 0) << sent.errors;
    EXPECT_EQ(sent.output, "Thanks Jörg.[2J..\n") << "no command for the terminal";
    EXPECT_THAT(server.Request(), HasSubstr("\r\n\r\nf1=7&f2=J%F6rg&"));
    broken = true;
    EXPECT_THAT(Reason(send), HasSubstr("The PIREP was not sent: HttpSendRequest: "));
    EXPECT_THAT(Error_Log(),
                HasSubstr("one.txt was not sent to the airline DEFAULT at 127.0.0.1:"));
    Write_File(file, "no values\r\n1|2\r\n");
    EXPECT_THAT(Reason(send), HasSubstr("one.txt holds no values separated by \"|\""));
    std::filesystem::remove(file);
    EXPECT_THAT(Reason(send), HasSubstr("File not found: "));
}

TEST_F(Cli_Network, A_signal_ends_a_request_at_once) {
    std::atomic<int> asked = 0;
    Raw_Server server([&](int socket) {
        ++asked;
        Hang(socket);
    });
    Sources_At(server.Host());
    Airline_At(server.Host());
    Set("WX_URL", "NOAA");
    Write_File(directory / "one.txt", "1|2\r\n");
    const std::vector<std::vector<std::string>> commands{
        {"wx", "KSEA"}, {"vatsim", "1"}, {"pirep", "send", (directory / "one.txt").string()}};
    for (const auto& command : commands) {
        asked = 0;
        Child_Process process(Command(command));
        for (int i = 0; i < 2000 && asked == 0; ++i)
            std::this_thread::sleep_for(milliseconds(5));
        ASSERT_EQ(asked, 1);
        process.Send(SIGINT);
        EXPECT_EQ(process.Wait(seconds(10)), 1) << command[0];
        EXPECT_THAT(process.Errors(), HasSubstr("Ended by a signal."));
    }
}

TEST_F(Cli_Network, A_flight_is_reported_to_its_airline) {
    std::mutex mutex;
    std::vector<std::string> pireps;
    std::vector<std::string> reports;
    Web_Server server;
    const auto keep = [&](std::vector<std::string>& where) {
        return [&](const httplib::Request& request, httplib::Response& response) {
            const std::lock_guard lock(mutex);
            where.push_back(request.body);
            response.set_content("<p>Danke, J\xC3\xB6rg</p>\r\n", "text/html");
        };
    };
    server->Post("/pirep.php", keep(pireps));
    server->Post("/acars.php", keep(reports));
    server.Start();
    Airline_At(server.Host());
    Report_Flights();
    Start_Simulator();
    const auto flown = Fly();
    ASSERT_EQ(flown.status, 0) << flown.errors;
    ASSERT_EQ(Rows().size(), 1U);
    EXPECT_THAT(flown.output, HasSubstr("The airline's answer to the PIREP:\n<p>Danke, Jörg</p>"));
    EXPECT_EQ(Error_Log(), "");

    ASSERT_EQ(pireps.size(), 1U);
    EXPECT_THAT(pireps[0], StartsWith("f1=P%261&"));
    EXPECT_THAT(pireps[0], HasSubstr("&f4=2026%2D06%2D30+00%3A00%3A00&"));
    // Each message stands before an empty line; the last one, of the end, behind the log row.
    auto messages = Split(flown.output, std::string_view("\n\n"));
    messages.pop_back();
    ASSERT_GT(messages.size(), 5U);
    ASSERT_EQ(reports.size(), messages.size());
    EXPECT_THAT(reports.front(), HasSubstr("&acars4=Message%3A+Flight+Connected"));
    EXPECT_THAT(reports.back(), testing::EndsWith("&acars7=KLGA&"));
}

TEST_F(Cli_Network, A_flight_is_logged_whatever_the_airlines_server_does) {
    Report_Flights();
    for (const bool hanging : {false, true}) {
        std::atomic<int> asked = 0;
        Raw_Server server([&](int socket) {
            ++asked;
            if (hanging)
                Hang(socket);
            else
                Reset(socket);
        });
        Airline_At(server.Host());
        std::filesystem::remove_all(home / "logs");
        std::filesystem::remove(home / "ErrorLog.Log");
        Start_Simulator();
        Child_Process process(Command(fly));
        if (hanging) {
            for (int i = 0; i < 6000 && (asked == 0 || Rows().empty()); ++i)
                std::this_thread::sleep_for(milliseconds(5));
            ASSERT_FALSE(Rows().empty()) << "a hanging report holds the flight up";
            process.Send(SIGINT);
            EXPECT_EQ(process.Wait(seconds(10)), 1) << process.Errors();
        } else {
            EXPECT_EQ(process.Wait(), 1) << "logged, but not reported: " << process.Errors();
            EXPECT_THAT(Error_Log(), HasSubstr("clsWinInet.Send_ACARS_Report()"));
        }
        EXPECT_EQ(Rows().size(), 1U);
        EXPECT_THAT(process.Errors(),
                    HasSubstr(hanging ? "its PIREP is due" : "the PIREP was not sent"));
        EXPECT_THAT(Error_Log(), HasSubstr("HttpSendRequest"));
        Kill_Simulator();
    }
}

/// A simulator whose aircraft stands at the gate, and whose link does what the test says.
class Cli_Link : public Cli_World {
  protected:
    Cli_Link()
        : m_server({directory / "sim", "", 0},
                   [this](std::span<std::byte> records) { return Answer(records); }) {}
    ~Cli_Link() override {
        m_ends = true;
        m_thread.join();
    }
    /// `fly` at the stand once the link did its worst, ended by a signal.
    Delivery Answer(std::span<std::byte> records) {
        const int request = ++requests;
        const auto outcome = on_request(request);
        return {outcome,
                outcome == Delivery_Outcome::answered && m_area.Process(records) ? 1U : 0U};
    }
    void Await_Requests(int count) const {
        for (int i = 0; i < 6000 && requests < count; ++i)
            std::this_thread::sleep_for(milliseconds(5));
        ASSERT_GE(requests, count);
    }

    std::atomic<int> requests = 0;
    std::function<Delivery_Outcome(int)> on_request;

  private:
    Offset_Area m_area;
    std::atomic<bool> m_ends = false;
    Link_Server m_server;

  protected:
    void Serve() {
        m_area.Set(Variable::on_ground, 1);
        m_area.Set(Variable::parking_brake, 1);
        m_thread = std::thread([this] {
            while (!m_ends)
                (void)m_server.Serve(milliseconds(10));
        });
    }

  private:
    std::thread m_thread;
};

TEST_F(Cli_Link, Tracking_begins_once_a_faulty_simulator_is_well_and_a_signal_ends_a_silent_one) {
    constexpr int into_start = 8;
    constexpr int worst = into_start + 40;
    constexpr int silent_from = worst + 60;
    on_request = [](int request) {
        if (request >= silent_from)
            return Delivery_Outcome::silent;
        return request > into_start && request < worst ? Delivery_Outcome::failed
                                                       : Delivery_Outcome::answered;
    };
    Serve();
    Child_Process process(Command({"fly", "--time-scale", "50"}));
    Await_Requests(silent_from);
    process.Send(SIGTERM);
    EXPECT_EQ(process.Wait(seconds(10)), 1) << process.Errors();
    EXPECT_THAT(process.Errors(), HasSubstr("failed while tracking began"));
    EXPECT_THAT(process.Errors(), HasSubstr("Ended by a signal"));
}

}  // namespace
}  // namespace norvane::test
