// The settings panel: what it saves is what a new start finds, what it locks stays, and what it
// warns of.

#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <optional>

#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "config/setting_table.h"
#include "settingspanel/uc_settings.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Settings_Panel : public test::Test_World {
  protected:
    Settings_Panel() {
        Write("bin/url.cfg", "[NOAA]\r\nURL=x\r\n[NONE]\r\n");
        Write("bin/airline.cfg", "Air Nova|NV|NVA\r\n\r\nBlue Sky|BS|BSK|more\r\nSea|S");
        Write("VA_abc/server.cfg", "host\r\n/pirep\r\n");
        Write("VA_Xyz/server.cfg", "other\r\n\r\n/acars\r\n");
        Write("logs/Jets.txt", "\r\n");
        Open();
    }
    /// The program, started anew on the same store and directory.
    void Open() {
        panel.reset();
        airline.emplace(services);
        settings.emplace(services);
        airline->Get_VA_Settings(settings->Virtual_Airline());
        panel.emplace(services, *settings, *airline);
    }
    auto Listed() const { return List_Settings(*settings); }
    /// Saves, and tells which settings are others than before.
    std::string Save() {
        const auto before = Listed();
        panel->hypSave.Click();
        const auto after = Listed();
        std::string changes;
        for (std::size_t i = 0; i < after.size(); ++i)
            changes += before[i] == after[i] ? "" : after[i].first + "=" + after[i].second + " ";
        return changes;
    }
    static void Choose(Combo_Box& list, std::string_view entry) {
        const auto& entries = list.Entries();
        list.Choose(
            static_cast<int>(std::find(entries.begin(), entries.end(), entry) - entries.begin()));
        EXPECT_EQ(list.Text(), entry);
    }

    std::optional<clsAppSettings> settings;
    std::optional<clsVASettings> airline;
    std::optional<ucSettings> panel;
};

TEST_F(Settings_Panel, Every_control_sets_what_it_names_and_is_found_again_after_a_start) {
    // Those with few values one by one: two of them may have each other's.
    std::string changes;
    for (const auto& row : panel->ACARS_Lists()) {
        const int last = static_cast<int>(row.list.Entries().size()) - 1;
        row.list.Choose(row.list.Selected() == last ? 0 : last);
        changes += Save();
    }
    for (Check_Box& box : panel->chkACARS) {
        box.Click();
        changes += Save();
    }
    EXPECT_EQ(changes,
              "ACARS_Date=0 ACARS_EOF=2 ACARS_Weight=1 ACARS_Fuel=2 ACARS_Time=0 "
              "ACARS_ATCModel=True ACARS_RecordArrival=1 ACARS_TouchAndGo=1 WX_URL=NONE "
              "ACARS_UseTime=1 OPT_AutoLog=True OPT_MessageLog=True OPT_ACARS_To_FS=True "
              "OPT_PIREP=True OPT_PIREP_SEND=True VATSIM_FP=1 ");
    Choose(panel->cboVA, "ABC");
    Choose(panel->cboLog, "Jets");
    desktop.chosen_colors = {0x123456, 0x102030, 0x654321};
    for (Link& link : panel->cmdColor)
        link.Click();
    panel->optACARS[ucSettings::take_off_altitude].Click();
    Choose(panel->cboTakeOffAlt, "35");
    panel->txtSimulator.Enter(" sim.local:8338 ");
    panel->txtVATSIM_PID.Enter("812345");
    panel->txtSimBrief_User.Enter(" zoe ");
    for (Text_Box& box : panel->txtPilot)
        box.Enter("NV" + std::to_string(&box - panel->txtPilot.data()));
    panel->chkIATAPrefix.Click();
    panel->optFields[1].txtName.Enter("Crew^");
    EXPECT_EQ(panel->optFields[1].txtName.Text(), "Crew/") << "seen as it will be stored";
    panel->optFields[1].cboType.Choose(1);
    panel->optFields[1].txtList.Enter(" Anna|Ben ");
    EXPECT_EQ(panel->cboRecordings.Text(), "Last 200 Flights");
    Choose(panel->cboRecordings, "No Flights");
    EXPECT_EQ(
        Save(),
        "FlightLog=Jets Color_Link_Bar=1193046 Color_MenuBar_Back=1056816 "
        "Color_MenuBar_Fore=6636321 OPT_Recordings=0 ACARS_TakeOff_Alt=35 "
        "Simulator_Address=sim.local:8338 VATSIM_PID=812345 SimBrief_User=zoe "
        "Virtual_Airline=ABC Virtual_Airline_Log=Jets PilotName=NV0 PilotEmail=NV1 PilotID=NV2 "
        "Airline_IATA=NV3 Airline_ICAO=NV4 Airline_IATAPrefix=True "
        "OptFields(1)=Crew/^Anna|Ben FlightLog_Path=" +
            (directory / "logs/Jets.txt ").string());
    EXPECT_EQ(
        desktop.boxes.back().text,
        "Changes made to optional Flight Log fields will take effect when Norvane is "
        "restarted.\r\nNorvane settings saved.\r\nFlights are logged in \"Jets\" from now on.");
    EXPECT_EQ(airline->WebServer(), "host");

    // Saved as a start shows it, nothing changes; left without saving, neither.
    settings->Set_OPT_Recordings(77);
    EXPECT_TRUE(settings->Save_Settings());
    Open();
    EXPECT_EQ(panel->cboRecordings.Text(), "Last 77 Flights");
    EXPECT_EQ(Save(), "");
    panel->cmdReset.Click();
    panel->chkACARS[ucSettings::auto_log].Click();
    panel->optACARS[ucSettings::on_ground_flag].Click();
    panel->hypCancel.Click();
    EXPECT_EQ(Save(), "");
}

TEST_F(Settings_Panel, Controls_follow_what_they_depend_on_and_the_lock) {
    Check_Box& save_pirep = panel->chkACARS[ucSettings::save_pirep];
    Check_Box& send_pirep = panel->chkACARS[ucSettings::send_pirep];
    for (Check_Box* box : {&save_pirep, &send_pirep, &save_pirep})
        box->Click();
    EXPECT_FALSE(send_pirep.Checked() || send_pirep.Enabled());
    panel->chkACARS[ucSettings::vatsim].Click();
    panel->txtVATSIM_PID.Enter("1");
    for (int clicks = 0; clicks < 2; ++clicks)
        panel->chkACARS[ucSettings::vatsim].Click();
    EXPECT_EQ(panel->txtVATSIM_PID.Text(), "");
    EXPECT_FALSE(panel->cboTakeOffAlt.Enabled());
    panel->optACARS[ucSettings::take_off_altitude].Click();
    EXPECT_EQ(panel->cboTakeOffAlt.Text(), "5");
    panel->txtPilot[ucSettings::iata].Enter("NV");
    panel->chkIATAPrefix.Click();
    panel->txtPilot[ucSettings::iata].Enter(" ");
    EXPECT_FALSE(panel->chkIATAPrefix.Checked() || panel->chkIATAPrefix.Enabled());
    panel->txtPilot[ucSettings::iata].Enter("NV");
    Text_Box& entries = panel->optFields[0].txtList;
    for (const int type : {1, 0}) {
        panel->optFields[0].cboType.Choose(type);
        EXPECT_EQ(entries.Enabled(), type == 1);
        entries.Enter("A|B");
    }
    EXPECT_EQ(entries.Text(), "");

    const std::vector<const Control*> locked = {
        &panel->cboTakeOffAlt, &panel->txtVATSIM_PID, &panel->cboVA,       &panel->cboLog,
        &panel->chkIATAPrefix, &panel->txtSimulator,  &panel->optACARS[0], &panel->chkACARS[0],
        &panel->txtPilot[0],   &panel->hypAirline[1], &panel->cboDate};
    for (const bool unlocked : {true, false}) {
        panel->ACARS_STATE(unlocked);
        panel->Choose_Tab(ucSettings::virtual_airline);
        EXPECT_EQ(panel->lblLocked.Visible(), !unlocked);
        for (std::size_t i = 0; i < locked.size(); ++i)
            EXPECT_EQ(locked[i]->Enabled(), unlocked) << i;
    }

    // Saved in flight: colours and optional fields, and no airline is loaded over the panel's.
    int loaded = 0;
    airline->Change.Connect([&] { ++loaded; });
    panel->optFields[0].txtName.Enter("Gate");
    for (const auto& row : panel->ACARS_Lists())
        row.list.Choose(row.list.Selected() == 0 ? 1 : 0);
    panel->optACARS[ucSettings::on_ground_flag].Set_Chosen(true);
    panel->txtSimulator.Set_Text("no address");
    panel->cboVA.Choose(0);
    for (Text_Box& text : panel->txtPilot)
        text.Set_Text("XX");
    EXPECT_EQ(Save(), "OptFields(0)=Gate^ ");
    EXPECT_EQ(loaded, 0);
}

TEST_F(Settings_Panel, Asks_before_old_values_stand_under_other_captions) {
    for (const auto& [row, name] : {std::pair{0U, "Gate"}, {2U, "Crew"}})
        panel->optFields.at(row).txtName.Enter(name);
    Save();
    ASSERT_EQ(desktop.boxes.size(), 1U) << "there were no captions before";
    Open();
    // A field behind the others moves nothing.
    panel->optFields[4].txtName.Enter("Fuel");
    EXPECT_EQ(Save(), "OptFields(4)=Fuel^ ");
    Open();
    panel->optFields[0].txtName.Enter("");
    panel->swColor[0].Set_Color(7);
    EXPECT_EQ(Save(), "") << "the question was answered No";
    EXPECT_THAT(desktop.boxes.back().text,
                HasSubstr("change\r\nvalues of \"Gate\" will stand under \"Crew\"\r\n"
                          "values of \"Crew\" will stand under \"Fuel\".\r\n"));
    // What was typed stays.
    desktop.answers.push_back(Answer::yes);
    EXPECT_EQ(Save(), "Color_Link_Bar=7 OptFields(0)= ");
}

TEST_F(Settings_Panel, What_is_looked_at_is_nobodys_but_the_panels) {
    Text_Box& id = panel->txtPilot[ucSettings::pilot_id];
    const auto shown = [&] { return panel->cboVA.Text() + id.Text() + panel->cboLog.Text(); };
    const auto look_at = [&](const char* name, const char* its_id, const char* log) {
        Choose(panel->cboVA, name);
        id.Enter(its_id);
        Choose(panel->cboLog, log);
    };
    look_at("ABC", "A1", "Jets");
    Save();
    EXPECT_TRUE(panel->chkACARS[ucSettings::send_pirep].Visible());

    // Another airline's fields are shown, and nobody flies for it.
    for (const int end : {0, 1, 2}) {
        for (const auto& [name, its_id] : {std::pair{"XYZ", ""}, {"ABC", "A1"}}) {
            Choose(panel->cboVA, name);
            EXPECT_EQ(id.Text(), its_id);
            Choose(panel->cboLog, "My Flight Log");
            if (end == 0)
                panel->Leave();
            else if (end == 1)
                panel->hypCancel.Click();
            for (const bool unlocked : {end != 2, true})
                panel->ACARS_STATE(unlocked);
            EXPECT_EQ(shown(), "ABCA1Jets");
        }
    }
    EXPECT_EQ(Save(), "");
    // Other tabs, and a list that grows meanwhile, leave what was typed.
    look_at("XYZ", "X1", "My Flight Log");
    panel->Choose_Tab(ucSettings::acars);
    Write("VA_North/server.cfg", "");
    panel->Choose_Tab(ucSettings::virtual_airline);
    EXPECT_EQ(panel->cboVA.Entries().size(), 3U);
    EXPECT_THAT(Save(), HasSubstr("Virtual_Airline=XYZ Virtual_Airline_Log=My Flight Log "
                                  "PilotID=X1 "));
    EXPECT_FALSE(panel->chkACARS[ucSettings::send_pirep].Visible());
    // Only part of it can be saved: still one airline for the whole program.
    std::filesystem::create_directories(directory / "bin/optfields.cfg");
    panel->optFields[0].txtName.Enter("Gate");
    Choose(panel->cboVA, "ABC");
    Save();
    EXPECT_EQ(settings->Virtual_Airline() + airline->Name(), "ABCABC");
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsAppSettings.Save_Opt_Fields()")));
    // One that goes while it is shown gives way to the one that is set.
    Choose(panel->cboVA, "NORTH");
    for (const auto* gone : {"VA_abc", "VA_North"})
        std::filesystem::remove_all(directory / gone);
    panel->Refresh_VA_Information();
    EXPECT_FALSE(panel->cboVA.Enabled());
    EXPECT_EQ(id.Text(), "A1");
}

TEST_F(Settings_Panel, Flights_go_to_another_log_only_when_airline_or_default_log_change) {
    // The active log, airline and log chosen, the active one afterwards; told when it changed.
    const std::vector<std::array<std::string, 4>> steps{
        {"My Flight Log", "ABC", "Jets", "Jets"},
        {"My Flight Log", "ABC", "Jets", "My Flight Log"},  // made active elsewhere
        {"My Flight Log", "XYZ", "Jets", "Jets"},
        {"Jets", "XYZ", "My Flight Log", "My Flight Log"},
        {"Jets", "ABC", "Jets", "Jets"}};
    for (const auto& [active, name, log, expected] : steps) {
        settings->Set_FlightLog(active);
        Choose(panel->cboVA, name);
        Choose(panel->cboLog, log);
        panel->hypSave.Click();
        EXPECT_EQ(settings->FlightLog(), expected);
        EXPECT_EQ(Contains(desktop.boxes.back().text, "Flights are logged in"), active != expected);
    }
}

TEST_F(Settings_Panel, Saving_keeps_stored_values_that_no_list_has) {
    Write("bin/url.cfg", "[NOAA]\r\n");
    store.Set("Options", "Report Fuel", "9");
    store.Set("Options", "Take Off Alt", "37");
    store.Set("Options", "WX URL", "NONE");
    Open();
    EXPECT_EQ(panel->cboTakeOffAlt.Selected(), -1);
    EXPECT_EQ(Save(), "");
    EXPECT_EQ(panel->cboWX.Text(), "NONE");
    panel->txtSimulator.Enter("8338");
    panel->cboDate.Choose(0);
    EXPECT_EQ(Save(), "");
    EXPECT_THAT(desktop.boxes.back().text, HasSubstr("Nothing was saved: \"8338\""));
    // A source that is gone is the simulator's weather.
    settings->Set_WX_URL("gone");
    panel->hypCancel.Click();
    EXPECT_EQ(panel->cboWX.Text(), "FS");
}

TEST_F(Settings_Panel, Takes_an_airlines_codes_from_the_lookup) {
    frmAirline& lookup = panel->airline_lookup;
    const auto look_up = [&](int row, Link& end, bool flight_begins) {
        Connection pilot = lookup.shown.Connect([&, row, flight_begins] {
            lookup.hypOK.Click();  // without a row
            EXPECT_TRUE(lookup.Is_Open());
            lookup.lvwAirlines.Choose(row);
            panel->ACARS_STATE(!flight_begins);
            end.Click();
        });
        panel->hypAirline[row == 0 ? 0 : 1].Click();
        pilot.Disconnect();
        return panel->txtPilot[ucSettings::iata].Text() + panel->txtPilot[ucSettings::icao].Text();
    };
    EXPECT_EQ(look_up(1, lookup.hypOK, false), "BSBSK");
    EXPECT_TRUE(panel->chkIATAPrefix.Enabled());
    EXPECT_EQ(look_up(0, lookup.hypCancel, false), "BSBSK");
    EXPECT_EQ(look_up(0, lookup.hypOK, true), "BSBSK");
    panel->ACARS_STATE(true);
    std::filesystem::remove(directory / "bin/airline.cfg");
    panel->hypAirline[0].Click();
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("frmAirline.Fill_List()")));
}

}  // namespace
}  // namespace norvane
