// The panel's own rules: edits, undo, the close question, layout, lists, turning to another log.

#include <gtest/gtest.h>

#include "common/text.h"
#include "flightlog/log_world.h"

namespace norvane {
namespace {

using test::Full_Line;

class Panel_Test : public test::Log_World {
  protected:
    void Start_With_Two_Flights() {
        Write(log_file, "1/1/2008|a||||||||||||1\r\n1/2/2008|b||||||||||||2\r\n");
        Start();
    }
};

TEST_F(Panel_Test, An_edit_is_checked_written_and_counted) {
    Start_With_Two_Flights();
    log->Begin_Edit(0, 0);
    EXPECT_FALSE(log->Commit_Edit(0, 0, "soon"));
    EXPECT_EQ(log->Table().Get(0, 0), "1/1/2008");
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(desktop.boxes[0].text, "Please enter a valid date");
    EXPECT_EQ(desktop.boxes[0].title, "Norvane Invalid Field Entry");
    EXPECT_TRUE(log->Changed());
    EXPECT_TRUE(log->Commit_Edit(0, 0, "4/23/08"));
    EXPECT_EQ(log->Table().Get(0, 0), "4/23/2008");
    EXPECT_FALSE(log->Commit_Edit(0, 0, "")) << "the next load would drop the flight";
    EXPECT_EQ(log->Table().Get(0, 0), "4/23/2008");
    EXPECT_TRUE(log->Commit_Edit(0, 13, "1.26"));
    EXPECT_EQ(log->tdbLogCaption.Text(), "Total Block Time: 3.3            Total Flight Time: 0.0");
    log->Set_Current_Row(1);
    log->Delete_LogEntry();
    EXPECT_EQ(log->tdbLogCaption.Text(), "Total Block Time: 1.3            Total Flight Time: 0.0");
    // The row is gone: nothing is current, and no other one goes in its place.
    log->Delete_LogEntry();
    EXPECT_EQ(log->Table().Row_Count(), 1U);
}

TEST_F(Panel_Test, The_type_counts_as_changed_only_when_it_differs) {
    Start_With_Two_Flights();
    log->Begin_Edit(0, 1);
    EXPECT_TRUE(log->Commit_Edit(0, 1, "a"));
    EXPECT_FALSE(log->Changed());
    log->Begin_Edit(0, 1);
    EXPECT_TRUE(log->Commit_Edit(0, 1, "B738"));
    EXPECT_TRUE(log->Changed());
    EXPECT_TRUE(log->Grid_Save());
}

TEST_F(Panel_Test, A_picked_airport_brings_its_name) {
    Start_With_Two_Flights();
    log->Pick_Airport(0, 3, {"PHTO", "Hilo"});
    log->Pick_Airport(0, 8, {"PHNL", "Honolulu"});
    EXPECT_EQ(log->Table().Get(0, 4), "Hilo");
    EXPECT_EQ(log->Table().Get(0, 8), "PHNL");
    EXPECT_EQ(log->Table().Get(0, 9), "Honolulu");
    EXPECT_TRUE(log->Changed());
}

TEST_F(Panel_Test, Saving_takes_the_edit_in_progress_with_it) {
    Start_With_Two_Flights();
    log->commit_edit_wanted.connect([&] { log->Commit_Edit(1, 19, "typing"); });
    log->hypACARS[0].Click();
    EXPECT_TRUE(Contains(Read(log_file), "typing"));
    // An edit that a save came into counts as a change when it ends.
    log->Begin_Edit(1, 20);
    log->Grid_Save();
    log->Commit_Edit(1, 20, "BA 1");
    EXPECT_TRUE(log->Changed());
}

TEST_F(Panel_Test, Undo_restores_the_file_and_keeps_what_was_typed_beside_it) {
    Start_With_Two_Flights();
    log->Begin_Edit(0, 19);
    log->Commit_Edit(0, 19, "typed");
    log->hypACARS[1].Click();
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(desktop.boxes[0].text, "Flight Log Changes Undone");
    EXPECT_EQ(desktop.boxes[0].title, "Norvane Undo Flight Log Changes");
    EXPECT_EQ(log->Table().Get(0, 19), "");
    EXPECT_TRUE(
        Read("logs/My Flight Log.unsaved").starts_with("1/1/2008|a||||||||||||1||||||typed|"));
    EXPECT_TRUE(Contains(Join(Take_Errors(), ""), "My Flight Log.unsaved"));
    // The question at the end still comes, and a second undo has nothing to keep.
    EXPECT_TRUE(log->Changed());
    log->Grid_Undo();
    EXPECT_FALSE(Exists("logs/My Flight Log.unsaved2"));
}

TEST_F(Panel_Test, Turning_to_another_log_keeps_unsaved_edits_of_the_one_before) {
    Start_With_Two_Flights();
    Write("logs/Other.txt", "5/5/2008|o||||||||||||7.5\r\n");
    log->Begin_Edit(0, 19);
    log->Commit_Edit(0, 19, "typed");
    settings->ActiveLogChange.connect([&] { log->FlightLog_Change(); });
    settings->Set_FlightLog("Other");
    EXPECT_EQ(log->Table().Row_Count(), 1U);
    EXPECT_EQ(log->tdbLogCaption.Text(), "Total Block Time: 7.5            Total Flight Time: 0.0");
    EXPECT_TRUE(Contains(Read("logs/My Flight Log.unsaved"), "|typed|"));
    EXPECT_EQ(Take_Errors().size(), 1U);
    Set_Flight("5/6/2008", "0900");
    entry->New_Log_Entry_Save();
    EXPECT_TRUE(Contains(Read("logs/Other.txt"), "5/6/2008"));
    EXPECT_FALSE(Contains(Read(log_file), "5/6/2008"));
}

TEST_F(Panel_Test, Closing_asks_only_about_changes_and_saves_on_Yes) {
    Start_With_Two_Flights();
    Close();
    EXPECT_TRUE(desktop.boxes.empty());
    Start();
    log->Begin_Edit(0, 19);
    log->Commit_Edit(0, 19, "typed");
    desktop.answers = {Answer::yes};
    Close();
    ASSERT_EQ(desktop.boxes.size(), 2U);
    EXPECT_EQ(desktop.boxes[0].text, "Would you like to save the changes made to the Flight Log?");
    EXPECT_EQ(desktop.boxes[0].title, "Flight Log Changed");
    EXPECT_EQ(desktop.boxes[0].buttons, Buttons::yes_no);
    EXPECT_TRUE(Contains(Read(log_file), "typed"));
    EXPECT_EQ(log->Table().Row_Count(), 0U);
    // A type that is just being typed is a change, though its edit's begin was none.
    Start();
    Take_Boxes();
    log->Begin_Edit(0, 1);
    log->commit_edit_wanted.connect([&] { log->Commit_Edit(0, 1, "B744"); });
    desktop.answers = {Answer::yes};
    Close();
    EXPECT_EQ(Take_Boxes().size(), 2U);
    EXPECT_TRUE(Contains(Read(log_file), "|B744|"));
}

TEST_F(Panel_Test, A_question_that_is_left_calls_the_closing_off_and_No_keeps_what_was_typed) {
    Start_With_Two_Flights();
    const std::string before = Read(log_file);
    log->Commit_Edit(0, 19, "typed");
    desktop.answers = {Answer::none};
    EXPECT_FALSE(Close());
    EXPECT_TRUE(log->Changed());
    EXPECT_EQ(log->Table().Get(0, 19), "typed");
    EXPECT_FALSE(Exists("logs/My Flight Log.unsaved"));
    Take_Boxes();

    desktop.answers = {Answer::no};
    ASSERT_TRUE(log->Closing());
    const std::string kept = Full_Line("1/1/2008|a||||||||||||1||||||typed");
    EXPECT_EQ(Read("logs/My Flight Log.unsaved"), kept);
    EXPECT_TRUE(Contains(Take_Boxes().at(1), (directory / "logs/My Flight Log.unsaved").string()));
    // A flight that is logged while the rest closes takes nothing along that was given up.
    Set_Flight("1/3/2008", "0900");
    entry->New_Log_Entry_Save();
    log->End();
    EXPECT_EQ(Read(log_file), Replace_All(before, "\r\n", std::string(39, '|') + "\r\n") +
                                  Full_Line("1/3/2008|||||0900"));
    Take_Errors();

    // What can neither be saved nor kept is lost only knowingly.
    Start();
    log->Commit_Edit(0, 19, "typed again");
    std::filesystem::remove_all(directory / "logs");
    Write("logs", "in the way");
    std::filesystem::rename(directory, directory.string() + ".away");
    desktop.answers = {Answer::no, Answer::no};
    EXPECT_FALSE(log->Closing());
    EXPECT_EQ(log->Table().Get(0, 19), "typed again");
    std::filesystem::rename(directory.string() + ".away", directory);
    Take_Errors();
}

TEST_F(Panel_Test, A_deleted_flight_is_a_change_that_is_asked_about_and_kept) {
    Start_With_Two_Flights();
    const std::string before = Read(log_file);
    log->Set_Current_Row(1);
    log->Delete_LogEntry();
    desktop.answers = {Answer::none};
    EXPECT_FALSE(Close());
    EXPECT_EQ(log->Table().Row_Count(), 1U);
    log->End();
    EXPECT_EQ(Read(log_file), before);
    EXPECT_EQ(Read("logs/My Flight Log.unsaved"), Full_Line("1/1/2008|a||||||||||||1"));
    EXPECT_EQ(Take_Errors().size(), 1U);
}

TEST_F(Panel_Test, Two_headers_sort_and_the_others_do_nothing) {
    Write(log_file, "1/1/2008|b|||x\r\n1/2/2008|a|||y\r\n");
    Start();
    log->Header_Click(4);
    EXPECT_EQ(log->Table().Get(0, 1), "b");
    log->Header_Click(1);
    EXPECT_EQ(log->Table().Get(0, 1), "a");
    log->Header_Click(0);
    EXPECT_EQ(log->Table().Get(0, 1), "b");
}

TEST_F(Panel_Test, The_layout_returns_from_the_store_and_gives_way_to_the_defaults) {
    store.Set("Grid", "Col5_Visible", "False");
    store.Set("Grid", "Col6_Visible", "0");
    store.Set("Grid", "Col7_Visible", "perhaps");
    store.Set("Grid", "Col1", "2222");
    store.Set("Grid", "Col2", "wide");
    store.Set("Grid", "Col3", "-5");
    store.Set("Grid", "Row", "450");
    Start();
    EXPECT_TRUE(Contains(Join(Take_Errors(), ""), "ucFlightLog.Get_Setting()"));
    Grid_Layout& layout = log->Layout();
    EXPECT_EQ(layout.row_height_twips, 450);
    EXPECT_FALSE(layout.columns[5].visible);
    EXPECT_FALSE(layout.columns[6].visible);
    EXPECT_TRUE(layout.columns[7].visible);
    EXPECT_EQ(layout.columns[1].width_twips, 2222);
    EXPECT_EQ(layout.columns[2].width_twips, 1000);
    EXPECT_EQ(layout.columns[3].width_twips, 900);
    EXPECT_EQ(layout.columns[37].entries, (std::vector<std::string>{"IFR", "VFR"}));
    EXPECT_FALSE(layout.columns[52].visible);
    layout.columns[52].width_twips = 777;
    Close();
    EXPECT_EQ(store.Get("Grid", "Row"), "450");
    EXPECT_EQ(store.Get("Grid", "Col52"), "777");
    EXPECT_EQ(store.Get("Grid", "Col5_Visible"), "False");
    EXPECT_EQ(store.Get("Grid", "Col0_Visible"), "True");
    EXPECT_EQ(store.Depth(), 0);
    log->Restore_Grid_Sizing();
    EXPECT_EQ(layout.row_height_twips, 300);
    EXPECT_TRUE(layout.columns[5].visible);
    EXPECT_EQ(layout.columns[1].width_twips, 1700);
}

TEST_F(Panel_Test, Captions_and_lists_come_from_the_field_definitions) {
    Write("bin/optfields.cfg", "Gate^\r\n\r\nType^Charter|Ferry\r\n3^\r\n4^\r\n5^\r\n6^\r\n");
    Write("VA/vafields.cfg", "Remarks^One\r\nbroken\r\n");
    Start();
    va_settings->Get_VA_Settings("DEFAULT");
    Take_Errors();
    log->VA_Change();
    const auto& columns = log->Layout().columns;
    EXPECT_EQ(columns[38].caption, "Gate");
    EXPECT_EQ(columns[39].entries, (std::vector<std::string>{"Charter", "Ferry"}));
    EXPECT_EQ(columns[42].caption, "5");
    EXPECT_EQ(columns[43].caption, "Remarks");
    EXPECT_TRUE(columns[43].visible);
    EXPECT_TRUE(columns[43].entries.empty());
    EXPECT_FALSE(columns[44].visible);
    EXPECT_TRUE(Contains(Join(Take_Errors(), ""), "ucACARS.Get_Custom_Captions()"));
}

TEST_F(Panel_Test, Pick_lists_come_from_the_small_files) {
    Write("bin/ac.cfg", "Boeing 737@@Cessna 172@\r\nsecond line@x\r\n");
    Write("bin/atcmod.cfg", "B738@C172");
    Write("bin/FS9.wld",
          "// airports\r\n\r\n1|2|3|PHTO|Hilo|more\r\n1|2|3|X|http://x\r\n"
          "1|2|3|PHNL|Honolulu\r\n1|2|3|PHOG\r\n1|2|3|KJFK|Kennedy\r\n");
    Start();
    EXPECT_EQ(log->Aircraft_Types(), (std::vector<std::string>{"Boeing 737", "Cessna 172"}));
    ASSERT_EQ(log->Airports().size(), 2U);
    EXPECT_EQ(log->Airports()[1].icao, "PHNL");
    EXPECT_EQ(log->Airports()[1].name, "Honolulu");
    const std::string errors = Join(Take_Errors(), "");
    EXPECT_TRUE(Contains(errors, "ucFlightLog.Load_ICAO_List()")) << errors;
    EXPECT_TRUE(Contains(errors, "line 6")) << errors;
    settings->Set_ACARS_ATCModel(true);
    log->Load_Aircraft();
    EXPECT_EQ(log->Aircraft_Types(), (std::vector<std::string>{"B738", "C172"}));
    std::filesystem::remove(directory / "bin/atcmod.cfg");
    log->Load_Aircraft();
    EXPECT_EQ(log->Aircraft_Types().size(), 2U);
}

}  // namespace
}  // namespace norvane
