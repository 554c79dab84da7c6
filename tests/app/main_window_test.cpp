// The main window without a flight: its place, its menus, its status bar.

#include <algorithm>
#include <optional>

#include "app/frm_main.h"
#include "support/test_flight.h"

namespace norvane::test {
namespace {

class Main_Window : public Test_Flight {
  protected:
    Main_Window() { Open(); }

    void Open() {
        window.reset();
        window.emplace(Start());
        Take_Errors();
    }
    std::optional<frmMain> window;
};

TEST_F(Main_Window, Comes_back_where_it_was_left_unless_it_was_minimised) {
    EXPECT_EQ(window->Place(), Window_Place());
    const Window_Place left{-240, 3330, 12000, 9000, true};
    window->Set_Place(left);
    window->Set_Minimised(true);
    window->Set_Place({-32000, -32000, 10, 10, false});
    EXPECT_EQ(window->Caption(), "NV ACARS: OFF");
    window->Form_Unload(ucACARS::Closing::by_pilot);
    EXPECT_EQ(store.Find("AppPos", "MainLeft"), std::nullopt);

    Open();
    window->Set_Place(left);
    window->Form_Unload(ucACARS::Closing::by_pilot);
    Open();
    EXPECT_EQ(window->Place(), left);

    for (const std::string_view broken : {"wide", "", "1e300", "12,5"}) {
        store.Set("AppPos", "MainLeft", broken);
        store.Set("AppPos", "MainTop", "1234.6");
        store.Set("AppPos", "MainWidth", "-5");
        store.Set("AppPos", "MainState", broken);
        Open();
        EXPECT_EQ(window->Place(), (Window_Place{1000, 1235, 15000, 9000, false})) << broken;
    }
}

TEST_F(Main_Window, Closes_once_and_without_a_word_when_its_place_cannot_be_stored) {
    int closed = 0;
    window->Closed.Connect([&] { ++closed; });
    store.full = true;
    window->mnuFileExit.Choose();
    window->Form_Unload(ucACARS::Closing::by_signal);
    EXPECT_EQ(closed, 1);
    for (const std::string& report : Take_Errors())
        EXPECT_EQ(report.find("frmMain"), std::string::npos) << report;
}

TEST_F(Main_Window, Closing_tells_of_an_edited_PIREP_unless_a_signal_asks_for_it_too) {
    using enum ucACARS::Closing;
    const std::vector<std::vector<ucACARS::Closing>> cases{
        {by_pilot}, {by_signal}, {by_pilot, by_signal}, {by_signal, by_pilot}};
    for (const auto& closings : cases) {
        SCOPED_TRACE(testing::PrintToString(closings));
        Open();
        desktop.chosen_files = {Write("reports/my.txt", "1|2|3\r\n")};
        program->pirep_editor.Show_Form();
        program->pirep_editor.hypPIREP[frmPIREP::select].Click();
        program->pirep_editor.Rows().at(0)->txtField.Enter("edited");
        program->panel.hypOn.Click();
        desktop.boxes.clear();
        // Within a step, so that each is asked for before anything has ended.
        program->engine.events.FSTime.Connect([&](const std::string&) {
            for (const ucACARS::Closing how : closings)
                window->Form_Unload(how);
        });
        desktop.Run_For(std::chrono::seconds(2));
        EXPECT_EQ(desktop.boxes.size(), closings == std::vector{by_pilot} ? 1U : 0U);
        Take_Errors();
    }
}

TEST_F(Main_Window, Opens_what_its_commands_name) {
    Write("nv.html", "<h1 id='settings'>");
    window->frame.SetActivePanel("Settings");
    EXPECT_TRUE(window->Key(Window_Key::f1));
    EXPECT_THAT(desktop.opened_files, testing::ElementsAre(directory / "nv.html"));
    EXPECT_THAT(desktop.opened_anchors, testing::ElementsAre("settings"));
    std::filesystem::remove(directory / "nv.html");
    window->mnuHelpContents.Choose();
    EXPECT_THAT(Take_Errors(), testing::ElementsAre(testing::HasSubstr("mnuHelpContents_Click")));

    Write("bin/fs9.wld", "1|2|3|NVTS|Nova Test\r\n");
    EXPECT_TRUE(window->Key(Window_Key::f2));
    EXPECT_TRUE(program->airport_lookup.Is_Open());
    EXPECT_FALSE(window->Key(Window_Key::other));
    // Without a simulator they say so.
    linked = false;
    const auto told = [&] {
        EXPECT_EQ(desktop.boxes.back().icon, Icon::exclamation);
        return desktop.boxes.back().text;
    };
    EXPECT_TRUE(window->Key(Window_Key::f4));
    EXPECT_EQ(told(),
              "Unable to connect to Flight Simulator.  Please make sure that Flight Simulator is "
              "running.");
    window->mnuFileLoadAC.Choose();
    EXPECT_EQ(told(),
              "Unable to Load Aircraft Types.  Please make sure that Flight Simulator is running.");
    EXPECT_FALSE(desktop.busy);
}

TEST_F(Main_Window, Locks_the_settings_of_a_flight_and_says_everywhere_that_it_is_paused) {
    ucSettings& panel = program->settings_panel;
    EXPECT_TRUE(panel.cboFuel.Enabled());
    // A blank typed behind "On" must not pause the flight.
    const Control* keyboard = nullptr;
    program->panel.Focus_Moved.Connect([&](const Control& model) { keyboard = &model; });
    program->panel.hypOn.Click();
    ASSERT_TRUE(program->panel.Is_Active());
    EXPECT_EQ(keyboard, &program->panel.txtDate);
    EXPECT_FALSE(panel.cboFuel.Enabled());
    EXPECT_FALSE(panel.txtPilot[ucSettings::pilot_name].Enabled());
    const Label& notice = window->frame.lblNotice;
    for (const bool paused : {false, true, false, true}) {
        EXPECT_EQ(notice.Visible(), paused);
        EXPECT_EQ(notice.Text().empty(), !paused);
        EXPECT_EQ(window->Caption(), paused ? "Norvane - ACARS: PAUSED" : "Norvane");
        program->panel.hypPause.Click();
    }
    program->panel.hypPause.Click();
    desktop.withdrawn.clear();
    program->panel.hypReset.Click();
    EXPECT_FALSE(notice.Visible());
    EXPECT_THAT(desktop.withdrawn, testing::Contains("interrupted"));
    EXPECT_TRUE(panel.cboFuel.Enabled());
    Take_Errors();
}

TEST_F(Main_Window, Offers_PIREPs_while_the_airline_takes_them) {
    Write("VA_POSTING/server.cfg", "host\r\n/pirep\r\n\r\n");
    for (const std::string airline : {"POSTING", "DEFAULT"}) {
        program->airline.Get_VA_Settings(airline);
        const auto shown = frmMain::Shown(window->Menus().at(0));
        const bool offered = airline == "POSTING";
        EXPECT_EQ(testing::Value(shown, testing::Contains(&window->mnuFileSendPIREP)), offered);
        EXPECT_EQ(std::count(shown.begin(), shown.end(), nullptr), offered ? 2 : 1);
    }
    Take_Errors();
}

TEST_F(Main_Window, Keeps_clock_colours_and_log_name_current) {
    const auto status = [&](Status_Panel panel) { return window->Status(panel).Text(); };
    EXPECT_EQ(status(Status_Panel::local), "LOCAL: 1509Z");
    EXPECT_EQ(status(Status_Panel::time), "15:09");
    EXPECT_EQ(status(Status_Panel::date), "3/14/2026");
    desktop.Run_For(std::chrono::seconds(45));
    EXPECT_EQ(status(Status_Panel::local), "LOCAL: 1510Z");
    EXPECT_EQ(status(Status_Panel::time), "15:10");

    EXPECT_EQ(status(Status_Panel::flight_log), "FLIGHT LOG: " + program->settings.FlightLog());
    program->settings.Set_FlightLog("Gliders");
    EXPECT_EQ(status(Status_Panel::flight_log), "FLIGHT LOG: Gliders");

    int changes = 0;
    window->changed.Connect([&] { ++changes; });
    program->settings.Set_Color_Link_Bar(0x123456);
    program->settings.Set_Color_MenuBar_Back(0x654321);
    EXPECT_NE(window->Title_BackColor(), 0x123456) << "not before the settings are saved";
    program->settings.Save_Settings();
    EXPECT_EQ(window->Title_BackColor(), 0x123456);
    EXPECT_EQ(window->frame.BackColor(), 0x654321);
    EXPECT_EQ(changes, 1);
}

}  // namespace
}  // namespace norvane::test
