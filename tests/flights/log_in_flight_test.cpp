// What the pilot does with the log while a flight is tracked.

#include "common/line_reader.h"
#include "flights/flight_world.h"

namespace norvane::test {
namespace {

using testing::SizeIs;

class Log_In_Flight : public testing::Test {
  protected:
    /// What the pilot types into a cell.
    bool Type(std::size_t row, std::size_t column, const std::string& text) {
        log.Begin_Edit(row, column);
        return log.Commit_Edit(row, column, text);
    }

    Flight_World flight;
    Program& program = flight.Start();
    ucACARS& panel = program.panel;
    ucFlightLog& log = program.flight_log;
};

TEST_F(Log_In_Flight,
       What_is_typed_when_the_flight_is_logged_and_the_flight_stand_in_the_log_once) {
    program.settings.Set_OPT_AutoLog(true);
    std::size_t commits = 0;
    // The cell editor's text goes into the table when the panel asks for it, once.
    log.commit_edit_wanted.Connect([&] {
        if (++commits == 1) {
            EXPECT_TRUE(log.Commit_Edit(0, log_column::date, "1/2/2008"));
        }
    });
    flight.Take_Off();
    ASSERT_EQ(log.Add_Row(), 0U);
    log.Begin_Edit(0, log_column::date);
    ASSERT_TRUE(flight.Fly_To_Gate());
    flight.desktop.Run_For(std::chrono::minutes(2));
    ASSERT_TRUE(panel.Is_Logged());
    EXPECT_GT(commits, 0U);
    const auto rows = flight.Rows();
    ASSERT_THAT(rows, SizeIs(2));
    EXPECT_EQ(rows[0][log_column::date], "1/2/2008");
    EXPECT_EQ(rows[1][log_column::origin], "KJFK");

    ASSERT_TRUE(Type(1, log_column::comments, "smooth"));
    ASSERT_TRUE(log.Grid_Save());
    log.Grid_Load();
    EXPECT_EQ(log.Table().Row_Count(), 2U);
    EXPECT_EQ(log.Table().Get(1, log_column::comments), "smooth");
}

TEST(Logged_In_The_Air, A_flight_has_its_row_brought_up_to_date_at_the_gate) {
    for (const bool killed : {false, true}) {
        SCOPED_TRACE(killed);
        Flight_World flight;
        Program* program = &flight.Start();
        flight.Take_Off();
        flight.desktop.answers = {Answer::yes};
        flight.Log();
        ASSERT_THAT(flight.Rows(), SizeIs(1));
        ucFlightLog& log = program->flight_log;
        log.Begin_Edit(0, log_column::comments);
        ASSERT_TRUE(log.Commit_Edit(0, log_column::comments, "typed into the log"));
        ASSERT_TRUE(log.Grid_Save());
        if (killed)
            program = &flight.Start();
        ASSERT_TRUE(flight.Fly_To_Gate());
        EXPECT_TRUE(program->panel.Is_Logged()) << "without auto-log, too: it was logged already";
        const auto rows = flight.Rows();
        ASSERT_THAT(rows, SizeIs(1));
        EXPECT_EQ(rows[0][log_column::comments], "typed into the log");
        EXPECT_EQ(rows[0][log_column::flight_time], program->panel.lblFlightTime.Text());
        EXPECT_NE(rows[0][log_column::flight_time], "");
        // The next flight has a row of its own.
        flight.desktop.answers = {Answer::yes};
        program->panel.hypOn.Click();
        flight.Log();
        EXPECT_THAT(flight.Rows(), SizeIs(2));
    }
}

/// The log's box stays open while the flight goes on to its gate and logs itself.
TEST_F(Log_In_Flight, The_log_has_taken_a_flight_before_its_box_opens) {
    program.settings.Set_OPT_AutoLog(true);
    program.settings.Set_OPT_PIREP(true);
    flight.Take_Off();
    flight.desktop.answers = {Answer::yes};
    const auto pirep =
        flight.directory / "reports" / (Format_File_Stamp(flight.clock.Local_Now()) + "_PIREP.txt");
    flight.desktop.on_box = [&](const Message_Box& box) {
        if (box.text == "Flight Log Saved" && !panel.Is_At_Gate()) {
            EXPECT_TRUE(flight.Fly_To_Gate());
        }
    };
    flight.Log();
    ASSERT_THAT(flight.Rows(), SizeIs(1));
    EXPECT_EQ(flight.Rows()[0][log_column::flight_time], panel.lblFlightTime.Text());
    EXPECT_TRUE(std::filesystem::exists(pirep)) << "its name is that of the moment it was noted";
}

TEST_F(Log_In_Flight, Aircraft_titles_come_from_the_simulator_without_touching_the_flights_link) {
    // A start that finds no list makes it.
    const auto list = flight.directory / "bin" / "ac.cfg";
    std::filesystem::remove(list);
    flight.Start();
    EXPECT_THAT(log.Aircraft_Types(), testing::Contains("Norvane Twin Jet 150"));
    EXPECT_FALSE(program.link.Is_Open());

    std::filesystem::remove(list);
    panel.hypOn.Click();
    ASSERT_EQ(log.Load_FS_AC(), "");
    EXPECT_TRUE(program.link.Is_Open());
    EXPECT_TRUE(std::filesystem::exists(list));
    const std::size_t exchanges = flight.exchanges;
    flight.desktop.Run_For(std::chrono::seconds(5));
    EXPECT_GT(flight.exchanges, exchanges);

    program.Close(ucACARS::Closing::by_signal);
    flight.linked = false;
    EXPECT_NE(log.Load_FS_AC(), "");
    EXPECT_THAT(Read_Lines(list), SizeIs(1));
}

}  // namespace
}  // namespace norvane::test
