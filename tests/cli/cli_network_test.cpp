// What norvane-cli asks and tells the network: weather, network plans, PIREPs, and the reports of a
// whole flight, with servers that answer, break off and hang.

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <thread>

#include "cli/cli_world.h"
#include "servers/test_servers.h"
#include "simlink/link_server.h"
#include "simlink/offset_area.h"

namespace norvane::test {
namespace {

using std::chrono::seconds;

class Cli_Network : public Cli_World {
  protected:
    Cli_Network() { ::setenv("no_proxy", "*", 1); }

    /// Every source of weather and plans, and the airline, are there. The airline has a field for
    /// each value that every PIREP has.
    void Network_At(const std::string& host) const {
        fs::create_directories(home / "VA");
        Write_File(home / "bin/url.cfg", "[NOAA]\r\nURL=" + host +
                                             "\r\nMETAR=/metar?id=\r\nTAF=/taf?id=\r\n" +
                                             "[VATSIM]\r\nURL=" + host + "\r\nDATA=/data\r\n");
        Write_File(home / "VA/server.cfg", host + "\r\n/pirep.php\r\n/acars.php\r\n");
        std::string fields;
        for (int i = 1; i <= 41; ++i)
            fields += "Label^f" + std::to_string(i) + "\r\n";
        Write_File(home / "VA/pirep.cfg", fields);
    }
    [[nodiscard]] std::string Reason(const std::string& line) const {
        const auto failed = Type(line);
        EXPECT_EQ(failed.status, 1) << failed.errors;
        EXPECT_EQ(failed.output, "");
        return failed.errors;
    }

    /// A place where nobody listens any longer.
    const std::string dead_host = Raw_Server([](int) {}).Host();
    const fs::path pirep = directory / "one.txt";
    const std::string send = "pirep send " + pirep.string();
};

TEST_F(Cli_Network, Weather_is_printed_or_the_reason_why_there_is_none) {
    Web_Server server;
    server->Get("/.*", [](const httplib::Request& request, httplib::Response& response) {
        const std::string asked = request.path + request.get_param_value("id");
        const std::string text = asked == "/metarKSEA" ? "KSEA 23\xB0\n" : "Sorry";
        response.set_content(asked == "/tafKBFI" ? "TAF KBFI 1\n  2\n" : text, "text/plain");
    });
    server.Start();
    Network_At(server.Host());
    EXPECT_EQ(Status("settings set WX_URL NOAA"), 0);
    const std::string none = "Unable to connect to WX server or ICAO not found\n";
    EXPECT_EQ(Type("metar ksea").output, "KSEA 23°\n");
    EXPECT_EQ(Type("wx KSEA").output, "KSEA 23°\n\n" + none);
    EXPECT_THAT(Type("wx KBFI").output, HasSubstr("KBFI 1  2\n"));
    for (const std::string command : {"metar", "wx"}) {
        Network_At(server.Host());
        EXPECT_EQ(Reason(command + " KXXX"), none);
        Network_At(dead_host);
        EXPECT_THAT(Reason(command + " KSEA"), HasSubstr("NOAA: InternetConnect: the server"));
    }
    EXPECT_EQ(Status("settings set WX_URL NONE"), 0);
    EXPECT_THAT(Reason("wx KSEA"), HasSubstr("source NONE"));
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
    Network_At(server.Host());
    EXPECT_EQ(Type("vatsim 812345").output,
              "Callsign: BAWÉ\nAircraft: v9\nOrigin_ICAO: v11\nDestination_ICAO: v13\n"
              "Altitude: v12\nFlight_Type: IFR\nRoute: v30\n");
    EXPECT_THAT(Reason("vatsim 4711"), HasSubstr("no flight plan of pilot 4711"));
    EXPECT_THAT(Reason("vatsim 77"), HasSubstr("ends too early: CUT:77:B738"));
}

TEST_F(Cli_Network, A_plan_of_SimBrief_is_printed_and_flown) {
    Web_Server server;
    server->Get("/plan", [](const httplib::Request& request, httplib::Response& response) {
        const bool known = request.get_param_value("username") == "zoë";
        response.set_content(known ? Read_File(Data_File("plans/simbrief.json"))
                                   : R"({"fetch":{"status":"Error: Unknown UserID"}})",
                             "application/json");
    });
    server.Start();
    fs::create_directories(home / "bin");
    Write_File(home / "bin/plans.cfg", "[SIMBRIEF]\r\nURL=" + server.Host() + "\r\nDATA=/plan\r\n");
    EXPECT_EQ(Status("settings set ACARS_Weight 1"), 0);
    Expect_As_Looked_At("cli/simbrief.txt", Type("plan --simbrief zoë").output);
    EXPECT_THAT(Reason("plan --simbrief 4711"), HasSubstr("plan: Error: Unknown UserID"));
    EXPECT_EQ(Status("plan x.pln --simbrief zoë"), 2);

    Start_Simulator();
    EXPECT_THAT(Reason("fly --simbrief 4711"), HasSubstr("Unknown UserID"));
    const auto flown = Type("fly --time-scale 1000 --simbrief zoë --aircraft B738");
    EXPECT_EQ(flown.status, 0);
    EXPECT_THAT(flown.errors, HasSubstr("It begins at OMAA, but the aircraft stands at KJFK."));
    const auto row = Rows().at(0);
    EXPECT_EQ(row[1] + row[3] + row[20] + row[22] + row[23] + row[24],
              "B738OMAA1129079000KADIL P570 \xC9LIXA/X");
}

TEST_F(Cli_Network, A_pirep_file_is_sent_again_or_the_reason_told) {
    Write_File(pirep, "7|J\xF6rg|a@b|4/23/2008|B738\r\nsecond|line\r\n");
    EXPECT_THAT(Reason(send), HasSubstr("VA/server.cfg names no server with a PIREP script"));
    std::atomic<bool> broken = false;
    Raw_Server server([&](int socket) {
        if (broken)
            Reset(socket);
        else
            Send(socket,
                 "HTTP/1.1 500 Sorry\r\nContent-Length: 18\r\n\r\nThanks J\xF6rg\x1B[2J\x90\a\r");
    });
    Network_At(server.Host());
    EXPECT_EQ(Type(send).output, "Thanks Jörg.[2J..\n") << "no command for the terminal";
    EXPECT_THAT(server.Request(), HasSubstr("\r\n\r\nf1=7&f2=J%F6rg&"));
    broken = true;
    EXPECT_THAT(Reason(send), HasSubstr("The PIREP was not sent: HttpSendRequest: "));
}

TEST_F(Cli_Network, A_signal_ends_a_request_at_once) {
    std::atomic<int> asked = 0;
    Raw_Server server([&](int socket) {
        ++asked;
        Hang(socket);
    });
    Network_At(server.Host());
    EXPECT_EQ(Status("settings set WX_URL NOAA"), 0);
    Write_File(pirep, "1|2\r\n");
    for (const std::string& line : {std::string("wx KSEA"), std::string("vatsim 1"), send}) {
        asked = 0;
        Child_Process process(Command(Split(line, ' ')));
        for (int i = 0; i < 2000 && asked == 0; ++i)
            std::this_thread::sleep_for(milliseconds(5));
        ASSERT_EQ(asked, 1);
        process.Send(SIGINT);
        EXPECT_EQ(process.Wait(seconds(10)), 1) << line;
        EXPECT_THAT(process.Errors(), HasSubstr("Ended by a signal."));
    }
}

/// How often a text holds a piece.
int Count(const std::string& text, const std::string& piece) {
    return static_cast<int>(Split(text, piece).size()) - 1;
}

TEST_F(Cli_Network, A_flight_is_logged_whatever_the_airlines_server_does) {
    for (const std::string name : {"OPT_PIREP", "OPT_PIREP_SEND", "OPT_AutoLog"})
        EXPECT_EQ(Status("settings set " + name + " True"), 0);
    Network_At("127.0.0.1:1");
    Start_Simulator();
    const auto kept = Fly();
    EXPECT_EQ(kept.status, 0) << "logged, which is what counts";
    EXPECT_EQ(Rows().size(), 1U);
    EXPECT_THAT(kept.errors, HasSubstr("its PIREP (delivery "));
    EXPECT_THAT(kept.errors, HasSubstr("Deliveries that wait for the airline: "));
    const std::string listed = Type("outbox list").output;
    const auto waiting = Count(listed, "\twaiting\t");
    EXPECT_GT(waiting, 5);
    EXPECT_THAT(listed, HasSubstr("\tPIREP\t"));
    EXPECT_EQ(Status("outbox retry"), 1) << "there still is no server";
    EXPECT_EQ(Count(Type("outbox list").output, "\twaiting\t"), waiting);
    // The report that everything else waits behind is given up.
    const std::string id = listed.substr(0, listed.find('\t'));
    EXPECT_THAT(Type("outbox show " + id).output, HasSubstr("acars0="));
    EXPECT_EQ(Status("outbox drop " + id), 0);
    EXPECT_EQ(Status("outbox drop " + id), 1);
    EXPECT_EQ(Status("outbox show 999"), 1);
    EXPECT_EQ(Count(Type("outbox list").output, "\twaiting\t"), waiting - 1);
}

TEST_F(Cli_Network, Tracking_begins_once_a_faulty_simulator_is_well_and_a_signal_ends_it) {
    constexpr int into_start = 8;
    constexpr int worst = into_start + 40;
    constexpr int silent_from = worst + 60;
    // An aircraft at the gate, and a link that fails in the middle of the start and falls silent.
    Offset_Area area;
    area.Set(Variable::on_ground, 1);
    area.Set(Variable::parking_brake, 1);
    int requests = 0;
    Link_Server server({directory / "sim", "", 0}, [&](std::span<std::byte> records) {
        const int request = ++requests;
        if (request >= silent_from)
            return Delivery{Delivery_Outcome::silent, 0};
        if (request > into_start && request < worst)
            return Delivery{Delivery_Outcome::failed, 0};
        return Delivery{Delivery_Outcome::answered, area.Process(records) ? 1U : 0U};
    });
    Child_Process process(Command({"fly", "--time-scale", "50"}));
    for (int i = 0; i < 6000 && requests < silent_from; ++i)
        static_cast<void>(server.Serve(milliseconds(10)));
    process.Send(SIGTERM);
    EXPECT_EQ(process.Wait(seconds(10)), 1) << process.Errors();
    EXPECT_THAT(process.Errors(), HasSubstr("failed while tracking began"));
    EXPECT_THAT(process.Errors(), HasSubstr("Ended by a signal"));
}

}  // namespace
}  // namespace norvane::test
