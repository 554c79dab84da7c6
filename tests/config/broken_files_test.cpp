// Every file the settings read, emptied, cut short, filled with bytes at random, or made one line
// of 10 MB: whatever stands there, reading ends in short reports or in less than was expected.

#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using Broken_Config_Files = test::Test_World;

TEST_F(Broken_Config_Files, Leave_The_Settings_Usable_And_What_The_Pilot_Wrote_In_Place) {
    std::string random(20000, '\0');
    for (std::uint32_t state = 1; char& byte : random) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24U);
    }
    for (const std::string& content : {std::string(), std::string("[AD"), random,
                                       std::string(10 << 20, 'x'), std::string(10 << 20, '^')}) {
        for (const auto* broken : {"VA/server.cfg", "VA/pirep.cfg", "VA/vafields.cfg"}) {
            Write("VA/server.cfg", "host\r\n/a\r\n");
            Write("VA/pirep.cfg", "A^a\r\n");
            Write(broken, content);
            clsVASettings airline(services);
            airline.Get_VA_Settings("DEFAULT");
            EXPECT_GE(airline.PIREP_Fields_Ubound(), 0) << broken;
        }
        const auto file = Write("bin/optfields.cfg", content);
        EXPECT_TRUE(clsAppSettings(services).Save_Settings());
        // An empty file goes, as no field is defined; any other content is there again.
        const bool exists = std::filesystem::exists(file);
        EXPECT_EQ(exists ? Read("bin/optfields.cfg").substr(0, 3) : "", content.substr(0, 3));
        for (const auto& report : Take_Errors())
            EXPECT_LT(report.size(), 1000U);
    }
}

}  // namespace
}  // namespace norvane
