// The message panel between the engine, the pilot, the weather source and the airline's script.

#include "messagepanel/uc_msg.h"

#include <gmock/gmock.h>

#include <functional>
#include <optional>
#include <thread>

#include "acars/cls_acars.h"
#include "acars/cls_utc.h"
#include "deliveries/outbox.h"
#include "net/net_world.h"
#include "simlink/in_process_transport.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"

namespace norvane {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

class Message_Panel : public test::Pages_World {
  protected:
    Message_Panel() {
        pages["/NOAA/METAR"] = pages["/NOAA/TAF"] = "KBOS 141509Z 9SM";
        settings.Set_WX_URL("NOAA");
        options.given_up = [this] {
            if (meanwhile)
                std::exchange(meanwhile, nullptr)();
            return false;
        };
        Fly_For("X", server.Host());
        Open_Panel();
    }
    /// As a program does that starts anew.
    void Open_Panel() {
        panel.reset();
        outbox.emplace(services, options, [] { return 0.0; });
        outbox->Begin();
        panel.emplace(ucMSG::Parts{services, settings, airline, *outbox, options});
        panel->Log_Appended.Connect([this](const std::string& added) { shown += added; });
        panel->Log_Cleared.Connect([this] { shown.clear(); });
        shown.clear();
        panel->Set_ACARS(engine);
        Take_Asked();
    }
    void Fly_For(const std::string& name, const std::string& host) {
        Write("VA_" + name + "/server.cfg", host + "\r\n\r\n/" + name + "\r\n");
        settings.Set_Virtual_Airline(name);
        airline.Get_VA_Settings(name);
    }
    void Raise(const std::string& body, Message_Type type = Message_Type::out) {
        engine.events.ACARSMessage.Emit(type, Message(body));
    }
    static std::string Message(const std::string& body) { return "t\r\nr\r\nl\r\nf\r\n" + body; }
    /// The messages as they stand in the log.
    static std::string Log_Of(std::initializer_list<const char*> bodies) {
        std::string log;
        for (const char* body : bodies)
            log += Message(body) + "\r\n\r\n";
        return log;
    }
    static std::string Form(const std::string& body, const std::string& rest) {
        return "/X acars0=t&acars1=r&acars2=l&acars3=f&acars4=" + body + "+++&acars5=" + rest;
    }
    void Pass() {
        desktop.Run_For(std::chrono::milliseconds(10));
        for (int turn = 0; turn < 2000 && outbox->Is_Active(); ++turn) {
            desktop.Run_For(std::chrono::milliseconds(10));
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    void Enter(const std::string& text, Link& command) {
        panel->txtCommand.Enter(text);
        command.Click();
    }

    Offset_Area area;
    In_Process_Transport transport{area};
    modFSUIPC link{transport, clock};
    clsUTC utc{clock};
    clsACARS engine{{services, link, settings, airline, utc}};
    std::optional<Outbox> outbox;
    std::optional<ucMSG> panel;
    /// What a window shows that only follows the panel's notices.
    std::string shown;
    /// Happens, once, while a request runs.
    std::function<void()> meanwhile;
};

TEST_F(Message_Panel, Reports_leave_one_by_one_in_order_as_they_arose) {
    settings.Set_PilotID("P1");
    engine.Set_Form_ICAO_Depart("KBOS");
    Raise("one");
    engine.Set_Form_ICAO_Arrive("KSEA");
    Raise("two");
    engine.Set_Form_ICAO_Depart("late");
    EXPECT_TRUE(Take_Asked().empty()) << "not within the step";
    settings.Set_PilotID("P2");
    Raise("three");
    EXPECT_EQ(outbox->Waiting(), 3U) << "stored at once";
    Pass();
    EXPECT_THAT(Take_Asked(), ElementsAre(Form("one", "P1&acars6=KBOS&acars7=&"),
                                          Form("two", "P1&acars6=KBOS&acars7=KSEA&"),
                                          Form("three", "P2&acars6=late&acars7=KSEA&")));
    EXPECT_EQ(outbox->Waiting(), 0U);
    EXPECT_EQ(shown, Log_Of({"one", "two", "three"}));
}

TEST_F(Message_Panel, A_report_goes_to_the_airline_of_its_message_whatever_other_servers_do) {
    Fly_For("BAD", "127.0.0.1:1");
    Raise("lost");
    Fly_For("X", server.Host());
    settings.Set_Virtual_Airline("BAD");  // the pilot looks at it
    Raise("good");
    Fly_For("NONE", "");
    Raise("unsent");
    Pass();
    EXPECT_THAT(Take_Asked(), ElementsAre(Form("good", "&acars6=&acars7=&")));
    EXPECT_THAT(Take_Errors(),
                ElementsAre(HasSubstr("ACARS report for the airline BAD is waiting")));
    EXPECT_TRUE(desktop.boxes.empty());
    EXPECT_EQ(airline.Name(), "NONE");
    EXPECT_EQ(outbox->Waiting(), 1U) << "kept for a server that comes back";
}

TEST_F(Message_Panel, What_is_asked_for_within_a_step_waits_for_its_end) {
    int result = 0;
    ASSERT_TRUE(link.IPC_Open(0, result));
    area.Set(Variable::parking_brake, 1);
    engine.events.Start.Emit();
    area.on_read = [&](auto, auto) {
        area.on_read = nullptr;
        Raise("within");
        Enter("KBOS", panel->hypWX);
        Pass();
        EXPECT_TRUE(engine.Is_Stepping());
        EXPECT_THAT(Take_Asked(), ElementsAre(Form("within", "&acars6=&acars7=&")))
            << "a report holds no step up, the weather would";
    };
    engine.Refresh();
    Pass();
    EXPECT_THAT(Take_Asked(),
                testing::UnorderedElementsAre("/NOAA/METAR?id=KBOS", "/NOAA/TAF?id=KBOS",
                                              HasSubstr("KBOS+141509Z")));
    EXPECT_EQ(panel->txtCommand.Text(), "");
}

TEST_F(Message_Panel, The_times_at_the_gate_write_a_log_file_that_replaces_none) {
    Fly_For("NONE", "");
    std::filesystem::create_directories(directory / "messagelogs");
    Raise("\xC4", Message_Type::times);
    EXPECT_TRUE(std::filesystem::is_empty(directory / "messagelogs")) << "not asked for";
    settings.Set_OPT_MessageLog(true);
    Raise("in", Message_Type::in);
    Raise("times", Message_Type::times);
    Raise("again", Message_Type::times);
    EXPECT_EQ(Read("messagelogs/2026-03-14-1509-26_ACARS.txt"),
              Log_Of({"\xC4", "in", "times"}) + "\r\n");
    EXPECT_EQ(Read("messagelogs/2026-03-14-1509-26_ACARS-2.txt"),
              Log_Of({"\xC4", "in", "times", "again"}) + "\r\n");

    std::filesystem::remove_all(directory / "messagelogs");
    Raise("kept", Message_Type::times);
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("ucMSG.Export_Message_Log()")));
    EXPECT_THAT(panel->Log(), EndsWith("kept\r\n\r\n"));
    EXPECT_EQ(outbox->Waiting(), 0U) << "no airline that takes reports";
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_THAT(desktop.boxes[0].text, HasSubstr("could not be written to a file"));
}

TEST_F(Message_Panel, The_messages_of_a_stored_flight_outlive_the_program) {
    const auto stored = [&](const std::string& key) { return store.Get("ACARS", key); };
    Raise("out|");
    engine.events.FSTime.Emit("1405");
    Open_Panel();
    EXPECT_EQ(shown, "") << "no flight is stored before OFF";
    Raise("out|");
    store.Set("ACARS", "45", "2");
    engine.events.FSTime.Emit("1410");
    EXPECT_EQ(stored("Message 1"), "2026-03-14 15:09:26|0|" + Message("out|"));
    Raise("off", Message_Type::off);
    EXPECT_EQ(stored("Messages") + " " + stored("Message 2"),
              "2 2026-03-14 15:09:26|1|" + Message("off"));
    Open_Panel();
    EXPECT_EQ(shown, Log_Of({"out|", "off"}));
    engine.events.Start.Emit();
    Raise("times", Message_Type::times);
    Pass();
    EXPECT_THAT(Take_Asked(), ElementsAre(HasSubstr("=out%7C+"), HasSubstr("=out%7C+"),
                                          HasSubstr("=off+"), HasSubstr("=times+")))
        << "each once, whatever ended between";
    // What is no message is passed over.
    store.Set("ACARS", "Message 1", "2026-03-14 15:09:26|0");
    store.Set("ACARS", "Message 3", "");
    Open_Panel();
    EXPECT_EQ(panel->Log(), Log_Of({"off"}));

    store.Delete_Section("ACARS");  // given up
    Raise("new", Message_Type::connected);
    engine.events.Start.Emit();
    engine.events.FSTime.Emit("1500");
    EXPECT_EQ(panel->Log() + shown, Log_Of({"new", "new"}));
    EXPECT_FALSE(store.Find("ACARS", "Messages")) << "no flight to keep them with";
}

TEST_F(Message_Panel, The_pilot_comments_between_start_and_gate) {
    Enter("early", panel->hypComment);
    EXPECT_EQ(panel->Log(), "");
    engine.events.Start.Emit();
    Enter(" hi ", panel->hypComment);
    EXPECT_THAT(panel->Log(), EndsWith("Message:\r\n hi \r\n\r\n"));
    EXPECT_EQ(panel->txtCommand.Text(), "");
    panel->hypComment.Click();
    EXPECT_THAT(panel->Log(), EndsWith("Msg No: M02A\r\nFlight ID: \r\nMessage:\r\n\r\n\r\n"));
    panel->txtCommand.Enter("half");
    engine.events.FlightAtGate.Emit();
    panel->hypComment.Click();
    EXPECT_EQ(panel->txtCommand.Text(), "");
    EXPECT_THAT(panel->Log(), HasSubstr(" hi "));
    engine.Reset();
    EXPECT_EQ(panel->Log() + shown, "");
}

TEST_F(Message_Panel, Weather_becomes_a_message_of_the_flight_that_asked) {
    engine.events.Start.Emit();
    Enter("   ", panel->hypWX);
    EXPECT_EQ(panel->Log() + panel->txtCommand.Text(), "   ");
    meanwhile = [&] {
        EXPECT_EQ(desktop.Waiting_For(), "Fetching the weather of kbos ...");
        panel->hypWX.Click();
        panel->txtCommand.Enter("next");
    };
    Enter(" kbos ", panel->hypWX);
    EXPECT_THAT(panel->Log(), HasSubstr("Msg Label: WX Block ID: 01 Msg No: M01A"));
    EXPECT_THAT(panel->Log(),
                EndsWith("Message:\r\nKBOS 141509Z 9SM\r\n\r\nKBOS 141509Z 9SM\r\n\r\n"));
    EXPECT_EQ(panel->txtCommand.Text(), "next");
    EXPECT_THAT(Take_Asked(), ElementsAre("/NOAA/METAR?id=KBOS", "/NOAA/TAF?id=KBOS"));
    const std::string log = panel->Log();
    settings.Set_WX_URL("NONE");
    Enter("KJFK", panel->hypWX);
    settings.Set_WX_URL("NOAA");
    EXPECT_EQ(panel->Log(), log) << "no report is no message";
    EXPECT_THAT(desktop.boxes.at(0).text, HasSubstr("No weather report of KJFK came"));
    EXPECT_EQ(panel->txtCommand.Text(), "KJFK");

    for (const auto& ends : std::vector<std::function<void()>>{
             [&] { engine.Reset(); }, [&] { engine.events.FlightAtGate.Emit(); },
             [&] { panel->Close(); }}) {
        engine.events.Start.Emit();
        std::string log_at_end;
        meanwhile = [&] {
            ends();
            engine.events.Start.Emit();
            log_at_end = panel->Log();
        };
        Enter("KBOS", panel->hypWX);
        EXPECT_EQ(panel->Log(), log_at_end);
        Take_Errors();
    }
    EXPECT_FALSE(panel->txtCommand.Enabled()) << "closed";
}

TEST_F(Message_Panel, Reports_that_could_not_leave_go_out_at_the_next_start) {
    for (const char* body : {"one", "two"})
        Raise(body);
    panel->Close();
    outbox->Close();
    Raise("late");
    Pass();
    EXPECT_FALSE(panel->txtCommand.Enabled() || panel->hypWX.Enabled());
    EXPECT_THAT(Take_Asked(), testing::IsEmpty());
    Open_Panel();
    Pass();
    EXPECT_THAT(Take_Asked(),
                ElementsAre(HasSubstr("=one+"), HasSubstr("=two+"), HasSubstr("=late+")));
}

}  // namespace
}  // namespace norvane
