// The settings panel: what it saves is what a new start finds, what it locks stays, and what it
// warns of.

#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <map>
#include <optional>

#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "config/setting_table.h"
#include "config/uc_settings.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Settings_Panel : public test::Test_World {
  protected:
    Settings_Panel() {
        Write("bin/url.cfg", "[NOAA]\r\nURL=x\r\n[NONE]\r\n");
        Write("bin/airline.cfg", "Air Nova|NV|NVA\r\n\r\nBlue Sky|BS|BSK|more\r\n");
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
    void Save_And_Open() {
        panel->hypSave.Click();
        Open();
    }
    std::vector<std::pair<std::string, std::string>> Listed() const {
        return List_Settings(*settings);
    }
    static void Choose(Combo_Box& list, std::string_view entry) {
        for (int i = 0; i < static_cast<int>(list.Entries().size()); ++i) {
            if (list.Entries()[static_cast<std::size_t>(i)] == entry)
                return list.Choose(i);
        }
        FAIL() << "no entry " << entry;
    }

    std::optional<clsAppSettings> settings;
    std::optional<clsVASettings> airline;
    std::optional<ucSettings> panel;
};

TEST_F(Settings_Panel, Every_control_is_found_again_after_a_start) {
    Choose(panel->cboVA, "ABC");
    Choose(panel->cboLog, "Jets");
    desktop.chosen_colors = {0x123456, 0x654321};
    panel->cmdColor[ucSettings::link_bar].Click();
    panel->cmdColor[ucSettings::menu_bar_fore].Click();
    Choose(panel->cboDate, "FS Date");
    Choose(panel->cboEOF, "Parking Brake and Engine Shutdown");
    Choose(panel->cboWeight, "kg");
    Choose(panel->cboFuel, "gal");
    Choose(panel->cboTime, "Local");
    Choose(panel->cboATCModel, "atc_model");
    Choose(panel->cboRecordArrival, "@ ON Time");
    Choose(panel->cboTouchAndGo, "First Landing Counts");
    panel->txtSimulator.Enter(" sim.local:8338 ");
    Choose(panel->cboWX, "NOAA");
    Choose(panel->cboUseTime, "Real Time");
    panel->optACARS[ucSettings::take_off_altitude].Click();
    Choose(panel->cboTakeOffAlt, "35");
    for (Check_Box& box : panel->chkACARS)
        box.Click();
    panel->txtVATSIM_PID.Enter("812345");
    panel->optFields[1].txtName.Enter("Crew^");
    EXPECT_EQ(panel->optFields[1].txtName.Text(), "Crew/") << "seen as it will be stored";
    panel->optFields[1].cboType.Choose(1);
    panel->optFields[1].txtList.Enter(" Anna|Ben ");
    const std::array<const char*, 5> pilot = {"Ann", "ann@x", "NV1", "NV", "NVA"};
    for (std::size_t i = 0; i < pilot.size(); ++i)
        panel->txtPilot[i].Enter(pilot[i]);
    panel->chkIATAPrefix.Click();
    Save_And_Open();
    EXPECT_EQ(
        desktop.boxes.back().text,
        "Changes made to optional Flight Log fields will take effect when Norvane is "
        "restarted.\r\nNorvane settings saved.\r\nFlights are logged in \"Jets\" from now on.");

    const std::map<std::string, std::string> expected = {
        {"FlightLog", "Jets"},
        {"Color_Link_Bar", "1193046"},
        {"Color_MenuBar_Back", "8404992"},
        {"Color_MenuBar_Fore", "6636321"},
        {"ACARS_Date", "0"},
        {"ACARS_Time", "0"},
        {"ACARS_UseTime", "1"},
        {"ACARS_Fuel", "2"},
        {"ACARS_Weight", "1"},
        {"ACARS_EOF", "2"},
        {"ACARS_ATCModel", "True"},
        {"OPT_MessageLog", "True"},
        {"OPT_AutoLog", "True"},
        {"OPT_ACARS_To_FS", "True"},
        {"OPT_PIREP", "True"},
        {"OPT_PIREP_SEND", "True"},
        {"ACARS_TakeOff_Alt", "35"},
        {"ACARS_RecordArrival", "1"},
        {"ACARS_TouchAndGo", "1"},
        {"Simulator_Address", "sim.local:8338"},
        {"WX_URL", "NOAA"},
        {"VATSIM_FP", "1"},
        {"VATSIM_PID", "812345"},
        {"Virtual_Airline", "ABC"},
        {"Virtual_Airline_Log", "Jets"},
        {"PilotName", "Ann"},
        {"PilotID", "NV1"},
        {"PilotEmail", "ann@x"},
        {"Airline_IATA", "NV"},
        {"Airline_ICAO", "NVA"},
        {"Airline_IATAPrefix", "True"},
        // The empty field before it does not survive a start.
        {"OptFields(0)", "Crew/^Anna|Ben"},
    };
    for (const auto& [name, value] : expected)
        EXPECT_EQ(Get_Setting_Text(*settings, name), value) << name;
    EXPECT_EQ(airline->WebServer(), "host");

    // Saved as it is shown, nothing changes; left without saving, neither.
    const auto before = Listed();
    Save_And_Open();
    EXPECT_EQ(Listed(), before);
    panel->cmdReset.Click();
    panel->chkACARS[ucSettings::auto_log].Click();
    panel->optACARS[ucSettings::on_ground_flag].Click();
    panel->hypCancel.Click();
    EXPECT_TRUE(panel->chkACARS[ucSettings::auto_log].Checked());
    EXPECT_EQ(panel->swColor[ucSettings::link_bar].Color(), 0x123456);
    EXPECT_EQ(panel->cboTakeOffAlt.Text(), "35");
    Save_And_Open();
    EXPECT_EQ(Listed(), before);
}

TEST_F(Settings_Panel, Controls_follow_what_they_depend_on_and_the_lock) {
    panel->chkACARS[ucSettings::save_pirep].Click();
    panel->chkACARS[ucSettings::send_pirep].Click();
    panel->chkACARS[ucSettings::save_pirep].Click();
    EXPECT_FALSE(panel->chkACARS[ucSettings::send_pirep].Checked());
    EXPECT_FALSE(panel->chkACARS[ucSettings::send_pirep].Enabled());
    panel->chkACARS[ucSettings::vatsim].Click();
    panel->txtVATSIM_PID.Enter("1");
    panel->chkACARS[ucSettings::vatsim].Click();
    panel->chkACARS[ucSettings::vatsim].Click();
    EXPECT_EQ(panel->txtVATSIM_PID.Text(), "");
    panel->optACARS[ucSettings::take_off_altitude].Click();
    EXPECT_EQ(panel->cboTakeOffAlt.Text(), "5");
    panel->txtPilot[ucSettings::iata].Enter("NV");
    panel->chkIATAPrefix.Click();
    panel->txtPilot[ucSettings::iata].Enter(" ");
    EXPECT_FALSE(panel->chkIATAPrefix.Checked());
    panel->txtPilot[ucSettings::iata].Enter("NV");

    const std::vector<const Control*> locked = {
        &panel->cboFuel,       &panel->cboTakeOffAlt, &panel->txtVATSIM_PID,
        &panel->cboVA,         &panel->cboLog,        &panel->txtPilot[ucSettings::pilot_id],
        &panel->hypAirline[0], &panel->chkIATAPrefix, &panel->chkACARS[ucSettings::auto_log],
        &panel->optACARS[0],   &panel->txtSimulator};
    for (const Control* control : locked)
        EXPECT_TRUE(control->Enabled());
    EXPECT_FALSE(panel->lblLocked.Visible());
    panel->ACARS_STATE(false);
    EXPECT_TRUE(panel->lblLocked.Visible());
    panel->hypCancel.Click();
    panel->Choose_Tab(ucSettings::virtual_airline);
    for (const Control* control : locked)
        EXPECT_FALSE(control->Enabled());

    // Saved in flight: colours and optional fields, and no airline is loaded over the panel's.
    int loaded = 0;
    airline->Change.connect([&] { ++loaded; });
    const auto before = Listed();
    panel->optFields[0].txtName.Enter("Gate");
    for (const auto& row : panel->ACARS_Lists())
        row.list.Choose(row.list.Selected() == 0 ? 1 : 0);
    panel->optACARS[ucSettings::on_ground_flag].Set_Chosen(true);
    panel->cboVA.Choose(0);
    for (Text_Box& text : panel->txtPilot)
        text.Set_Text("XX");
    panel->chkIATAPrefix.Set_Checked(true);
    panel->hypSave.Click();
    EXPECT_EQ(settings->OptFields(0), "Gate^");
    for (const auto& [name, value] : before) {
        if (Is_Fixed_In_Flight(name)) {
            EXPECT_EQ(Get_Setting_Text(*settings, name), value) << name;
        }
    }
    EXPECT_EQ(loaded, 0);
    panel->ACARS_STATE(true);
    EXPECT_TRUE(panel->cboFuel.Enabled());
    EXPECT_FALSE(panel->txtVATSIM_PID.Enabled());
}

TEST_F(Settings_Panel, Asks_before_old_values_stand_under_other_captions) {
    for (const auto& [row, name] : {std::pair{0, "Gate"}, {2, "Crew"}})
        panel->optFields[static_cast<std::size_t>(row)].txtName.Enter(name);
    Save_And_Open();
    ASSERT_EQ(desktop.boxes.size(), 1U) << "there were no captions before";
    // Entries, and a field behind the others, move nothing.
    panel->optFields[1].cboType.Choose(1);
    panel->optFields[1].txtList.Enter("A|B");
    panel->optFields[4].txtName.Enter("Fuel");
    Save_And_Open();
    EXPECT_EQ(desktop.boxes.size(), 2U);

    panel->optFields[0].txtName.Enter("");
    panel->cmdReset.Click();
    panel->swColor[0].Set_Color(7);
    panel->hypSave.Click();
    EXPECT_THAT(desktop.boxes.back().text, HasSubstr("\"Gate\" will stand under \"Crew\""));
    EXPECT_THAT(desktop.boxes.back().text, HasSubstr("\"Crew\" will stand under \"Fuel\""));
    EXPECT_EQ(settings->OptFields(0), "Gate^") << "the question was answered No";
    EXPECT_NE(settings->Color_Link_Bar(), 7);
    EXPECT_EQ(panel->optFields[1].txtName.Text(), "Crew") << "what was typed stays";
    desktop.answers.push_back(Answer::yes);
    Save_And_Open();
    EXPECT_EQ(settings->OptFields(0), "Crew^A|B");
}

TEST_F(Settings_Panel, What_is_looked_at_is_nobodys_but_the_panels) {
    // The default airline, which is set, has no directory here and stands in no list.
    EXPECT_THAT(panel->cboVA.Entries(), ElementsAre("ABC", "XYZ"));
    panel->txtPilot[ucSettings::pilot_id].Enter("D1");
    panel->Choose_Tab(ucSettings::virtual_airline);
    panel->Leave();
    EXPECT_EQ(panel->txtPilot[ucSettings::pilot_id].Text(), "D1");
    Choose(panel->cboVA, "ABC");
    panel->txtPilot[ucSettings::pilot_id].Enter("A1");
    Choose(panel->cboLog, "Jets");
    panel->hypSave.Click();
    EXPECT_EQ(settings->FlightLog(), "Jets");
    EXPECT_TRUE(panel->chkACARS[ucSettings::send_pirep].Visible());

    // Another airline's fields are shown, and nobody flies for it.
    const auto before = Listed();
    const auto expect_saved = [&] {
        EXPECT_EQ(Listed(), before);
        EXPECT_EQ(panel->cboVA.Text(), "ABC");
        EXPECT_EQ(panel->txtPilot[ucSettings::pilot_id].Text(), "A1");
        EXPECT_EQ(panel->cboLog.Text(), "Jets");
    };
    const std::vector<std::function<void()>> ends{[&] { panel->Leave(); },
                                                  [&] { panel->hypCancel.Click(); },
                                                  [&] {
                                                      panel->ACARS_STATE(false);
                                                      panel->ACARS_STATE(true);
                                                  }};
    for (const auto& end : ends) {
        Choose(panel->cboVA, "XYZ");
        EXPECT_EQ(panel->txtPilot[ucSettings::pilot_id].Text(), "");
        EXPECT_EQ(Listed(), before);
        end();
        expect_saved();
        Choose(panel->cboLog, "My Flight Log");
        end();
        expect_saved();
    }
    // Other tabs, and a list that grows meanwhile, leave what was typed.
    Choose(panel->cboVA, "XYZ");
    panel->txtPilot[ucSettings::pilot_id].Enter("X1");
    Choose(panel->cboLog, "My Flight Log");
    panel->Choose_Tab(ucSettings::acars);
    Write("VA_North/server.cfg", "");
    panel->Choose_Tab(ucSettings::virtual_airline);
    EXPECT_EQ(panel->cboVA.Entries().size(), 3U);
    panel->hypSave.Click();
    EXPECT_EQ(settings->Virtual_Airline() + settings->PilotID(), "XYZX1");
    EXPECT_EQ(airline->WebServer(), "other");
    EXPECT_FALSE(panel->chkACARS[ucSettings::send_pirep].Visible());
    // What was typed for the airline that is flown for waits for the pilot to come back.
    panel->txtPilot[ucSettings::pilot_id].Enter("X2");
    panel->Leave();
    EXPECT_EQ(panel->txtPilot[ucSettings::pilot_id].Text(), "X2");

    // Only part of it can be saved: still one airline for the whole program.
    std::filesystem::create_directories(directory / "bin/optfields.cfg");
    panel->optFields[0].txtName.Enter("Gate");
    Choose(panel->cboVA, "ABC");
    panel->hypSave.Click();
    EXPECT_EQ(settings->Virtual_Airline(), airline->Name());
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsAppSettings.Save_Opt_Fields()")));

    std::filesystem::remove_all(directory / "VA_abc");
    std::filesystem::remove_all(directory / "VA_North");
    panel->Refresh_VA_Information();
    EXPECT_FALSE(panel->cboVA.Enabled());
}

TEST_F(Settings_Panel, Flights_go_to_another_log_only_when_airline_or_default_log_change) {
    struct Step {
        const char* active;
        const char* airline;
        const char* log;
        const char* expected;
        bool said;
    };
    const std::vector<Step> steps{
        {"My Flight Log", "ABC", "Jets", "Jets", true},
        {"My Flight Log", "ABC", "Jets", "My Flight Log", false},  // made active elsewhere
        {"My Flight Log", "XYZ", "Jets", "Jets", true},
        {"Jets", "XYZ", "My Flight Log", "My Flight Log", true},
        {"Jets", "ABC", "Jets", "Jets", false},
    };
    for (const Step& step : steps) {
        if (settings->FlightLog() != step.active)
            settings->Set_FlightLog(step.active);
        Choose(panel->cboVA, step.airline);
        Choose(panel->cboLog, step.log);
        panel->hypSave.Click();
        EXPECT_EQ(settings->FlightLog(), step.expected);
        EXPECT_EQ(Contains(desktop.boxes.back().text, "Flights are logged in"), step.said);
        EXPECT_EQ(settings->Virtual_Airline_Log(), step.log);
    }
    std::filesystem::remove_all(directory / "VA_abc");
    Open();
    settings->Set_FlightLog("Jets");
    panel->hypSave.Click();
    EXPECT_EQ(settings->Virtual_Airline_Log(), "Jets") << "the active one, without a choice";
}

TEST_F(Settings_Panel, No_address_is_saved_that_no_simulator_can_have) {
    const auto before = Listed();
    panel->txtSimulator.Enter("8338");
    Choose(panel->cboFuel, "kg");
    panel->hypSave.Click();
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_THAT(desktop.boxes[0].text, HasSubstr("Nothing was saved: \"8338\""));
    EXPECT_EQ(Listed(), before);
}

TEST_F(Settings_Panel, Saving_keeps_stored_values_that_no_list_has) {
    Write("bin/url.cfg", "[NOAA]\r\n");
    store.Set("Options", "Report Fuel", "9");
    store.Set("Options", "Take Off Alt", "37");
    store.Set("Options", "WX URL", "NONE");
    Open();
    const auto before = Listed();
    EXPECT_EQ(panel->cboTakeOffAlt.Selected(), -1);
    Save_And_Open();
    EXPECT_EQ(Listed(), before);
    EXPECT_EQ(settings->ACARS_TakeOff_Alt(), 37);
    EXPECT_EQ(panel->cboWX.Text(), "NONE");

    // A second click on the option that holds is no new choice.
    Choose(panel->cboTakeOffAlt, "50");
    panel->optACARS[ucSettings::take_off_altitude].Click();
    EXPECT_EQ(panel->cboTakeOffAlt.Text(), "50");

    // A source that is gone is the simulator's weather.
    settings->Set_WX_URL("gone");
    panel->hypCancel.Click();
    EXPECT_EQ(panel->cboWX.Text(), "FS");
}

TEST_F(Settings_Panel, Takes_an_airlines_codes_from_the_lookup) {
    frmAirline& lookup = panel->airline_lookup;
    Connection pilot = lookup.shown.connect([&] {
        EXPECT_EQ(lookup.lvwAirlines.Rows().size(), 2U);
        lookup.hypOK.Click();  // without a row
        EXPECT_TRUE(lookup.Is_Open());
        lookup.lvwAirlines.Choose(1);
        lookup.lvwAirlines.Activate();
    });
    panel->hypAirline[1].Click();
    EXPECT_EQ(panel->txtPilot[ucSettings::iata].Text(), "BS");
    EXPECT_EQ(panel->txtPilot[ucSettings::icao].Text(), "BSK");
    EXPECT_TRUE(panel->chkIATAPrefix.Enabled());
    pilot.disconnect();
    pilot = lookup.shown.connect([&] {
        lookup.lvwAirlines.Choose(0);
        lookup.hypCancel.Click();
    });
    panel->hypAirline[0].Click();
    EXPECT_EQ(panel->txtPilot[ucSettings::iata].Text(), "BS");
    std::filesystem::remove(directory / "bin/airline.cfg");
    panel->hypAirline[0].Click();
    EXPECT_THAT(lookup.lvwAirlines.Rows(), IsEmpty());
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("frmAirline.Fill_List()")));
}

}  // namespace
}  // namespace norvane
