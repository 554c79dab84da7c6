// The commands of the grid's pop-up menu that change a log: a flight plan taken into a row, a row
// copied to another log.

#include <gtest/gtest.h>

#include "flightlog/log_reading.h"
#include "logpanel/log_world.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;
using test::Full_Line;

class Pop_Up_Test : public test::Log_World {
  protected:
    Pop_Up_Test() { Write(log_file, Full_Line("1/1/2008|B738|123") + Full_Line("1/2/2008|C172")); }
    void Start_On_Row(std::size_t row) {
        Start();
        log->Set_Current_Row(row);
    }
    /// The pilot copies the current row, and picks the other log.
    void Copy_To_Other(const std::function<void()>& meanwhile) {
        log->log_chooser.shown.Connect([this, meanwhile] {
            EXPECT_EQ(log->log_chooser.cboLogs.Entries(), std::vector<std::string>{"Other"});
            meanwhile();
            log->log_chooser.cboLogs.Enter("Other");
            log->log_chooser.hypOK.Click();
        });
        log->mnuPopCopy.Choose();
    }
    void Import(const fs::path& file) {
        desktop.chosen_files.push_back(file);
        log->mnuPopPlan.Choose();
    }
    [[nodiscard]] std::string Row(std::size_t row) const { return log->Table().Line(row) + "\r\n"; }

    const fs::path plan = test::Data_File("plans/lfpg-eidw.pln");
    static std::string Question(const std::string& fields) {
        return "Norvane detected that the following fields have been entered; " + fields +
               ".  Do you wish to overwrite these fields?";
    }
};

TEST_F(Pop_Up_Test, A_plan_replaces_what_is_filled_only_when_the_pilot_says_so) {
    const auto planned = [](const std::string& origin, const std::string& level) {
        return Full_Line("1/2/2008|C172||LFPG|" + origin +
                         "||||EIDW|Dublin O'Connell &amp; Bay||||||||||||||" + level +
                         "|LFPG.ABB.UT225.MID.UN615.STU.EIDW|||||||||||||IFR");
    };
    const std::string filled = planned("Roissy - A\xE9roport 'Charles de Gaulle'", "35000");
    Start_On_Row(1);
    Import(plan);
    EXPECT_EQ(Row(1), filled) << "into an empty row";
    EXPECT_EQ(Row(0), Full_Line("1/1/2008|B738|123"));
    EXPECT_TRUE(desktop.boxes.empty() && log->Changed());
    // A file that holds no plan leaves it.
    Import(Write("cut.pln", "<FPType>VFR</FPType>\n<DepartureID>KJ"));
    Import(Write("no.pln", std::string("\0\xFF no plan", 10)));
    EXPECT_TRUE(Contains(Take_Boxes().back(), "no.pln holds no flight plan"));
    EXPECT_EQ(Take_Errors().size(), 1U);
    EXPECT_EQ(Row(1), filled);
    // The edit in progress counts as filled. Left without an answer, not even the empty cells are.
    for (const std::size_t column : {3U, 8U, 9U, 24U})
        log->Commit_Edit(1, column, "");
    log->Commit_Edit(1, 23, "5000");
    auto typing = log->commit_edit_wanted.Connect([&] { log->Commit_Edit(1, 4, "Typed"); });
    desktop.answers = {Answer::none, Answer::no, Answer::yes};
    Import(plan);
    typing.Disconnect();
    EXPECT_EQ(Row(1), Full_Line("1/2/2008|C172|||Typed|||||||||||||||||||5000||||||||||||||IFR"));
    EXPECT_EQ(Take_Boxes().front(), Question("Origin Airport, Flight Level"));
    Import(plan);
    EXPECT_EQ(Row(1), planned("Typed", "5000")) << "No fills the empty ones";
    Take_Boxes();
    Import(plan);
    EXPECT_EQ(Row(1), filled);
    EXPECT_EQ(Take_Boxes().front(),
              Question("Origin ICAO Code, Origin Airport, Destination ICAO Code, Destination "
                       "Airport, Flight Plan, Flight Level"));
}

TEST_F(Pop_Up_Test, A_copied_row_loads_from_the_other_log_as_one_row) {
    Write("logs/Other.txt", "1/1/2007|C152");
    Start_On_Row(1);
    log->commit_edit_wanted.Connect([&] { log->Commit_Edit(1, 52, "typed"); });
    Copy_To_Other([] {});
    EXPECT_EQ(Take_Boxes(), std::vector<std::string>{"Log Entry copied to Other log"});
    const std::string row = "1/2/2008|C172" + std::string(51, '|') + "typed";
    EXPECT_EQ(Read("logs/Other.txt"), "1/1/2007|C152\r\n" + row + "|\r\n");
    EXPECT_EQ(log->Table().Row_Count(), 2U) << "it is copied, not moved";
}

TEST_F(Pop_Up_Test, A_flight_logged_while_the_pilot_is_asked_keeps_its_row) {
    Write("logs/Other.txt", "");
    Start();
    const auto on_new_undated_row = [&] {
        const std::size_t row = log->Add_Row();
        log->Commit_Edit(row, 3, "KBOS");
        log->Set_Current_Row(row);
    };
    const auto log_a_flight = [&] { Log_Flight("1/3/2008"); };
    on_new_undated_row();
    desktop.on_box = [&](const Message_Box& box) {
        if (box.buttons == Buttons::yes_no)
            log_a_flight();
    };
    desktop.answers = {Answer::yes};
    Import(plan);
    EXPECT_EQ(Row(2), Full_Line("1/3/2008|||||0900"));
    // What the pilot pointed at is copied, not the flight in its place.
    on_new_undated_row();
    Copy_To_Other(log_a_flight);
    EXPECT_EQ(All_Rows(Read("logs/Other.txt")).at(0) + "\r\n", Full_Line("|||KBOS"));
    // Nor is it deleted.
    on_new_undated_row();
    ASSERT_TRUE(log->Prepare_Pop_Up());
    log_a_flight();
    log->mnuPopDelete.Choose();
    EXPECT_EQ(log->Table().Row_Count(), 5U);
    ASSERT_TRUE(log->Prepare_Pop_Up());
    log->mnuPopDelete.Choose();
    EXPECT_EQ(log->Table().Row_Count(), 4U);
    EXPECT_TRUE(Contains(Read("logs/My Flight Log.skipped"), Full_Line("|||KBOS")));
    EXPECT_EQ(Take_Errors().size(), 4U) << "three rows set aside, one plan refused";
}

TEST_F(Pop_Up_Test, Nothing_is_copied_where_no_other_log_can_be) {
    Start_On_Row(0);
    EXPECT_TRUE(log->Prepare_Pop_Up());
    EXPECT_FALSE(log->mnuPopCopy.Enabled()) << "the active log is the only one";
    Write("logs/Other.txt", "");
    EXPECT_TRUE(log->Prepare_Pop_Up() && log->mnuPopCopy.Enabled());
    for (const auto* name : {"My Flight Log", "my flight log", "", "../outside", "a|b", "CON"}) {
        EXPECT_FALSE(log->Copy_To_Log(name)) << name;
        EXPECT_EQ(Take_Boxes().size(), 1U) << name;
    }
    // Chosen nothing: the form is closed as soon as it is open.
    log->mnuPopCopy.Choose();
    EXPECT_EQ(Logs(), "My Flight Log.bak My Flight Log.txt Other.txt");
    EXPECT_TRUE(log->Copy_To_Log("Brand new"));
    EXPECT_EQ(All_Rows(Read("logs/Brand new.txt")).at(0), log->Table().Line(0));
}

}  // namespace
}  // namespace norvane
