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
using testing::IsEmpty;

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
        const auto counted = settings.Change.connect([&] { ++changes; });
        settings.Get_VA_Settings(name);
        EXPECT_EQ(changes, 1);
        Connection(counted).disconnect();
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
        {"", "||"},
    };
    for (const auto& [content, expected] : cases) {
        Write("VA_MYAIR/server.cfg", content);
        Load("MYAIR");
        EXPECT_EQ(Server(), expected);
        EXPECT_EQ(settings.Directory(), "VA_MYAIR");
        EXPECT_EQ(settings.PIREP_Fields_Ubound(), 1);
    }
}

TEST_F(VA_Settings, An_Airline_Leaves_Nothing_To_The_Next) {
    Write("VA/server.cfg", "default\n/a\n");
    Write("Va_MyAir/Server.CFG", "host\n/a\n/b\n");
    Write("Va_MyAir/NoEncode", "");
    Write("Va_MyAir/pirep.cfg", Numbered_Fields(41));
    Load(" MYAIR ");
    EXPECT_EQ(settings.Name(), "MYAIR");
    EXPECT_EQ(Server(), "host|/a|/b");
    EXPECT_FALSE(settings.URL_Encode());
    EXPECT_EQ(settings.PIREP_Field_Names_Ubound(), 40);
    Load("DEFAULT");
    EXPECT_EQ(settings.Directory(), "VA");
    EXPECT_EQ(Server(), "default|/a|");
    EXPECT_TRUE(settings.URL_Encode());
    EXPECT_EQ(settings.PIREP_Fields_Ubound(), 1);
    EXPECT_EQ(Field(1), "=");
    EXPECT_THROW(static_cast<void>(settings.PIREP_Fields(2)), Run_Error);
    EXPECT_THROW(static_cast<void>(settings.PIREP_Field_Names(-1)), Run_Error);
    Load("default");
    EXPECT_EQ(settings.Directory(), "VA_default");
    EXPECT_EQ(Server(), "||");
    // Without an accepted server file the marker does not count.
    Write("VA_NONE/server.cfg", "host\n");
    Write("VA_NONE/noencode", "");
    Load("NONE");
    EXPECT_TRUE(settings.URL_Encode());
}

TEST_F(VA_Settings, Field_Lists_Are_Cut_At_Their_Marks) {
    Write("VA/server.cfg", "host\n/a\n");
    Write("VA/vafields.cfg", Numbered_Fields(12) + "\r\n");
    Load("DEFAULT");
    EXPECT_EQ(settings.PIREP_Fields_Ubound(), 1) << "the airline's fields alone are no list";
    Write("VA/pirep.cfg", Numbered_Fields(40) + "\r\n A ^B^C\r\n");
    Write("VA/vafields.cfg", "A^B^C\r\n\r\n" + Numbered_Fields(12));
    Load("DEFAULT");
    EXPECT_EQ(settings.PIREP_Fields_Ubound(), 50);
    EXPECT_EQ(Field(0), "Label 0=name0");
    EXPECT_EQ(Field(40), " A =B^C");
    EXPECT_EQ(Field(41), "A=C");
    EXPECT_EQ(Field(50), "Label 8=name8");
}

TEST_F(VA_Settings, A_List_That_Does_Not_Fit_The_Fixed_Values_Is_Reported) {
    Write("VA/server.cfg", "host\n/a\n");
    Write("VA/pirep.cfg", Numbered_Fields(40));
    Write("VA/vafields.cfg", Numbered_Fields(3));
    Load("DEFAULT");
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("pirep.cfg: 40 fields")));
    EXPECT_TRUE(desktop.boxes.empty());
    EXPECT_EQ(settings.PIREP_Fields_Ubound(), 42);
}

TEST_F(VA_Settings, A_Faulty_List_Keeps_What_Was_Read_And_Names_The_Line) {
    Write("VA/server.cfg", "host\n/a\n");
    const auto fails_with = [&](const auto& matcher) {
        Load("DEFAULT");
        EXPECT_THAT(Take_Errors(),
                    ElementsAre(AllOf(HasSubstr("clsVASettings.Get_PIREP_Fields()"), matcher)));
        EXPECT_EQ(settings.PIREP_Fields_Ubound(), 75);
        EXPECT_EQ(Server(), "host|/a|");
    };
    Write("VA/pirep.cfg", "A^a\r\n\r\nno mark\r\nB^b\r\n");
    fails_with(HasSubstr("pirep.cfg, line 3: no \"^\""));
    EXPECT_EQ(Field(0), "A=a");
    EXPECT_EQ(Field(1), "=");
    Write("VA/pirep.cfg", Numbered_Fields(77));
    fails_with(HasSubstr("line 77: more than 76 fields"));
    EXPECT_EQ(Field(75), "Label 75=name75");
    Write("VA/pirep.cfg", Numbered_Fields(70));
    Write("VA/vafields.cfg", Numbered_Fields(10));
    fails_with(HasSubstr("vafields.cfg, line 7: more than 76"));
    Write("VA/vafields.cfg", "");
    Write("VA/pirep.cfg", "\r\n\r\n");
    fails_with(HasSubstr("pirep.cfg: no field"));
}

TEST_F(VA_Settings, A_Full_List_Fits) {
    Write("VA/server.cfg", "host\n/a\n");
    Write("VA/pirep.cfg", Numbered_Fields(76));
    Load("DEFAULT");
    EXPECT_EQ(settings.PIREP_Fields_Ubound(), 75);
    EXPECT_EQ(Take_Errors().size(), 1U) << "but not the fixed values";
}

using Airlines = test::Test_World;

TEST_F(Airlines, Are_Listed_In_Capitals_And_The_Default_One_Last) {
    EXPECT_THAT(List_Airlines(services), ElementsAre("DEFAULT"));
    for (const auto* name : {"VA_abc", "Va_Xyz", "VA_", "VAX", "VA_ABC"})
        std::filesystem::create_directories(directory / name);
    Write("VA_FILE", "");
    EXPECT_THAT(List_Airlines(services), ElementsAre("ABC", "XYZ"));
    std::filesystem::create_directories(directory / "va");
    EXPECT_THAT(List_Airlines(services), ElementsAre("ABC", "XYZ", "DEFAULT"));
    services.program_directory /= "missing";
    EXPECT_THAT(List_Airlines(services), ElementsAre("DEFAULT"));
}

TEST_F(Airlines, Named_Like_A_Section_Of_The_Store_Or_Beyond_The_Code_Page_Are_Refused) {
    // The last two would be one airline, "??".
    for (const auto* name : {"VA_Acars", "VA_va", "VA_Flight Plan", "VA_Sky", "VA_日本", "VA_東京"})
        std::filesystem::create_directories(directory / name);
    EXPECT_THAT(List_Airlines(services), ElementsAre("SKY"));
    EXPECT_EQ(Take_Errors().size(), 5U);
    for (const auto* name : {"acars", "PIREP", "DEFAULT", "Options", "Grid", "AppPos", "VA"})
        EXPECT_THAT(Airline_Name_Fault(name), HasSubstr(name));
    EXPECT_THAT(Airline_Name_Fault("SKY"), IsEmpty());
}

TEST_F(Airlines, Codes_Are_Read_Line_By_Line) {
    const auto file = Write("bin/airline.cfg", "Sky|SK|SKY|more\r\n\r\nSea\r\nAir|A");
    const auto rows = Read_Airline_Codes(file);
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0].name + rows[0].iata + rows[0].icao, "SkySKSKY");
    EXPECT_EQ(rows[1].name + rows[1].iata + rows[1].icao, "Sea");
    EXPECT_EQ(rows[2].iata, "A");
    EXPECT_THROW(static_cast<void>(Read_Airline_Codes(directory / "none")), Run_Error);
}

}  // namespace
}  // namespace norvane
