// The commands of the grid's pop-up menu that change a log: a flight plan taken into a row, a row
// copied to another log.

#include <gtest/gtest.h>

#include <map>

#include "common/text.h"
#include "flightlog/log_reading.h"
#include "flightlog/log_world.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;
using test::Data_File;
using test::Full_Line;

using Cells = std::map<std::size_t, std::string>;

/// What the flight plan says, by column.
const Cells plan_cells{{3, "LFPG"},   {4, "Roissy - A\xE9roport 'Charles de Gaulle'"},
                       {8, "EIDW"},   {9, "Dublin O'Connell &amp; Bay"},
                       {23, "35000"}, {24, "LFPG.ABB.UT225.MID.UN615.STU.EIDW"},
                       {37, "IFR"}};

class Pop_Up_Test : public test::Log_World {
  protected:
    Pop_Up_Test() { Write(log_file, Full_Line("1/1/2008|B738|123") + Full_Line("1/2/2008|C172")); }
    void Start_On_Row(std::size_t row) {
        Start();
        log->Set_Current_Row(row);
    }
    void Import(const fs::path& file) {
        desktop.chosen_files.push_back(file);
        log->mnuPopPlan.Choose();
    }
    /// The cells of a row that are not empty.
    [[nodiscard]] Cells Row(std::size_t row) const {
        Cells cells;
        for (std::size_t column = 0; column < log_column_count; ++column) {
            if (!log->Table().Get(row, column).empty())
                cells[column] = log->Table().Get(row, column);
        }
        return cells;
    }
    [[nodiscard]] std::size_t Files_In_Logs() const {
        const fs::directory_iterator files(directory / "logs");
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    const fs::path plan = Data_File("plans/lfpg-eidw.pln");
    const std::string question_begin =
        "Norvane detected that the following fields have been entered; ";
    const std::string question_end = ".  Do you wish to overwrite these fields?";
};

TEST_F(Pop_Up_Test, A_plan_fills_an_empty_row_without_a_question) {
    Start_On_Row(1);
    Import(plan);
    Cells expected = plan_cells;
    expected.insert({{0, "1/2/2008"}, {1, "C172"}});
    EXPECT_EQ(Row(1), expected);
    EXPECT_EQ(Row(0).size(), 3U) << "the other row";
    EXPECT_TRUE(desktop.boxes.empty());
    EXPECT_TRUE(log->Changed());
}

TEST_F(Pop_Up_Test, A_plan_replaces_what_is_filled_only_when_the_pilot_says_so) {
    Start_On_Row(1);
    for (const auto& [column, text] : Cells{{23, "5000"}, {37, "VFR"}})
        log->Commit_Edit(1, column, text);
    // The edit in progress counts as filled.
    auto typing = log->commit_edit_wanted.connect([&] { log->Commit_Edit(1, 4, "Typed"); });
    Import(plan);
    typing.disconnect();
    Cells expected = plan_cells;
    expected.insert({{0, "1/2/2008"}, {1, "C172"}});
    expected[4] = "Typed";
    expected[23] = "5000";
    EXPECT_EQ(Row(1), expected);
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(desktop.boxes[0].title, "Norvane");
    EXPECT_EQ(desktop.boxes[0].icon, Icon::question);
    EXPECT_EQ(Take_Boxes().front(), question_begin + "Origin Airport, Flight Level" + question_end);
    // Left without an answer, not even the empty cells are filled.
    log->Commit_Edit(1, 24, "");
    desktop.answers = {Answer::none};
    Import(plan);
    expected.erase(24);
    EXPECT_EQ(Row(1), expected);
    log->Commit_Edit(1, 24, "DCT");
    Take_Boxes();
    desktop.answers = {Answer::yes};
    Import(plan);
    expected[24] = plan_cells.at(24);
    expected[4] = plan_cells.at(4);
    expected[23] = plan_cells.at(23);
    EXPECT_EQ(Row(1), expected);
    EXPECT_EQ(Take_Boxes().front(), question_begin +
                                        "Origin ICAO Code, Origin Airport, Destination ICAO Code, "
                                        "Destination Airport, Flight Plan, Flight Level" +
                                        question_end);
}

TEST_F(Pop_Up_Test, A_plan_that_says_nothing_leaves_the_row) {
    Start_On_Row(0);
    log->Commit_Edit(0, 37, "VFR");
    log->Grid_Save();
    Take_Boxes();
    const Cells before = Row(0);
    Import(Write("cut.pln", "<FPType>IFR</FPType>\n<DepartureID>KJ"));
    EXPECT_EQ(Take_Errors().size(), 1U);
    EXPECT_EQ(Take_Boxes().size(), 1U) << "the reader tells what is wrong with the file";
    Import(directory / "missing.pln");
    Import(Write("no.pln", std::string("\0\xFF no plan", 10)));
    EXPECT_TRUE(Contains(Take_Boxes().at(1), "no.pln holds no flight plan"));
    Import({});
    log->Set_Current_Row(2);
    Import(plan);
    EXPECT_EQ(Row(0), before);
    EXPECT_FALSE(log->Changed());
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Pop_Up_Test, A_copied_row_loads_from_the_other_log_as_one_row) {
    Write("logs/Other.txt", "1/1/2007|C152");
    Start_On_Row(1);
    ASSERT_TRUE(log->Prepare_Pop_Up());
    log->commit_edit_wanted.connect([&] { log->Commit_Edit(1, 52, "typed"); });
    log->log_chooser.shown.connect([&] {
        EXPECT_EQ(log->log_chooser.cboLogs.Entries(), std::vector<std::string>{"Other"});
        log->log_chooser.cboLogs.Enter("Other");
        log->log_chooser.hypOK.Click();
    });
    log->mnuPopCopy.Choose();
    EXPECT_EQ(Take_Boxes(), std::vector<std::string>{"Log Entry copied to Other log"});
    const std::string row = "1/2/2008|C172" + std::string(51, '|') + "typed";
    EXPECT_EQ(Read("logs/Other.txt"), "1/1/2007|C152\r\n" + row + "|\r\n");
    const Log_Reading reading = Parse_Log(Read("logs/Other.txt"));
    EXPECT_EQ(reading.table.Row_Count(), 2U);
    EXPECT_EQ(reading.table.Line(1), row);
    EXPECT_EQ(reading.set_aside, "");
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
    const auto log_a_flight = [&] {
        Set_Flight("1/3/2008", "0900");
        entry->New_Log_Entry_Save();
    };
    on_new_undated_row();
    desktop.on_box = [&](const Message_Box& box) {
        if (box.buttons == Buttons::yes_no)
            log_a_flight();
    };
    desktop.answers = {Answer::yes};
    Import(plan);
    EXPECT_EQ(Row(2), (Cells{{0, "1/3/2008"}, {5, "0900"}}));
    // What the pilot pointed at is copied, not the flight in its place.
    on_new_undated_row();
    log->log_chooser.shown.connect([&] {
        log_a_flight();
        log->log_chooser.cboLogs.Enter("Other");
        log->log_chooser.hypOK.Click();
    });
    log->mnuPopCopy.Choose();
    EXPECT_EQ(Read("logs/Other.txt"), Replace_All(Full_Line("|||KBOS"), "\r\n", "|\r\n"));
    // Nor is it deleted.
    on_new_undated_row();
    ASSERT_TRUE(log->Prepare_Pop_Up());
    log_a_flight();
    log->mnuPopDelete.Choose();
    EXPECT_EQ(log->Table().Row_Count(), 5U);
    ASSERT_TRUE(log->Prepare_Pop_Up());
    log->mnuPopDelete.Choose();
    EXPECT_EQ(log->Table().Row_Count(), 4U);
    EXPECT_EQ(Take_Errors().size(), 4U) << "three rows set aside, one plan refused";
}

TEST_F(Pop_Up_Test, Nothing_is_copied_where_no_other_log_can_be) {
    Start_On_Row(0);
    EXPECT_FALSE(log->Enable_Copy()) << "the active log is the only one";
    EXPECT_TRUE(log->Prepare_Pop_Up());
    EXPECT_FALSE(log->mnuPopCopy.Enabled());
    Write("logs/Other.txt", "");
    EXPECT_TRUE(log->Prepare_Pop_Up());
    EXPECT_TRUE(log->mnuPopCopy.Enabled());
    const std::size_t files = Files_In_Logs();
    const std::string before = Read(log_file);
    for (const auto* name : {"My Flight Log", "my flight log", "", "../outside", "a|b", "CON"}) {
        EXPECT_FALSE(log->Copy_To_Log(name)) << name;
        EXPECT_EQ(Take_Boxes().size(), 1U) << name;
    }
    // The same file is active under another name.
    settings->Set_FlightLog("MY FLIGHT LOG");
    EXPECT_FALSE(log->Copy_To_Log("My Flight Log"));
    EXPECT_EQ(Take_Boxes().size(), 1U);
    settings->Set_FlightLog("My Flight Log");
    // Chosen nothing: the form is closed as soon as it is open.
    log->mnuPopCopy.Choose();
    EXPECT_EQ(Files_In_Logs(), files);
    EXPECT_FALSE(Exists("outside.txt"));
    EXPECT_EQ(Read(log_file), before);
    EXPECT_EQ(Read("logs/Other.txt"), "");
    EXPECT_TRUE(log->Copy_To_Log("Brand new"));
    EXPECT_EQ(Parse_Log(Read("logs/Brand new.txt")).table.Line(0), log->Table().Line(0));
}

}  // namespace
}  // namespace norvane
