#include "config/cls_app_settings.h"

#include <gmock/gmock.h>

#include "common/run_error.h"
#include "config/setting_table.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// A store that tells the order of its operations.
class Watched_Store : public Memory_Store {
  public:
    void Set(std::string_view section, std::string_view key, std::string_view value) override {
        if (fail_at == key)
            throw Run_Error(error_number::disk_full, "no room");
        operations.push_back(std::string(section) + "/" + std::string(key) + "=" +
                             std::string(value));
        Memory_Store::Set(section, key, value);
    }
    void Begin() override {
        operations.emplace_back("begin");
        Memory_Store::Begin();
    }
    void Commit() override {
        operations.emplace_back("commit");
        Memory_Store::Commit();
    }
    void Back_Up() override { operations.emplace_back("back up"); }

    std::vector<std::string> operations;
    std::string fail_at;
};

class App_Settings : public test::Test_World {
  protected:
    std::vector<std::string> Events_Of(clsAppSettings& settings,
                                       const std::function<void()>& action) {
        std::vector<std::string> events;
        const std::array<Connection, 3> connections{
            settings.ActiveLogChange.connect([&] { events.emplace_back("ActiveLogChange"); }),
            settings.SettingsChanged.connect([&] { events.emplace_back("SettingsChanged"); }),
            settings.ACTypeChange.connect([&] { events.emplace_back("ACTypeChange"); })};
        action();
        for (auto connection : connections)
            connection.disconnect();
        return events;
    }
    void Add_Log(const std::string& name) { Write("logs/" + name + ".txt", "\r\n"); }
    void Add_Airline(const std::string& name) {
        std::filesystem::create_directories(directory / ("VA_" + name));
    }

    Watched_Store watched;
    Services watched_services{desktop, watched, clock, error_log, Regional{}, directory};
};

TEST_F(App_Settings, First_Start_Makes_The_Directories_And_Takes_The_Defaults) {
    const clsAppSettings settings(services);
    EXPECT_TRUE(std::filesystem::is_directory(directory / "messagelogs"));
    EXPECT_EQ(Read("logs/My Flight Log.txt"), "\r\n");
    EXPECT_EQ(settings.FlightLog_Path(), directory / "logs" / "My Flight Log.txt");
    const std::vector<std::pair<std::string, std::string>> expected{
        {"FlightLog", "My Flight Log"},
        {"Color_Link_Bar", "14671839"},
        {"Color_MenuBar_Back", "8404992"},
        {"Color_MenuBar_Fore", "16777215"},
        {"ACARS_Date", "1"},
        {"ACARS_Time", "1"},
        {"ACARS_UseTime", "0"},
        {"ACARS_Fuel", "0"},
        {"ACARS_Weight", "0"},
        {"ACARS_EOF", "0"},
        {"ACARS_ATCModel", "False"},
        {"OPT_MessageLog", "False"},
        {"OPT_AutoLog", "False"},
        {"OPT_ACARS_To_FS", "False"},
        {"OPT_PIREP", "False"},
        {"OPT_PIREP_SEND", "False"},
        {"ACARS_TakeOff_Alt", "0"},
        {"ACARS_RecordArrival", "0"},
        {"ACARS_TouchAndGo", "0"},
        {"Simulator_Address", ""},
        {"WX_URL", "FS"},
        {"VATSIM_FP", "0"},
        {"VATSIM_PID", ""},
        {"Virtual_Airline", "DEFAULT"},
        {"Virtual_Airline_Log", "My Flight Log"},
        {"PilotName", ""},
        {"PilotEmail", ""},
        {"PilotID", ""},
        {"Airline_IATA", ""},
        {"Airline_ICAO", ""},
        {"Airline_IATAPrefix", "False"},
        {"OptFields(0)", ""},
        {"OptFields(1)", ""},
        {"OptFields(2)", ""},
        {"OptFields(3)", ""},
        {"OptFields(4)", ""},
        {"FlightLog_Path", (directory / "logs" / "My Flight Log.txt").string()},
        {"Yield_In_Loop", "False"},
    };
    EXPECT_EQ(List_Settings(settings), expected);
}

TEST_F(App_Settings, Saving_Writes_Everything_In_One_Batch_And_Loading_Reads_It_Back) {
    Add_Airline("Sky");
    Write("bin/optimize", "");
    clsAppSettings settings(watched_services);
    EXPECT_TRUE(settings.Yield_In_Loop());
    settings.Set_Virtual_Airline("SKY");
    settings.Set_ACARS_Fuel(2);
    settings.Set_OPT_AutoLog(true);
    settings.Set_VATSIM_PID("  123 ");
    settings.Set_PilotName(" A. Pilot ");
    settings.Set_OptFields(1, " Gate^ ");
    watched.operations.clear();
    EXPECT_TRUE(settings.Save_Settings());
    // One batch with a value for each row, but for the log, which is stored when it is chosen.
    EXPECT_EQ(watched.operations.size(), Setting_Table().size() - 1 + 2);
    EXPECT_EQ(watched.operations.front() + watched.operations.back(), "begincommit");
    EXPECT_EQ(Read("bin/optfields.cfg"), "\r\nGate^\r\n\r\n\r\n\r\n");

    clsAppSettings again(watched_services);
    EXPECT_EQ(again.Virtual_Airline(), "SKY");
    EXPECT_EQ(again.PilotName(), "A. Pilot");
    EXPECT_TRUE(again.OPT_AutoLog());
    // Definitions close up towards the first slot.
    EXPECT_EQ(again.OptFields(0), "Gate^");
    EXPECT_EQ(again.OptFields(1), "");
    again.Set_OptFields(0, " ");
    EXPECT_TRUE(again.Save_Settings());
    EXPECT_FALSE(std::filesystem::exists(directory / "bin/optfields.cfg"));
}

TEST_F(App_Settings, Events_Come_In_Order_And_Only_For_A_Change) {
    clsAppSettings settings(services);
    const auto save = [&] { settings.Save_Settings(); };
    settings.Set_ACARS_ATCModel(true);
    EXPECT_THAT(Events_Of(settings, save), ElementsAre("ACTypeChange", "SettingsChanged"));
    EXPECT_THAT(Events_Of(settings, save), ElementsAre("SettingsChanged"));
    settings.Set_ACARS_ATCModel(true);
    EXPECT_THAT(Events_Of(settings, save), ElementsAre("SettingsChanged"));

    Add_Log("Other");
    EXPECT_THAT(Events_Of(settings, [&] { settings.Set_Virtual_Airline_Log("My Flight Log"); }),
                ElementsAre());
    EXPECT_THAT(Events_Of(settings, [&] { settings.Set_Virtual_Airline_Log(" Other "); }),
                ElementsAre("ActiveLogChange"));
    EXPECT_EQ(settings.FlightLog(), "Other");
    EXPECT_EQ(store.Get("Options", "Flight Log"), "Other");
}

TEST_F(App_Settings, A_Deleted_Log_Gives_Way_To_The_Default_One) {
    store.Set("Options", "Flight Log", "Gone");
    EXPECT_EQ(clsAppSettings(services).FlightLog(), "My Flight Log");
    EXPECT_EQ(store.Get("Options", "Flight Log"), "My Flight Log");
    Add_Log("Kept");
    store.Set("Options", "Flight Log", "Kept");
    EXPECT_EQ(clsAppSettings(services).FlightLog(), "Kept");
    // Nor is its name lost when a directory cannot be made.
    std::filesystem::remove_all(directory / "messagelogs");
    Write("messagelogs", "");
    EXPECT_EQ(clsAppSettings(services).FlightLog(), "Kept");
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsAppSettings.Get_Active_FlightLog()")));
}

TEST_F(App_Settings, A_Removed_Airline_Takes_Its_Section_Along) {
    store.Set("Virtual Airline", "Current", "Sky");
    store.Set("Sky", "Field0", "Somebody");
    store.Set("VA", "Field0", "A. Pilot");
    const clsAppSettings settings(services);
    EXPECT_EQ(settings.Virtual_Airline(), "DEFAULT");
    EXPECT_EQ(settings.PilotName(), "A. Pilot");
    EXPECT_EQ(store.Find("Sky", "Field0"), std::nullopt);
    EXPECT_EQ(store.Get("Virtual Airline", "Current"), "VA");
}

TEST_F(App_Settings, An_Airline_Never_Takes_A_Section_Of_The_Store_Along) {
    store.Set("ACARS", "1", "4/23/2008");
    store.Set("Virtual Airline", "Current", "ACARS");
    clsAppSettings settings(services);
    EXPECT_EQ(settings.Virtual_Airline(), "DEFAULT");
    EXPECT_EQ(Take_Errors().size(), 1U);
    EXPECT_THROW(settings.Set_Virtual_Airline("grid"), Run_Error);
    EXPECT_EQ(settings.Virtual_Airline(), "DEFAULT");
    EXPECT_EQ(store.Get("ACARS", "1"), "4/23/2008");
    EXPECT_EQ(store.Get("Virtual Airline", "Current"), "VA");
}

TEST_F(App_Settings, Another_Airline_Takes_Over_Name_And_Address_Only) {
    Add_Airline("ABC");
    Add_Airline("xyz");
    store.Set("ABC", "Field1", "ABC7");
    store.Set("ABC", "Field5", "Nowhere");
    clsAppSettings settings(services);
    settings.Set_PilotName("A. Pilot");
    settings.Set_PilotEmail("pilot@example.org");
    settings.Set_PilotID("7");
    settings.Set_Airline_IATA("ZZ");
    settings.Set_Airline_IATAPrefix(true);
    settings.Set_Virtual_Airline("XYZ");
    EXPECT_EQ(settings.PilotName() + settings.PilotEmail(), "A. Pilotpilot@example.org");
    EXPECT_EQ(settings.PilotID() + settings.Airline_IATA(), "");
    EXPECT_FALSE(settings.Airline_IATAPrefix());
    settings.Set_Virtual_Airline("ABC");
    EXPECT_EQ(settings.PilotID(), "ABC7");
    // The airline's log is shown, not made active.
    EXPECT_EQ(settings.Virtual_Airline_Log(), "Nowhere");
    EXPECT_EQ(settings.FlightLog(), "My Flight Log");
    EXPECT_EQ(store.Find("Virtual Airline", "Current"), std::nullopt);
    settings.Set_Virtual_Airline("DEFAULT");
    settings.Save_Settings();
    EXPECT_EQ(store.Get("Virtual Airline", "Current"), "VA");
    EXPECT_EQ(store.Get("VA", "Field0"), "A. Pilot");
}

TEST_F(App_Settings, A_Bad_Value_Costs_Itself_Alone_And_The_Next_Save_Keeps_A_Copy) {
    Add_Airline("Sky");
    Write("bin/optfields.cfg", "Gate^\r\n");
    const auto stored = [&](const char* section, const char* key, const std::string& value) {
        watched.Memory_Store::Set(section, key, value);
    };
    stored("Options", "Report Time", "0");
    stored("Options", "Report Fuel", "many" + std::string(100000, 'x'));
    stored("Options", "Report Weight", "1");
    stored("Options", "Simulator Address", "nowhere");
    stored("Virtual Airline", "Current", "SKY");
    stored("SKY", "Field6", "perhaps");
    stored("SKY", "Field1", "SKY7");
    clsAppSettings settings(watched_services);
    const auto errors = Take_Errors();
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_THAT(errors[0], HasSubstr("clsAppSettings.Get_Settings()"));
    EXPECT_THAT(errors[0], HasSubstr("Error Number: 13"));
    EXPECT_LT(errors[0].size(), 1000U);
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_THAT(desktop.boxes[0].text,
                HasSubstr("ACARS_Fuel, Simulator_Address, Airline_IATAPrefix"));
    EXPECT_EQ(settings.ACARS_Fuel(), 0);
    EXPECT_EQ(settings.Simulator_Address(), "");
    EXPECT_EQ(settings.ACARS_Time(), 0);
    EXPECT_EQ(settings.ACARS_Weight(), 1);
    EXPECT_EQ(settings.Virtual_Airline() + settings.PilotID(), "SKYSKY7");

    EXPECT_TRUE(settings.Save_Settings());
    EXPECT_EQ(watched.operations.at(0), "back up");
    EXPECT_EQ(watched.Get("Virtual Airline", "Current"), "SKY");
    EXPECT_EQ(watched.Get("SKY", "Field1"), "SKY7");
    watched.operations.clear();
    settings.Save_Settings();
    EXPECT_EQ(watched.operations.at(0), "begin");
    // As a load that lost the airline once left it.
    stored("Virtual Airline", "Current", "");
    Add_Airline("");
    EXPECT_EQ(clsAppSettings(watched_services).Virtual_Airline(), "DEFAULT");
}

TEST_F(App_Settings, Stored_Flags_May_Be_Words_Or_Numbers) {
    for (const auto& [text, expected] : std::vector<std::pair<std::string, bool>>{{"True", true},
                                                                                  {"true", true},
                                                                                  {"-1", true},
                                                                                  {"2", true},
                                                                                  {"False", false},
                                                                                  {"0", false}}) {
        store.Set("Options", "Auto Log", text);
        EXPECT_EQ(clsAppSettings(services).OPT_AutoLog(), expected) << text;
    }
}

TEST_F(App_Settings, A_Save_That_Fails_Raises_No_Event_And_Says_So) {
    clsAppSettings settings(watched_services);
    settings.Set_ACARS_ATCModel(true);
    watched.fail_at = "Take Off Alt";
    bool saved = true;
    EXPECT_THAT(Events_Of(settings, [&] { saved = settings.Save_Settings(); }), ElementsAre());
    EXPECT_FALSE(saved);
    EXPECT_EQ(watched.Depth(), 0);
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsAppSettings.Save_Settings()")));
    watched.fail_at = "Flight Log";
    EXPECT_THROW(settings.Set_FlightLog("Winter"), Run_Error);
    EXPECT_EQ(settings.FlightLog(), "My Flight Log");
    // The change is still to be told, as the panel's next "Save" assigns it once more.
    watched.fail_at.clear();
    settings.Set_ACARS_ATCModel(true);
    EXPECT_THAT(Events_Of(settings, [&] { settings.Save_Settings(); }),
                ElementsAre("ACTypeChange", "SettingsChanged"));
}

TEST_F(App_Settings, A_Failing_Field_File_Is_Reported_Silently_And_The_Rest_Is_Saved) {
    std::filesystem::create_directories(directory / "bin/optfields.cfg");
    clsAppSettings settings(services);
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsAppSettings.Get_Opt_Fields()")));
    settings.Set_OptFields(4, "Gate^");
    settings.Set_PilotID("7");
    EXPECT_FALSE(settings.Save_Settings());
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsAppSettings.Save_Opt_Fields()")));
    EXPECT_TRUE(desktop.boxes.empty());
    EXPECT_EQ(store.Get("VA", "Field1"), "7");
    EXPECT_THROW(static_cast<void>(settings.OptFields(5)), Run_Error);
    EXPECT_THROW(settings.Set_OptFields(5, "x"), Run_Error);
}

TEST_F(App_Settings, Texts_Are_Assigned_Within_The_Range_Of_Each_Setting) {
    Add_Log("Winter");
    Add_Log("Summer|x");
    Add_Airline("sky");
    Add_Airline("Grid");
    Write("bin/url.cfg", "[ADDS]\r\nURL=x\r\n[NONE]\r\n");
    clsAppSettings settings(services);
    const std::vector<std::array<std::string, 3>> accepted{
        {"acars_fuel", "2", "2"},
        {"ACARS_TakeOff_Alt", " 35 ", "35"},
        {"Color_Link_Bar", "16777215", "16777215"},
        {"OPT_PIREP", "true", "True"},
        {"OPT_AutoLog", "1", "True"},
        {"PilotName", " J\xF8rn ", "J\xF8rn"},
        {"FlightLog", "Winter", "Winter"},
        {"Virtual_Airline", "Sky", "SKY"},
        {"Virtual_Airline", "default", "DEFAULT"},
        {"WX_URL", "adds", "ADDS"},
        {"Simulator_Address", "[::1]:8000", "[::1]:8000"},
        {"Simulator_Address", "", ""},
        {"OptFields(3)", "Type^Charter|Ferry", "Type^Charter|Ferry"},
        {"optfields(3)", "", ""},
    };
    std::filesystem::create_directories(directory / "VA");
    for (const auto& [name, value, expected] : accepted) {
        Set_Setting_Text(settings, name, value);
        EXPECT_EQ(Get_Setting_Text(settings, name), expected) << name;
    }
    EXPECT_TRUE(Take_Errors().size() == 2) << "each listing of the airlines tells of VA_Grid";

    const auto before = List_Settings(settings);
    const std::vector<std::pair<std::string, std::string>> refused{
        {"ACARS_Fuel", "3"},
        {"ACARS_Fuel", "-1"},
        {"ACARS_Fuel", "kg"},
        {"ACARS_Fuel", ""},
        {"ACARS_Fuel", "1.5"},
        {"ACARS_Fuel", "99999999999"},
        {"ACARS_Weight", "2"},
        {"ACARS_TakeOff_Alt", "12"},
        {"ACARS_TakeOff_Alt", "105"},
        {"Color_Link_Bar", "16777216"},
        {"OPT_PIREP", "maybe"},
        {"FlightLog", "Autumn"},
        {"FlightLog", ""},
        {"FlightLog", "Summer|x"},
        {"Virtual_Airline", "SEA"},
        {"Virtual_Airline", "GRID"},
        {"Virtual_Airline", ""},
        {"Virtual_Airline_Log", "Autumn"},
        {"WX_URL", "elsewhere"},
        {"Simulator_Address", "8338"},
        {"OptFields(0)", "no mark"},
        {"OptFields(0)", "^A|B"},
        {"OptFields(5)", "Gate^"},
        {"OptFields(-1)", "Gate^"},
        {"PilotName", "two\r\nlines"},
        {"FlightLog_Path", "x"},
        {"Yield_In_Loop", "True"},
        {"Nothing", "1"},
        {"OptFields", "Gate^"},
    };
    for (const auto& [name, value] : refused)
        EXPECT_THROW(Set_Setting_Text(settings, name, value), Run_Error) << name << "=" << value;
    EXPECT_THROW(static_cast<void>(Get_Setting_Text(settings, "Nothing")), Run_Error);
    try {
        Set_Setting_Text(settings, "WX_URL", "elsewhere");
    } catch (const Run_Error& refusal) {
        EXPECT_THAT(refusal.Description(), HasSubstr("\"FS\", \"NONE\", \"ADDS\","));
    }
    EXPECT_EQ(List_Settings(settings), before);
    Take_Errors();
}

}  // namespace
}  // namespace norvane
