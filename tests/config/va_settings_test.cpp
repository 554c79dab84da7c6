#include "config/cls_va_settings.h"

#include <gmock/gmock.h>

#include "common/run_error.h"
#include "config/airline_list.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

std::string Numbered_Fields(int count) {
    std::string lines;
    for (int i = 0; i < count; ++i)
        lines += "Label " + std::to_string(i) + "^name" + std::to_string(i) + "\r\n";
    return lines;
}

class VA_Settings : public test::Test_World {
  protected:
    void Load(const std::string& name) {
        int changes = 0;
        Connection counted = settings.Change.Connect([&] { ++changes; });
        // A box lets other code run, which is to find everybody with this airline.
        desktop.on_box = [&](const Message_Box&) { EXPECT_EQ(changes, 1); };
        settings.Get_VA_Settings(name);
        EXPECT_EQ(changes, 1);
        counted.Disconnect();
    }
    [[nodiscard]] std::string Server() const {
        return settings.WebServer() + "|" + settings.Script_PIREP() + "|" + settings.Script_ACARS();
    }
    [[nodiscard]] std::string Field(int index) const {
        return settings.PIREP_Field_Names(index) + "=" + settings.PIREP_Fields(index);
    }

    clsVASettings settings{services};
};

TEST_F(VA_Settings, The_Server_File_Is_Accepted_With_A_Host_And_A_Script) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {" host \r\n /pirep.php \r\n/acars.php\r\nmore\r\n", "host|/pirep.php|/acars.php"},
        {"host\n\n/acars.php", "host||/acars.php"},
        {"host\n/pirep.php", "host|/pirep.php|"},
        {"host\r\n", "||"},
        {"host\r\n \r\n \r\n/late\r\n", "||"},
        {"\r\n/pirep.php\r\n", "||"},
    };
    // Without an accepted file the marker does not count.
    Write("VA_MYAIR/noencode", "");
    for (const auto& [content, expected] : cases) {
        Write("VA_MYAIR/server.cfg", content);
        Load("MYAIR");
        EXPECT_EQ(Server(), expected);
        EXPECT_EQ(settings.URL_Encode(), expected == "||");
        EXPECT_EQ(settings.PIREP_Fields_Ubound(), 1);
    }
}

TEST_F(VA_Settings, An_Airline_Leaves_Nothing_To_The_Next) {
    Write("VA/server.cfg", "default\n/a\n");
    Write("Va_MyAir/Server.CFG", "host\n/a\n/b\n");
    Write("Va_MyAir/NoEncode", "");
    Write("Va_MyAir/pirep.cfg", Numbered_Fields(41));
    Load(" MYAIR ");
    EXPECT_EQ(settings.Name() + settings.Directory() + Server(), "MYAIRVA_MYAIRhost|/a|/b");
    EXPECT_FALSE(settings.URL_Encode());
    EXPECT_EQ(settings.PIREP_Field_Names_Ubound(), 40);
    Load("DEFAULT");
    EXPECT_EQ(settings.Directory() + Server(), "VAdefault|/a|");
    EXPECT_TRUE(settings.URL_Encode());
    EXPECT_EQ(settings.PIREP_Fields_Ubound(), 1);
    EXPECT_EQ(Field(1), "=");
    EXPECT_THROW(static_cast<void>(settings.PIREP_Fields(2)), Run_Error);
    EXPECT_THROW(static_cast<void>(settings.PIREP_Field_Names(-1)), Run_Error);
    Load("default");
    EXPECT_EQ(settings.Directory() + Server(), "VA_default||");
}

TEST_F(VA_Settings, Field_Lists_Are_Cut_At_Their_Marks) {
    Write("VA/server.cfg", "host\n/a\n");
    Write("VA/vafields.cfg", "A^B^C\r\n\r\n" + Numbered_Fields(12));
    Load("DEFAULT");
    EXPECT_EQ(settings.PIREP_Fields_Ubound(), 1) << "the airline's fields alone are no list";
    Write("VA/pirep.cfg", Numbered_Fields(40) + "\r\n A ^B^C\r\n");
    Load("DEFAULT");
    EXPECT_EQ(settings.PIREP_Fields_Ubound(), 50);
    EXPECT_EQ(Field(0) + Field(40), "Label 0=name0 A =B^C");
    EXPECT_EQ(Field(41) + Field(50), "A=CLabel 8=name8");
}

TEST_F(VA_Settings, A_Faulty_List_Keeps_What_Was_Read_And_Names_The_Line) {
    // The two lists, the report, the last field's index, the first and the last field, boxes.
    using Case = std::tuple<std::string, std::string, const char*, int, std::string, std::size_t>;
    const std::vector<Case> cases{
        {"A^a\r\n\r\nno mark\r\nB^b\r\n", "", "pirep.cfg, line 3: no \"^\"", 75, "A=a=", 1U},
        {Numbered_Fields(77), "", "line 77: more than 76 fields", 75,
         "Label 0=name0Label 75=name75", 1U},
        {Numbered_Fields(70), Numbered_Fields(10), "vafields.cfg, line 7: more than 76", 75,
         "Label 0=name0Label 5=name5", 1U},
        {"\r\n\r\n", "", "pirep.cfg: no field", 75, "==", 1U},
        // Only noted: a full list fits, but not the fixed values.
        {Numbered_Fields(76), "", "pirep.cfg: 76 fields, where a PIREP has 41", 75,
         "Label 0=name0Label 75=name75", 0U},
        {Numbered_Fields(40), Numbered_Fields(3), "pirep.cfg: 40 fields", 42,
         "Label 0=name0Label 2=name2", 0U},
    };
    Write("VA/server.cfg", "host\n/a\n");
    for (const auto& [pirep, own, report, last, ends, boxes] : cases) {
        Write("VA/pirep.cfg", pirep);
        Write("VA/vafields.cfg", own);
        desktop.boxes.clear();
        Load("DEFAULT");
        EXPECT_THAT(Take_Errors(),
                    ElementsAre(AllOf(HasSubstr("Get_PIREP_Fields()"), HasSubstr(report))));
        EXPECT_EQ(desktop.boxes.size(), boxes);
        EXPECT_EQ(settings.PIREP_Fields_Ubound(), last);
        EXPECT_EQ(Field(0) + Field(last), ends);
        EXPECT_EQ(Server(), "host|/a|");
    }
}

using Airlines = test::Test_World;

TEST_F(Airlines, Are_Listed_Once_Unless_Named_Like_A_Section_Or_Beyond_The_Code_Page) {
    EXPECT_THAT(List_Airlines(services), ElementsAre("DEFAULT"));
    // The last two would be one airline, "??".
    for (const auto* name : {"VA_xyz", "Va_Abc", "VA_", "VAX", "VA_ABC", "VA_Acars", "VA_va",
                             "VA_Flight Plan", "VA_日本", "VA_東京"})
        std::filesystem::create_directories(directory / name);
    Write("VA_FILE", "");
    EXPECT_THAT(List_Airlines(services), ElementsAre("ABC", "XYZ"));
    EXPECT_EQ(Take_Errors().size(), 5U);
    std::filesystem::create_directories(directory / "va");
    EXPECT_THAT(List_Airlines(services), ElementsAre("ABC", "XYZ", "DEFAULT"));
    Take_Errors();
    for (const auto* name : {"acars", "PIREP", "DEFAULT", "Options", "Grid", "AppPos", "VA"})
        EXPECT_THAT(Airline_Name_Fault(name), HasSubstr(name));
    EXPECT_EQ(Airline_Name_Fault("SKY"), "");
}

}  // namespace
}  // namespace norvane
