// The reports of the log, two of them byte for byte, and what happens around them: questions, edits
// in progress, files that cannot be written, totals of cells that hold more than a number.

#include <regex>

#include "flightlog/log_reports.h"
#include "logpanel/log_world.h"
#include "logpanel/uc_stats.h"

namespace norvane::test {
namespace {

class Reports_Test : public Log_World {
  protected:
    /// The report that was written and opened.
    std::string Report() {
        EXPECT_EQ(desktop.opened_files, std::vector{directory / "report.html"});
        desktop.opened_files.clear();
        return Read("report.html");
    }
    static std::string Kept(const std::string& name) {
        return Read_File(Data_File("reports/" + name));
    }
    /// What the report's table shows: rows in brackets, a bar behind each cell.
    std::string Shown() {
        std::string page = Report();
        const std::vector<std::pair<std::string, std::string>> steps{
            {"\r\n|&nbsp;", ""}, {" ?<tr>", "["}, {"</td>", "|"}, {"</tr>", "]"}, {"<[^>]*>", ""}};
        page.erase(0, page.find('>', page.rfind("<table")) + 1);
        for (const auto& [what, text] : steps)
            page = std::regex_replace(page, std::regex(what), text);
        return page;
    }
    /// When the field chooser opens, only these lines of it are left checked.
    void Choose_Fields(std::vector<std::size_t> places) {
        log->field_chooser.shown.Connect([this, places = std::move(places)] {
            log->field_chooser.mnuUnselectAll.Choose();
            for (const std::size_t place : places)
                log->field_chooser.lvwFields[place].box.Set_Checked(true);
            log->field_chooser.hypOK.Click();
        });
    }
};

TEST_F(Reports_Test, Logbook_holds_the_chosen_fields_and_the_edit_in_progress) {
    Write("bin/optfields.cfg", "Gate^\r\n");
    Write(log_file,
          Full_Line("1/2/2008|B737 <b>||KAAA||||||Alpha & Sons|||||||||||||||||||||||||||||A 1") +
              Full_Line("1/1/2008|C172|||left out|||||||||12,345.55"));
    Start();
    bool given_up = false;
    auto nothing_chosen = log->field_chooser.shown.Connect([&] {
        if (!std::exchange(given_up, true))
            return log->field_chooser.hypCancel.Click();
        // Other columns than those that were shown: nothing was chosen of them.
        Write("bin/optfields.cfg", "Gate^\r\nType^\r\n");
        log->VA_Change();
        log->field_chooser.hypOK.Click();
    });
    for (int tries = 0; tries < 2; ++tries)
        log->Create_Report_File();
    nothing_chosen.Disconnect();
    EXPECT_FALSE(Exists("report.html"));
    Choose_Fields({0, 1, 9, 13, 19, 38});
    log->commit_edit_wanted.Connect([&] { log->Commit_Edit(1, 19, "just typed"); });
    log->hypACARS[ucFlightLog::create_report].Click();
    EXPECT_EQ(Shown(),
              "[Date|Aircraft Type|Destination Airport|Block Time|Comments|Gate|]"
              "[1/1/2008|C172|-|12,345.55|-|-|]"
              "[1/2/2008|B737 &lt;b&gt;|Alpha &amp; Sons|-|just typed|A 1|]");
    EXPECT_TRUE(Contains(Read("report.html"), log->tdbLogCaption.Text()));
}

TEST_F(Reports_Test, Statistics_sum_what_is_a_number_in_the_units_of_the_settings) {
    Write(log_file,
          Full_Line("1/1/2008|||||||||||||1000.25||5400 gal|900.5||4000 gal|||150|12000 kg|||1234 "
                    "nm||||||||||||ifr") +
              Full_Line(
                  "1/2/2008|||||||||||||0.5||none||||||2 crew|1,500 kg|||10.6 nm||||||||||||VFR") +
              Full_Line("1/3/2008|||||||||||||x|||.05|||||nm 9| 9 kg|||9nm"));
    Start();
    settings->Set_ACARS_Fuel(2);
    settings->Set_ACARS_Weight(1);
    log->commit_edit_wanted.Connect([&] { log->Commit_Edit(2, 15, "100.4"); });
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
    log->Commit_Edit(0, 19, "");
    log->commit_edit_wanted.Connect([&] { log->Commit_Edit(0, 19, "<c19>"); });
    log->mnuPopReport.Choose();
    EXPECT_EQ(Report(), Kept("flight-own-fields.html"));
}

TEST_F(Reports_Test, A_report_that_fails_is_told_and_not_opened) {
    Start();
    log->Create_Report_File();
    log->Grid_Print_Preview();
    log->Grid_Print();
    EXPECT_EQ(Take_Boxes(), Texts(3, "There are no log entries to include in the report"));
    log->Add_Row();
    log->Set_Current_Row(0);
    fs::create_symlink("/dev/full", directory / "report.html");
    ucStats stats(services, *settings);
    log->Create_Statistics_Report();
    log->Create_ACARS_Report();
    stats.Create_Report();
    EXPECT_TRUE(desktop.opened_files.empty());
    EXPECT_EQ(Take_Errors().size(), 3U);
}

TEST_F(Reports_Test, Hours_are_summed_by_type_to_the_letter) {
    Write(log_file, Full_Line("1/1/2008|B737||||||||||||1,000.5") +
                        Full_Line("1/2/2008|b737||||||||||||2.0") +
                        Full_Line("1/3/2008|C172||||||||||||1:15") +
                        Full_Line("1/4/2008| ||||||||||||5") +
                        Full_Line("1/6/2008|B737||||||||||||1|||99"));
    Start();
    ucStats stats(services, *settings);
    stats.hypACARS[1].Click();
    EXPECT_EQ(Shown(),
              "[AIRCRAFT TYPE||TOTAL TIME|||][||||||][||||||][Total Flight Time: ||||||][||||||]");
    stats.hypACARS[0].Click();
    stats.hypACARS[1].Click();
    EXPECT_EQ(Shown(),
              "[AIRCRAFT TYPE||TOTAL TIME|||][||||||][ ||0.0||||][B737||1,001.5||||]"
              "[C172||0.0||||][b737||2.0||||][||||||][Total Flight Time: ||1,003.5||||][||||||]");

    fs::remove(directory / log_file);
    stats.Display_Flight_Stats();
    EXPECT_EQ(Take_Boxes(), Texts{"No Flight Time Recorded"});
    // A log that cannot be read may well have flights.
    fs::create_directory(directory / log_file);
    stats.Display_Flight_Stats();
    EXPECT_EQ(Take_Errors().size(), 1U);
    EXPECT_EQ(stats.tdbTimeCaption.Text(), "Total Flight Time: ");
}

}  // namespace
}  // namespace norvane::test
