#include <gmock/gmock.h>

#include <cstdlib>

#include "common/run_error.h"
#include "config/field_definitions.h"
#include "config/log_names.h"
#include "config/profile_reader.h"
#include "config/regional_settings.h"
#include "support/test_world.h"

/// The C library keeps the directories of LOCPATH for ever, each time it is looked at.
extern "C" const char* __lsan_default_suppressions() {  // NOLINT: the sanitizer's name
    return "leak:argz_add_sep\n";
}

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
    std::string values;
    for (const auto* key :
         {"url", "No Value", "QUOTED", "half", "single", "METAR", "equation", "tabbed", "late"})
        values += profile.Value("ADDS", key) + "|";
    EXPECT_EQ(values, "first|| a b |\"a|x||a=b|value||") << "of the first section of the name";
    const auto all = profile.Values("adds");
    EXPECT_EQ(all.at("url") + all.at("equation"), "firsta=b");
    EXPECT_EQ(profile.Value("Spaced", "key"), "1");
    EXPECT_EQ(profile.Value("", "key") + profile.Value("OTHER", "key"), "");
    EXPECT_THAT(profile.Section_Names(), ElementsAre("Adds", "other", "ADDS", " spaced "));
}

TEST_F(Config_Files, A_Profile_Keeps_To_The_Sizes_Of_Its_Buffers) {
    EXPECT_EQ(Profile_Of("[A]\nk=" + std::string(300, 'x')).Value("A", "k"), std::string(254, 'x'));
    EXPECT_EQ(Profile_Of("[A]\n k=1 \n\n// text\nj = 2\r\n[B]\nx=1").Section("a"),
              "k=1\0// text\0j = 2\0"s);
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
    EXPECT_EQ(Read_Field_Definitions(file, 3).failure, "");
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
    EXPECT_EQ(Log_Path(services, "Cafe"), directory / "logs" / "Cafe\xCC\x81.txt");
}

TEST_F(Config_Files, The_Short_Date_Pattern_Is_Taken_Once) {
    ::setenv("LC_ALL", "C", 1);
    Regional regional = Load_Regional(store);
    EXPECT_EQ(std::string{regional.decimal_sign} + regional.grouping_sign, ".,");
    EXPECT_EQ(store.Get("Options", "Short Date"), "M/d/yyyy");
    store.Set("Options", "Short Date", "dd.MM.yyyy");
    EXPECT_EQ(Load_Regional(store).short_date, "dd.MM.yyyy");
    for (const auto* broken : {"", "dd.MM", "dd.dd.yyyy", "ddMMyyyy", "dd.MM.yy", "d/M.yyyy",
                               "dd.MM.yyyy.dd", "M.MM.yyyy"}) {
        store.Set("Options", "Short Date", broken);
        EXPECT_EQ(Load_Regional(store).short_date, "M/d/yyyy") << broken;
        EXPECT_EQ(store.Get("Options", "Short Date"), "M/d/yyyy");
    }
}

TEST_F(Config_Files, A_Countrys_Signs_Are_Taken_As_The_Code_Page_Has_Them) {
    ::unsetenv("LC_ALL");
    ::setenv("LOCPATH", directory.c_str(), 1);
    // Letters, decimal sign, grouping sign, date; and what is made of it.
    const std::vector<std::array<std::string, 5>> countries{
        {"C.UTF-8", ",", "\xE2\x80\xAF", "%d/%m/%Y", ",\xA0 dd/MM/yyyy"},
        {"C.UTF-8", ",", " ", "%Y-%m-%d", ",\xA0 yyyy-MM-dd"},
        {"C.UTF-8", ".", "\xE2\x80\x99", "%d.%m.%Y", ".\x92 dd.MM.yyyy"},
        {"C", ",", "\xA0", "%d.%m.%Y", ",\xA0 dd.MM.yyyy"},
        {"C.UTF-8", ".", ",", "%m/%d/%y", "., MM/dd/yyyy"},
        {"C.UTF-8", ",", ",", "%d.%m.%Y", ",\0 dd.MM.yyyy"s},
        {"C.UTF-8", "\xD9\xAB", "\xD9\xAC", "%d/%m/%Y", ".\0 dd/MM/yyyy"s},
        {"C", ",", "", "%m/%d/%y", "., M/d/yyyy"}};
    int number = 0;
    for (const auto& [letters, decimal, grouping, date, expected] : countries) {
        const std::string name = "country" + std::to_string(++number);
        const auto source = Write("source",
                                  "LC_NUMERIC\ndecimal_point \".\"\nEND LC_NUMERIC\n"
                                  "LC_TIME\nd_fmt \"" +
                                      date + "\"\nEND LC_TIME\n");
        // It complains of all that is not told.
        static_cast<void>(std::system(("localedef -c -i " + source.string() + " " +
                                       (directory / name).string() + " >/dev/null 2>&1")
                                          .c_str()));
        // Signs beyond ASCII would ask for a table of them: they are put behind the others.
        std::string numeric = Read(name + "/LC_NUMERIC");
        for (const auto& [place, sign] : {std::pair{8U, decimal}, {12U, grouping}}) {
            numeric.at(place) = static_cast<char>(numeric.size());
            numeric += sign + '\0';
        }
        Write(name + "/LC_NUMERIC", numeric);
        ::setenv("LC_CTYPE", letters.c_str(), 1);
        for (const char* category : {"LC_NUMERIC", "LC_TIME"})
            ::setenv(category, name.c_str(), 1);
        Memory_Store empty;
        const Regional found = Load_Regional(empty);
        EXPECT_EQ(std::string{found.decimal_sign} + found.grouping_sign + " " + found.short_date,
                  expected);
    }
    for (const char* variable : {"LOCPATH", "LC_CTYPE", "LC_NUMERIC", "LC_TIME"})
        ::unsetenv(variable);
}

TEST_F(Config_Files, Locale_Date_Formats_Become_Patterns) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"%m/%d/%Y", "MM/dd/yyyy"},   {"%-d.%-m.%Y", "d.M.yyyy"}, {"%e.%m.%Y", "d.MM.yyyy"},
        {"%d/%m/%y", "dd/MM/yyyy"},   {"%F", "yyyy-MM-dd"},       {"%D", "MM/dd/yyyy"},
        {"%d. %m. %Y", "dd.MM.yyyy"}, {"%Y.%m.%d.", "yyyy.MM.dd"}};
    for (const auto& [format, expected] : cases)
        EXPECT_EQ(Short_Date_Pattern(format), expected) << format;
    // One that could not be read back.
    for (const char* format : {"%a %d %b", "%d %m %Y", "", "%Y\xE5\xB9\xB4%m"})
        EXPECT_EQ(Short_Date_Pattern(format), "yyyy-MM-dd") << format;
}

}  // namespace
}  // namespace norvane
