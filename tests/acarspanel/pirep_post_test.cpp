// The way of a finished flight to its airline, whatever the airline's server and the pilot do.

#include <gmock/gmock.h>

#include <algorithm>
#include <stdexcept>

#include "acarspanel/network_world.h"
#include "common/code_page.h"
#include "config/uc_settings.h"
#include "flightlog/log_columns.h"

namespace norvane {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class Panel_Posts : public test::Network_World {
  protected:
    Panel_Posts() { Start_At(server.Host()); }
    /// Starts the program for a pilot whose airline is at `host`.
    void Start_At(const std::string& host, const std::string& script = "/in") {
        Kill();
        Write("VA_X/server.cfg", host + "\r\n" + script + "\r\n");
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
        const std::string file = Logged(Log_Field::PIREP_FILE_NAME);
        EXPECT_THAT(Take_Errors(),
                    ElementsAre(HasSubstr("clsWinInet.Send_PIREP()"),
                                HasSubstr(file + " was not sent to the airline X at " + host)));
        EXPECT_THAT(Take_Boxes(), ElementsAre(AllOf(HasSubstr(host), HasSubstr(file))))
            << "also of a post that a timer began";
        desktop.answers = {Answer::yes};
        Panel().hypLog.Click();
        Pass(1);
        EXPECT_EQ(Take_Boxes().size(), 2U) << "the question, and what became of the pilot's post";
        Take_Errors();
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
    Touch_Down();
    Park();
    // Another airline is loaded before the flight's post begins.
    program->airline.Get_VA_Settings("DEFAULT");
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
    EXPECT_EQ(Take_Errors().size(), 2U);
    EXPECT_EQ(log.size(), 1U);
    EXPECT_TRUE(Take_Boxes().empty());

    // It may have arrived: the pilot is told, and nothing goes out unasked.
    Start_At(server.Host());
    Take_Asked();
    Pass(1);
    EXPECT_THAT(Take_Boxes(), ElementsAre(HasSubstr("may have got it or not")));
    EXPECT_TRUE(Take_Asked().empty());
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

TEST_F(Panel_Posts, A_program_killed_between_row_and_post_makes_the_pirep_up_once) {
    enum Moment { before_the_row, behind_the_row, before_the_post };
    for (const Moment killed : {before_the_row, behind_the_row, before_the_post}) {
        store.Delete_Section(flight_section);
        Start_At(server.Host());
        std::filesystem::remove(Settings().FlightLog_Path());
        Settings().Set_OPT_AutoLog(false);
        Panel().txtAircraftType.Enter("B738");
        // Nothing behind what the flight log does now is done any more.
        program->entry.NewLogEntrySave.connect([&] {
            if (killed != before_the_row)
                Write("logs/My Flight Log.txt", Log_Line(program->entry) + "\r\n");
            if (killed != before_the_post)
                throw std::runtime_error("killed");
        });
        Fly();
        Panel().hypLog.Click();
        const std::filesystem::path file = To_Path(Logged(Log_Field::PIREP_FILE_NAME));
        EXPECT_EQ(std::filesystem::exists(file), killed == before_the_post);
        Start_At(server.Host());
        Pass(1);
        if (killed == before_the_row) {
            EXPECT_TRUE(Take_Asked().empty()) << "a flight that is not in the log";
            // The pilot logs it with a change: it is the same flight.
            Panel().txtAircraftID.Enter("N456");
            Write("logs/My Flight Log.txt", "");
            program->entry.NewLogEntrySave.connect(
                [&] { Write("logs/My Flight Log.txt", Log_Line(program->entry) + "\r\n"); });
            Panel().hypLog.Click();
            Pass(1);
            EXPECT_THAT(Take_Asked(), ElementsAre(HasSubstr("tail=N456")));
        } else {
            EXPECT_THAT(Take_Asked(), ElementsAre(Form("B738"))) << killed;
            EXPECT_TRUE(std::filesystem::exists(file));
        }
        Kill();
        Begin();
        Pass(1);
        EXPECT_TRUE(Take_Asked().empty()) << "a second time";
        std::filesystem::remove(file);
        Take_Errors();
        Take_Boxes();
    }
}

TEST_F(Panel_Posts, A_PIREP_that_waits_for_an_airline_without_a_script_is_told_and_no_longer_due) {
    // Killed before the post; meanwhile the airline's files lose the script.
    Fly();
    const std::string file = Logged(Log_Field::PIREP_FILE_NAME);
    Start_At(server.Host(), "");
    Pass(1);
    EXPECT_TRUE(Take_Asked().empty());
    EXPECT_THAT(Take_Boxes(),
                ElementsAre(AllOf(HasSubstr("the files of the airline X name no script"),
                                  HasSubstr(file))));
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("No PIREP script is known")));
    // A flight of such an airline has nobody to be sent to.
    Fly();
    Pass(1);
    EXPECT_EQ(log.size(), 2U);
    EXPECT_THAT(Take_Boxes(), testing::IsEmpty());
    Take_Errors();
}

TEST_F(Panel_Posts, An_airline_that_is_only_looked_at_gets_nothing) {
    Write("VA_Y/server.cfg", server.Host() + "\r\n/other\r\n");
    Write("VA_Y/pirep.cfg", "1^y\r\n2^y\r\n");
    Settings().Save_Settings();
    ucSettings settings_panel(services, Settings(), program->airline);
    const auto& airlines = settings_panel.cboVA.Entries();
    const auto place = std::find(airlines.begin(), airlines.end(), "Y");
    ASSERT_NE(place, airlines.end());
    settings_panel.cboVA.Choose(static_cast<int>(place - airlines.begin()));
    Panel().txtAircraftType.Enter("B738");
    Fly();
    Pass(1);
    EXPECT_THAT(Take_Asked(), ElementsAre(Form("B738")));
}

}  // namespace
}  // namespace norvane
