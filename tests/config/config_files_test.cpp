#include <gmock/gmock.h>

#include <cstdlib>

#include "common/run_error.h"
#include "config/field_definitions.h"
#include "config/log_names.h"
#include "config/profile_reader.h"
#include "config/regional_settings.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;

class Config_Files : public test::Test_World {
  protected:
    Profile Profile_Of(const std::string& content) { return Profile(Write("x.cfg", content)); }
};

TEST_F(Config_Files, A_Profile_Finds_The_First_Match_Without_Regard_To_Case) {
    const auto profile = Profile_Of(
        "\xEF\xBB\xBFkey=outside\n"
        "[Adds]\r\nURL = first \r\nurl=second\nNo Value=\nquoted=\" a b \"\nhalf=\"a\n"
        "single='x'\n;METAR=off\nequation=a=b\n\tTabbed\t=\tvalue\t\n"
        "[other]\nURL=other\n[ADDS]\nlate=too late\n[ spaced ]\nkey=1\n");
    EXPECT_EQ(profile.Value("ADDS", "url"), "first");
    EXPECT_EQ(profile.Value("adds", "No Value"), "");
    EXPECT_EQ(profile.Value("ADDS", "QUOTED"), " a b ");
    EXPECT_EQ(profile.Value("ADDS", "half"), "\"a");
    EXPECT_EQ(profile.Value("ADDS", "single"), "x");
    EXPECT_EQ(profile.Value("ADDS", "METAR"), "");
    EXPECT_EQ(profile.Value("ADDS", "equation"), "a=b");
    EXPECT_EQ(profile.Value("ADDS", "tabbed"), "value");
    EXPECT_EQ(profile.Value("ADDS", "late"), "") << "a second section of the name";
    EXPECT_EQ(profile.Value("Spaced", "key"), "1");
    EXPECT_EQ(profile.Value("", "key"), "");
    EXPECT_EQ(profile.Value("OTHER", "key"), "");
    EXPECT_THAT(profile.Section_Names(), ElementsAre("Adds", "other", "ADDS", " spaced "));
}

TEST_F(Config_Files, A_Profile_Keeps_To_The_Sizes_Of_Its_Buffers) {
    EXPECT_EQ(Profile_Of("[A]\nk=" + std::string(300, 'x')).Value("A", "k"), std::string(254, 'x'));
    EXPECT_EQ(Profile_Of("[A]\n k=1 \n\n// text\nj = 2\r\n[B]\nx=1").Section("a"),
              "k=1\0// text\0j = 2\0"s);
    EXPECT_EQ(Profile_Of("[A]\n[B]\nk=1").Section("A"), "\0"s);
    EXPECT_EQ(Profile(directory / "missing").Section("A"), "\0"s);
    std::string lines = "[A]\n";
    for (int i = 0; i < 8000; ++i)
        lines += "k=123\n";
    const std::string section = Profile_Of(lines).Section("A");
    EXPECT_EQ(section.size(), 32766U);
    EXPECT_EQ(section.back(), '\0');
}

TEST_F(Config_Files, Field_Definitions_Are_Read_Up_To_A_Fault) {
    const auto file = Write("vafields.cfg", "Gate^\n\nType^A||B^field\r\n ^x\nbad\nLast^\n");
    const auto all = Read_Field_Definitions(file, 10);
    ASSERT_EQ(all.fields.size(), 3U);
    EXPECT_EQ(all.fields[0].caption, "Gate");
    EXPECT_TRUE(all.fields[0].entries.empty());
    EXPECT_THAT(all.fields[1].entries, ElementsAre("A", "", "B"));
    EXPECT_THAT(all.failure, HasSubstr("vafields.cfg, line 5"));
    const auto two = Read_Field_Definitions(file, 2);
    EXPECT_EQ(two.fields.size(), 2U);
    EXPECT_EQ(two.failure, "");
    EXPECT_THROW(static_cast<void>(Read_Field_Definitions(directory / "none", 5)), Run_Error);
}

TEST_F(Config_Files, Log_Names_Are_Refused_With_The_Fault) {
    const std::vector<std::pair<std::string, std::string>> refused{
        {"", "empty"},          {"  ", "empty"},          {" a", "blank"},
        {"a ", "blank"},        {"a/b", "\"/\""},         {"a\\b", "\"\\\""},
        {"a\tb", "control"},    {"a\x7F", "control"},     {"a:b", "any of"},
        {"what?", "any of"},    {"a|b", "any of"},        {"my.TXT", ".txt"},
        {"a.txt.b", ".txt"},    {".hidden", "point"},     {"con", "device"},
        {"Lpt1.old", "device"}, {"MY log", "\"My Log\""}, {std::string(101, 'x'), "100"}};
    for (const auto& [name, fault] : refused)
        EXPECT_THAT(Check_Log_Name(name, {"My Log"}), HasSubstr(fault)) << name;
    for (const auto& name :
         {"My Flight Log"s, "console"s, "a.b"s, "J\xF8rn"s, std::string(100, 'x')})
        EXPECT_EQ(Check_Log_Name(name, {"My Log"}), "") << name;
}

TEST_F(Config_Files, Logs_Are_The_Text_Files_Of_Their_Directory) {
    EXPECT_THAT(List_Logs(services), ElementsAre());
    for (const auto* name : {"b.txt", "a.TXT", "My Log.bak", ".txt", "c.txt.unsaved",
                             "Z\xC3\xBCrich.txt", "d.old.txt", "Cafe\xCC\x81.txt"})
        Write(std::filesystem::path("logs") / name, "");
    std::filesystem::create_directories(directory / "logs" / "e.txt");
    EXPECT_THAT(List_Logs(services), ElementsAre("Cafe", "Z\xFCrich", "a", "b", "d.old"));
    EXPECT_EQ(Log_Path(services, "a"), directory / "logs" / "a.TXT");
    EXPECT_EQ(Log_Path(services, "new"), directory / "logs" / "new.txt");
    EXPECT_EQ(Log_Path(services, "Z\xFCrich"), directory / "logs" / "Z\xC3\xBCrich.txt");
    EXPECT_EQ(Log_Path(services, "Cafe"), directory / "logs" / "Cafe\xCC\x81.txt");
}

TEST_F(Config_Files, The_Short_Date_Pattern_Is_Taken_Once) {
    ::setenv("LC_ALL", "C", 1);
    const Regional first = Load_Regional(store);
    EXPECT_EQ(first.short_date, "M/d/yyyy");
    EXPECT_EQ(first.decimal_sign, '.');
    EXPECT_EQ(first.grouping_sign, ',');
    EXPECT_EQ(store.Get("Options", "Short Date"), "M/d/yyyy");
    store.Set("Options", "Short Date", "dd.MM.yyyy");
    EXPECT_EQ(Load_Regional(store).short_date, "dd.MM.yyyy");
    for (const auto* broken : {"", "dd.MM", "dd.dd.yyyy", "ddMMyyyy", "dd.MM.yy", "d/M.yyyy"}) {
        store.Set("Options", "Short Date", broken);
        EXPECT_EQ(Load_Regional(store).short_date, "M/d/yyyy") << broken;
        EXPECT_EQ(store.Get("Options", "Short Date"), "M/d/yyyy");
    }
}

TEST_F(Config_Files, Locale_Date_Formats_Become_Patterns_That_Read_Back) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"%m/%d/%Y", "MM/dd/yyyy"},
        {"%d.%m.%Y", "dd.MM.yyyy"},
        {"%-d.%-m.%Y", "d.M.yyyy"},
        {"%e.%m.%Y", "d.MM.yyyy"},
        {"%d/%m/%y", "dd/MM/yyyy"},
        {"%F", "yyyy-MM-dd"},
        {"%D", "MM/dd/yyyy"},
        {"%d. %m. %Y", "dd.MM.yyyy"},
        {"%Y.%m.%d.", "yyyy.MM.dd"},
        {"%a %d %b", "yyyy-MM-dd"},
        {"%d %m %Y", "yyyy-MM-dd"},
        {"", "yyyy-MM-dd"},
        {"%Y\xE5\xB9\xB4%m", "yyyy-MM-dd"}};
    for (const auto& [format, expected] : cases) {
        EXPECT_EQ(Short_Date_Pattern(format), expected) << format;
        const Date date{2008, 4, 3};
        const auto read = Parse_Date_Time(Format_Date(date, expected), expected);
        ASSERT_TRUE(read) << expected;
        EXPECT_EQ(read->date, date);
    }
}

}  // namespace
}  // namespace norvane
