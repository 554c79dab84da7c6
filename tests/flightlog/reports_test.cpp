// The reports of the log, byte for byte, and what happens around them: questions, edits in
// progress, files that cannot be written, totals of cells that hold more than a number.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "common/line_reader.h"
#include "flightlog/log_reports.h"
#include "flightlog/log_world.h"
#include "flightlog/uc_stats.h"

namespace norvane {
namespace {

using test::Data_File;
using test::Full_Line;

const std::string no_entries = "There are no log entries to include in the report";

/// A line of a log with these cells.
std::string Flight(const std::map<std::size_t, std::string>& cells) {
    std::string line;
    std::size_t column = 0;
    for (const auto& [place, text] : cells) {
        line.append(place - column, '|');
        line += text;
        column = place;
    }
    return Full_Line(line);
}

class Reports_Test : public test::Log_World {
  protected:
    /// A report was written and opened: it is the one kept among the tests' data.
    void Expect_Report(const std::string& golden) {
        const auto report = directory / "report.html";
        EXPECT_EQ(desktop.opened_files, std::vector{report});
        desktop.opened_files.clear();
        EXPECT_EQ(Read_File(report), Read_File(Data_File("reports/" + golden)));
        EXPECT_FALSE(desktop.busy);
    }
    /// When the field chooser opens, only these lines of it are left checked.
    void Choose_Fields(std::vector<std::size_t> places) {
        log->field_chooser.shown.connect([this, places = std::move(places)] {
            log->field_chooser.mnuUnselectAll.Choose();
            for (const std::size_t place : places)
                log->field_chooser.lvwFields[place].box.Set_Checked(true);
            log->field_chooser.hypOK.Click();
        });
    }
};

TEST_F(Reports_Test, Logbook_holds_the_chosen_fields_and_the_edit_in_progress) {
    Write("bin/optfields.cfg", "Gate^\r\n");
    Write(log_file, Flight({{0, "1/2/2008"},
                            {1, "B737 <b>"},
                            {3, "KAAA"},
                            {9, "Alpha & Sons"},
                            {13, "1.5"},
                            {16, "1.2"},
                            {38, "A 1"}}) +
                        Flight({{0, "1/1/2008"}, {1, "C172"}, {4, "left out"}, {13, "12,345.55"}}));
    Start();
    Choose_Fields({0, 1, 9, 13, 19, 38});
    log->commit_edit_wanted.connect([&] { log->Commit_Edit(1, 19, "just typed"); });
    log->hypACARS[ucFlightLog::create_report].Click();
    Expect_Report("logbook.html");
}

TEST_F(Reports_Test, Logbook_without_fields_and_logbook_given_up) {
    Write(log_file, "1/1/2008\r\n");
    Start();
    auto chooser = log->field_chooser.shown.connect([&] { log->field_chooser.hypCancel.Click(); });
    log->Create_Report_File();
    EXPECT_FALSE(Exists("report.html"));
    EXPECT_TRUE(desktop.opened_files.empty());
    chooser.disconnect();
    Choose_Fields({});
    log->Create_Report_File();
    EXPECT_NE(Read("report.html").find("\r\n <tr>\r\n</tr>\r\n <tr>\r\n</tr>\r\n</table>\r\n"),
              std::string::npos);
}

TEST_F(Reports_Test, Statistics_sum_what_is_a_number_in_the_units_of_the_settings) {
    Write(log_file, Flight({{0, "1/1/2008"},
                            {13, "1000.25"},
                            {15, "5400 gal"},
                            {16, "900.5"},
                            {18, "4000 gal"},
                            {21, "150"},
                            {22, "12000 kg"},
                            {25, "1234 nm"},
                            {37, "ifr"}}) +
                        Flight({{0, "1/2/2008"},
                                {13, "0.5"},
                                {15, "none"},
                                {21, "2 crew"},
                                {22, "1,500 kg"},
                                {25, "10.6 nm"},
                                {37, "VFR"}}) +
                        Flight({{0, "1/3/2008"}, {13, "x"}, {15, "100.4"}, {16, ".05"}}));
    Start();
    settings->Set_ACARS_Fuel(2);
    settings->Set_ACARS_Weight(1);
    log->hypACARS[ucFlightLog::statistics].Click();
    Expect_Report("statistics.html");
}

TEST_F(Reports_Test, An_empty_log_is_said_to_be_empty_but_has_statistics) {
    Start();
    log->Create_Report_File();
    log->Grid_Print_Preview();
    log->Grid_Print();
    EXPECT_EQ(Take_Boxes(), std::vector(3, no_entries));
    EXPECT_TRUE(desktop.opened_files.empty());
    log->Create_Statistics_Report();
    std::string totals;
    for (const std::string& line : Read_Lines(directory / "report.html")) {
        constexpr std::string_view start = R"(<font face="Arial" size="2">)";
        if (line.starts_with(start) && line != std::string(start) + " </font></b></td>")
            totals += line.substr(start.size(), line.find("</font>") - start.size()) + "/";
    }
    EXPECT_EQ(totals, "0.0/0.0/0.0/0 lbs/0.0/0 lbs/0 nm/0/0 lbs/");
}

TEST_F(Reports_Test, A_flights_report_has_own_fields_only_where_there_are_some) {
    std::map<std::size_t, std::string> cells;
    for (std::size_t column = 0; column < log_column_count; ++column)
        cells[column] = "<c" + std::to_string(column) + ">";
    cells[0] = "5/1/2008";
    Write(log_file,
          Flight(cells) + Flight({{0, "5/2/2008"}, {1, "C172"}, {19, "No <i>own</i> fields"}}));
    Start();
    log->mnuPopReport.Choose();
    EXPECT_TRUE(desktop.opened_files.empty()) << "no row is current";
    log->Set_Current_Row(1);
    log->mnuPopReport.Choose();
    Expect_Report("flight.html");

    Write("bin/optfields.cfg", "Gate^\r\nType^A|B\r\nThree^\r\n");
    std::string airline_fields;
    for (int i = 0; i < 10; ++i)
        airline_fields += "Cr&w " + std::to_string(i) + "^\r\n";
    Write("VA/vafields.cfg", airline_fields);
    va_settings->Get_VA_Settings("DEFAULT");
    log->VA_Change();
    log->Set_Current_Row(0);
    log->mnuPopReport.Choose();
    Expect_Report("flight-own-fields.html");
}

TEST_F(Reports_Test, A_report_that_fails_is_told_and_not_opened) {
    Write(log_file, "1/1/2008\r\n");
    Start();
    std::filesystem::create_symlink("/dev/full", directory / "report.html");
    ucStats stats(services, *settings);
    log->Set_Current_Row(0);
    desktop.on_box = [&](const Message_Box& box) {
        EXPECT_FALSE(desktop.busy);
        EXPECT_NE(box.details.find("report.html"), std::string::npos) << box.details;
    };
    log->Create_Statistics_Report();
    log->Create_ACARS_Report();
    stats.Create_Report();
    EXPECT_EQ(desktop.boxes.size(), 3U);
    EXPECT_TRUE(desktop.opened_files.empty());
    const auto errors = Take_Errors();
    ASSERT_EQ(errors.size(), 3U);
    EXPECT_NE(errors[0].find("ucFlightLog.Create_Statistics_Report()"), std::string::npos);
    EXPECT_NE(errors[1].find("ucFlightLog.Create_ACARS_Report()"), std::string::npos);
    EXPECT_NE(errors[2].find("ucStats.Create_Report()"), std::string::npos);
}

TEST_F(Reports_Test, A_preview_shows_the_chosen_columns_and_afterwards_all_it_left_out) {
    store.Set("Grid", "Col5_Visible", "False");
    Write(log_file, "1/1/2008\r\n");
    Start();
    Choose_Fields({0, 3});
    const auto shown = [&] {
        std::string columns;
        for (std::size_t i = 0; i < log_column_count; ++i)
            columns += log->Layout().columns[i].visible ? std::to_string(i) + " " : "";
        return columns;
    };
    int previews = 0;
    log->preview_wanted.connect([&](const Print_Job& job) {
        ++previews;
        EXPECT_EQ(shown(), "0 3 ");
        EXPECT_EQ(job.heading, "Flight Log: [My Flight Log]3/14/2026 15:09:26");
        EXPECT_EQ(job.file_name, "Flight Log - My Flight Log - 2026-03-14 15-09-26");
    });
    log->hypACARS[ucFlightLog::print_preview].Click();
    EXPECT_EQ(previews, 1);
    // Even what the pilot had hidden.
    EXPECT_TRUE(log->Layout().columns[5].visible);
    EXPECT_TRUE(log->Layout().columns[19].visible);
}

TEST(Column_Number_Test, A_unit_behind_a_number_does_not_hide_it_in_any_country) {
    struct Case {
        std::string_view text;
        double us;
        double german;
    };
    const Regional us;
    const Regional german{"dd.MM.yyyy", ',', '.'};
    for (const auto& [text, expected_us, expected_german] : std::to_array<Case>({
             {"5400 lbs", 5400, 5400},
             {"1,234 kg", 1234, 1.234},
             {"1.234 kg", 1.234, 1234},
             {"1.234,5 kg", 0, 1234.5},
             {"-12", -12, -12},
             {"1 234", 1234, 1234},
             {"lbs 5400", 0, 0},
             {"5400lbs", 0, 0},
             {" 5400 lbs", 0, 0},
             {"", 0, 0},
         })) {
        EXPECT_DOUBLE_EQ(Column_Number(text, us), expected_us) << text;
        EXPECT_DOUBLE_EQ(Column_Number(text, german), expected_german) << text;
    }
}

TEST_F(Reports_Test, Hours_are_summed_by_type_to_the_letter) {
    Write(log_file, Flight({{0, "1/1/2008"}, {1, "B737"}, {13, "1,000.5"}}) +
                        Flight({{0, "1/2/2008"}, {1, "b737"}, {13, "2.0"}}) +
                        Flight({{0, "1/3/2008"}, {1, "C172"}, {13, "1:15"}}) +
                        Flight({{0, "1/4/2008"}, {1, " "}, {13, "5"}}) +
                        Flight({{0, "1/5/2008"}, {1, ""}, {13, "7"}}) +
                        Flight({{0, "1/6/2008"}, {1, "B737"}, {13, "1"}, {16, "99"}}));
    Start();
    ucStats stats(services, *settings);
    stats.hypACARS[1].Click();
    Expect_Report("flight-time-unread.html");
    stats.hypACARS[0].Click();
    EXPECT_EQ(stats.tdbTimeCaption.Text(), "Total Flight Time: 1,003.5");
    stats.hypACARS[1].Click();
    Expect_Report("flight-time.html");
    EXPECT_TRUE(Exists("logs/My Flight Log.bak"));

    services.regional = {"M/d/yyyy", ',', '.'};
    stats.Display_Flight_Stats();
    EXPECT_EQ(stats.tdbTimeCaption.Text(), "Total Flight Time: 3,0") << "1,000.5 is no number";
    std::filesystem::remove(directory / log_file);
    desktop.on_box = [&](const Message_Box&) { EXPECT_FALSE(desktop.busy); };
    stats.Display_Flight_Stats();
    EXPECT_EQ(Take_Boxes(), std::vector<std::string>{"No Flight Time Recorded"});
    EXPECT_TRUE(stats.Totals().empty());
    EXPECT_EQ(stats.tdbTimeCaption.Text(), "Total Flight Time: 0,0");
    // A log that cannot be read may well have flights.
    std::filesystem::create_directory(directory / log_file);
    stats.Display_Flight_Stats();
    EXPECT_EQ(Take_Errors().size(), 1U);
    EXPECT_EQ(std::ranges::count(Take_Boxes(), "No Flight Time Recorded"), 0);
    EXPECT_EQ(stats.tdbTimeCaption.Text(), "Total Flight Time: ");
}

}  // namespace
}  // namespace norvane
