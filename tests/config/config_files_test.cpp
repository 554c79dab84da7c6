// The small files beside the store: profiles, field definitions, names of logs, an airline's files,
// and the signs of the pilot's country.

#include <gmock/gmock.h>

#include <cstdlib>

#include "common/run_error.h"
#include "config/airline_list.h"
#include "config/cls_va_settings.h"
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
using testing::AllOf;
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
