// Every file the settings read, emptied, cut short, filled with bytes at random, or made one line
// of 10 MB: whatever stands there, reading ends in a reported error or in less than was expected.

#include <gmock/gmock.h>

#include "common/run_error.h"
#include "config/airline_list.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "config/field_definitions.h"
#include "config/profile_reader.h"
#include "support/test_world.h"

namespace norvane {
namespace {

struct Broken_Content {
    const char* name;
    std::string content;
};

std::string Random_Bytes() {
    std::string bytes;
    std::uint32_t state = 1;
    for (int i = 0; i < 20000; ++i) {
        state = state * 1664525U + 1013904223U;
        bytes += static_cast<char>(state >> 24U);
    }
    return bytes;
}

std::vector<Broken_Content> Broken_Contents() {
    return {{"empty", ""},
            {"truncated", "[AD"},
            {"binary", Random_Bytes()},
            {"one line", std::string(10 << 20, 'x')},
            {"one line of marks", std::string(10 << 20, '^')},
            {"one line of bars", std::string(10 << 20, '|')}};
}

class Broken_Config_Files : public test::Test_World,
                            public testing::WithParamInterface<Broken_Content> {
  protected:
    /// Reports name the file and stay short, whatever stands in it.
    void Expect_Short_Reports() {
        for (const auto& report : Take_Errors())
            EXPECT_LT(report.size(), 1000U);
    }
};

TEST_P(Broken_Config_Files, Leave_The_Airline_Settings_Usable) {
    const std::string& content = GetParam().content;
    for (const auto* file : {"VA/server.cfg", "VA/pirep.cfg", "VA/vafields.cfg"}) {
        Write("VA/server.cfg", "host\r\n/a\r\n");
        Write("VA/pirep.cfg", "A^a\r\n");
        Write("VA/vafields.cfg", "A^a\r\n");
        Write(file, content);
        clsVASettings settings(services);
        settings.Get_VA_Settings("DEFAULT");
        EXPECT_GE(settings.PIREP_Fields_Ubound(), 0) << file;
        Expect_Short_Reports();
    }
}

TEST_P(Broken_Config_Files, Leave_The_Settings_Usable_And_The_Field_File_In_Place) {
    const auto file = Write("bin/optfields.cfg", GetParam().content);
    clsAppSettings settings(services);
    EXPECT_EQ(settings.Virtual_Airline(), "DEFAULT");
    EXPECT_TRUE(settings.Save_Settings());
    // An empty file goes, as no field is defined; any other content is there again.
    if (GetParam().content.empty()) {
        EXPECT_FALSE(std::filesystem::exists(file));
        return;
    }
    EXPECT_EQ(Read("bin/optfields.cfg").substr(0, 3), GetParam().content.substr(0, 3));
    const auto definitions = Read_Field_Definitions(file, optional_field_count);
    EXPECT_LE(definitions.fields.size(), optional_field_count);
    EXPECT_LT(definitions.failure.size(), 1000U);
}

TEST_P(Broken_Config_Files, Leave_Lists_And_Profiles_Readable) {
    const auto file = Write("bin/airline.cfg", GetParam().content);
    for (const auto& row : Read_Airline_Codes(file))
        EXPECT_EQ((row.name + row.iata + row.icao).find('\n'), std::string::npos);
    const Profile profile(file);
    EXPECT_EQ(profile.Value("ADDS", "URL"), "");
    EXPECT_EQ(profile.Section("ADDS"), std::string(1, '\0'));
    EXPECT_LE(profile.Section_Names().size(), 20000U);
}

INSTANTIATE_TEST_SUITE_P(Contents, Broken_Config_Files, testing::ValuesIn(Broken_Contents()),
                         [](const auto& parameter) {
                             std::string name = parameter.param.name;
                             std::replace(name.begin(), name.end(), ' ', '_');
                             return name;
                         });

}  // namespace
}  // namespace norvane
