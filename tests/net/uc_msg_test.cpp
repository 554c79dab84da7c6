// The message panel between the engine, the pilot, the weather source and the airline's script.

#include "net/uc_msg.h"

#include <gmock/gmock.h>

#include <functional>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "acars/cls_acars.h"
#include "acars/cls_utc.h"
#include "net/net_world.h"
#include "simlink/in_process_transport.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"

namespace norvane {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

class Message_Panel : public test::Net_World {
  protected:
    Message_Panel() {
        const auto serve = [this](const httplib::Request& in, httplib::Response& out) {
            const std::lock_guard guard(m_lock);
            m_asked.push_back(in.target + (in.method == "POST" ? " " + in.body : ""));
            out.set_content("KBOS 141509Z 9SM", "text/plain");
        };
        server->Get(".*", serve);
        server->Post(".*", serve);
        server.Start();
        Sources_At(server.Host());
        settings.Set_WX_URL("NOAA");
        options.given_up = [this] {
            if (meanwhile)
                std::exchange(meanwhile, nullptr)();
            return false;
        };
        Fly_For("X", server.Host());
        panel.emplace(ucMSG::Parts{services, settings, airline, options});
        panel->Set_ACARS(engine);
        panel->Log_Appended.connect([this](const std::string& added) { shown += added; });
        panel->Log_Cleared.connect([this] { shown.clear(); });
    }

    void Fly_For(const std::string& name, const std::string& host) {
        Write("VA_" + name + "/server.cfg", host + "\r\n\r\n/" + name + "\r\n");
        settings.Set_Virtual_Airline(name);
        airline.Get_VA_Settings(name);
    }
    void Raise(const std::string& body, Message_Type type = Message_Type::out) {
        engine.events.ACARSMessage.emit(type, Message(body));
    }
    static std::string Message(const std::string& body) { return "t\r\nr\r\nl\r\nf\r\n" + body; }
    static std::string Form(const std::string& body, const std::string& rest) {
        return "acars0=t&acars1=r&acars2=l&acars3=f&acars4=" + body + "+++&" + rest;
    }
    std::vector<std::string> Take_Asked() {
        const std::lock_guard guard(m_lock);
        return std::exchange(m_asked, {});
    }
    void Pass() { desktop.Run_For(std::chrono::seconds(1)); }
    /// The pilot asks for the weather of the code he types.
    void Ask_Weather(const std::string& code) {
        panel->txtCommand.Enter(code);
        panel->hypWX.Click();
    }

    Offset_Area area;
    In_Process_Transport transport{area};
    modFSUIPC link{transport, clock};
    clsUTC utc{clock};
    clsACARS engine{{services, link, settings, airline, utc}};
    std::optional<ucMSG> panel;
    /// What a window shows that only follows the panel's notices.
    std::string shown;
    /// Happens, once, while a request runs.
    std::function<void()> meanwhile;

  private:
    std::mutex m_lock;
    std::vector<std::string> m_asked;

  protected:
    test::Web_Server server;
};

TEST_F(Message_Panel, Reports_leave_one_by_one_in_order_as_they_arose) {
    settings.Set_PilotID("P1");
    engine.Set_Form_ICAO_Depart("KBOS");
    Raise("one");
    engine.Set_Form_ICAO_Arrive("KSEA");
    Raise("two");
    engine.Set_Form_ICAO_Depart("late");
    EXPECT_TRUE(Take_Asked().empty()) << "not within the step";
    meanwhile = [&] {
        settings.Set_PilotID("P2");
        Raise("three");
        Pass();
        EXPECT_TRUE(Take_Asked().empty()) << "two at a time";
        EXPECT_EQ(desktop.Waiting_For(), "Sending an ACARS message to the airline ...");
        EXPECT_FALSE(desktop.Timers().Is_Ticking()) << "the pilot's boxes would stay away";
        EXPECT_TRUE(panel->Is_Posting());
    };
    Pass();
    Pass();
    EXPECT_FALSE(meanwhile);
    EXPECT_THAT(Take_Asked(),
                ElementsAre("/X " + Form("one", "acars5=P1&acars6=KBOS&acars7=&"),
                            "/X " + Form("two", "acars5=P1&acars6=KBOS&acars7=KSEA&"),
                            "/X " + Form("three", "acars5=P2&acars6=late&acars7=KSEA&")));
    EXPECT_FALSE(panel->Is_Posting());
    EXPECT_EQ(desktop.Waiting_For(), "");
    EXPECT_EQ(panel->Log(),
              Message("one\r\n\r\n") + Message("two\r\n\r\n") + Message("three\r\n\r\n"));
    EXPECT_EQ(shown, panel->Log());
}

TEST_F(Message_Panel, A_report_goes_to_the_airline_of_its_message_whatever_its_server_does) {
    test::Raw_Server hanging(test::Hang);
    test::Raw_Server resetting(test::Reset);
    options.all_within = std::chrono::milliseconds(300);
    panel.emplace(ucMSG::Parts{services, settings, airline, options});
    panel->Set_ACARS(engine);
    for (const std::string& host : {hanging.Host(), resetting.Host(), std::string("127.0.0.1:1")}) {
        Fly_For("BAD", host);
        Raise("lost");
        Fly_For("X", server.Host());
        settings.Set_Virtual_Airline("BAD");  // the pilot looks at it
        Raise("good");
        Fly_For("NONE", "");
        Raise("unsent");
        Pass();
        EXPECT_THAT(Take_Asked(), ElementsAre(HasSubstr("/X acars0=t&acars1=r&acars2=l&acars3=f&"
                                                        "acars4=good+")));
        EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsWinInet.Send_ACARS_Report()")));
        EXPECT_TRUE(desktop.boxes.empty());
        EXPECT_EQ(airline.Name(), "NONE");
        EXPECT_FALSE(panel->Is_Posting());
    }
    EXPECT_THAT(panel->Log(), HasSubstr("lost"));
}

TEST_F(Message_Panel, The_times_at_the_gate_write_a_log_file_that_replaces_none) {
    airline.Get_VA_Settings("DEFAULT");
    settings.Set_Virtual_Airline("DEFAULT");
    std::filesystem::create_directories(directory / "messagelogs");
    Raise("\xC4", Message_Type::times);
    EXPECT_TRUE(std::filesystem::is_empty(directory / "messagelogs")) << "not asked for";
    settings.Set_OPT_MessageLog(true);
    Raise("in", Message_Type::in);
    Raise("times", Message_Type::times);
    Raise("again", Message_Type::times);
    const std::string first =
        Message("\xC4\r\n\r\n") + Message("in\r\n\r\n") + Message("times\r\n\r\n");
    EXPECT_EQ(Read("messagelogs/2026-03-14-1509-26_ACARS.txt"), first + "\r\n");
    EXPECT_EQ(Read("messagelogs/2026-03-14-1509-26_ACARS-2.txt"),
              first + Message("again\r\n\r\n") + "\r\n");

    std::filesystem::remove_all(directory / "messagelogs");
    Timer step(desktop.Timers(), std::chrono::milliseconds(1));
    step.tick.connect([&] {
        step.Set_Enabled(false);
        Raise("kept", Message_Type::times);
    });
    step.Set_Enabled(true);
    Pass();
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("ucMSG.Export_Message_Log()")));
    EXPECT_THAT(panel->Log(), EndsWith("kept\r\n\r\n"));
    EXPECT_FALSE(panel->Is_Posting()) << "no airline that takes reports";
    ASSERT_EQ(desktop.boxes.size(), 1U) << "also from within a step";
    EXPECT_THAT(desktop.boxes[0].text, HasSubstr("could not be written to a file"));
}

TEST_F(Message_Panel, The_messages_of_a_stored_flight_outlive_the_program) {
    const auto start_anew = [&] {
        panel.emplace(ucMSG::Parts{services, settings, airline, options});
        panel->Set_ACARS(engine);
        Take_Asked();
    };
    settings.Set_OPT_MessageLog(true);
    std::filesystem::create_directories(directory / "messagelogs");
    Raise("out|");
    engine.events.FSTime.emit("1405");
    start_anew();
    EXPECT_EQ(panel->Log(), "") << "no flight is stored before OFF";
    Raise("out|");
    store.Set("ACARS", "45", "2");
    engine.events.FSTime.emit("1410");
    Raise("off", Message_Type::off);
    Pass();
    start_anew();
    EXPECT_EQ(panel->Log(), Message("out|\r\n\r\n") + Message("off\r\n\r\n"));
    engine.events.Start.emit();
    Raise("times", Message_Type::times);
    EXPECT_EQ(Read("messagelogs/2026-03-14-1509-27_ACARS.txt"), panel->Log() + "\r\n");
    Pass();
    EXPECT_THAT(Take_Asked(), ElementsAre(HasSubstr("acars4=times+"))) << "sent a second time";

    start_anew();
    EXPECT_THAT(panel->Log(), HasSubstr("times"));
    store.Delete_Section("ACARS");  // given up
    Raise("new", Message_Type::connected);
    engine.events.Start.emit();
    engine.events.FSTime.emit("1500");
    EXPECT_EQ(panel->Log(), Message("new\r\n\r\n"));
    EXPECT_FALSE(store.Find("ACARS", "Messages")) << "no flight to keep them with";
}

TEST_F(Message_Panel, The_pilot_comments_between_start_and_gate) {
    panel->txtCommand.Enter("early");
    panel->hypComment.Click();
    EXPECT_EQ(panel->Log(), "");
    engine.events.Start.emit();
    panel->txtCommand.Enter(" hi ");
    panel->hypComment.Click();
    EXPECT_THAT(panel->Log(), EndsWith("Message:\r\n hi \r\n\r\n"));
    EXPECT_EQ(panel->txtCommand.Text(), "");
    panel->hypComment.Click();
    EXPECT_THAT(panel->Log(), EndsWith("Msg No: M02A\r\nFlight ID: \r\nMessage:\r\n\r\n\r\n"));
    panel->txtCommand.Enter("half");
    engine.events.FlightAtGate.emit();
    panel->hypComment.Click();
    EXPECT_EQ(panel->txtCommand.Text(), "");
    EXPECT_THAT(panel->Log(), HasSubstr(" hi "));
    EXPECT_EQ(shown, panel->Log());
    engine.Reset();
    EXPECT_EQ(panel->Log(), "");
    EXPECT_EQ(shown, "");
}

TEST_F(Message_Panel, Weather_becomes_a_message_of_the_flight_that_asked) {
    const std::string report = "Message:\r\nKBOS 141509Z 9SM\r\n\r\nKBOS 141509Z 9SM\r\n\r\n";
    engine.events.Start.emit();
    Ask_Weather("   ");
    EXPECT_EQ(panel->Log() + panel->txtCommand.Text(), "   ");
    meanwhile = [&] {
        EXPECT_EQ(desktop.Waiting_For(), "Fetching the weather of kbos ...");
        panel->hypWX.Click();
        panel->txtCommand.Enter("next");
    };
    Ask_Weather(" kbos ");
    EXPECT_FALSE(meanwhile);
    EXPECT_THAT(panel->Log(), EndsWith(report));
    EXPECT_THAT(panel->Log(), HasSubstr("Msg Label: WX Block ID: 01 Msg No: M01A"));
    EXPECT_EQ(panel->txtCommand.Text(), "next");
    EXPECT_THAT(Take_Asked(), ElementsAre("/NOAA/metar?id=KBOS", "/NOAA/taf?id=KBOS"));
    Pass();
    Take_Asked();
    const std::string log = panel->Log();
    const std::string source = settings.WX_URL();
    settings.Set_WX_URL("NONE");
    Ask_Weather("KJFK");
    settings.Set_WX_URL(source);
    EXPECT_EQ(panel->Log(), log) << "no report is no message";
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_THAT(desktop.boxes[0].text, HasSubstr("No weather report of KJFK came"));
    EXPECT_EQ(panel->txtCommand.Text(), "KJFK");

    for (const auto& ends : {std::function<void()>([&] { engine.Reset(); }),
                             std::function<void()>([&] { engine.events.FlightAtGate.emit(); }),
                             std::function<void()>([&] { panel->Close(); })}) {
        engine.events.Start.emit();
        std::string log_at_end;
        meanwhile = [&] {
            ends();
            engine.events.Start.emit();
            log_at_end = panel->Log();
        };
        Ask_Weather("KBOS");
        EXPECT_FALSE(meanwhile);
        EXPECT_EQ(panel->Log(), log_at_end);
        Take_Errors();
    }
    EXPECT_FALSE(panel->txtCommand.Enabled()) << "closed";
}

TEST_F(Message_Panel, Closing_ends_the_report_under_way_and_counts_those_behind_it) {
    for (const char* body : {"one", "two", "three"})
        Raise(body);
    meanwhile = [&] { panel->Close(); };
    Pass();
    EXPECT_FALSE(meanwhile);
    EXPECT_FALSE(panel->Is_Posting());
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("ACARS messages not sent: 2"),
                                           HasSubstr("clsWinInet.Send_ACARS_Report()")));
    Raise("late");
    Pass();
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("ucMSG.Send_ACARS_Report()")));
    EXPECT_FALSE(panel->Is_Posting());
    EXPECT_TRUE(desktop.boxes.empty());
}

}  // namespace
}  // namespace norvane
