#include "config/cls_app_settings.h"

#include <gmock/gmock.h>

#include <map>

#include "common/run_error.h"
#include "config/setting_table.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

/// A store that tells the order of its batches and backups.
class Watched_Store : public Memory_Store {
  public:
    void Begin() override {
        operations += "begin ";
        Memory_Store::Begin();
    }
    void Commit() override {
        operations += "commit ";
        Memory_Store::Commit();
    }
    void Back_Up() override { operations += "back up "; }

    std::string operations;
};

class App_Settings : public test::Test_World {
  protected:
    /// All values, with a bar behind each.
    static std::string Values(const clsAppSettings& settings) {
        std::string values;
        for (const auto& entry : List_Settings(settings))
            values += entry.second + "|";
        return values;
    }
    [[nodiscard]] std::string Log_File(const std::string& name) const {
        return (directory / "logs" / (name + ".txt")).string();
    }
    void Add_Log(const std::string& name) { Write(Log_File(name), "\r\n"); }
    void Add_Airline(const std::string& name) {
        std::filesystem::create_directories(directory / ("VA_" + name));
    }

    Watched_Store watched;
    Services watched_services{desktop, watched, clock, error_log, Regional{}, directory};
};

TEST_F(App_Settings, First_Start_Makes_The_Directories_And_Takes_The_Defaults) {
    const clsAppSettings settings(services);
    EXPECT_EQ(Read("logs/My Flight Log.txt"), "\r\n");
    EXPECT_EQ(
        Values(settings),
        "My Flight Log|14671839|8404992|16777215|1|1|0|0|0|0|False|False|False|False|200|False|"
        "False|0|0|0||FS|0|||DEFAULT|My Flight Log||||||False||||||" +
            Log_File("My Flight Log") + "|False|");
}

TEST_F(App_Settings, Every_Setting_Is_Saved_In_One_Batch_And_Found_Again) {
    Add_Airline("Sky");
    Add_Log("Winter");
    Write("bin/optimize", "");
    Write("bin/url.cfg", "[ADDS]\r\n");
    clsAppSettings settings(watched_services);
    const auto before = List_Settings(settings);
    const std::array<const char*, 5> texts{" J\xF8rn ", "Winter", "sky", "adds", "sim:8338"};
    for (const Setting_Row& row : Setting_Table()) {
        std::string text = "True";
        if (const auto* number = std::get_if<Number_Property>(&row.property))
            text = std::to_string(number->range.high - number->otherwise);
        else if (const auto* property = std::get_if<Text_Property>(&row.property))
            text = texts.at(static_cast<std::size_t>(property->values));
        Set_Setting_Text(settings, row.name, text);
    }
    settings.Set_OptFields(1, " Gate^ ");
    settings.Set_OptFields(3, "Two\r\nlines^");
    EXPECT_TRUE(settings.Save_Settings());
    EXPECT_EQ(watched.operations, "begin commit ");
    EXPECT_EQ(Read("bin/optfields.cfg"), "\r\nGate^\r\n\r\nTwo  lines^\r\n\r\n");

    clsAppSettings again(watched_services);
    const auto found = List_Settings(again);
    for (std::size_t i = 0; i < Setting_Table().size(); ++i) {
        EXPECT_NE(found[i].second, before[i].second) << found[i].first;
        EXPECT_EQ(found[i], List_Settings(settings)[i]);
    }
    EXPECT_EQ(again.PilotName(), "J\xF8rn");
    // Definitions close up towards the first slot.
    EXPECT_THAT(Values(again), EndsWith("|Gate^|Two  lines^||||" + Log_File("Winter") + "|True|"));
    for (const std::size_t i : {0U, 1U})
        again.Set_OptFields(i, " ");
    EXPECT_TRUE(again.Save_Settings());
    EXPECT_FALSE(std::filesystem::exists(directory / "bin/optfields.cfg"));
}

TEST_F(App_Settings, A_Deleted_Log_Gives_Way_To_The_Default_One) {
    Add_Log("Kept");
    for (const auto& [stored, found] : {std::pair{"Gone", "My Flight Log"}, {"Kept", "Kept"}}) {
        store.Set("Options", "Flight Log", stored);
        EXPECT_EQ(clsAppSettings(services).FlightLog(), found);
        EXPECT_EQ(store.Get("Options", "Flight Log"), found);
    }
}

TEST_F(App_Settings, A_Removed_Airline_Takes_Its_Own_Section_Along_And_No_Other) {
    store.Set("Sky", "Field0", "Somebody");
    store.Set("ACARS", "1", "4/23/2008");
    store.Set("VA", "Field0", "A. Pilot");
    // The second is no airline, but where the stored flight is.
    for (const auto& [name, reports] : {std::pair{"Sky", 0U}, {"ACARS", 1U}}) {
        store.Set("Virtual Airline", "Current", name);
        clsAppSettings settings(services);
        EXPECT_EQ(settings.Virtual_Airline() + settings.PilotName(), "DEFAULTA. Pilot");
        EXPECT_EQ(store.Get("Virtual Airline", "Current"), "VA");
        EXPECT_EQ(Take_Errors().size(), reports);
        EXPECT_THROW(settings.Set_Virtual_Airline("grid"), Run_Error);
        EXPECT_EQ(settings.Virtual_Airline(), "DEFAULT");
    }
    EXPECT_EQ(store.Find("Sky", "Field0"), std::nullopt);
    EXPECT_EQ(store.Get("ACARS", "1"), "4/23/2008");
}

TEST_F(App_Settings, Another_Airline_Takes_Over_Name_And_Address_Only) {
    for (const auto* name : {"ABC", "xyz"})
        Add_Airline(name);
    store.Set("ABC", "Field1", "ABC7");
    store.Set("ABC", "Field5", "Nowhere");
    clsAppSettings settings(services);
    for (const auto& [name, value] : {std::pair{"PilotName", "A. Pilot"},
                                      {"PilotEmail", "p@x"},
                                      {"PilotID", "7"},
                                      {"Airline_IATA", "ZZ"},
                                      {"Airline_IATAPrefix", "True"},
                                      {"Virtual_Airline", "XYZ"}})
        Set_Setting_Text(settings, name, value);
    EXPECT_THAT(Values(settings), HasSubstr("|XYZ|My Flight Log|A. Pilot|p@x||||False|"));
    settings.Set_Virtual_Airline("ABC");
    // The airline's log is shown, not made active, and nothing is stored before a save.
    EXPECT_THAT(Values(settings), HasSubstr("|ABC|Nowhere|A. Pilot|p@x|ABC7|||False|"));
    EXPECT_EQ(settings.FlightLog(), "My Flight Log");
    EXPECT_EQ(store.Find("Virtual Airline", "Current"), std::nullopt);
    settings.Set_Virtual_Airline("DEFAULT");
    settings.Save_Settings();
    EXPECT_EQ(store.Get("Virtual Airline", "Current") + store.Get("VA", "Field0"), "VAA. Pilot");
}

TEST_F(App_Settings, A_Bad_Value_Costs_Itself_Alone_And_The_Next_Save_Keeps_A_Copy) {
    Add_Airline("Sky");
    Write("bin/optfields.cfg", "Gate^\r\n");
    watched.Set("Options", "Report Fuel", "many" + std::string(100000, 'x'));
    watched.Set("Options", "Report Weight", "1");
    watched.Set("Options", "Simulator Address", "nowhere");
    // Flags may be words or numbers.
    watched.Set("Options", "Auto Log", "-1");
    watched.Set("Options", "ACARS Message Log", "0");
    watched.Set("PIREP", "PIREP", "true");
    watched.Set("Virtual Airline", "Current", "SKY");
    watched.Set("SKY", "Field6", "perhaps");
    watched.Set("SKY", "Field1", "SKY7");
    clsAppSettings settings(watched_services);
    EXPECT_THAT(Take_Errors(),
                ElementsAre(AllOf(HasSubstr("clsAppSettings.Get_Settings()"),
                                  HasSubstr("Error Number: 13"), SizeIs(testing::Lt(1000U)))));
    EXPECT_THAT(desktop.boxes.at(0).text,
                HasSubstr("ACARS_Fuel, Simulator_Address, Airline_IATAPrefix"));
    EXPECT_THAT(Values(settings), HasSubstr("|1|1|0|0|1|0|False|False|True|False|200|True|False|"));
    EXPECT_EQ(settings.Virtual_Airline() + settings.PilotID(), "SKYSKY7");

    EXPECT_TRUE(settings.Save_Settings());
    EXPECT_EQ(watched.Get("SKY", "Field1"), "SKY7");
    settings.Save_Settings();
    EXPECT_EQ(watched.operations, "back up begin commit begin commit ");
}

TEST_F(App_Settings, Events_Come_Once_What_Changed_Is_Stored) {
    Add_Log("Other");
    clsAppSettings settings(services);
    std::string events;
    settings.ActiveLogChange.Connect([&] { events += "ActiveLogChange "; });
    settings.SettingsChanged.Connect([&] { events += "SettingsChanged "; });
    settings.ACTypeChange.Connect([&] { events += "ACTypeChange "; });
    store.full = true;
    settings.Set_ACARS_ATCModel(true);
    EXPECT_FALSE(settings.Save_Settings());
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsAppSettings.Save_Settings()")));
    EXPECT_THROW(settings.Set_FlightLog("Other"), Run_Error);
    EXPECT_EQ(settings.FlightLog() + events, "My Flight Log");
    // The change is still to be told, as the panel's next "Save" assigns it once more.
    store.full = false;
    for (const auto* expected : {"ACTypeChange SettingsChanged ", "SettingsChanged "}) {
        settings.Set_ACARS_ATCModel(true);
        EXPECT_TRUE(settings.Save_Settings());
        EXPECT_EQ(std::exchange(events, {}), expected);
    }
    settings.Set_Virtual_Airline_Log(" Other ");
    EXPECT_EQ(events + settings.FlightLog(), "ActiveLogChange Other");
}

TEST_F(App_Settings, Texts_Are_Assigned_Within_The_Range_Of_Each_Setting) {
    for (const auto* log : {"Winter", "Summer|x"})
        Add_Log(log);
    for (const auto* airline : {"sky", "Grid"})
        Add_Airline(airline);
    Write("bin/url.cfg", "[ADDS]\r\nURL=x\r\n[NONE]\r\n");
    clsAppSettings settings(services);
    const std::vector<std::array<std::string, 3>> taken{
        {"acars_fuel", "2", "2"},      {"ACARS_TakeOff_Alt", " 35 ", "35"},
        {"OPT_AutoLog", "1", "True"},  {"Virtual_Airline", "Sky", "SKY"},
        {"WX_URL", "none", "NONE"},    {"Simulator_Address", "[::1]:8000", "[::1]:8000"},
        {"Simulator_Address", "", ""}, {"optfields(4)", "Type^Charter|Ferry", "Type^Charter|Ferry"},
        {"OptFields(4)", "", ""}};
    for (const auto& [name, text, value] : taken) {
        Set_Setting_Text(settings, name, text);
        EXPECT_EQ(Get_Setting_Text(settings, name), value);
    }
    const std::string before = Values(settings);
    const std::map<std::string, std::vector<std::string>> refused{
        {"ACARS_Fuel", {"3", "-1", "kg", "", "1.5", "99999999999"}},
        {"ACARS_EOF", {"3"}},
        {"ACARS_TakeOff_Alt", {"12", "105"}},
        {"Color_Link_Bar", {"16777216", "-1"}},
        {"OPT_PIREP", {"maybe", ""}},
        {"FlightLog", {"Autumn", "", "Summer|x"}},
        {"Virtual_Airline", {"SEA", "GRID", ""}},
        {"WX_URL", {"elsewhere"}},
        {"Simulator_Address", {"8338"}},
        {"OptFields(4)", {"no mark", "^A|B", "two\r\nlines^"}},
        {"OptFields(5)", {"Gate^"}},
        {"OptFields(-1)", {"Gate^"}},
        {"OptFields", {"Gate^"}},
        {"FlightLog_Path", {"x"}},
        {"Yield_In_Loop", {"True"}},
        {"Nothing", {"1"}}};
    for (const auto& [name, texts] : refused) {
        for (const std::string& text : texts)
            EXPECT_THROW(Set_Setting_Text(settings, name, text), Run_Error) << name << text;
    }
    for (const auto* list_of_two : {"ACARS_Date", "ACARS_Time", "ACARS_UseTime", "ACARS_Weight",
                                    "ACARS_RecordArrival", "ACARS_TouchAndGo", "VATSIM_FP"})
        EXPECT_THROW(Set_Setting_Text(settings, list_of_two, "2"), Run_Error) << list_of_two;
    EXPECT_EQ(Values(settings), before);
    EXPECT_THROW(static_cast<void>(Get_Setting_Text(settings, "Nothing")), Run_Error);
    EXPECT_FALSE(Take_Errors().empty()) << "each listing of the airlines tells of VA_Grid";
}

}  // namespace
}  // namespace norvane
