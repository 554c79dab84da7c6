// The record of one flight: what its fields make of a text, the PIREP line, the stored flight.

#include <gtest/gtest.h>

#include <set>
#include <tuple>

#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/run_error.h"
#include "common/text.h"
#include "logentry/cls_log_entry.h"
#include "support/test_world.h"

namespace norvane {
namespace {

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
};

TEST_F(Log_Entry_Test, Each_field_cleans_a_text_by_its_own_rule) {
    clsLogEntry entry(services);
    const std::tuple<Log_Field, std::string_view, std::string_view> cases[] = {
        {Log_Field::FLIGHT_NUMBER, "[     ]", ""},
        {Log_Field::TIME_OUT, "[     ]", "[     ]"},
        {Log_Field::FLIGHT_DATE, " [4/23/2008] ", "4/23/2008"},
        {Log_Field::WX_ORIGIN, "[ KJFK [x] 10SM ]", "KJFK x 10SM"},
        {Log_Field::AIRPORT_ORIGIN, "  Hilo [Intl]  ", "Hilo [Intl]"},
        {Log_Field::COMMENTS, " one\r\ntwo\rthree\nfour \r\n", "one two three four"},
        {Log_Field::FLIGHT_PLAN, "KJFK\r\nDCT|KBOS", "KJFK DCT/KBOS"},
        {Log_Field::FUEL_OUT, " 12345 lbs\t", "12345 lbs\t"},
    };
    for (const auto& [field, written, expected] : cases) {
        entry.Set(field, written);
        EXPECT_EQ(entry.Get(field), expected) << Row_Of(field).name;
    }
}

TEST_F(Log_Entry_Test, Slots_keep_their_text_unchanged_and_refuse_what_lies_beyond) {
    clsLogEntry entry(services);
    entry.Set_OPTIONAL_FIELDS(5, " [x] ");
    entry.Set_VA_FIELDS(10, " y ");
    EXPECT_EQ(entry.OPTIONAL_FIELDS(5), " [x] ");
    EXPECT_EQ(entry.VA_FIELDS(10), " y ");
    const auto number_of = [](auto&& access) {
        try {
            access();
        } catch (const Run_Error& error) {
            return error.Number();
        }
        return 0;
    };
    EXPECT_EQ(number_of([&] { return entry.OPTIONAL_FIELDS(6); }), 9);
    EXPECT_EQ(number_of([&] { return entry.VA_FIELDS(11); }), 9);
    EXPECT_EQ(number_of([&] { entry.Set_OPTIONAL_FIELDS(6, "z"); }), 9);
    EXPECT_EQ(number_of([&] { entry.Set_VA_FIELDS(11, "z"); }), 9);
}

TEST_F(Log_Entry_Test, PIREP_line_holds_52_values_in_the_order_of_the_form) {
    clsLogEntry entry(services);
    EXPECT_EQ(entry.PIREP_Line(), std::string(51, '|'));
    Fill(entry);
    EXPECT_EQ(entry.PIREP_Line(),
              "PILOT_ID|PILOT_NAME|PILOT_EMAIL|FLIGHT_DATE|AIRCRAFT_TYPE|AIRCRAFT_ID|FLIGHT_ORIGIN|"
              "AIRPORT_ORIGIN|TIME_OUT|TIME_OFF|FUEL_OUT|FLIGHT_DESTINATION|AIRPORT_DESTINATION|"
              "TIME_ON|TIME_IN|FUEL_IN|BLOCK_TIME|BLOCK_TIME_HHMM|BLOCK_FUEL_USED|FLIGHT_TIME|"
              "FLIGHT_TIME_HHMM|FLIGHT_FUEL_USED|COMMENTS|FLIGHT_NUMBER|PAX|CARGO|FLIGHT_LEVEL|"
              "FLIGHT_PLAN|FLIGHT_DISTANCE|WEIGHT_ZEROFUEL|WEIGHT_TAXI|WEIGHT_TAKEOFF|"
              "WEIGHT_LANDING|WEIGHT_RAMP|ENG_SETTINGS|IAS_TAKEOFF|VERTICAL_SPEED|IAS_LANDING|"
              "WX_ORIGIN|WX_DESTINATION|IFR_VFR|va0|va1|va2|va3|va4|va5|va6|va7|va8|va9|va10");
}

TEST_F(Log_Entry_Test, No_value_of_the_PIREP_line_can_shift_another) {
    clsLogEntry entry(services);
    entry.Set(Log_Field::PILOT_NAME, "A|B");
    entry.Set(Log_Field::AIRPORT_ORIGIN, "x\r\ny\nz");
    entry.Set_VA_FIELDS(0, "gate|9\r");
    const std::string line = entry.PIREP_Line();
    const auto values = Split(line, '|');
    ASSERT_EQ(values.size(), 52U);
    EXPECT_EQ(values[1], "A/B");
    EXPECT_EQ(values[7], "x y z");
    EXPECT_EQ(values[41], "gate/9 ");
    EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos);
}

TEST_F(Log_Entry_Test, Report_creates_its_directory_and_replaces_an_older_one) {
    clsLogEntry entry(services);
    const auto file = directory / "reports" / "2008-04-23-1530-07_PIREP.txt";
    entry.Set(Log_Field::PIREP_FILE_NAME, From_Path(file));
    entry.Set(Log_Field::COMMENTS, std::string(5000, 'c'));
    EXPECT_TRUE(entry.Export_ACARS_Report());
    entry.Set(Log_Field::COMMENTS, "caf\xE9");
    EXPECT_TRUE(entry.Export_ACARS_Report());
    EXPECT_EQ(Read_File(file), std::string(22, '|') + "caf\xE9" + std::string(29, '|') + "\r\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory / "reports"), {}), 1);

    services.program_directory = directory / "\xD0\x9B";  // a letter that the code page lacks
    const auto there = services.program_directory / "reports" / "x_PIREP.txt";
    entry.Set(Log_Field::PIREP_FILE_NAME, From_Path(there));
    EXPECT_TRUE(entry.Export_ACARS_Report());
    EXPECT_TRUE(std::filesystem::exists(there));
}

TEST_F(Log_Entry_Test, A_report_that_cannot_be_written_is_reported) {
    clsLogEntry entry(services);
    entry.Set(Log_Field::PIREP_FILE_NAME, From_Path(directory / "missing" / "x.txt"));
    EXPECT_FALSE(entry.Export_ACARS_Report());
    const auto errors = Take_Errors();
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_TRUE(Contains(errors[0], "Error Source: clsLogEntry.Export_ACARS_Report()"));
}

TEST_F(Log_Entry_Test, The_stored_flight_returns_in_a_new_entry_with_its_exact_keys) {
    {
        clsLogEntry entry(services);
        Fill(entry);
        entry.Persist();
    }
    EXPECT_EQ(store.Depth(), 0);
    // A few keys by hand: the numbering is a contract with flights stored by older versions.
    EXPECT_EQ(store.Get("ACARS", "1"), "FLIGHT_DATE");
    EXPECT_EQ(store.Get("ACARS", "5"), "TIME_OUT");
    EXPECT_EQ(store.Get("ACARS", "21"), "VERTICAL_SPEED");
    EXPECT_EQ(store.Get("ACARS", "38"), "IFR_VFR");
    EXPECT_EQ(store.Get("ACARS", "39"), "AIRPORT_ORIGIN");
    EXPECT_EQ(store.Get("ACARS", "40"), "AIRPORT_DESTINATION");
    EXPECT_EQ(store.Get("ACARS", "043"), "opt0");
    EXPECT_EQ(store.Get("ACARS", "543"), "opt5");
    EXPECT_EQ(store.Get("ACARS", "044"), "va0");
    EXPECT_EQ(store.Get("ACARS", "1044"), "va10");
    EXPECT_FALSE(store.Find("ACARS", "41"));

    const clsLogEntry entry(services);
    for (const auto& row : All_Log_Fields())
        EXPECT_EQ(entry.Get(row.id), row.store_key != 0 ? row.name : "") << row.name;
    EXPECT_EQ(entry.OPTIONAL_FIELDS(5), "opt5");
    EXPECT_EQ(entry.VA_FIELDS(10), "va10");
}

TEST_F(Log_Entry_Test, Restoring_takes_texts_as_they_are_and_needs_a_date) {
    store.Set(flight_section, "3", "[N1]");
    EXPECT_EQ(clsLogEntry(services).Get(Log_Field::AIRCRAFT_ID), "");
    store.Set(flight_section, "1", "1/2/2008");
    clsLogEntry entry(services);
    EXPECT_EQ(entry.Get(Log_Field::AIRCRAFT_ID), "[N1]");
    EXPECT_EQ(entry.Get(Log_Field::FUEL_OUT), "");
    Delete_Stored_Flight(services);
    entry.Set(Log_Field::COMMENTS, "kept");
    entry.Restore();
    EXPECT_EQ(entry.Get(Log_Field::COMMENTS), "kept");
    EXPECT_FALSE(store.Find(flight_section, "3"));
}

TEST_F(Log_Entry_Test, Every_key_and_every_place_is_used_once) {
    std::set<int> keys;
    std::set<int> places;
    for (const auto& row : All_Log_Fields()) {
        keys.insert(row.store_key);
        places.insert(row.pirep_place);
    }
    // 0 stands for "none" in both.
    EXPECT_EQ(keys.size(), 41U);
    EXPECT_EQ(*keys.rbegin(), 40);
    EXPECT_EQ(places.size(), 42U);
    EXPECT_EQ(*places.rbegin(), 41);
}

TEST_F(Log_Entry_Test, The_answer_to_a_save_reaches_the_right_listener) {
    clsLogEntry entry(services);
    std::string heard;
    entry.NewLogEntrySave.connect([&] {
        heard += "save ";
        entry.New_Log_Entry_Save_Result(false);
        entry.New_Log_Entry_Save_Result(true);
    });
    entry.NewLogEntrySaveOK.connect([&] { heard += "ok "; });
    entry.NewLogEntrySaveFail.connect([&] { heard += "fail "; });
    entry.New_Log_Entry_Save();
    EXPECT_EQ(heard, "save fail ok ");
}

}  // namespace
}  // namespace norvane
