// A finished flight becomes a row of the log, once, whatever goes wrong.

#include <gtest/gtest.h>

#include "logpanel/log_world.h"

namespace norvane {
namespace {

using test::Full_Line;
using test::Texts;

class New_Entry_Test : public test::Log_World {
  protected:
    const std::string a = Full_Line("1/1/2008|a");
    const std::string flight = Full_Line("1/2/2008|||||0900");
};

TEST_F(New_Entry_Test, Every_column_takes_its_own_field_of_the_entry) {
    Start();
    for (const auto& row : All_Log_Fields())
        entry->Set(row.id, row.name);
    for (std::size_t i = 0; i < clsLogEntry::optional_slots; ++i)
        entry->Set_OPTIONAL_FIELDS(i, "opt" + std::to_string(i));
    for (std::size_t i = 0; i < clsLogEntry::airline_slots; ++i)
        entry->Set_VA_FIELDS(i, "va|" + std::to_string(i));
    entry->New_Log_Entry_Save();
    EXPECT_EQ(Read(log_file),
              "FLIGHT_DATE|AIRCRAFT_TYPE|AIRCRAFT_ID|FLIGHT_ORIGIN|AIRPORT_ORIGIN|TIME_OUT|"
              "TIME_OFF|FUEL_OUT|FLIGHT_DESTINATION|AIRPORT_DESTINATION|TIME_ON|TIME_IN|FUEL_IN|"
              "BLOCK_TIME|BLOCK_TIME_HHMM|BLOCK_FUEL_USED|FLIGHT_TIME|FLIGHT_TIME_HHMM|"
              "FLIGHT_FUEL_USED|COMMENTS|FLIGHT_NUMBER|PAX|CARGO|FLIGHT_LEVEL|FLIGHT_PLAN|"
              "FLIGHT_DISTANCE|WEIGHT_ZEROFUEL|WEIGHT_TAXI|WEIGHT_TAKEOFF|WEIGHT_LANDING|"
              "WEIGHT_RAMP|ENG_SETTINGS|IAS_TAKEOFF|VERTICAL_SPEED|IAS_LANDING|WX_ORIGIN|"
              "WX_DESTINATION|IFR_VFR|opt0|opt1|opt2|opt3|opt4|va/0|va/1|va/2|va/3|va/4|va/5|"
              "va/6|va/7|va/8|va/9\r\n");
    EXPECT_EQ(answers, "ok ");
    EXPECT_EQ(Take_Boxes(), Texts{"Flight Log Saved"});
    EXPECT_FALSE(log->Changed() || desktop.busy);
}

TEST_F(New_Entry_Test, A_flight_that_was_logged_before_its_end_keeps_its_row) {
    const std::string logged = "1/2/2008|||||0900|0910";
    const std::string ended = logged + "|||||1010";
    const std::string typed = logged + "|||||||||||||typed";
    const std::string other = "1/2/2008|||||0900|0915";
    const std::string undeparted = "1/2/2008|||||0900||4500";
    // Rows with a blank between them.
    const std::vector<std::array<std::string, 3>> cases{
        {logged, logged, ended},
        // What the pilot wrote into it since stays.
        {logged, typed, logged + "|||||1010||||||||typed"},
        {logged, logged + "|4500", logged + "|4500||||1010"},
        {logged, logged + " " + typed, ended + " " + typed},
        // Another flight, or one that is gone.
        {logged, other, other + " " + ended},
        {"1/2/2008|||||0900", undeparted, undeparted + " " + ended},
        {"", logged, logged + " " + ended}};
    for (const auto& [row_in_log, before, after] : cases) {
        Write(log_file, Replace_All(before, " ", "\r\n"));
        Start();
        entry->Set(Log_Field::TIME_OFF, "0910");
        entry->Set(Log_Field::TIME_IN, "1010");
        const std::string line = Full_Line(row_in_log);
        entry->Set_Row_In_Log(row_in_log.empty() ? "" : line.substr(0, line.size() - 2));
        Log_Flight("1/2/2008");
        std::string expected;
        for (const std::string& row : Split(after, ' '))
            expected += Full_Line(row);
        EXPECT_EQ(Read(log_file), expected) << before;
    }
}

TEST_F(New_Entry_Test, A_failed_save_is_answered_and_a_second_try_makes_no_second_row) {
    Write(log_file, a);
    Start();
    Block_Saves();
    entry->Set(Log_Field::BLOCK_TIME, "1.5");
    Log_Flight("1/2/2008");
    EXPECT_TRUE(log->Changed());
    EXPECT_EQ(Read(log_file), a);
    EXPECT_TRUE(Contains(log->tdbLogCaption.Text(), "Block Time: 1.5"));
    // Another flight does not take the row of the one that failed.
    entry->Set(Log_Field::BLOCK_TIME, "");
    Log_Flight("1/2/2008", "1400");
    Take_Errors();
    log->Grid_Sort(1);
    Unblock_Saves();
    entry->Set(Log_Field::BLOCK_TIME, "1.5");
    entry->Set(Log_Field::COMMENTS, "typed since");
    Log_Flight("1/2/2008");
    EXPECT_EQ(answers, "fail fail ok ");
    const std::string tried = Full_Line("1/2/2008|||||0900||||||||1.5||||||typed since");
    const std::string other = Full_Line("1/2/2008|||||1400");
    EXPECT_EQ(Read(log_file), tried + other + a);
    // The same flight, logged knowingly, gets a row of its own.
    entry->New_Log_Entry_Save();
    EXPECT_EQ(Read(log_file), tried + other + a + tried);
}

TEST_F(New_Entry_Test, A_flight_that_fails_while_a_box_of_a_save_is_open_stays_unsaved) {
    Write(log_file, a);
    Start();
    Write(log_file, "1/1/2008|theirs\r\n");
    desktop.on_box = [&](const Message_Box& box) {
        if (!Contains(box.text, "changed by another program"))
            return;
        Block_Saves();
        Log_Flight("1/2/2008");
    };
    EXPECT_TRUE(log->Grid_Save());
    EXPECT_EQ(answers, "fail ");
    // It outlives a No to the question at the end.
    desktop.answers = {Answer::no};
    EXPECT_TRUE(Close());
    EXPECT_EQ(Read(unsaved), flight);
    Take_Errors();
}

TEST_F(New_Entry_Test, A_log_that_cannot_be_read_is_not_written_over) {
    std::filesystem::create_directories(directory / log_file / "in the way");
    Start();
    Take_Boxes();
    Log_Flight("1/2/2008");
    EXPECT_TRUE(Contains(Take_Boxes().back(), "It is kept in"));
    entry->New_Log_Entry_Save();
    EXPECT_EQ(answers, "fail fail ");
    EXPECT_FALSE(log->Grid_Save());
    log->Grid_Undo();
    EXPECT_TRUE(Exists("logs/My Flight Log.txt/in the way"));
    EXPECT_EQ(Read(unsaved), flight);
    EXPECT_EQ(Logs(), "My Flight Log.txt My Flight Log.unsaved") << "kept once";
    const std::string boxes = Join(Take_Boxes(), " ");
    EXPECT_FALSE(Contains(boxes, "It is kept in") || Contains(boxes, "Changes Undone")) << boxes;
    EXPECT_FALSE(Take_Errors().empty());

    // Once it can be read, the flight goes where it belongs.
    std::filesystem::remove_all(directory / log_file);
    Write(log_file, a);
    entry->New_Log_Entry_Save();
    EXPECT_EQ(answers, "fail fail ok ");
    EXPECT_EQ(Read(log_file), a + flight);
}

TEST_F(New_Entry_Test, A_flight_that_is_logged_behind_a_box_of_the_load_stays) {
    Write(log_file, a);
    std::filesystem::create_directories(directory / "logs/.My Flight Log.bak.half");
    desktop.on_box = [&](const Message_Box& box) {
        if (!Contains(box.details, "Backup_Log"))
            return;
        Log_Flight("1/2/2008");
        Block_Saves();
        Log_Flight("1/3/2008");
        Unblock_Saves();
    };
    Start();
    EXPECT_EQ(log->Table().Row_Count(), 3U);
    EXPECT_EQ(Read(log_file), a + flight);
    log->End();
    EXPECT_EQ(Read(unsaved), Full_Line("1/3/2008|||||0900"));
    Take_Errors();
}

}  // namespace
}  // namespace norvane
