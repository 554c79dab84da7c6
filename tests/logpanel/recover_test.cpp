// What was kept in ".unsaved" files comes back into a log: never lost on the way, never twice.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "flightlog/log_reading.h"
#include "logpanel/frm_recover.h"
#include "logpanel/log_world.h"

namespace norvane {
namespace {

using test::Full_Line;
using test::Texts;

std::string Counted(int added, int replaced, int there) {
    return fmt::format(
        "Rows added to the flight log: {}.  Rows replaced: {}.  Rows already there: {}.", added,
        replaced, there);
}

class Recover_Test : public test::Log_World {
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
            std::filesystem::remove(directory / log_file);
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
        std::filesystem::remove_all(directory / "logs");
        std::filesystem::create_directories(directory / "logs");
    }
}

}  // namespace
}  // namespace norvane
