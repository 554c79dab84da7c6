// A finished flight becomes a row of the log, once, whatever goes wrong.

#include <gtest/gtest.h>

#include <algorithm>

#include "common/text.h"
#include "flightlog/log_world.h"

namespace norvane {
namespace {

class New_Entry_Test : public test::Log_World {};

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
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(desktop.boxes[0].text, "Flight Log Saved");
    EXPECT_EQ(desktop.boxes[0].title, "Norvane Save Flight Log");
    EXPECT_EQ(desktop.boxes[0].icon, Icon::information);
    EXPECT_FALSE(log->Changed());
    EXPECT_FALSE(desktop.busy);
}

TEST_F(New_Entry_Test, The_row_stands_last_until_the_next_load_sorts_it_in) {
    Write(log_file, "3/1/2008|x||||||||||||2.5\r\n");
    Start();
    Set_Flight("2/1/2008", "0900");
    entry->Set(Log_Field::BLOCK_TIME, "1.5");
    entry->New_Log_Entry_Save();
    EXPECT_EQ(log->Table().Get(1, 0), "2/1/2008");
    EXPECT_EQ(log->tdbLogCaption.Text(), "Total Block Time: 4.0            Total Flight Time: 0.0");
    log->Grid_Load();
    EXPECT_EQ(log->Table().Get(0, 0), "2/1/2008");
}

TEST_F(New_Entry_Test, Undated_rows_at_the_end_give_way_and_their_texts_are_kept) {
    Write(log_file, "1/1/2008|a\r\n");
    Start();
    log->Add_Row();
    log->Commit_Edit(log->Add_Row(), 19, "typed");
    Set_Flight("1/2/2008", "0900");
    entry->New_Log_Entry_Save();
    EXPECT_EQ(log->Table().Row_Count(), 2U);
    EXPECT_EQ(Read(log_file), test::Full_Line("1/1/2008|a") + test::Full_Line("1/2/2008|||||0900"));
    EXPECT_EQ(Read("logs/My Flight Log.skipped"), test::Full_Line(std::string(19, '|') + "typed"));
    EXPECT_EQ(Take_Errors().size(), 1U);
}

/// A directory in the place of the draft makes every save fail.
class Failing_Save_Test : public test::Log_World {
  protected:
    void Block() { std::filesystem::create_directories(directory / "templog.txt" / "x"); }
    void Unblock() { std::filesystem::remove_all(directory / "templog.txt"); }
};

TEST_F(Failing_Save_Test, A_failed_save_is_answered_and_a_second_try_makes_no_second_row) {
    Write(log_file, "1/1/2008|a\r\n");
    Start();
    Block();
    Set_Flight("1/2/2008", "0900");
    entry->Set(Log_Field::BLOCK_TIME, "1.5");
    entry->New_Log_Entry_Save();
    EXPECT_EQ(answers, "fail ");
    EXPECT_TRUE(log->Changed());
    EXPECT_EQ(log->Table().Row_Count(), 2U);
    EXPECT_EQ(Read(log_file), "1/1/2008|a\r\n");
    EXPECT_TRUE(Contains(log->tdbLogCaption.Text(), "Block Time: 1.5"))
        << log->tdbLogCaption.Text();
    const auto errors = Take_Errors();
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_TRUE(Contains(errors[0], "ucFlightLog.Grid_Save()"));
    EXPECT_TRUE(Contains(errors[0], "templog.txt"));

    log->Grid_Sort(1);
    Unblock();
    entry->Set(Log_Field::COMMENTS, "typed before the second try");
    entry->New_Log_Entry_Save();
    EXPECT_EQ(answers, "fail ok ");
    EXPECT_EQ(log->Table().Row_Count(), 2U);
    EXPECT_TRUE(Contains(Read(log_file), "typed before the second try"));
    // The next flight gets a row of its own again, and so does the same one logged knowingly.
    entry->New_Log_Entry_Save();
    EXPECT_EQ(log->Table().Row_Count(), 3U);
}

TEST_F(Failing_Save_Test, Another_flight_does_not_overwrite_the_one_that_failed) {
    Start();
    Block();
    Set_Flight("1/2/2008", "0900");
    entry->New_Log_Entry_Save();
    Set_Flight("1/2/2008", "1400");
    entry->New_Log_Entry_Save();
    Take_Errors();
    Unblock();
    EXPECT_TRUE(log->Grid_Save());
    Set_Flight("1/2/2008", "0900");
    entry->New_Log_Entry_Save();
    EXPECT_EQ(answers, "fail fail ok ");
    EXPECT_EQ(Read(log_file),
              test::Full_Line("1/2/2008|||||0900") + test::Full_Line("1/2/2008|||||1400"));
}

TEST_F(Failing_Save_Test, A_flight_that_was_never_saved_outlives_a_No_to_the_close_question) {
    Start();
    Block();
    Set_Flight("1/2/2008", "0900");
    entry->New_Log_Entry_Save();
    desktop.answers = {Answer::no};
    Close();
    EXPECT_EQ(Read("logs/My Flight Log.unsaved"), test::Full_Line("1/2/2008|||||0900"));
    EXPECT_EQ(Take_Errors().size(), 2U);
}

TEST_F(Failing_Save_Test, A_flight_that_fails_while_a_box_of_a_save_is_open_stays_unsaved) {
    Write(log_file, "1/1/2008|a\r\n");
    Start();
    Write(log_file, "1/1/2008|theirs\r\n");
    desktop.on_box = [&](const Message_Box& box) {
        if (!Contains(box.text, "changed by another program"))
            return;
        Unblock();
        Block();
        Set_Flight("1/2/2008", "0900");
        entry->New_Log_Entry_Save();
    };
    EXPECT_TRUE(log->Grid_Save());
    EXPECT_EQ(answers, "fail ");
    EXPECT_TRUE(log->Changed());
    Close();
    EXPECT_EQ(Read("logs/My Flight Log.unsaved"), test::Full_Line("1/2/2008|||||0900"));
    Take_Errors();
}

TEST_F(New_Entry_Test, A_log_that_cannot_be_read_is_not_written_over) {
    std::filesystem::create_directories(directory / log_file / "in the way");
    Start();
    EXPECT_FALSE(log->File().Loaded_To_Its_End());
    Set_Flight("1/2/2008", "0900");
    entry->New_Log_Entry_Save();
    entry->New_Log_Entry_Save();
    EXPECT_EQ(answers, "fail fail ");
    EXPECT_FALSE(log->Grid_Save());
    log->Grid_Undo();
    EXPECT_TRUE(Exists("logs/My Flight Log.txt/in the way"));
    EXPECT_EQ(Read("logs/My Flight Log.unsaved"), test::Full_Line("1/2/2008|||||0900"));
    EXPECT_FALSE(Exists("logs/My Flight Log.unsaved2"));
    const auto boxes = Take_Boxes();
    EXPECT_EQ(std::count_if(boxes.begin(), boxes.end(),
                            [](const auto& text) { return Contains(text, "It is kept in"); }),
              1);
    EXPECT_EQ(std::count(boxes.begin(), boxes.end(), "Flight Log Changes Undone"), 0);
    EXPECT_FALSE(Take_Errors().empty());

    // Once it can be read, the flight goes where it belongs.
    std::filesystem::remove_all(directory / log_file);
    Write(log_file, "1/1/2008|a\r\n");
    entry->New_Log_Entry_Save();
    EXPECT_EQ(answers, "fail fail ok ");
    EXPECT_EQ(Read(log_file), test::Full_Line("1/1/2008|a") + test::Full_Line("1/2/2008|||||0900"));
}

TEST_F(New_Entry_Test, A_flight_that_is_logged_behind_a_box_of_the_load_stays) {
    Write(log_file, "1/1/2008|a\r\n");
    std::filesystem::create_directories(directory / "logs/.My Flight Log.bak.half");
    desktop.on_box = [&](const Message_Box& box) {
        if (!Contains(box.details, "Backup_Log"))
            return;
        Set_Flight("1/2/2008", "0900");
        entry->New_Log_Entry_Save();
        std::filesystem::remove(directory / "templog.txt");
        std::filesystem::create_directories(directory / "templog.txt" / "x");
        Set_Flight("1/3/2008", "0900");
        entry->New_Log_Entry_Save();
        std::filesystem::remove_all(directory / "templog.txt");
    };
    Start();
    EXPECT_EQ(answers, "");
    EXPECT_EQ(log->Table().Row_Count(), 3U);
    EXPECT_EQ(Read(log_file), test::Full_Line("1/1/2008|a") + test::Full_Line("1/2/2008|||||0900"));
    log->End();
    EXPECT_EQ(Read("logs/My Flight Log.unsaved"), test::Full_Line("1/3/2008|||||0900"));
    Take_Errors();
}

TEST_F(New_Entry_Test, A_closed_panel_takes_no_more_flights) {
    Start();
    Close();
    Set_Flight("1/2/2008", "0900");
    entry->New_Log_Entry_Save();
    EXPECT_EQ(answers, "");
}

}  // namespace
}  // namespace norvane
