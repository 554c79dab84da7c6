// A finished flight becomes a row of the log, once, whatever goes wrong; what was kept in
// ".unsaved" files comes back into it: never lost on the way, never twice.

#include <fmt/format.h>

#include "logpanel/frm_recover.h"
#include "logpanel/log_world.h"

namespace norvane::test {
namespace {

class New_Entry_Test : public Log_World {
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
    EXPECT_EQ(Read(log_file), Read_File(Data_File("reports/every-column.txt")));
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
    fs::create_directories(directory / log_file / "in the way");
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
    fs::remove_all(directory / log_file);
    Write(log_file, a);
    entry->New_Log_Entry_Save();
    EXPECT_EQ(answers, "fail fail ok ");
    EXPECT_EQ(Read(log_file), a + flight);
}

TEST_F(New_Entry_Test, A_flight_that_is_logged_behind_a_box_of_the_load_stays) {
    Write(log_file, a);
    fs::create_directories(directory / "logs/.My Flight Log.bak.half");
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

std::string Counted(int added, int replaced, int there) {
    return fmt::format(
        "Rows added to the flight log: {}.  Rows replaced: {}.  Rows already there: {}.", added,
        replaced, there);
}

class Recover_Test : public Log_World {
  protected:
    /// The rows that are offered, as lines.
    Texts Offered() {
        Texts lines;
        for (const Unsaved_Row& row : Find_Unsaved_Rows(services))
            lines.push_back(row.line + "\r\n");
        return lines;
    }
    /// The pilot opens the dialog, marks lines and clicks.
    void Recover(const std::vector<std::size_t>& marked) {
        form.emplace(services, *settings, *log);
        form->shown.Connect([&] {
            EXPECT_FALSE(form->hypRecover.Enabled()) << "nothing is marked yet";
            for (const std::size_t line : marked)
                form->lvwRows.at(line).box.Click();
            form->hypRecover.Click();
        });
        form->Show_Form();
    }
    static std::string Without_End(const std::string& line) {
        return line.substr(0, line.size() - 2);
    }
    /// Recovers one line; what the pilot is told at the end.
    std::string Told_Of(const std::string& line) {
        EXPECT_TRUE(log->Recover_Rows({Without_End(line)}));
        return Take_Boxes().back();
    }

    const std::string in_log = Full_Line("1/1/2008|B738||||0900|0910|5000|||1000|1010|3000");
    const std::string edited =
        Full_Line("1/1/2008|B738||||0900|0910|5000|||1000|1010|3000|||||||typed");
    const std::string timeless = Full_Line("1/3/2008|B744||KJFK|||||KBOS");
    const std::string of_root = Full_Line("1/4/2008|C172");
    const std::string undated = Full_Line("|||EDDF");
    const std::string replaced_file = "logs/My Flight Log.skipped";
    std::optional<frmRecover> form;
};

TEST_F(Recover_Test, Chosen_rows_go_into_the_log_and_leave_their_files) {
    const std::string of_jets = Full_Line("1/2/2008|A320");
    const std::string with_more = Without_End(of_jets) + "|past\r\n";
    Write(log_file, in_log);
    Write("logs/Jets.txt", of_jets);
    Write(unsaved, in_log + edited + "|||EDDF\r\n||\r\n" + of_jets + with_more);
    Write("logs/Gone.unsaved2", timeless + edited);
    Write("My Flight Log.unsaved", of_root);
    Write("logs/My Flight Log.unsavedness", Full_Line("1/9/2008|no such file"));
    Start();
    EXPECT_EQ(Offered(), (Texts{of_root, timeless, edited, undated}));
    EXPECT_EQ(Read("logs/Gone.unsaved2"), timeless + edited) << "who looks touches nothing";

    Recover({1, 2, 3});
    EXPECT_EQ(form->lvwRows.at(1).caption, "1/3/2008  KJFK - KBOS  B744   (Gone.unsaved2)");
    EXPECT_TRUE(form->lvwRows.at(3).caption.starts_with("No date  EDDF - "));
    EXPECT_EQ(Read(log_file), edited + timeless + undated);
    EXPECT_EQ(Read(replaced_file), in_log);
    EXPECT_FALSE(Exists("logs/Gone.unsaved2"));
    EXPECT_EQ(Read(unsaved), in_log + with_more);
    EXPECT_EQ(Read("My Flight Log.unsaved"), of_root) << "it was not chosen";
    EXPECT_EQ(Take_Boxes(),
              (Texts{"Flight Log Saved", Counted(2, 1, 0) + "  What was replaced is kept in " +
                                             (directory / replaced_file).string() + "."}));
    EXPECT_TRUE(Contains(log->lblStatus.Text(), "row 3.  Please type the date in"));
    EXPECT_FALSE(log->Changed());
    // What an edit replaced is offered, as it stands in no log any more; all else is not.
    EXPECT_EQ(Offered(), (Texts{of_root, in_log}));
}

TEST_F(Recover_Test, A_row_that_the_log_has_is_not_added_again) {
    Write(log_file, in_log + edited);
    Start();
    EXPECT_EQ(Told_Of(in_log), Counted(0, 0, 1)) << "the row itself, not its edited one";
    for (const std::string& line : {timeless, undated}) {
        EXPECT_EQ(Told_Of(line), Counted(1, 0, 0));
        EXPECT_EQ(Told_Of(line), Counted(0, 0, 1));
    }
    EXPECT_EQ(Read(log_file), in_log + edited + timeless + undated);
    // Another date, or no time OUT to know a flight by: another row.
    const std::string commented = Full_Line("1/3/2008|B744||KJFK|||||KBOS|||||||||||typed");
    for (const std::string& line : {"1/2" + in_log.substr(3), commented})
        EXPECT_EQ(Told_Of(line), Counted(1, 0, 0));
    EXPECT_FALSE(Exists(replaced_file));
}

TEST_F(Recover_Test, A_failed_save_loses_nothing_and_a_kill_behind_a_save_doubles_nothing) {
    Write(log_file, in_log);
    Write(unsaved, timeless);
    Start();
    Block_Saves();
    Recover({0});
    EXPECT_EQ(Read(log_file) + Read(unsaved), in_log + timeless);
    EXPECT_TRUE(log->Changed());
    Unblock_Saves();
    Take_Errors();
    // Killed between the saved log and the other files: the rows stand in both.
    ASSERT_TRUE(log->Grid_Save());
    EXPECT_EQ(Read(log_file), in_log + timeless);
    Take_Boxes();
    Recover({});
    EXPECT_TRUE(Contains(Take_Boxes().at(0), "There are no unsaved flights"));
}

TEST_F(Recover_Test, What_is_given_up_is_offered_and_a_deleted_row_is_in_the_log_again) {
    const std::string undeleted = "The deleted rows are in the log again.";
    const std::string typed = Full_Line(std::string(19, '|') + "typed");
    struct Case {
        Texts rows;
        bool is_undo;
        bool is_deleting;
        std::optional<std::size_t> typed_in;
        Texts offered;
    };
    for (const auto& [rows, is_undo, is_deleting, typed_in, offered] : {
             Case{{in_log, of_root}, true, true, std::nullopt, {}},
             Case{{in_log, of_root}, false, true, std::nullopt, {}},
             Case{{in_log, of_root}, false, true, 0, {edited}},
             Case{{Without_End(in_log) + "|past\r\n"}, true, false, 0, {edited}},
             Case{{in_log}, false, false, 1, {typed}},
             Case{{in_log, undated}, false, false, 0, {edited}},
             Case{{}, false, false, 0, {typed}},
         }) {
        Write(log_file, Join(rows, ""));
        Start();
        if (rows.empty())
            fs::remove(directory / log_file);
        if (typed_in == rows.size())
            log->Add_Row();
        if (typed_in)
            log->Commit_Edit(*typed_in, 19, "typed");
        if (is_deleting)
            Delete_Row(1);
        desktop.answers = {Answer::no};
        if (is_undo)
            log->hypACARS[ucFlightLog::undo].Click();
        else
            ASSERT_TRUE(log->Closing());
        EXPECT_EQ(log->Changed(), is_undo) << "after an Undo the question still comes";
        const std::string told = Take_Boxes().back();
        EXPECT_EQ(told == "Flight Log Changes Undone", is_undo);
        EXPECT_EQ(told.starts_with("The changes were not saved"), !is_undo && !offered.empty());
        EXPECT_EQ(told.ends_with(undeleted), !is_undo && is_deleting) << told;
        EXPECT_TRUE(Contains(log->lblStatus.Text(), offered.empty() ? undeleted : unsaved));
        EXPECT_EQ(Offered(), offered);
        // The table is as the file again: a flight takes nothing along.
        Log_Flight("1/5/2008");
        const bool one_was_set_aside = rows.size() == 2 && rows[1] == undated;
        EXPECT_EQ(All_Rows(Read(log_file)).size(), rows.size() + (one_was_set_aside ? 0 : 1));
        Take_Boxes();
        Take_Errors();
        fs::remove_all(directory / "logs");
        fs::create_directories(directory / "logs");
    }
}

}  // namespace
}  // namespace norvane::test
