// The sample airline that airlines copy, and the page that tells them which value is which.

#include <regex>

#include "common/line_reader.h"
#include "config/cls_va_settings.h"
#include "config/field_definitions.h"
#include "logentry/log_fields.h"
#include "support/test_world.h"

namespace norvane {
namespace {

const std::filesystem::path docs = std::filesystem::path(NORVANE_SOURCE_DIR) / "docs";

/// The page's table of a PIREP: "4 FLIGHT_DATE date" for "| 4 | `FLIGHT_DATE` | ... | `date` | ...
/// |".
std::vector<std::string> Described_Values() {
    const std::regex row(R"(\| *(\d+) *\| *`(\w+)` *\|.*\| *`(\w+)` *\|[^|]*\|)");
    std::vector<std::string> values;
    std::smatch match;
    for (const std::string& line : Read_Lines(docs / "airlines.md")) {
        if (std::regex_match(line, match, row))
            values.push_back(match[1].str() + " " + match[2].str() + " " + match[3].str());
    }
    return values;
}

using VA_Sample = test::Test_World;

TEST_F(VA_Sample, Names_Each_Value_Of_A_Pirep_As_Its_Page_Does) {
    std::filesystem::copy(docs / "VA_SAMPLE", directory / "VA_SAMPLE");
    clsVASettings airline{services};
    airline.Get_VA_Settings("SAMPLE");
    EXPECT_TRUE(airline.URL_Encode());
    EXPECT_FALSE(airline.Script_PIREP().empty() || airline.Script_ACARS().empty());

    const std::vector<std::string> described = Described_Values();
    ASSERT_EQ(described.size(), 41U);
    for (const Log_Field_Row& row : All_Log_Fields()) {
        if (row.pirep_place == 0)
            continue;
        EXPECT_EQ(std::to_string(row.pirep_place) + " " + std::string(row.name) + " " +
                      airline.PIREP_Fields(row.pirep_place - 1),
                  described.at(static_cast<std::size_t>(row.pirep_place - 1)));
    }
    EXPECT_EQ(airline.PIREP_Field_Names(41) + airline.PIREP_Fields(41), "Gategate");
    const auto shown =
        Read_Field_Definitions(directory / "VA_SAMPLE" / "vafields.cfg", airline_field_count);
    EXPECT_EQ(shown.failure, "");
    EXPECT_EQ(shown.fields.size(), 4U);
}

}  // namespace
}  // namespace norvane
