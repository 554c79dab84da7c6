// The reports of the log, two of them byte for byte, and what happens around them: questions, edits
// in progress, files that cannot be written, totals of cells that hold more than a number.

#include <gtest/gtest.h>

#include <regex>

#include "common/line_reader.h"
#include "flightlog/log_reports.h"
#include "flightlog/log_world.h"
#include "flightlog/uc_stats.h"

namespace norvane {
namespace {

using test::Full_Line;

/// A line of a log with cells "column:text;...".
std::string Flight(std::string_view cells) {
    std::string line;
    std::size_t column = 0;
    for (const std::string& cell : Split(cells, ';')) {
        const std::size_t place = std::stoul(cell);
        line.append(place - column, '|').append(cell.substr(cell.find(':') + 1));
        column = place;
    }
    return Full_Line(line);
}

class Reports_Test : public test::Log_World {
  protected:
    /// The report that was written and opened.
    std::string Report() {
        EXPECT_EQ(desktop.opened_files, std::vector{directory / "report.html"});
        desktop.opened_files.clear();
        return Read("report.html");
    }
    static std::string Kept(const std::string& name) {
        return Read_File(test::Data_File("reports/" + name));
    }
    /// What the report's table shows: rows in brackets, a bar behind each cell.
    std::string Shown() {
        std::string page = Report();
        const std::vector<std::pair<std::string, std::string>> steps{
            {"[^]*<table[^>]*>", ""}, {"\r\n|&nbsp;", ""}, {" ?<tr>", "["},
            {"</td>", "|"},           {"</tr>", "]"},      {"<[^>]*>", ""}};
        for (const auto& [what, text] : steps)
            page = std::regex_replace(page, std::regex(what), text);
        return page;
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
    Write(log_file, Flight("0:1/2/2008;1:B737 <b>;3:KAAA;9:Alpha & Sons;38:A 1") +
                        Flight("0:1/1/2008;1:C172;4:left out;13:12,345.55"));
    Start();
    auto giving_up =
        log->field_chooser.shown.connect([&] { log->field_chooser.hypCancel.Click(); });
    log->Create_Report_File();
    EXPECT_FALSE(Exists("report.html"));
    giving_up.disconnect();
    Choose_Fields({0, 1, 9, 13, 19, 38});
    log->commit_edit_wanted.connect([&] { log->Commit_Edit(1, 19, "just typed"); });
    log->hypACARS[ucFlightLog::create_report].Click();
    EXPECT_EQ(Shown(),
              "[Date|Aircraft Type|Destination Airport|Block Time|Comments|Gate|]"
              "[1/1/2008|C172|-|12,345.55|-|-|]"
              "[1/2/2008|B737 &lt;b&gt;|Alpha &amp; Sons|-|just typed|A 1|]");
    EXPECT_TRUE(Contains(Read("report.html"), log->tdbLogCaption.Text()));
}

TEST_F(Reports_Test, Statistics_sum_what_is_a_number_in_the_units_of_the_settings) {
    Write(log_file,
          Flight("0:1/1/2008;13:1000.25;15:5400 gal;16:900.5;18:4000 gal;21:150;22:12000 kg;"
                 "25:1234 nm;37:ifr") +
              Flight("0:1/2/2008;13:0.5;15:none;21:2 crew;22:1,500 kg;25:10.6 nm;37:VFR") +
              Flight("0:1/3/2008;13:x;15:100.4;16:.05;21:nm 9;22: 9 kg;25:9nm"));
    Start();
    settings->Set_ACARS_Fuel(2);
    settings->Set_ACARS_Weight(1);
    log->hypACARS[ucFlightLog::statistics].Click();
    EXPECT_EQ(Report(), Kept("statistics.html"));
}

TEST_F(Reports_Test, A_flights_report_has_own_fields_only_where_there_are_some) {
    std::string line = "5/1/2008";
    for (std::size_t column = 1; column < log_column_count; ++column)
        line += "|<c" + std::to_string(column) + ">";
    Write(log_file, line);
    Start();
    log->mnuPopReport.Choose();
    EXPECT_TRUE(desktop.opened_files.empty()) << "no row is current";
    log->Set_Current_Row(0);
    log->mnuPopReport.Choose();
    const std::string shown = Shown();
    EXPECT_TRUE(Contains(shown, "[COMMENTS|]")) << shown;
    EXPECT_FALSE(Contains(shown, "c38") || Contains(shown, "c43")) << shown;

    Write("bin/optfields.cfg", "Gate^\r\nType^A|B\r\nThree^\r\n");
    std::string airline_fields;
    for (int i = 0; i < 10; ++i)
        airline_fields += "Cr&w " + std::to_string(i) + "^\r\n";
    Write("VA/vafields.cfg", airline_fields);
    va_settings->Get_VA_Settings("DEFAULT");
    log->VA_Change();
    log->mnuPopReport.Choose();
    EXPECT_EQ(Report(), Kept("flight-own-fields.html"));
}

TEST_F(Reports_Test, A_report_that_fails_is_told_and_not_opened) {
    Start();
    log->Create_Report_File();
    log->Grid_Print_Preview();
    log->Grid_Print();
    EXPECT_EQ(Take_Boxes(),
              std::vector<std::string>(3, "There are no log entries to include in the report"));
    log->Add_Row();
    log->Set_Current_Row(0);
    std::filesystem::create_symlink("/dev/full", directory / "report.html");
    ucStats stats(services, *settings);
    log->Create_Statistics_Report();
    log->Create_ACARS_Report();
    stats.Create_Report();
    EXPECT_TRUE(desktop.opened_files.empty());
    const std::string errors = Errors();
    for (const auto* procedure : {"ucFlightLog.Create_Statistics_Report()",
                                  "ucFlightLog.Create_ACARS_Report()", "ucStats.Create_Report()"})
        EXPECT_TRUE(Contains(errors, procedure)) << errors;
}

TEST_F(Reports_Test, A_preview_shows_the_chosen_columns_and_afterwards_all_it_left_out) {
    store.Set("Grid", "Col5_Visible", "False");
    Write(log_file, "1/1/2008\r\n");
    Start();
    Choose_Fields({0, 3});
    const auto shown = [&] {
        std::string columns;
        for (const Grid_Column& column : log->Layout().columns)
            columns += column.visible ? 'x' : '-';
        return columns.substr(0, 8);
    };
    std::string previews;
    log->preview_wanted.connect([&](const Print_Job& job) {
        log->Grid_Print();
        previews += shown() + job.heading + "/" + job.file_name;
    });
    log->hypACARS[ucFlightLog::print_preview].Click();
    EXPECT_EQ(previews,
              "x--x----Flight Log: [My Flight Log]3/14/2026 15:09:26/"
              "Flight Log - My Flight Log - 2026-03-14 15-09-26");
    // Even what the pilot had hidden.
    EXPECT_EQ(shown(), "xxxxxxxx");
}

TEST_F(Reports_Test, Hours_are_summed_by_type_to_the_letter) {
    Write(log_file, Flight("0:1/1/2008;1:B737;13:1,000.5") + Flight("0:1/2/2008;1:b737;13:2.0") +
                        Flight("0:1/3/2008;1:C172;13:1:15") + Flight("0:1/4/2008;1: ;13:5") +
                        Flight("0:1/6/2008;1:B737;13:1;16:99"));
    Start();
    ucStats stats(services, *settings);
    const auto report = [&] {
        stats.hypACARS[1].Click();
        return Shown();
    };
    EXPECT_EQ(report(),
              "[AIRCRAFT TYPE||TOTAL TIME|||][||||||][||||||][Total Flight Time: ||||||][||||||]");
    stats.hypACARS[0].Click();
    EXPECT_EQ(report(),
              "[AIRCRAFT TYPE||TOTAL TIME|||][||||||][ ||0.0||||][B737||1,001.5||||]"
              "[C172||0.0||||][b737||2.0||||][||||||][Total Flight Time: ||1,003.5||||][||||||]");

    services.regional = {"M/d/yyyy", ',', '.'};
    stats.Display_Flight_Stats();
    EXPECT_EQ(stats.tdbTimeCaption.Text(), "Total Flight Time: 3,0") << "1,000.5 is no number";
    std::filesystem::remove(directory / log_file);
    stats.Display_Flight_Stats();
    EXPECT_EQ(Take_Boxes(), std::vector<std::string>{"No Flight Time Recorded"});
    EXPECT_EQ(stats.tdbTimeCaption.Text(), "Total Flight Time: 0,0");
    // A log that cannot be read may well have flights.
    std::filesystem::create_directory(directory / log_file);
    stats.Display_Flight_Stats();
    EXPECT_EQ(Take_Errors().size(), 1U);
    EXPECT_FALSE(Contains(Join(Take_Boxes(), ""), "No Flight Time Recorded"));
    EXPECT_EQ(stats.tdbTimeCaption.Text(), "Total Flight Time: ");
}

}  // namespace
}  // namespace norvane
