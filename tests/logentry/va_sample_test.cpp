// The sample airline that airlines copy, and the page that tells them which value is which.

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "common/line_reader.h"
#include "common/number.h"
#include "common/text.h"
#include "config/cls_va_settings.h"
#include "config/field_definitions.h"
#include "logentry/log_fields.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

const std::filesystem::path docs = std::filesystem::path(NORVANE_SOURCE_DIR) / "docs";

/// What stands between backticks, and nothing else, in a cell of a table; empty for another cell.
std::string Code_In(std::string_view cell) {
    const std::string text = Trim(cell);
    const bool is_code =
        text.size() > 2 && text.front() == '`' && text.find('`', 1) == text.size() - 1;
    return is_code ? text.substr(1, text.size() - 2) : std::string();
}

/// The page's table of a PIREP, its rows "| 4 | `FLIGHT_DATE` | ... | `date` | ... |": value and
/// form field of each line, as "FLIGHT_DATE=date".
std::vector<std::string> Described_Values() {
    std::vector<std::string> values;
    for (const std::string& line : Read_Lines(docs / "airlines.md")) {
        const auto cells = Split(line, '|');
        if (cells.size() < 7)
            continue;
        const std::string value = Code_In(cells[2]);
        const std::string field = Code_In(cells[cells.size() - 3]);
        const auto number = Parse_Int32(Trim(cells[1]));
        if (value.empty() || field.empty() || !number)
            continue;
        values.push_back(value + "=" + field);
        EXPECT_EQ(*number, static_cast<int>(values.size()));
    }
    return values;
}

class VA_Sample : public test::Test_World {};

TEST_F(VA_Sample, Names_Each_Value_Of_A_Pirep_As_Its_Page_Does) {
    std::filesystem::copy(docs / "VA_SAMPLE", directory / "VA_SAMPLE");
    clsVASettings airline{services};
    airline.Get_VA_Settings("SAMPLE");
    EXPECT_TRUE(airline.URL_Encode());
    EXPECT_FALSE(airline.Script_PIREP().empty() || airline.Script_ACARS().empty());

    const std::vector<std::string> described = Described_Values();
    ASSERT_THAT(described, SizeIs(41));
    for (const Log_Field_Row& row : All_Log_Fields()) {
        if (row.pirep_place == 0)
            continue;
        EXPECT_EQ(std::string(row.name) + "=" + airline.PIREP_Fields(row.pirep_place - 1),
                  described.at(static_cast<std::size_t>(row.pirep_place - 1)));
    }
    std::vector<std::string> own;
    for (int i = 41; i <= airline.PIREP_Fields_Ubound(); ++i)
        own.push_back(airline.PIREP_Field_Names(i) + "=" + airline.PIREP_Fields(i));
    EXPECT_THAT(
        own, ElementsAre("Gate=gate", "Service=service", "Cabin crew=cabin_crew", "Delay=delay"));
    const auto shown =
        Read_Field_Definitions(directory / "VA_SAMPLE" / "vafields.cfg", airline_field_count);
    EXPECT_EQ(shown.failure, "");
    ASSERT_THAT(shown.fields, SizeIs(4));
    EXPECT_THAT(shown.fields[0].entries, SizeIs(0));
    EXPECT_THAT(shown.fields[1].entries, ElementsAre("Scheduled", "Charter", "Ferry"));
}

}  // namespace
}  // namespace norvane
