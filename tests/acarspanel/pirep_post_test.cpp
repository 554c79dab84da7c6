// The way of a finished flight to its airline, whatever the airline's server and the pilot do.

#include <gmock/gmock.h>

#include "acarspanel/network_world.h"

namespace norvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Panel_Posts : public test::Network_World {
  protected:
    Panel_Posts() { Start_At(server.Host()); }
    /// Starts the program for a pilot whose airline is at `host`.
    void Start_At(const std::string& host) {
        Kill();
        Write("VA_X/server.cfg", host + "\r\n/in\r\n");
        Write("VA_X/pirep.cfg", "1^id\r\n2^name\r\n3^mail\r\n4^date\r\n5^type\r\n6^tail\r\n");
        store.Set("Virtual Airline", "Current", "X");
        Begin("X");
        Take_Errors();  // a form this short is reported
        Settings().Set_PilotID("P&1");
        Settings().Set_PilotName("J\xF6rg Alm");
        Settings().Set_OPT_AutoLog(true);
        Settings().Set_OPT_PIREP(true);
        Settings().Set_OPT_PIREP_SEND(true);
        Stand();
    }
    /// The post of a flight with this aircraft.
    static std::string Form(const std::string& type) {
        return "/in id=P%261&name=J%F6rg+Alm&mail=&date=2026%2D03%2D14+00%3A00%3A00&type=" + type +
               "&tail=N123&";
    }
};

TEST_F(Panel_Posts, The_flight_is_in_the_log_and_out_of_the_store_before_it_is_posted) {
    Set_Page("/in", "<b>ok</b>");
    Panel().txtAircraftType.Enter("B738");
    While_Next_Request_Runs([&] {
        EXPECT_EQ(log.size(), 1U);
        EXPECT_FALSE(Is_Stored());
        EXPECT_TRUE(Panel().Is_Posting());
        EXPECT_EQ(program->response.Page(), "Contacting Server ...\r\n");
        EXPECT_EQ(desktop.Waiting_For(), "Contacting the airline's server ...");
        EXPECT_TRUE(desktop.busy);
    });
    Fly();
    Pass(1);
    EXPECT_TRUE(Has_Happened());
    EXPECT_THAT(Take_Asked(), ElementsAre(Form("B738")));
    EXPECT_EQ(program->response.Page(), "<b>ok</b>\r\n");
    EXPECT_FALSE(desktop.busy);
    EXPECT_FALSE(Panel().Is_Posting());

    log_saves = false;
    Stand();
    Fly();
    Pass(1);
    EXPECT_TRUE(Take_Asked().empty()) << "not in the log";
}

TEST_F(Panel_Posts, A_flight_is_logged_whatever_the_airlines_server_does) {
    const std::string ten_mb = std::string(10'000'000, 'x') + '\0' + "\xFF";
    test::Raw_Server hanging(test::Hang);
    test::Raw_Server resetting(test::Reset);
    test::Raw_Server long_winded([&](int socket) {
        test::Send(socket, "HTTP/1.1 500 Oh\r\nContent-Length: 10000002\r\n\r\n" + ten_mb);
    });
    http.all_within = std::chrono::milliseconds(300);
    for (const std::string& host : {hanging.Host(), resetting.Host(), std::string("127.0.0.1:1")}) {
        Start_At(host);
        log.clear();
        Fly();
        Pass(1);
        EXPECT_TRUE(Panel().Is_Logged());
        EXPECT_EQ(log.size(), 1U);
        EXPECT_FALSE(program->response.Is_Open());
        EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsWinInet.Send_PIREP()")));
        EXPECT_TRUE(Take_Boxes().empty()) << "nobody asked for this post";
        desktop.answers = {Answer::yes};
        Pass(60);  // the same box is not shown twice within a minute
        Panel().hypLog.Click();
        Pass(1);
        EXPECT_EQ(Take_Boxes().size(), 2U) << "the question, and what became of the pilot's post";
        EXPECT_EQ(Take_Errors().size(), 1U);
        Kill();
        Begin("X");
        EXPECT_FALSE(Panel().Is_Resumable());
        Take_Errors();
    }
    http.all_within = std::chrono::seconds(20);
    Start_At(long_winded.Host());
    Fly();
    Pass(1);
    EXPECT_TRUE(program->response.Page() == ten_mb + "\r\n");
}

TEST_F(Panel_Posts, What_the_pilot_does_meanwhile_reaches_no_post_that_is_under_way) {
    Panel().txtAircraftType.Enter("B738");
    While_Next_Request_Runs([&] {
        desktop.answers = {Answer::yes};
        Panel().hypLog.Click();
        Stand();
        Panel().hypOn.Click();
        Panel().txtAircraftType.Enter("A320");
        Roll();
        Lift_Off();
        EXPECT_TRUE(Is_Stored());
    });
    Fly();
    Pass(1);
    EXPECT_TRUE(Has_Happened());
    EXPECT_THAT(Take_Asked(), ElementsAre(Form("B738"), Form("B738")));
    EXPECT_TRUE(Panel().Is_Active()) << "the new flight goes on";
    // Another airline is on the panel when this flight ends.
    program->airline.Get_VA_Settings("DEFAULT");
    Touch_Down();
    Park();
    Pass(1);
    EXPECT_THAT(Take_Asked(), ElementsAre(Form("A320")));
    EXPECT_EQ(program->airline.Name(), "DEFAULT");
    EXPECT_EQ(log.size(), 3U);
    Take_Errors();
}

TEST_F(Panel_Posts, Closing_ends_a_post_under_way_but_not_the_one_that_it_begins) {
    While_Next_Request_Runs([&] { Panel().Close(ucACARS::Closing::by_pilot); });
    Fly();
    Pass(1);
    EXPECT_TRUE(Has_Happened());
    EXPECT_FALSE(program->response.Is_Open());
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsWinInet.Send_PIREP()")));
    EXPECT_EQ(log.size(), 1U);

    Start_At(server.Host());
    Take_Asked();
    Settings().Set_WX_URL("NOAA");
    Panel().txtWXOrigin.Enter("mine");
    Panel().txtFlightLevel.Enter("FL350");
    Panel().txtAircraftType.Enter("B738");
    Fly();
    EXPECT_FALSE(Panel().Is_At_Gate());
    Panel().Close(ucACARS::Closing::by_pilot);
    EXPECT_EQ(log.size(), 2U);
    EXPECT_THAT(Take_Asked(), ElementsAre(Form("B738")));
    EXPECT_EQ(desktop.Waiting_For(), "");
    EXPECT_TRUE(Take_Boxes().empty());
    Pass(5);
    EXPECT_TRUE(Take_Asked().empty());
}

}  // namespace
}  // namespace norvane
