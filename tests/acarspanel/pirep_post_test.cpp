// The way of a finished flight to its airline, whatever the airline's server and the pilot do.

#include <algorithm>
#include <stdexcept>
#include <thread>

#include "acarspanel/network_world.h"
#include "common/code_page.h"
#include "common/text.h"
#include "flightlog/log_columns.h"
#include "settingspanel/uc_settings.h"

namespace norvane::test {
namespace {

class Panel_Posts : public Network_World {
  protected:
    Panel_Posts() { Start_At(server.Host()); }
    /// Starts the program for a pilot whose airline is at `host`.
    void Start_At(const std::string& host, const std::string& script = "/in") {
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
        Panel().txtAircraftType.Enter("B738");
    }
    void Start_Again() { Start_At(server.Host()); }
    void Settle() {
        Pass(std::chrono::milliseconds(20));
        for (int turn = 0; turn < 5000 && program->outbox.Is_Active(); ++turn) {
            Pass(std::chrono::milliseconds(10));
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        Pass(std::chrono::milliseconds(20));
    }
    /// Where the last delivery stands.
    std::string State() {
        const auto all = program->outbox.List();
        return all.empty() ? "" : std::string(Name_Of(all.back().state));
    }
    /// What was posted when a moment has passed.
    std::vector<std::string> Posted() {
        Settle();
        return Take_Asked();
    }
    /// The post of a flight with this aircraft.
    static std::string Form(const std::string& type) {
        return "/in id=P%261&name=J%F6rg+Alm&mail=&date=2026%2D03%2D14+00%3A00%3A00&type=" + type +
               "&tail=N123&";
    }
};

TEST_F(Panel_Posts, The_flight_is_in_the_log_and_out_of_the_store_before_it_is_posted) {
    Set_Page("/in", "<b>ok</b>");
    While_Next_Request_Runs([&] {
        EXPECT_EQ(log.size(), 1U);
        EXPECT_FALSE(Is_Stored());
        EXPECT_EQ(State(), "sending");
        EXPECT_EQ(program->response.Page(), "Contacting Server ...\r\n");
        EXPECT_EQ(desktop.Waiting_For(), "Contacting the airline's server ...");
        EXPECT_FALSE(desktop.busy) << "the pilot goes on";
    });
    Fly();
    EXPECT_THAT(Posted(), ElementsAre(Form("B738")));
    EXPECT_EQ(program->response.Page(), "<b>ok</b>\r\n");
    EXPECT_EQ(program->outbox.Waiting(), 0U);
    EXPECT_EQ(desktop.Waiting_For(), "");

    Break_Log();
    Fly();
    EXPECT_THAT(Posted(), IsEmpty()) << "not in the log";
    Take_Errors();
}

TEST_F(Panel_Posts, A_flight_is_logged_whatever_the_airlines_server_does) {
    const std::string ten_mb = std::string(10'000'000, 'x') + '\0' + "\xFF";
    Raw_Server hanging(Hang);
    Raw_Server resetting(Reset);
    Raw_Server long_winded([&](int socket) {
        Send(socket, "HTTP/1.1 500 Oh\r\nContent-Length: 10000002\r\n\r\n" + ten_mb);
    });
    http.all_within = std::chrono::milliseconds(300);
    for (const std::string& host : {hanging.Host(), resetting.Host(), std::string("127.0.0.1:1")}) {
        Start_At(host);
        log.clear();
        Fly();
        Settle();
        EXPECT_TRUE(Panel().Is_Logged());
        EXPECT_EQ(log.size(), 1U);
        EXPECT_FALSE(program->response.Is_Open());
        const std::string file = Logged(Log_Field::PIREP_FILE_NAME);
        const bool is_kept = host == "127.0.0.1:1";
        EXPECT_EQ(State(), is_kept ? "waiting" : "uncertain");
        EXPECT_THAT(Take_Errors(), ElementsAre(AllOf(HasSubstr(file), HasSubstr(host))));
        EXPECT_THAT(Take_Boxes(), ElementsAre(AllOf(HasSubstr(host), HasSubstr(file))));
        Begin("X");
        EXPECT_FALSE(Panel().Is_Resumable());
        Take_Errors();
        std::filesystem::remove(directory / "deliveries.sqlite");
    }
    http.all_within = seconds(20);
    Start_At(long_winded.Host());
    Fly();
    Settle();
    EXPECT_EQ(State(), "refused");
    Take_Errors();
    EXPECT_TRUE(program->response.Page() == ten_mb + "\r\n");
}

TEST_F(Panel_Posts, What_the_pilot_does_meanwhile_reaches_no_post_that_is_under_way) {
    While_Next_Request_Runs([&] {
        Log();
        Stand();
        Panel().hypOn.Click();
        Panel().txtAircraftType.Enter("A320");
        Roll();
        Lift_Off();
        EXPECT_TRUE(Is_Stored());
    });
    Fly();
    EXPECT_THAT(Posted(), ElementsAre(Form("B738"), Form("B738")));
    EXPECT_TRUE(Panel().Is_Active()) << "the new flight goes on";
    Touch_Down();
    Park();
    // Another airline is loaded before the flight's post begins.
    program->airline.Get_VA_Settings("DEFAULT");
    EXPECT_THAT(Posted(), ElementsAre(Form("A320")));
    EXPECT_EQ(program->airline.Name(), "DEFAULT");
    EXPECT_EQ(log.size(), 3U);
    Take_Errors();
}

TEST_F(Panel_Posts, Closing_leaves_what_was_not_begun_and_doubts_what_was) {
    While_Next_Request_Runs([&] { program->Close(ucACARS::Closing::by_signal); });
    Fly();
    Settle();
    EXPECT_FALSE(program->response.Is_Open());
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("is uncertain")));
    EXPECT_EQ(log.size(), 1U);
    // It may have arrived: nothing goes out unasked.
    Take_Asked();
    Start_Again();
    EXPECT_THAT(Posted(), IsEmpty());
    EXPECT_EQ(State(), "uncertain");
    Take_Boxes();
    Fly();
    program->Close(ucACARS::Closing::by_pilot);
    EXPECT_EQ(log.size(), 2U);
    EXPECT_THAT(Posted(), IsEmpty());
    Start_Again();
    EXPECT_THAT(Posted(), ElementsAre(Form("B738")));
    EXPECT_THAT(Take_Boxes(), IsEmpty());
}

TEST_F(Panel_Posts, A_program_killed_between_row_and_post_makes_the_pirep_up_once) {
    enum Place { before_the_row, behind_the_row, before_the_post };
    for (const Place killed : {before_the_row, behind_the_row, before_the_post}) {
        SCOPED_TRACE(killed);
        store.Delete_Section(flight_section);
        Start_Again();
        std::filesystem::remove(Settings().FlightLog_Path());
        Settings().Set_OPT_AutoLog(false);
        Break_Log(killed == before_the_row);
        // Nothing behind what the flight log does now is done any more.
        if (killed == behind_the_row)
            program->log_entry.NewLogEntrySave.Connect([] { throw std::runtime_error("killed"); });
        Fly();
        Panel().hypLog.Click();
        const std::filesystem::path file = To_Path(Logged(Log_Field::PIREP_FILE_NAME));
        EXPECT_EQ(std::filesystem::exists(file), killed != behind_the_row);
        Break_Log(false);
        Start_Again();
        if (killed == before_the_row) {
            EXPECT_THAT(Posted(), IsEmpty()) << "a flight that is not in the log";
            // The pilot logs it with a change: it is the same flight.
            Panel().txtAircraftID.Enter("N456");
            Panel().hypLog.Click();
            EXPECT_THAT(Posted(), ElementsAre(HasSubstr("tail=N456")));
        } else {
            EXPECT_THAT(Posted(), ElementsAre(Form("B738")));
            EXPECT_TRUE(std::filesystem::exists(file));
        }
        Begin();
        EXPECT_THAT(Posted(), IsEmpty()) << "a second time";
        std::filesystem::remove(file);
        Take_Errors();
        Take_Boxes();
    }
}

TEST_F(Panel_Posts, A_PIREP_that_waits_for_an_airline_without_a_script_is_told_and_no_longer_due) {
    // Killed before the outbox had it; meanwhile the airline's files lose the script.
    Write("deliveries.sqlite/in the way", "");
    Fly();
    Take_Errors();
    Take_Boxes();
    std::filesystem::remove_all(directory / "deliveries.sqlite");
    const std::string file = Logged(Log_Field::PIREP_FILE_NAME);
    Start_At(server.Host(), "");
    EXPECT_THAT(Posted(), IsEmpty());
    EXPECT_THAT(Take_Boxes(),
                ElementsAre(AllOf(HasSubstr("the files of the airline X name no script"),
                                  HasSubstr(file))));
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("No PIREP script is known")));
    // A flight of such an airline has nobody to be sent to.
    Fly();
    Settle();
    EXPECT_EQ(log.size(), 2U);
    EXPECT_THAT(Take_Boxes(), IsEmpty());
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
    Fly();
    EXPECT_THAT(Posted(), ElementsAre(Form("B738")));
}

}  // namespace
}  // namespace norvane::test
