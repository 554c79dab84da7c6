// What was kept in ".unsaved" files comes back into a log: never lost on the way, never twice.

#include <gtest/gtest.h>

#include "common/text.h"
#include "flightlog/frm_recover.h"
#include "flightlog/log_world.h"

namespace norvane {
namespace {

using test::Full_Line;

class Recover_Test : public test::Log_World {
  protected:
    Recover_Test() {
        Write(log_file, in_log);
        Write("logs/Jets.txt", in_jets);
        // A row of each log, one that only its comment tells from the log's, and what is no row.
        Write("logs/My Flight Log.unsaved", in_log + edited + "|undated\r\n" + in_jets);
        Write("logs/Gone.unsaved2", lost + edited);
        Write("My Flight Log.unsaved", Full_Line("1/4/2008|C172"));
        Write("logs/My Flight Log.unsavedness", Full_Line("1/9/2008|no such file"));
        Start();
        form.emplace(services, *settings, *log);
    }
    std::vector<std::string> Offered() {
        std::vector<std::string> lines;
        for (const Unsaved_Row& row : Find_Unsaved_Rows(services))
            lines.push_back(row.line + "\r\n");
        return lines;
    }
    /// The pilot opens the dialog, marks lines and clicks.
    void Recover(const std::vector<std::size_t>& marked) {
        auto showing = form->shown.connect([&] {
            EXPECT_FALSE(form->hypRecover.Enabled()) << "nothing is marked yet";
            for (const std::size_t line : marked)
                form->lvwRows.at(line).box.Click();
            form->hypRecover.Click();
        });
        form->Show_Form();
        showing.disconnect();
    }

    const std::string in_log = Full_Line("1/1/2008|B738||||0900|0910|5000|||1000|1010|3000");
    const std::string in_jets = Full_Line("1/2/2008|A320");
    const std::string edited =
        Full_Line("1/1/2008|B738||||0900|0910|5000|||1000|1010|3000|||||||typed");
    const std::string lost = Full_Line("1/3/2008|B744||KJFK|||||KBOS");
    std::optional<frmRecover> form;
};

TEST_F(Recover_Test, Chosen_rows_go_into_the_log_and_leave_their_files) {
    EXPECT_EQ(Offered(), (std::vector<std::string>{Full_Line("1/4/2008|C172"), lost, edited}));
    EXPECT_EQ(Read("logs/Gone.unsaved2"), lost + edited) << "who looks touches nothing";
    Recover({1, 2});
    EXPECT_TRUE(Contains(form->lvwRows[1].caption, "1/3/2008  KJFK - KBOS"));
    // The edited flight takes its row's place, the other one is added.
    EXPECT_EQ(Read(log_file), edited + lost);
    EXPECT_FALSE(Exists("logs/Gone.unsaved2"));
    EXPECT_EQ(Read("logs/My Flight Log.unsaved"), in_log + "|undated\r\n");
    EXPECT_EQ(Read("My Flight Log.unsaved"), Full_Line("1/4/2008|C172")) << "it was not chosen";
    EXPECT_EQ(Take_Boxes(), std::vector<std::string>{"Flight Log Saved"});
    EXPECT_FALSE(log->Changed());
    // What an edit replaced is offered, as it stands in no log any more; all else is not.
    EXPECT_EQ(Offered(), (std::vector<std::string>{Full_Line("1/4/2008|C172"), in_log}));
}

TEST_F(Recover_Test, A_failed_save_loses_nothing_and_a_kill_behind_a_save_doubles_nothing) {
    std::filesystem::create_directories(directory / "templog.txt" / "x");
    Recover({1});
    EXPECT_EQ(Read(log_file), in_log);
    EXPECT_EQ(Read("logs/Gone.unsaved2"), lost + edited);
    EXPECT_TRUE(log->Changed());
    std::filesystem::remove_all(directory / "templog.txt");
    Take_Errors();
    // Killed between the saved log and the other files: the rows stand in both.
    ASSERT_TRUE(log->Grid_Save());
    EXPECT_EQ(Read(log_file), in_log + lost);
    EXPECT_EQ(Offered(), (std::vector<std::string>{Full_Line("1/4/2008|C172"), edited}));
    Recover({0});
    EXPECT_EQ(Read(log_file), in_log + lost + Full_Line("1/4/2008|C172"));
    EXPECT_EQ(Read("logs/Gone.unsaved2"), edited);
    EXPECT_FALSE(Exists("My Flight Log.unsaved"));
    Recover({0});
    Take_Boxes();
    std::filesystem::remove(directory / "logs/My Flight Log.unsaved");
    form->Show_Form();
    EXPECT_TRUE(Contains(Take_Boxes().at(0), "There are no unsaved flights"));
}

}  // namespace
}  // namespace norvane
