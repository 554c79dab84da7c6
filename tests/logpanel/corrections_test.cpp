// Which of the pilot's edits are kept as corrections, and what the panel makes of them.

#include "logpanel/log_world.h"

namespace norvane::test {
namespace {

constexpr std::size_t comments = log_column::comments;

class Panel_Corrections : public Log_World {
  protected:
    Panel_Corrections() {
        Write(log_file,
              "1/1/2008|B738||||0900||||||||||||||first\r\n"
              "1/1/2008|B738||||1900||||||||||||||second\r\n");
        Start();
    }
    void Type(std::size_t row, std::size_t column, std::string_view text) {
        log->Begin_Edit(row, column);
        EXPECT_TRUE(log->Commit_Edit(row, column, text));
    }
    [[nodiscard]] std::size_t Kept() const {
        const std::string content = Exists(file) ? Read(file) : "";
        return static_cast<std::size_t>(std::count(content.begin(), content.end(), '\n'));
    }
    /// The correction that the row's menu offers to take back, as "was>is".
    std::string Offered(std::size_t row) {
        log->Set_Current_Row(row);
        EXPECT_TRUE(log->Prepare_Pop_Up());
        const auto last = log->Correction_To_Take_Back();
        EXPECT_EQ(log->mnuPopTakeBack.Enabled(), last.has_value());
        return last ? last->was + '>' + last->is : "";
    }

    const std::string file = "flights/corrections.jsonl";
};

TEST_F(Panel_Corrections, An_edit_is_kept_once_it_is_saved_and_not_when_it_is_given_up) {
    Type(0, comments, "given up");
    log->Grid_Undo();
    EXPECT_TRUE(log->Grid_Save());
    Type(0, comments, "given up too");
    desktop.answers = {Answer::no};
    EXPECT_TRUE(log->Closing());
    Type(0, comments, "there");
    Type(0, comments, "first");
    Type(1, comments, "deleted");
    Delete_Row(1);
    // A flight that the pilot types in is not corrected by it.
    Type(log->Add_Row(), 0, "1/3/2008");
    Type(1, 1, "C172");
    EXPECT_TRUE(log->Grid_Save());
    EXPECT_EQ(Kept(), 0U);
    Take_Errors();
    Type(0, comments, "half");
    Type(0, comments, "whole");
    Type(1, 1, "C182");
    EXPECT_EQ(Kept(), 0U);
    EXPECT_TRUE(log->Grid_Save());
    EXPECT_TRUE(log->Grid_Save());
    EXPECT_EQ(Kept(), 2U);
    EXPECT_EQ(log->Cell_Remark(0, comments), "whole since 2026-03-14 15:09: was first.");
    EXPECT_EQ(log->Cell_Remark(1, 1), "C182 since 2026-03-14 15:09: was C172.");
    EXPECT_EQ(log->Cell_Remark(0, 1), "");
    EXPECT_EQ(Read(log_file),
              Full_Line("1/1/2008|B738||||0900||||||||||||||whole") + Full_Line("1/3/2008|C182"));
}

TEST_F(Panel_Corrections, A_row_keeps_them_where_it_is_sorted_copied_and_renamed_to) {
    Type(0, comments, "late");
    Type(0, 5, "0930");
    log->Grid_Sort(1);
    Type(0, 0, "5/1/2008");
    Type(0, 1, "C172");
    log->Grid_Sort(0);
    EXPECT_TRUE(log->Grid_Save());
    ASSERT_EQ(log->Table().Get(1, comments), "late");
    EXPECT_EQ(log->Cell_Remark(0, comments) + log->Cell_Remark(0, 5), "");
    log->Set_Current_Row(1);
    EXPECT_TRUE(log->Copy_To_Log("Other"));
    fs::rename(directory / "logs/Other.txt", directory / "logs/Third.txt");
    settings->Set_FlightLog("Third");
    log->FlightLog_Change();
    ASSERT_EQ(log->Table().Row_Count(), 1U);
    for (const std::size_t column : {0U, 1U, 5U, 19U})
        EXPECT_NE(log->Cell_Remark(0, column), "") << column;
}

TEST_F(Panel_Corrections, Taking_back_goes_step_by_step_and_is_a_correction_itself) {
    EXPECT_EQ(Offered(0), "");
    Type(0, comments, "one");
    EXPECT_TRUE(log->Grid_Save());
    Type(0, 1, "C172");
    EXPECT_TRUE(log->Grid_Save());
    EXPECT_EQ(Offered(1), "") << "the day's other flight";
    EXPECT_EQ(Offered(0), "B738>C172");
    log->mnuPopTakeBack.Choose();
    EXPECT_EQ(Offered(0), "first>one");
    EXPECT_TRUE(log->Grid_Save());
    EXPECT_EQ(Offered(0), "first>one");
    log->mnuPopTakeBack.Choose();
    EXPECT_EQ(Offered(0), "");
    EXPECT_TRUE(log->Grid_Save());
    EXPECT_TRUE(Read(log_file).starts_with(Full_Line("1/1/2008|B738||||0900||||||||||||||first")));
    EXPECT_EQ(log->Cell_Remark(0, comments),
              "first since 2026-03-14 15:09: was one.  Why: taken back\n"
              "one since 2026-03-14 15:09: was first.");
    // What is not the correction's any more is not put back.
    Type(0, comments, "two");
    EXPECT_TRUE(log->Grid_Save());
    Type(0, comments, "three");
    EXPECT_EQ(Offered(0), "");
}

TEST_F(Panel_Corrections, A_file_that_takes_none_stops_no_save_and_gets_them_later) {
    fs::create_directories(directory / file / "x");
    Type(0, comments, "one");
    EXPECT_TRUE(log->Grid_Save());
    EXPECT_TRUE(Contains(Read(log_file), "|one|"));
    EXPECT_TRUE(Contains(Errors(), "corrections.jsonl"));
    EXPECT_TRUE(Contains(log->lblStatus.Text(), "could not be noted"));
    EXPECT_EQ(Offered(0), "first>one");
    fs::remove_all(directory / file);
    Type(1, comments, "two");
    EXPECT_TRUE(log->Grid_Save());
    EXPECT_EQ(log->lblStatus.Text(), "");
    EXPECT_EQ(Kept(), 2U);
}

TEST_F(Panel_Corrections, A_flight_that_goes_on_after_its_row_keeps_those_of_the_row) {
    Log_Flight("1/2/2008", "0800");
    const std::string logged = log->Table().Line(2);
    Type(2, 1, "C172");
    EXPECT_TRUE(log->Grid_Save());
    entry->Set_Row_In_Log(logged);
    entry->Set(Log_Field::TIME_IN, "1100");
    entry->New_Log_Entry_Save();
    ASSERT_EQ(log->Table().Row_Count(), 3U);
    EXPECT_TRUE(Contains(log->Table().Line(2), "|1100|"));
    EXPECT_NE(log->Cell_Remark(2, 1), "");
    EXPECT_EQ(Offered(2), ">C172");
}

}  // namespace
}  // namespace norvane::test
