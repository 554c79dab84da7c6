// The record of one flight: what its fields make of a text, the PIREP line, the stored flight, and
// the way from its PIREP text file to the airline's script.

#include <gmock/gmock.h>

#include <regex>
#include <set>
#include <tuple>

#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/run_error.h"
#include "common/text.h"
#include "config/field_definitions.h"
#include "logentry/cls_log_entry.h"
#include "net/net_world.h"

namespace norvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Log_Entry_Test : public test::Test_World {
  protected:
    /// Every field and slot carries its own name, so that a value in the wrong place shows.
    static void Fill(clsLogEntry& entry) {
        for (const auto& row : All_Log_Fields())
            entry.Set(row.id, row.name);
        for (std::size_t i = 0; i < clsLogEntry::optional_slots; ++i)
            entry.Set_OPTIONAL_FIELDS(i, "opt" + std::to_string(i));
        for (std::size_t i = 0; i < clsLogEntry::airline_slots; ++i)
            entry.Set_VA_FIELDS(i, "va" + std::to_string(i));
    }
    std::string Stored(std::string_view key) { return store.Get(flight_section, key, "absent"); }

    clsLogEntry entry{services};
};

TEST_F(Log_Entry_Test, Each_field_cleans_a_text_by_its_own_rule) {
    for (const auto& [field, written, expected] :
         std::vector<std::tuple<Log_Field, std::string, std::string>>{
             {Log_Field::FLIGHT_NUMBER, "[     ]", ""},
             {Log_Field::TIME_OUT, "[     ]", "[     ]"},
             {Log_Field::FLIGHT_DATE, " [4/23/2008] ", "4/23/2008"},
             {Log_Field::WX_ORIGIN, "[ KJFK [x] 10SM ]", "KJFK x 10SM"},
             {Log_Field::AIRPORT_ORIGIN, "  Hilo [Intl]  ", "Hilo [Intl]"},
             {Log_Field::COMMENTS, " one\r\ntwo\rthree\nfour \r\n", "one two three four"},
             {Log_Field::FLIGHT_PLAN, "KJFK\r\nDCT|KBOS", "KJFK DCT/KBOS"},
             {Log_Field::FUEL_OUT, " 12345 lbs\t", "12345 lbs\t"},
         }) {
        entry.Set(field, written);
        EXPECT_EQ(entry.Get(field), expected) << Row_Of(field).name;
    }
    entry.Set_OPTIONAL_FIELDS(5, " [x] ");
    entry.Set_VA_FIELDS(10, " y ");
    EXPECT_EQ(entry.OPTIONAL_FIELDS(5) + entry.VA_FIELDS(10), " [x]  y ");
    EXPECT_THROW(entry.Set_OPTIONAL_FIELDS(6, "z"), Run_Error);
    EXPECT_THROW(entry.Set_VA_FIELDS(11, "z"), Run_Error);
}

TEST_F(Log_Entry_Test, PIREP_line_holds_52_values_that_cannot_shift_one_another) {
    Fill(entry);
    entry.Set(Log_Field::PILOT_NAME, "A|B");
    entry.Set(Log_Field::AIRPORT_ORIGIN, "x\r\ny\nz");
    entry.Set_VA_FIELDS(0, "gate|9\r");
    const auto values = Split(entry.PIREP_Line(), '|');
    ASSERT_EQ(values.size(), 52U);
    EXPECT_EQ(values[1] + values[7] + values[41], "A/Bx y zgate/9 ");
    EXPECT_EQ(values[3] + values[40] + values[51], "FLIGHT_DATEIFR_VFRva10");
}

TEST_F(Log_Entry_Test, Report_creates_its_directory_and_replaces_an_older_one) {
    const auto file = directory / "reports" / "2008-04-23-1530-07_PIREP.txt";
    entry.Set(Log_Field::PIREP_FILE_NAME, From_Path(file));
    entry.Set(Log_Field::COMMENTS, std::string(5000, 'c'));
    EXPECT_TRUE(entry.Export_ACARS_Report());
    entry.Set(Log_Field::COMMENTS, "caf\xE9");
    EXPECT_TRUE(entry.Export_ACARS_Report());
    EXPECT_EQ(Read_File(file), std::string(22, '|') + "caf\xE9" + std::string(29, '|') + "\r\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory / "reports"), {}), 1);
    // One that is made up later replaces none.
    EXPECT_TRUE(entry.Make_Up_PIREP(From_Path(file), "other"));
    EXPECT_EQ(Read_File(file).size(), 57U);
    entry.Set(Log_Field::PIREP_FILE_NAME, From_Path(directory / "missing" / "x.txt"));
    EXPECT_FALSE(entry.Export_ACARS_Report());
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsLogEntry.Export_ACARS_Report()")));
    services.program_directory = directory / "\xD0\x9B";  // a letter that the code page lacks
    const auto there = services.program_directory / "reports" / "x_PIREP.txt";
    entry.Set(Log_Field::PIREP_FILE_NAME, From_Path(there));
    EXPECT_TRUE(entry.Export_ACARS_Report());
    EXPECT_TRUE(std::filesystem::exists(there));
}

TEST_F(Log_Entry_Test, The_stored_flight_returns_in_a_new_entry_with_its_exact_keys) {
    Fill(entry);
    EXPECT_TRUE(entry.Persist());
    // A few keys by hand: the numbering is a contract with flights stored by older versions.
    for (const std::string& pair :
         Split("1=FLIGHT_DATE|5=TIME_OUT|21=VERTICAL_SPEED|38=IFR_VFR|39=AIRPORT_ORIGIN|"
               "40=AIRPORT_DESTINATION|41=absent|043=opt0|543=opt5|044=va0|1044=va10",
               '|'))
        EXPECT_EQ(Stored(Before(pair, "=")), pair.substr(pair.find('=') + 1));
    std::set<int> keys;
    const clsLogEntry restored(services);
    for (const auto& row : All_Log_Fields()) {
        EXPECT_EQ(restored.Get(row.id), row.store_key != 0 ? row.name : "") << row.name;
        EXPECT_TRUE(row.store_key == 0 || keys.insert(row.store_key).second) << row.name;
    }
    // Texts are taken as they are, and only with a date.
    store.Set(flight_section, "3", "[N1]");
    entry.Restore();
    EXPECT_EQ(entry.Get(Log_Field::AIRCRAFT_ID), "[N1]");
    Delete_Stored_Flight(services);
    store.Set(flight_section, "3", "N2");
    entry.Restore();
    EXPECT_EQ(entry.Get(Log_Field::AIRCRAFT_ID), "[N1]");
    EXPECT_EQ(Stored("5"), "absent");
    store.full = true;
    EXPECT_FALSE(entry.Persist());
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsLogEntry.Persist()")));
}

class Pirep_Sending : public test::Net_World {
  protected:
    Pirep_Sending() {
        Write("VA_X/server.cfg", server.Host() + "\r\n/in\r\n");
        Write("VA_X/pirep.cfg", "1^a\r\n2^b\r\n3^c\r\n4^date\r\n5^e\r\n");
        airline.Get_VA_Settings("X");
        Take_Errors();  // a form this short is reported
        entry.Set(Log_Field::PIREP_FILE_NAME, From_Path(directory / "reports/one.txt"));
    }
    bool Send(const std::string& file) {
        Write("reports/one.txt", file);
        return !entry.Send_PIREP(settings, airline, options);
    }
    [[nodiscard]] std::string Form() const {
        return server.Request().substr(server.Request().find("\r\n\r\n") + 4);
    }

    test::Raw_Server server{[](int socket) {
        test::Send(socket, "HTTP/1.1 500 Sorry\r\nContent-Length: 4\r\n\r\nlost");
    }};
    clsLogEntry entry{services};
};

TEST_F(Pirep_Sending, The_Date_Takes_The_Form_That_Servers_Read) {
    for (const auto& [date, posted] : std::vector<std::pair<std::string, std::string>>{
             {"2008-04-23", "2008%2D04%2D23+00%3A00%3A00"},
             {"4/23/2008 15:09:07", "2008%2D04%2D23+15%3A09%3A07"},
             {"yesterday", "yesterday"},
             {"", ""}}) {
        EXPECT_TRUE(Send("P1|N\xE4me||" + date + "|B738|more\r\nsecond|line\r\n"));
        EXPECT_EQ(Form(), "a=P1&b=N%E4me&c=&date=" + posted + "&e=B738&");
    }
    EXPECT_EQ(Read("sr"), "lost\r\n");
}

TEST_F(Pirep_Sending, What_Cannot_Be_Read_Is_Told_With_Its_File) {
    for (const char* content : {"no values\r\na|b\r\n", ""}) {
        EXPECT_FALSE(Send(content));
        EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("one.txt holds no values")));
    }
    std::filesystem::remove(directory / "reports/one.txt");
    const auto failure = entry.Send_PIREP(settings, airline, options);
    ASSERT_TRUE(failure);
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsLogEntry.Send_PIREP()")));
    Tell_PIREP_Failure(desktop, *failure);
    EXPECT_THAT(desktop.boxes.back().text, HasSubstr("could not be read, and was not sent"));
    EXPECT_EQ(server.Request(), "");
}

/// The sample airline that airlines copy, and the page that tells them which value is which.
TEST_F(Log_Entry_Test, The_sample_airline_names_each_value_of_a_PIREP_as_its_page_does) {
    const auto docs = std::filesystem::path(NORVANE_SOURCE_DIR) / "docs";
    std::filesystem::copy(docs / "VA_SAMPLE", directory / "VA_SAMPLE");
    clsVASettings airline{services};
    airline.Get_VA_Settings("SAMPLE");
    EXPECT_FALSE(airline.Script_PIREP().empty() || airline.Script_ACARS().empty());

    // "4 FLIGHT_DATE date" for "| 4 | `FLIGHT_DATE` | ... | `date` | ... |".
    const std::regex row_pattern(R"(\| *(\d+) *\| *`(\w+)` *\|.*\| *`(\w+)` *\|[^|]*\|)");
    std::vector<std::string> described;
    std::smatch match;
    for (const std::string& line : Read_Lines(docs / "airlines.md")) {
        if (std::regex_match(line, match, row_pattern))
            described.push_back(match[1].str() + " " + match[2].str() + " " + match[3].str());
    }
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
