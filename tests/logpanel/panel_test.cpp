// The panel's own rules: edits, undo, the close question, layout, lists; and the commands of its
// pop-up menu that change a log.

#include "logpanel/log_world.h"

namespace norvane::test {
namespace {

class Panel_Test : public Log_World {
  protected:
    void Start_With_Two_Flights() {
        Write(log_file, "1/1/2008|a||||||||||||1\r\n1/2/2008|b||||||||||||2\r\n");
        Start();
    }
    /// The pilot opens an editor, types and leaves it.
    bool Type(std::size_t row, std::size_t column, std::string_view text) {
        log->Begin_Edit(row, column);
        return log->Commit_Edit(row, column, text);
    }
};

TEST_F(Panel_Test, An_edit_is_checked_written_and_counted) {
    Start_With_Two_Flights();
    // A type counts as changed only when it differs.
    EXPECT_TRUE(Type(0, 1, "a"));
    EXPECT_FALSE(log->Changed());
    EXPECT_FALSE(Type(0, 0, "soon"));
    EXPECT_TRUE(log->Changed());
    EXPECT_FALSE(Type(0, 0, "")) << "the next load would drop the flight";
    EXPECT_EQ(log->Table().Get(0, 0), "1/1/2008");
    EXPECT_TRUE(Type(0, 0, "4/23/08"));
    EXPECT_TRUE(Type(0, 13, "1.26"));
    EXPECT_TRUE(Contains(log->tdbLogCaption.Text(), "Block Time: 3.3 "));
    Delete_Row(1);
    EXPECT_TRUE(Contains(log->tdbLogCaption.Text(), "Block Time: 1.3 "));
    // The row is gone: nothing is current, and no other one goes in its place.
    log->Delete_LogEntry();
    EXPECT_TRUE(log->Grid_Save());
    EXPECT_FALSE(log->Changed());
    EXPECT_EQ(Read(log_file), Full_Line("4/23/2008|a||||||||||||1.3"));
    EXPECT_TRUE(Type(0, 1, "B738"));
    // A picked airport brings its name.
    log->Pick_Airport(0, 3, {"PHTO", "Hilo"});
    log->Pick_Airport(0, 8, {"PHNL", "Honolulu"});
    log->Pick_Airport(0, 5, {"PHNL", "Honolulu"});
    EXPECT_TRUE(Contains(Errors(), "Column 5 holds no airport code"));
    // Saving takes the edit in progress with it; one that a save came into counts when it ends.
    auto typing = log->commit_edit_wanted.Connect([&] { log->Commit_Edit(0, 19, "typing"); });
    log->Begin_Edit(0, 20);
    log->hypACARS[ucFlightLog::save].Click();
    typing.Disconnect();
    EXPECT_EQ(Read(log_file), Full_Line("4/23/2008|B738||PHTO|Hilo||||PHNL|Honolulu||||1.3||||||"
                                        "typing"));
    log->Commit_Edit(0, 20, "BA 1");
    EXPECT_TRUE(log->Changed());
}

TEST_F(Panel_Test, Closing_asks_only_about_changes_and_saves_on_Yes) {
    Start_With_Two_Flights();
    EXPECT_TRUE(Close());
    EXPECT_TRUE(desktop.boxes.empty());
    // A type that is just being typed is a change, though its edit's begin was none.
    Start();
    log->Begin_Edit(0, 1);
    log->commit_edit_wanted.Connect([&] { log->Commit_Edit(0, 1, "B744"); });
    desktop.answers = {Answer::none, Answer::yes};
    EXPECT_FALSE(Close()) << "the question was left";
    EXPECT_TRUE(log->Changed());
    EXPECT_EQ(log->Table().Get(0, 1), "B744");
    EXPECT_TRUE(Close());
    const std::string question = "Would you like to save the changes made to the Flight Log?";
    EXPECT_EQ(Take_Boxes(), (Texts{question, question, "Flight Log Saved"}));
    EXPECT_TRUE(Contains(Read(log_file), "|B744|"));
}

TEST_F(Panel_Test, What_can_neither_be_saved_nor_kept_is_lost_only_knowingly) {
    Start_With_Two_Flights();
    Type(0, 19, "typed");
    const fs::path away = directory.string() + ".away";
    fs::rename(directory, away);
    desktop.answers = {Answer::no, Answer::no, Answer::no, Answer::yes};
    EXPECT_FALSE(log->Closing());
    EXPECT_EQ(log->Table().Get(0, 19), "typed");
    EXPECT_TRUE(log->Closing());
    fs::rename(away, directory);
    Take_Errors();
}

TEST_F(Panel_Test, The_layout_returns_from_the_store_and_gives_way_to_the_defaults) {
    for (const std::string& stored :
         Split("Col5_Visible=False Col6_Visible=0 Col7_Visible=perhaps Col8_Visible=1 Col1=2222 "
               "Col2=wide Col3=0 Col4=100001 Row=450",
               ' '))
        store.Set("Grid", Before(stored, "="), stored.substr(stored.find('=') + 1));
    Start();
    EXPECT_TRUE(Contains(Errors(), "Col7_Visible: \"perhaps\" is neither True nor False"));
    Grid_Layout& layout = log->Layout();
    EXPECT_EQ(layout.row_height_twips, 450);
    const auto& columns = layout.columns;
    for (const std::size_t column : {0U, 5U, 6U, 7U, 8U, 52U})
        EXPECT_EQ(columns[column].visible, column == 0 || column == 7 || column == 8) << column;
    EXPECT_EQ(columns[1].width_twips + columns[2].width_twips, 2222 + 1000);
    EXPECT_EQ(columns[3].width_twips + columns[4].width_twips, 900 + 3500);
    EXPECT_EQ(layout.columns[37].entries, (Texts{"IFR", "VFR"}));
    layout.columns[52].width_twips = 777;
    Close();
    EXPECT_EQ(store.Get("Grid", "Row") + store.Get("Grid", "Col52"), "450777");
    EXPECT_EQ(store.Get("Grid", "Col5_Visible") + store.Get("Grid", "Col0_Visible"), "FalseTrue");
    log->Restore_Grid_Sizing();
    EXPECT_TRUE(layout.columns[5].visible);
    EXPECT_EQ(layout.row_height_twips + layout.columns[1].width_twips, 300 + 1700);
}

TEST_F(Panel_Test, Captions_and_lists_come_from_the_small_files) {
    Write("bin/optfields.cfg", "Gate^\r\n\r\nType^Charter|Ferry\r\n3^\r\n4^\r\n5^\r\n6^\r\n");
    Write("VA/vafields.cfg", "Remarks^One\r\nbroken\r\n");
    Write("bin/ac.cfg", "Boeing 737@@Cessna 172@\r\nsecond line@x\r\n");
    Write("bin/atcmod.cfg", "B738@C172");
    Write("bin/FS9.wld",
          "// airports\r\n\r\n1|2|3|PHTO|Hilo|more\r\n1|2|3|X|http://x\r\n"
          "1|2|3|PHNL|Honolulu\r\n1|2|3|PHOG\r\n1|2|3|KJFK|Kennedy\r\n");
    Start();
    EXPECT_EQ(log->Aircraft_Types(), (Texts{"Boeing 737", "Cessna 172"}));
    ASSERT_EQ(log->Airports().size(), 2U);
    EXPECT_EQ(log->Airports()[1].icao + log->Airports()[1].name, "PHNLHonolulu");
    EXPECT_TRUE(Contains(Errors(), "line 6"));
    settings->Set_ACARS_ATCModel(true);
    log->Load_Aircraft();
    EXPECT_EQ(log->Aircraft_Types(), (Texts{"B738", "C172"}));
    va_settings->Get_VA_Settings("DEFAULT");
    Take_Errors();
    log->VA_Change();
    const auto& columns = log->Layout().columns;
    EXPECT_EQ(columns[38].caption + columns[42].caption + columns[43].caption, "Gate5Remarks");
    EXPECT_EQ(columns[39].entries, (Texts{"Charter", "Ferry"}));
    EXPECT_TRUE(columns[43].visible);
    EXPECT_TRUE(columns[43].entries.empty()) << "a single entry is no choice";
    EXPECT_FALSE(columns[44].visible);
    EXPECT_TRUE(Contains(Errors(), "ucACARS.Get_Custom_Captions()"));
}

class Pop_Up_Test : public Log_World {
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

    const fs::path plan = Data_File("plans/lfpg-eidw.pln");
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
    EXPECT_TRUE(desktop.boxes.empty() && log->Changed());
    log->Set_Current_Row(2);
    Import(plan);
    log->Set_Current_Row(1);
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
    // The same file is active under another name: the table's next save would drop the line.
    settings->Set_FlightLog("MY FLIGHT LOG");
    EXPECT_FALSE(log->Copy_To_Log("My Flight Log"));
    settings->Set_FlightLog("My Flight Log");
    // Chosen nothing: the form is closed as soon as it is open.
    log->mnuPopCopy.Choose();
    EXPECT_EQ(Logs(), "My Flight Log.bak My Flight Log.txt Other.txt");
    EXPECT_TRUE(log->Copy_To_Log("Brand new"));
    EXPECT_EQ(All_Rows(Read("logs/Brand new.txt")).at(0), log->Table().Line(0));
}

}  // namespace
}  // namespace norvane::test
